// SPDX-License-Identifier: GPL-3.0-or-later
#include "roads/ATCRead.h"

#include "core/Context.h"
#include "core/ErrorReport.h"
#include "core/Numbers.h"
#include "formats/Globals.h"
#include "formats/vCal.h"
#include "phone/ATC.h"
#include "roads/Autodelete.h"
#include "roads/DOROutlookCalendar.h"
#include "sync/SeriesMove.h"
#include "sync/Verwaltung.h"
#include "sync/vCalMatch.h"
#include "tables/TSRADODB.h"

namespace tsr::roads {

using tables::Recordset;

namespace {

const QString kATC = QStringLiteral("ATC");

// Reads one record's text into a fresh row of the scratch table; false when the
// parser refused it, after reporting why.
bool parseRecord(core::Context& ctx, Recordset& scratch, const QByteArray& bytes, int index) {
    tables::vCalCreateNewRecord(scratch);
    return core::guarded(ctx, QStringLiteral("vCal"), QStringLiteral("vCalSyncMobileEntry"), false, [&] {
        QString text = formats::textFromCodePage(bytes);
        try {
            return formats::ParsEntryFromMobile(ctx, scratch, text);
        } catch (const core::TsrError& e) {
            // Name the record, so the log says which entry the phone holds broken.
            core::raise(e.number(), e.source(),
                        e.description() + QStringLiteral(" (") + QString::number(index) + QStringLiteral(".vcs)"));
        }
    });
}

void setAutoSyncTools(core::Context& ctx) {
    const bool on = ctx.settings.SaveTyp != 2;
    ctx.tools.setEnabled(QStringLiteral("TSROrganizerMenu"), QStringLiteral("TSRAutoSync"), on);
    ctx.tools.setEnabled(QStringLiteral("TSRTools"), QStringLiteral("TSRAutoSync"), on);
}

} // namespace

bool ATCGetMobileEntries(core::Context& ctx) {
    return core::guarded(ctx, kATC, QStringLiteral("ATCGetMobileEntries"), false, [&] {
        Recordset& table = *ctx.tables.RSCalendar;
        auto& read = ctx.read;
        auto& phone = ctx.phone;
        read.vCalMobileCount = 0;
        bool goOn = true;

        Recordset scratch(QStringLiteral("RSCalendar"));
        tables::InitCalendarRS(scratch);
        tables::applyDateTextForm(ctx, scratch);

        int position = phone.FirstIndex < 1 ? 1 : phone.FirstIndex;
        // An empty range has nothing to read and counts as read to its end.
        int lastRead = phone.FirstIndex > phone.LastIndex ? phone.LastIndex : phone.FirstIndex - 1;
        for (int index = phone.FirstIndex; index <= phone.LastIndex; ++index, ++position) {
            if (!ctx.status.GetState()) {
                goOn = false;
                break;
            }
            ctx.status.SetText(QString::number(position) + QStringLiteral(" / ") +
                               QString::number(phone.MobileCapacity) + u' ' + ctx.strings.text(889));
            QByteArray bytes;
            if (!phone::ATCGetSingleMobileEntry(ctx, bytes, index))
                break;
            lastRead = index;
            if (bytes.isEmpty())
                continue;
            if (!parseRecord(ctx, scratch, bytes, index)) {
                lastRead = index - 1;
                break;
            }
            scratch.setValue(QStringLiteral("EntryPath"), phone.CalPath);
            scratch.setValue(QStringLiteral("EntryFile"), QString::number(index) + QStringLiteral(".vcs"));
            scratch.setValue(QStringLiteral("EntryID"), QString::number(index));
            scratch.setValue(QStringLiteral("SubType"), int32_t(index));

            sync::admitCalendarEntry(ctx, table, scratch, sync::ReadSide::Mobile);
            if (table.value(QStringLiteral("ISRecurring")).toBool())
                sync::vCalCreateMobileSerieRecords(ctx, table);
            if (!table.value(QStringLiteral("PIM")).toBool())
                roads::SearchingforaOutlookEntry(ctx, table);

            read.vCalMobileCount += 1;
            if (read.vCalMobileCount > phone.MobileCapacity) {
                phone.MobileCapacity = core::toInt16(read.vCalMobileCount);
                ctx.settings.freeMobileEntries = core::toInt16(qint64(phone.MaxEntries) - read.vCalMobileCount);
            }
            scratch.deleteCurrent();
        }

        if (lastRead != phone.LastIndex || !goOn) {
            sync::vCalClearAfterMobileError(ctx);
            read.vCalMobileRead = false;
            read.MobileConnected = !goOn;
            read.vCalPIMCount = sync::countPimRows(table);
            read.vCalPIMRead = read.vCalPIMCount > 0;
            ctx.ui->refreshGrid(0);
            return false;
        }

        read.vCalMobileRead = read.vCalMobileCount >= 0;
        read.MobileConnected = true;
        setAutoSyncTools(ctx);
        if (ctx.settings.Autodel == 1 && read.vCalMobileCount > 0)
            Delete_Bearbeitung(ctx, table);
        ctx.ui->refreshGrid(0);
        if (table.recordCount() > 0)
            table.moveFirst();
        return true;
    });
}

} // namespace tsr::roads
