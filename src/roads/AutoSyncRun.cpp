// SPDX-License-Identifier: GPL-3.0-or-later
// AutoSync's runs, their period and the four row selections of a calendar run.
#include "roads/AutoSyncRun.h"

#include "core/Context.h"
#include "core/ErrorReport.h"
#include "core/Numbers.h"
#include "core/StatusBar.h"
#include "phone/ComDrvCode.h"
#include "phone/GDX.h"
#include "roads/DOROutlookCalendar.h"
#include "roads/DOROutlookContacts.h"
#include "roads/Mobile.h"
#include "spine/DateRange.h"
#include "sync/AutoSync.h"
#include "sync/MobFile.h"
#include "sync/SeriesMove.h"
#include "sync/Verwaltung.h"
#include "tables/TSRADODB.h"

#include <QSet>

namespace tsr::roads {

using core::VbDate;
using tables::Recordset;

namespace {

const QString kModul = QStringLiteral("AutoSync");

VbDate endOfDay(VbDate d) {
    return VbDate(core::DateValue(d).value + 86399.0 / 86400.0);
}

// The two dates of SyncEintraegevonbis ("from<TAB>to 23:59:59"); nothing where one is no date.
std::pair<std::optional<VbDate>, std::optional<VbDate>> fromTo(const core::Context& ctx) {
    const QStringList parts = ctx.settings.SyncEintraegevonbis.split(u'\t');
    const auto& f = ctx.formats;
    auto read = [&](int i) -> std::optional<VbDate> {
        const QString t = parts.value(i).trimmed();
        if (t.isEmpty())
            return std::nullopt;
        if (auto d = core::parseDate(t, f.DateFormat, f.TimeFormat))
            return d;
        return core::parseDate(t.section(u' ', 0, 0), f.DateFormat, f.TimeFormat);
    };
    return {read(0), read(1)};
}

// The period of the main window's date frame, kept while a run changes it.
struct SavedPeriod {
    VbDate start, end;
};
SavedPeriod savePeriod(const core::Context& ctx) {
    return {ctx.flags.GlobalStartDate, ctx.flags.GlobalEndDate};
}
void restorePeriod(core::Context& ctx, const SavedPeriod& p) {
    ctx.flags.GlobalStartDate = p.start;
    ctx.flags.GlobalEndDate = p.end;
}

using Selected = bool (*)(const core::Context&, const Recordset&);

// The frame the four selections share: the limit, the room left, the walk that
// writes each chosen row once, however many days of a series the grid shows.
void selectAndWrite(core::Context& ctx, Recordset& Table, Selected selected, std::optional<int32_t> cap) {
    auto& r = ctx.read;
    int32_t limit = std::min<int32_t>(r.vCalPIMCount, r.FreeCalendarSlots);
    if (cap)
        limit = std::min(limit, *cap);
    if (ctx.settings.SyncTyp == 4)
        limit = limit + sync::CountMobileOnlyRows(ctx, Table) - sync::CountPairedRows(ctx, Table);
    const int16_t mode = core::toInt16(qint64(r.FreeCalendarSlots) - r.vCalMobileCount - limit);
    QSet<QString> written; // EntryIDs written in this run
    int16_t number = 0;
    r.SyncStop = false;
    if (Table.recordCount() == 0)
        return;
    Table.moveFirst();
    while (!Table.eof() && number < limit) {
        if (!ctx.status.GetState())
            break;
        const QString entryID = Table.value(QStringLiteral("EntryID")).toText();
        const int32_t type = Table.value(QStringLiteral("EntryType")).toInt32();
        const bool pass = !selected(ctx, Table) || (ctx.settings.SyncTyp != 4 && type != 1) ||
                          written.contains(entryID) || !sync::EntryTypeCheck(ctx.settings.SyncTermine, Table);
        if (pass) {
            Table.moveNext();
            continue;
        }
        ++number;
        if (ctx.settings.SyncTyp == 4 ||
            (Table.value(QStringLiteral("PIM")).toBool() && !Table.value(QStringLiteral("Mobile")).toBool())) {
            ctx.status.SetText(QString::number(number) + QStringLiteral(": ") +
                               Table.value(QStringLiteral("Text")).toText());
            const bool cleared = ctx.read.MobileCleared;
            if (!SyncType(ctx, mode, Table, number))
                break;
            // The phone's rows were taken off: the walk begins again at the first row.
            if (cleared != ctx.read.MobileCleared) {
                written.insert(Table.value(QStringLiteral("EntryID")).toText());
                Table.moveFirst();
                continue;
            }
        }
        written.insert(Table.value(QStringLiteral("EntryID")).toText());
        if (ctx.read.SyncStop)
            break;
        Table.moveNext();
    }
}

bool startOnOrAfter(const core::Context& ctx, const Recordset& row, VbDate from) {
    (void)ctx;
    return core::DateValue(row.value(QStringLiteral("StartDate")).toDate()).value >= core::DateValue(from).value;
}

// The calendar half of a run. `silent` reads through the unattended roads.
bool calendarRun(core::Context& ctx, SyncRun run, bool silent) {
    Recordset& table = *ctx.tables.RSCalendar;
    auto& r = ctx.read;
    r.SyncRunning = true;
    r.MobileCleared = false;
    r.SyncStop = false;
    ctx.ui->setBusyCursor(true);
    ctx.status.SetText(ctx.strings.text(885)); // "Please wait while autosync is implemented!"
    const SavedPeriod saved = savePeriod(ctx);
    if (ctx.settings.SyncTyp != 3)
        InitSyncValues(ctx, run);
    // Rows of an earlier read of the phone go before it is read again.
    if (r.vCalMobileCount > 0)
        sync::vCalClearAfterMobileError(ctx);
    const bool mobileRead = silent ? roads::SilentvCalReadMobile(ctx) : roads::GetMobileEntries(ctx);
    if (!mobileRead) {
        restorePeriod(ctx, saved);
        ctx.ui->refreshGrid(0);
        r.SyncRunning = false;
        ctx.ui->setBusyCursor(false);
        return false;
    }
    if (ctx.settings.SyncTyp != 3)
        silent ? roads::SilentvCalReadOutlook(ctx, table) : roads::vCalReadOutlook(ctx, table, true);
    if (table.eof() && (r.vCalMobileCount > 0 || r.vCalPIMCount > 0) && table.recordCount() > 0)
        table.moveFirst();
    const bool contactsShown = !silent && ctx.settings.ActiveAPP == 1;
    if (ctx.settings.SyncTyp == 3) {
        if (!contactsShown && r.vCalMobileCount > 0 && !table.eof())
            MobileWritePIM(ctx, table);
    } else if (r.vCalPIMRead && !contactsShown && !table.eof()) {
        switch (ctx.settings.SyncZeitraum) {
        case 1:
            SyncAlarmAnzahl(ctx, table);
            break;
        case 2:
            SyncEntriesFrom(ctx, table);
            break;
        case 3:
            SyncEntriesFromTo(ctx, table);
            break;
        case 4:
            SyncnextEntries(ctx, table);
            break;
        default:
            break;
        }
    }
    if (ctx.settings.SyncZeitraum == 2 && !contactsShown)
        restorePeriod(ctx, saved);
    r.SyncRunning = false;
    ctx.ui->setBusyCursor(false);
    return true;
}

// The contact half: read both sides, write by SyncTyp, read the phone again for
// the numbers it gave, and keep the snapshot of the phone's contacts.
bool contactRun(core::Context& ctx, bool silent) {
    Recordset& table = *ctx.tables.RSContacts;
    auto& r = ctx.read;
    r.SyncRunning = true;
    sync::ReadMobFile(ctx);
    if (r.vCardMobileCount > 0)
        sync::vCardClearAfterMobileError(ctx, false, false);
    bool read = false;
    if (silent) {
        read = roads::SilentvCardReadMobile(ctx);
    } else if (!phone::GDXInfovCard(ctx, ctx.servers.GDXServer, ctx.phone.PbPath)) {
        ctx.status.Quit();
        r.MobileConnected = false;
        core::SetStatusBarMobile(ctx, true);
        r.SyncRunning = false;
        return false;
    } else {
        read = roads::GetMobileVCardEntries(ctx, true);
    }
    if (!read) {
        r.SyncRunning = false;
        return false;
    }
    roads::vCardReadOutlook(ctx, table, true);
    if (table.recordCount() > 0 && !table.eof()) {
        if (ctx.settings.SyncTyp == 3)
            vcardMobileWritePIM(ctx, table);
        else if (ctx.settings.SyncTyp == 4)
            CompleteSyncvCard(ctx, table);
        else
            PIMwriteMobile(ctx, table);
    }
    if (!silent) {
        if (r.vCardMobileCount > 0)
            sync::vCardClearAfterMobileError(ctx, true, false);
        r.MobileConnected = roads::GetMobileVCardEntries(ctx, true);
    }
    if (table.recordCount() > 0 && r.vCardMobileRead)
        sync::WriteMobFileforall(ctx, table);
    r.SyncRunning = false;
    return true;
}

void clearBothTables(core::Context& ctx) {
    for (Recordset* t : {ctx.tables.RSCalendar.get(), ctx.tables.RSContacts.get()})
        if (t && t->recordCount() > 0)
            tables::ClearRecordSet(*t);
}

} // namespace

void InitSyncValues(core::Context& ctx, SyncRun run) {
    core::guarded(ctx, kModul, QStringLiteral("InitSyncValues"), [&] {
        auto& s = ctx.settings;
        const VbDate today = ctx.clock.Date();
        if (s.SyncEintraegeab.value == 0)
            s.SyncEintraegeab = today;
        if (s.SyncEintraegevonbis.isEmpty())
            s.SyncEintraegevonbis =
                core::Format(today, ctx.formats.DateFormat) + u'\t' +
                core::Format(core::DateAdd(QStringLiteral("ww"), 1, today), ctx.formats.DateFormat) +
                QStringLiteral(" 23:59:59");
        if (s.SyncTageWochenMonate == 5)
            s.SyncTageWochenMonate = 1;
        if (s.SyncnaechstenAnzahl == 0)
            s.SyncnaechstenAnzahl = 1;

        VbDate& start = ctx.flags.GlobalStartDate;
        VbDate& end = ctx.flags.GlobalEndDate;
        switch (s.SyncZeitraum) {
        case 1:
            start = today;
            end = run == SyncRun::Both ? endOfDay(core::DateAdd(QStringLiteral("ww"), 1, today))
                                       : core::DateAdd(QStringLiteral("yyyy"), 1, today);
            break;
        case 2:
            start = core::DateValue(s.SyncEintraegeab);
            end = core::DateAdd(QStringLiteral("yyyy"), run == SyncRun::Main ? 3 : 1, start);
            break;
        case 3: {
            if (s.SyncEintraegevonbis.size() < 2)
                break;
            const auto [from, to] = fromTo(ctx);
            if (!from)
                break;
            start = core::DateValue(*from);
            end = to ? *to : core::DateAdd(QStringLiteral("ww"), 1, start);
            if (run == SyncRun::Both)
                end = endOfDay(end);
            break;
        }
        case 4: {
            start = today;
            const int unit = std::clamp<int>(s.SyncTageWochenMonate, 0, 3);
            end = spine::CalcDateAddNew(ctx, spine::PeriodIntervals[size_t(unit)], s.SyncnaechstenAnzahl, today);
            break;
        }
        default:
            break;
        }
    });
}

void SyncAlarmAnzahl(core::Context& ctx, Recordset& Table) {
    core::guarded(ctx, kModul, QStringLiteral("SyncAlarmAnzahl"), [&] {
        selectAndWrite(
            ctx, Table, [](const core::Context&, const Recordset&) { return true; }, ctx.settings.SyncAlarmAnzahl);
    });
}

void SyncEntriesFrom(core::Context& ctx, Recordset& Table) {
    core::guarded(ctx, kModul, QStringLiteral("SyncEntriesFrom"), [&] {
        selectAndWrite(
            ctx, Table,
            [](const core::Context& c, const Recordset& row) {
                return startOnOrAfter(c, row, c.settings.SyncEintraegeab);
            },
            std::nullopt);
    });
}

void SyncEntriesFromTo(core::Context& ctx, Recordset& Table) {
    core::guarded(ctx, kModul, QStringLiteral("SyncEntriesFromTo"), [&] {
        selectAndWrite(
            ctx, Table,
            [](const core::Context& c, const Recordset& row) {
                const auto [from, to] = fromTo(c);
                const double day = core::DateValue(row.value(QStringLiteral("StartDate")).toDate()).value;
                return from && day >= core::DateValue(*from).value && (!to || day <= to->value);
            },
            std::nullopt);
    });
}

void SyncnextEntries(core::Context& ctx, Recordset& Table) {
    core::guarded(ctx, kModul, QStringLiteral("SyncnextEntries"), [&] {
        selectAndWrite(
            ctx, Table,
            [](const core::Context& c, const Recordset& row) {
                const double day = core::DateValue(row.value(QStringLiteral("StartDate")).toDate()).value;
                return day >= core::DateValue(c.flags.GlobalStartDate).value && day <= c.flags.GlobalEndDate.value;
            },
            std::nullopt);
    });
}

void SyncMain(core::Context& ctx) {
    core::guarded(ctx, kModul, QStringLiteral("SyncMain"), [&] {
        ctx.status.Start(ctx.title(), false);
        bool linkFailed = false;
        if (!phone::InitComm(ctx)) {
            linkFailed = true;
        } else if (ctx.settings.ActiveAPP == 1) {
            linkFailed = !contactRun(ctx, false);
        } else {
            linkFailed = !calendarRun(ctx, SyncRun::Main, false);
        }
        ctx.read.SyncRunning = false;
        ctx.ui->refreshGrid(ctx.settings.ActiveAPP == 1 ? 1 : 0);
        core::SetStatusBarMobile(ctx);
        ctx.ui->setBusyCursor(false);
        ctx.status.Quit();
        if (linkFailed && ctx.status.isContinue()) {
            sync::vCalClearAfterMobileError(ctx);
            if (ctx.log.LogErrorCount > 0)
                ctx.ui->showLogSummary();
        }
    });
}

void SilendAutoSyncBoth(core::Context& ctx) {
    core::guarded(ctx, kModul, QStringLiteral("SilendAutoSyncBoth"), [&] {
        const bool ok = phone::InitComm(ctx) && calendarRun(ctx, SyncRun::Both, true) && contactRun(ctx, true);
        clearBothTables(ctx);
        if (!ok)
            ctx.status.Quit();
    });
}

void SilentAutoSyncvCal(core::Context& ctx) {
    core::guarded(ctx, kModul, QStringLiteral("SilentAutoSyncvCal"), [&] {
        const bool ok = phone::InitComm(ctx) && calendarRun(ctx, SyncRun::Calendar, true);
        clearBothTables(ctx);
        if (!ok)
            ctx.status.Quit();
    });
}

void SilentAutoSyncvCard(core::Context& ctx) {
    core::guarded(ctx, kModul, QStringLiteral("SilentAutoSyncvCard"), [&] {
        const bool ok = phone::InitComm(ctx) && contactRun(ctx, true);
        clearBothTables(ctx);
        if (!ok)
            ctx.status.Quit();
    });
}

} // namespace tsr::roads
