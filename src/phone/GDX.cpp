// SPDX-License-Identifier: GPL-3.0-or-later
#include "phone/GDX.h"

#include "core/ErrorReport.h"
#include "core/Numbers.h"
#include "phone/ATC.h"
#include "phone/ATCServer.h"
#include "phone/ComDrvCode.h"
#include "tables/Recordset.h"

#include <QStringDecoder>

namespace tsr::phone {

namespace {

const QString kGDX = QStringLiteral("GDX");

// The phone's files are in the system's 8-bit code page.
QString fromCodePage(const QByteArray& bytes) {
    QStringDecoder decode("windows-1252");
    return decode.isValid() ? QString(decode(bytes)) : QString::fromLatin1(bytes);
}

void setAutoSyncTools(core::Context& ctx, bool enabled) {
    ctx.tools.setEnabled(QStringLiteral("TSROrganizerMenu"), QStringLiteral("TSRAutoSync"), enabled);
    ctx.tools.setEnabled(QStringLiteral("TSRTools"), QStringLiteral("TSRAutoSync"), enabled);
}

void setClearMobileTool(core::Context& ctx) {
    ctx.tools.setEnabled(QStringLiteral("TSRTools"), QStringLiteral("TSRClearMobileCal"),
                         ctx.read.vCalMobileCount >= 1);
}

} // namespace

QString gdxJoin(const QString& path, const QString& file) {
    return path.endsWith(u'\\') ? path + file : path + u'\\' + file;
}

bool getMobileGDXInfo(core::Context& ctx, GDXServerSlot& server, const QString& path, const QString& file,
                      GDXInfoTable& table) {
    return core::guarded(ctx, kGDX, QStringLiteral("getMobileGDXInfo"), false, [&] {
        table.clear();
        if (!server)
            return false;
        QByteArray bytes;
        try {
            bytes = server->ReadFile(gdxJoin(path, file));
        } catch (const core::TsrError& e) {
            // No information file is no failure.
            if (e.number() != atc::NoDevice && e.number() != 0)
                core::ErrorsCode(ctx, e, kGDX, QStringLiteral("getMobileGDXInfo"));
            return false;
        }
        const QString text = fromCodePage(bytes);
        dumpItem(path, file, bytes, QStringLiteral("Info:"));
        if (!text.contains(QLatin1String("\r\n")))
            return false;
        const QStringList lines = text.split(QStringLiteral("\r\n"));
        for (const QString& line : lines) {
            if (!line.contains(u':')) {
                table.append(std::pair<QString, QString>());
                continue;
            }
            // A value with further colons keeps only its part before the second colon.
            const QStringList pieces = line.split(u':');
            table.append({pieces.value(0), pieces.value(1)});
        }
        return !table.isEmpty();
    });
}

void GDXInfoAuswertung(core::Context& ctx, const GDXInfoTable& table, GDXDeviceInfo& info, int16_t& maxOut,
                       int16_t& totalOut, int16_t& lastOut, bool isCard) {
    core::guarded(ctx, kGDX, QStringLiteral("GDXInfoAuswertung"), [&] {
        for (const auto& [key, value] : table) {
            const QString k = key.toUpper();
            if (k == QLatin1String("MANU")) {
                info.Manufacturer = value;
            } else if (k == QLatin1String("MOD")) {
                info.Model = value;
            } else if (k == QLatin1String("MAXIMUM-RECORDS")) {
                const int16_t number = core::CInt(core::Val(value));
                maxOut = number;
                if (!isCard) {
                    ctx.phone.MaxEntries = number;
                    int16_t& keepFree = ctx.settings.freeMobileEntries;
                    if (keepFree <= number)
                        maxOut = int16_t(number - keepFree);
                    else
                        keepFree = 0;
                    if (!ctx.flags.GlobalSilent)
                        core::SetStatusBarMobile(ctx);
                }
            } else if (k == QLatin1String("TOTAL-RECORDS")) {
                totalOut = core::CInt(core::Val(value));
            } else if (k == QLatin1String("LAST-USED-INDEX")) {
                lastOut = core::CInt(core::Val(value));
            }
        }
        if (!isCard) {
            ctx.phone.FirstIndex = 1;
            ctx.phone.LastIndex = maxOut < 1 ? int16_t(1) : maxOut;
        }
    });
}

bool GDXInfoAll(core::Context& ctx, GDXServerSlot&, const QString&) {
    return core::guarded(ctx, kGDX, QStringLiteral("GDXInfoAll"), false, [&] {
        const bool ok = ATCInfo(ctx);
        if (ok) {
            ctx.read.MobileConnected = true;
            setAutoSyncTools(ctx, ctx.settings.SaveTyp != 2);
        } else {
            setAutoSyncTools(ctx, false);
        }
        setClearMobileTool(ctx);
        return ok;
    });
}

bool GDXInfovCal(core::Context& ctx, GDXServerSlot&, const QString&) {
    return core::guarded(ctx, kGDX, QStringLiteral("GDXInfovCal"), false, [&] {
        // The test stands the other way round on purpose: a working phone ends a silent read here.
        if (ATCInfo(ctx))
            return false;
        ctx.read.MobileConnected = true;
        setAutoSyncTools(ctx, ctx.settings.SaveTyp != 2);
        setClearMobileTool(ctx);
        return true;
    });
}

bool GDXInfovCard(core::Context&, GDXServerSlot&, const QString&) {
    return true;
}

bool GetSingleMobileEntry(core::Context& ctx, GDXServerSlot& server, const QString& path, QByteArray& text,
                          const QString& file) {
    return core::guarded(ctx, kGDX, QStringLiteral("GetSingleMobileEntry"), false, [&] {
        text.clear();
        if (!server)
            return false;
        bool result = false;
        try {
            text = server->ReadFile(gdxJoin(path, file));
            result = true;
        } catch (const core::TsrError& e) {
            if (e.number() != atc::NoDevice && e.number() != 0) {
                core::ErrorsCode(ctx, e, kGDX, QStringLiteral("GetSingleMobileEntry"));
                return false;
            }
        }
        dumpItem(path, file, text, QStringLiteral("Read:"));
        return result;
    });
}

int DirMobileEntryFiles(core::Context& ctx, GDXServerSlot& server, const QString& path, const QString& mask,
                        QStringList& names) {
    return core::guarded(ctx, kGDX, QStringLiteral("DirMobileEntryFiles"), -1, [&] {
        if (!server)
            return -1;
        const QList<QStringList> rows = server->ListFiles(gdxJoin(path, mask), 0);
        if (rows.isEmpty())
            return 0;
        names.clear();
        for (const QStringList& row : rows)
            names << row.value(0);
        return int(rows.size());
    });
}

namespace {

// The contact folder's info.log evaluated into the card status fields; the last
// index in use comes back in `lastOut`. Contacts keep no buffer of free entries:
// the transfer may fill the whole capacity.
bool readCardInfo(core::Context& ctx, GDXServerSlot& server, const QString& path, int16_t& lastOut) {
    GDXInfoTable table;
    if (!getMobileGDXInfo(ctx, server, path, ctx.phone.PbInfoFile, table))
        return false;
    GDXDeviceInfo cardInfo;
    int16_t maxOut = 0, totalOut = 0;
    GDXInfoAuswertung(ctx, table, cardInfo, maxOut, totalOut, lastOut, true);
    ctx.phone.MobileCardCapacity = maxOut;
    ctx.read.FreeContactSlots = maxOut;
    return true;
}

} // namespace

bool readCardCapacity(core::Context& ctx, GDXServerSlot& server, const QString& path) {
    return core::guarded(ctx, kGDX, QStringLiteral("readCardCapacity"), false, [&] {
        int16_t lastOut = 0;
        return readCardInfo(ctx, server, path, lastOut);
    });
}

bool getvCardMobileEntryName(core::Context& ctx, GDXServerSlot& server, QString& name, const QString& path) {
    return core::guarded(ctx, kGDX, QStringLiteral("getvCardMobileEntryName"), false, [&] {
        name.clear();
        int16_t lastOut = 0;
        if (!readCardInfo(ctx, server, path, lastOut))
            return false;
        ctx.read.MobileConnected = true;
        setAutoSyncTools(ctx, ctx.settings.SaveTyp != 2);
        name = QString::number(lastOut) + QStringLiteral(".vcf");
        return true;
    });
}

bool GDXWriteStream(core::Context& ctx, GDXServerSlot& server, const QByteArray& text, const QString& path,
                    const QString& file) {
    return core::guarded(ctx, kGDX, QStringLiteral("GDXWriteStream"), false, [&] {
        if (!server)
            return false;
        const QString full = gdxJoin(path, file);
        bool deleteFirst = false;
        if (file.contains(QLatin1String("vcs"))) {
            const tables::Recordset* rs = ctx.tables.RSCalendar.get();
            deleteFirst =
                rs && rs->recordCount() > 0 && !rs->eof() && !rs->bof() && rs->value(QStringLiteral("Mobile")).toBool();
        } else {
            deleteFirst = file.toUpper() != QLatin1String("NEW.VCF");
        }
        if (deleteFirst)
            server->DeleteFile(full);
        server->WriteFile(full, text, 0);
        return true;
    });
}

} // namespace tsr::phone
