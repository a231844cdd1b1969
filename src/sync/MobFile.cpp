// SPDX-License-Identifier: GPL-3.0-or-later
// The phone's contact snapshot (module Allgemein).
#include "sync/MobFile.h"

#include "core/ErrorReport.h"
#include "formats/Globals.h"
#include "sync/vCardMatch.h"
#include "tables/TSRADODB.h"

#include <QFile>
#include <QSaveFile>

namespace tsr::sync {

using tables::Recordset;

namespace {
const QString kModul = QStringLiteral("Allgemein");
const QString kCrLf = QStringLiteral("\r\n");

// The columns of a line, in file order; "flag" columns are written "1" or "0".
struct Column {
    const char16_t* field;
    bool flag;
};
constexpr Column kColumns[] = {
    {u"MobileID", false},  {u"UID", false},       {u"Mobile", true},     {u"PIM", true},          {u"LastName", false},
    {u"FirstName", false}, {u"Company", false},   {u"Phone", false},     {u"Street", false},      {u"ZipCode", false},
    {u"City", false},      {u"Categories", true}, {u"PhoneWork", false}, {u"PhoneMobile", false}, {u"Fax", false},
    {u"eMail", false},     {u"Country", false},   {u"URL", false},
};

QString column(const Recordset& r, const Column& c) {
    const QString name = QString::fromUtf16(c.field);
    const core::Value v = r.value(name);
    if (c.flag)
        return v.toBool() ? QStringLiteral("1") : QStringLiteral("0");
    // A tab would shift every later column and a line break would split the
    // record; the readers take CR LF and tabs out, but a PIM text may still hold
    // a bare line feed or carriage return. Each becomes a blank.
    QString text = v.toText();
    text.replace(kCrLf, QStringLiteral(" "));
    for (QChar& ch : text)
        if (ch == u'\t' || ch == u'\r' || ch == u'\n')
            ch = u' ';
    return text;
}

void writeFile(core::Context& ctx, const QString& text, const QString& proc) {
    QSaveFile file(mobFilePath(ctx));
    if (!file.open(QIODevice::WriteOnly) || file.write(formats::textToCodePage(text)) < 0 || !file.commit())
        throw core::TsrError(75, proc, QStringLiteral("Path/File access error: ") + mobFilePath(ctx));
}

// Runs `body` with the positions of both tables kept.
template <class F> void keepingPositions(Recordset& a, Recordset& b, F&& body) {
    const int pa = a.absolutePosition(), pb = b.absolutePosition();
    body();
    a.setAbsolutePosition(pa);
    b.setAbsolutePosition(pb);
}
} // namespace

QString mobFilePath(const core::Context& ctx) {
    return ctx.settings.HomeDir + QStringLiteral("/MobFile.txt");
}

QString setMobFileString(core::Context& ctx, Recordset& table) {
    return core::guarded(ctx, kModul, QStringLiteral("setMobFileString"), QString(), [&] {
        // One quoted text: a quote before the first line and a line of one quote
        // at the end. Quotes inside values stay as they are.
        QString text = QStringLiteral("\"");
        if (table.recordCount() > 0) {
            const int position = table.absolutePosition();
            for (table.moveFirst(); !table.eof(); table.moveNext()) {
                if (!table.value(QStringLiteral("Mobile")).toBool())
                    continue;
                QStringList cells;
                for (const Column& c : kColumns)
                    cells << column(table, c);
                text += cells.join(u'\t') + kCrLf;
            }
            table.setAbsolutePosition(position);
        }
        return text + QStringLiteral("\"") + kCrLf;
    });
}

bool WriteMobFileforall(core::Context& ctx, Recordset& table) {
    return core::guarded(ctx, kModul, QStringLiteral("WriteMobFileforall"), false, [&] {
        writeFile(ctx, setMobFileString(ctx, table), QStringLiteral("WriteMobFileforall"));
        return true;
    });
}

bool ReadMobFile(core::Context& ctx) {
    return core::guarded(ctx, kModul, QStringLiteral("ReadMobFile"), false, [&] {
        ctx.read.MobFileFilled = true;
        ctx.read.MobFileLines.clear();
        QFile file(mobFilePath(ctx));
        if (!file.exists())
            return false;
        if (!file.open(QIODevice::ReadOnly))
            throw core::TsrError(75, QStringLiteral("ReadMobFile"),
                                 QStringLiteral("Path/File access error: ") + mobFilePath(ctx));
        QString all = formats::textFromCodePage(file.readAll());
        all.replace(kCrLf, QStringLiteral("\n"));
        QStringList lines = all.split(u'\n');
        if (!lines.isEmpty() && lines.first().startsWith(u'"'))
            lines.first().remove(0, 1);
        for (const QString& line : lines) {
            if (line.isEmpty() || line == u"\"")
                continue;
            ctx.read.MobFileLines.append(line.split(u'\t'));
        }
        return !ctx.read.MobFileLines.isEmpty();
    });
}

void MobFileAuswertung(core::Context& ctx, Recordset& PIMRow, Recordset& MobileRow, Roads& roads) {
    core::guarded(ctx, kModul, QStringLiteral("MobFileAuswertung"), [&] {
        if (!ctx.read.MobFileFilled)
            return;
        keepingPositions(PIMRow, MobileRow, [&] {
            const QString mobileId = MobileRow.value(QStringLiteral("MobileID")).toText();
            const QString uid = PIMRow.value(QStringLiteral("UID")).toText();
            const auto& lines = ctx.read.MobFileLines;
            int index = -1;
            for (int i = 0; i < lines.size() && index < 0; ++i)
                if (lines[i].value(0) == mobileId && lines[i].value(1) == uid)
                    index = i;
            if (index < 0)
                return;
            Recordset snapshot(QStringLiteral("RSContacts"));
            tables::vCardInitRS(snapshot);
            tables::vCardCreateNewRecord(snapshot);
            tables::vCardFillRecordFromTokens(snapshot, lines, index);
            const bool mobileChanged = !vCardFindCompare(ctx, snapshot, MobileRow, roads);
            const bool pimChanged = !vCardFindCompare(ctx, snapshot, PIMRow, roads);
            if (mobileChanged && pimChanged) {
                const bool shown = !ctx.status.isQuiet();
                if (shown)
                    ctx.ui->statusHide();
                const int answer = ctx.ui->compareContacts(PIMRow, MobileRow);
                if (shown)
                    ctx.ui->statusShow(ctx.title());
                if (answer == 1)
                    MobileOverPIM(ctx, PIMRow, MobileRow, roads);
                else if (answer == 2)
                    vCardPIMoverMobile(ctx, MobileRow, PIMRow, roads);
            } else if (pimChanged) {
                vCardPIMoverMobile(ctx, MobileRow, PIMRow, roads);
            } else if (mobileChanged) {
                MobileOverPIM(ctx, PIMRow, MobileRow, roads);
            }
        });
    });
}

bool DeleteMobFile(core::Context& ctx) {
    return core::guarded(ctx, kModul, QStringLiteral("DeleteMobFile"), false, [&] {
        writeFile(ctx, kCrLf, QStringLiteral("DeleteMobFile"));
        return true;
    });
}

void MobileOverPIM(core::Context& ctx, Recordset& PIMRow, Recordset& MobileRow, Roads& roads) {
    core::guarded(ctx, kModul, QStringLiteral("MobileOverPIM"), [&] {
        const core::Value uid = PIMRow.value(QStringLiteral("UID"));
        tables::CopyFromRecordset(PIMRow, MobileRow);
        PIMRow.setValue(QStringLiteral("UID"), uid);
        PIMRow.setValue(QStringLiteral("PIM"), true);
        if (roads.vCardWriteOutookEntry(ctx, PIMRow)) {
            PIMRow.setValue(QStringLiteral("EntryType"), int32_t(3));
            PIMRow.setValue(QStringLiteral("IsChanged"), false);
        }
        PIMRow.update();
    });
}

void vCardPIMoverMobile(core::Context& ctx, Recordset& MobileRow, Recordset& PIMRow, Roads& roads) {
    core::guarded(ctx, kModul, QStringLiteral("vCardPIMoverMobile"), [&] {
        const core::Value mobileId = MobileRow.value(QStringLiteral("MobileID"));
        const core::Value entryFile = MobileRow.value(QStringLiteral("EntryFile"));
        tables::CopyFromRecordset(MobileRow, PIMRow);
        MobileRow.setValue(QStringLiteral("MobileID"), mobileId);
        MobileRow.setValue(QStringLiteral("EntryFile"), entryFile);
        MobileRow.setValue(QStringLiteral("Mobile"), true);
        if (roads.SendSinglevCardEntry(ctx, MobileRow))
            MobileRow.setValue(QStringLiteral("EntryType"), int32_t(3));
        MobileRow.update();
    });
}

} // namespace tsr::sync
