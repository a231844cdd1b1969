// SPDX-License-Identifier: GPL-3.0-or-later
// Module DOROutlook, the calendar half.
#include "roads/DOROutlookCalendar.h"

#include "core/Context.h"
#include "core/CreateTime.h"
#include "core/ErrorReport.h"
#include "core/Numbers.h"
#include "core/StatusBar.h"
#include "formats/vCal.h"
#include "log/LogWrite.h"
#include "phone/MobileSave.h"
#include "pim/Pim.h"
#include "roads/DOROutlookContacts.h"
#include "sync/AutoSync.h"
#include "sync/SeriesMove.h"
#include "sync/Verwaltung.h"
#include "sync/vCalMatch.h"
#include "tables/TSRADODB.h"

#include <QSet>

namespace tsr::roads {

using core::VbDate;
using tables::Recordset;

namespace {

const QString kModul = QStringLiteral("DOROutlook");

QString text(const Recordset& r, const QString& field) {
    return r.value(field).toText();
}
bool flag(const Recordset& r, const QString& field) {
    return r.value(field).toBool();
}
VbDate date(const Recordset& r, const QString& field) {
    return r.value(field).toDate();
}

std::shared_ptr<pim::Folder> defaultCalendar(core::Context& ctx) {
    return ctx.servers.MOL->GetNamespace(QStringLiteral("MAPI"))->GetDefaultFolder(pim::olFolderCalendar);
}

// An EntryID that names an entry: neither empty nor the "-1" or 0 of a new row.
bool usableEntryID(const QString& id) {
    return !id.isEmpty() && id != u"-1" && id != u"0";
}

void initScratch(core::Context& ctx, Recordset& scratch) {
    tables::InitCalendarRS(scratch);
    tables::applyDateTextForm(ctx, scratch);
}

void enableSave(core::Context& ctx, bool on) {
    ctx.tools.setEnabled(QStringLiteral("TSRTools"), QStringLiteral("TSRSave"), on);
}

void logPim(core::Context& ctx, const Recordset& row, const QString& action, const QString& proc) {
    ctx.log.LogTransfer = QStringLiteral("PIM");
    ctx.log.LogAction = action;
    log::logWriteEntry(ctx, row, core::TsrError(), kModul, proc);
}

// The counters and stop rules of one read of the PIM's calendar.
struct ReadRun {
    int32_t ItemsSeen = 0;
    int32_t ItemsTaken = 0;
    int32_t RowsOfType = 0;
    int32_t NewOfType = 0;
    QStringList UIDList;
    QSet<QString> seen; // the same texts as UIDList, for the repeat test

    // An AutoSync run has read as much as the phone can take.
    bool full(const core::Context& ctx) const {
        const auto& s = ctx.settings;
        const int32_t capacity = ctx.read.MobileCalendarCapacity;
        const int32_t room = capacity - ctx.read.vCalMobileCount;
        if (s.SyncTyp != 1 && NewOfType >= room)
            return true;
        if (s.SyncTyp == 1 && RowsOfType >= capacity)
            return true;
        return s.SyncZeitraum == 1 && s.SyncTyp != 3 && NewOfType >= s.SyncAlarmAnzahl;
    }
};

// The status line's date of each item. Items come sorted by their start, so with a
// mask that shows no time of day the text is made once a day, not once an item.
class StartDateText {
public:
    explicit StartDateText(const QString& mask) : m_mask(mask) {
        for (QChar c : mask)
            if (QStringView(u"hnsapHNSAP").contains(c))
                m_daysOnly = false;
    }
    const QString& text(VbDate start) {
        const VbDate key = m_daysOnly ? core::DateValue(start) : start;
        if (!m_valid || !(key == m_key)) {
            m_text = core::Format(start, m_mask);
            m_key = key;
            m_valid = true;
        }
        return m_text;
    }

private:
    QString m_mask;
    bool m_daysOnly = true;
    bool m_valid = false;
    VbDate m_key;
    QString m_text;
};

// The range's end moves to the last entry read, and series rows of the entries read go.
bool cutRangeToLastEntry(core::Context& ctx, Recordset& table, const ReadRun& run) {
    if (table.recordCount() == 0 || run.UIDList.isEmpty())
        return true;
    const int position = table.absolutePosition();
    table.moveFirst();
    if (table.find(QStringLiteral("UID = '") + run.UIDList.last() + u'\''))
        ctx.flags.GlobalEndDate =
            VbDate(core::DateValue(date(table, QStringLiteral("StartDate"))).value + 86399.0 / 86400.0);
    for (const QString& uid : run.UIDList) {
        table.moveFirst();
        if (table.find(QStringLiteral("UID = '") + uid + u'\'') && flag(table, QStringLiteral("ISRecurring")) &&
            !tables::vCalClearSerieRecords(table, text(table, QStringLiteral("EntryID"))))
            return false;
    }
    table.setAbsolutePosition(position);
    return true;
}

// The walk over the range's items shared by the read with dialog and the silent one.
bool readCalendar(core::Context& ctx, Recordset& table, bool keepGrid, bool silent) {
    if (!ctx.flags.GlobalOrganizerOK)
        return false;
    const bool autoSync = ctx.read.SyncRunning;
    if (!silent && ctx.read.vCalPIMCount > 0 && !autoSync) {
        ClearOutlookFromGrid(ctx, table);
        if (!keepGrid && !ctx.flags.GlobalSilent)
            ctx.ui->refreshGrid(0);
    }
    if (!silent)
        ctx.status.Start(ctx.title(), false);

    ReadRun run;
    bool cancelled = false;
    if (ctx.servers.MOL) {
        const auto& f = ctx.formats;
        const VbDate from = ctx.flags.GlobalStartDate;
        const VbDate to = ctx.flags.GlobalEndDate;
        const QString filter =
            silent ? calendarReadFilter(core::Format(from, f.DateTimeFormat), core::Format(to, f.DateTimeFormat))
                   : calendarReadFilter(core::Format(from, f.DateFormat),
                                        core::Format(to, f.DateFormat) + u' ' +
                                            core::Format(core::TimeValue(to), f.GridTimeStyle));
        auto items = defaultCalendar(ctx)->Items();
        items->setIncludeRecurrences(true);
        items->Sort(QStringLiteral("[Start]"));
        const QString searching = ctx.pim.PIMName + u' ' + ctx.strings.text(466);
        ctx.status.SetText(searching);

        Recordset scratch(QStringLiteral("RSCalendar"));
        initScratch(ctx, scratch);
        const bool mobileRows = ctx.read.vCalMobileRead && ctx.read.vCalMobileCount > 0;
        StartDateText startText(f.DateFormat);
        for (auto item = items->Find(filter); item;) {
            if (!ctx.status.GetState()) {
                cancelled = true;
                break;
            }
            auto appointment = asAppointment(item);
            const bool checkRepeats = silent ? autoSync : true;
            const bool repeat =
                !appointment || (checkRepeats && run.ItemsTaken > 0 && run.seen.contains(appointment->EntryID()));
            const QString counters = autoSync
                                         ? QString::number(run.ItemsTaken - 1) + u'/' + QString::number(run.ItemsSeen)
                                         : QString::number(run.ItemsTaken);
            if (appointment)
                ctx.status.SetText(searching + QStringLiteral(": ") + counters + QStringLiteral("\r\n") +
                                   startText.text(appointment->Start()));
            if (repeat) {
                if (silent && autoSync && run.full(ctx))
                    break;
                run.ItemsSeen += 1;
                item = items->FindNext();
                continue;
            }
            tables::vCalCreateNewRecord(scratch);
            sync::InsertEntry(ctx, *appointment, scratch);
            const QString uid = text(scratch, QStringLiteral("UID"));
            run.UIDList << uid;
            run.seen.insert(uid);
            const bool merged = mobileRows && sync::admitCalendarEntry(ctx, table, scratch, sync::ReadSide::PIM);
            if (!mobileRows)
                sync::admitCalendarEntry(ctx, table, scratch, sync::ReadSide::PIM);
            if (!merged && sync::EntryTypeCheck(ctx.settings.SyncTermine, table))
                run.NewOfType += 1;
            scratch.deleteCurrent();
            item = items->FindNext();
            run.ItemsTaken += 1;
            run.ItemsSeen += 1;
            if (sync::EntryTypeCheck(ctx.settings.SyncTermine, table))
                run.RowsOfType += 1;
            if (autoSync && run.full(ctx))
                break;
        }
    }
    if (autoSync && cancelled) {
        if (!silent)
            ctx.status.Quit();
        return false;
    }
    ctx.read.vCalPIMCount = sync::countPimRows(table);
    ctx.read.vCalPIMRead = ctx.read.vCalPIMCount > 0;
    if (autoSync && ctx.settings.SyncZeitraum == 1 && ctx.settings.SyncTyp != 3 &&
        !cutRangeToLastEntry(ctx, table, run)) {
        if (!silent)
            ctx.status.Quit();
        return true;
    }
    if (!silent) {
        core::SetStatusBarMobile(ctx, false);
        table.updateBatch();
        if (!keepGrid) {
            ctx.ui->refreshGrid(0);
            if (table.recordCount() > 0)
                table.moveFirst();
        }
        ctx.status.Quit();
    }
    return true;
}

// The series members of WriteOutlookEntry: pattern start, times, interval, kind.
void writePattern(core::Context& ctx, Recordset& table, pim::AppointmentItem& item, bool IsNew) {
    auto pattern = item.GetRecurrencePattern();
    if (IsNew) {
        const VbDate recPatt = date(table, QStringLiteral("PIMRecPatt"));
        pattern->setPatternStartDate(recPatt.value != 0 ? recPatt : date(table, QStringLiteral("Start")));
        table.setValue(QStringLiteral("PIMRecPatt"), date(table, QStringLiteral("StartDate")));
        table.setValue(QStringLiteral("PimRecPattString"), date(table, QStringLiteral("StartDate")));
    }
    VbDate startTime;
    core::CreateTimeFromString(ctx, text(table, QStringLiteral("StartTime")), startTime);
    pattern->setStartTime(startTime);
    const int interval = int(table.value(QStringLiteral("RecurrenceIntervall")).toInt64());
    pattern->setInterval(interval < 1 ? 1 : interval);
    const VbDate endTime = core::TimeValue(date(table, QStringLiteral("EndTime")));
    if (flag(table, QStringLiteral("EndDateFlag")))
        pattern->setEndTime(endTime);
    const int64_t days = table.value(QStringLiteral("StartEndDiff")).toInt64();
    pattern->setDuration(int32_t(days * 24 * 60 + core::DateDiff(QStringLiteral("n"), startTime, endTime)));

    const QString kind = text(table, QStringLiteral("RecurrenceType"));
    if (kind == u"D") {
        pattern->setRecurrenceType(pim::olRecursDaily);
    } else if (kind == u"W") {
        pattern->setRecurrenceType(pim::olRecursWeekly);
        pattern->setDayOfWeekMask(int(table.value(QStringLiteral("Weekdaymask")).toInt64()));
        if (date(table, QStringLiteral("oldStartDate")).value != date(table, QStringLiteral("StartDate")).value)
            table.setValue(QStringLiteral("Weekdaymask"), int64_t(pattern->DayOfWeekMask()));
    } else if (kind == u"M") {
        pattern->setRecurrenceType(pim::olRecursMonthly);
        pattern->setDayOfMonth(int(table.value(QStringLiteral("DayOfMonth")).toInt64()));
    } else if (kind == u"Y") {
        pattern->setRecurrenceType(pim::olRecursYearly);
        table.setValue(QStringLiteral("Serie"), QStringLiteral("Y"));
    }
}

// The deferred case: the wish is noted in the row and in the pending table.
void noteWrite(core::Context& ctx, Recordset& table, bool IsNew) {
    table.setValue(QStringLiteral("TransferMode"), int32_t(1));
    table.setValue(QStringLiteral("PIMnew"), IsNew);
    table.setValue(QStringLiteral("Transfernew"), int32_t(1));
    int16_t& temp = ctx.pim.TempCalID;
    if (!usableEntryID(text(table, QStringLiteral("EntryID"))) && !flag(table, QStringLiteral("Mobile"))) {
        table.setValue(QStringLiteral("EntryID"), QString::number(temp));
        if (text(table, QStringLiteral("UID")).isEmpty())
            table.setValue(QStringLiteral("UID"), QString::number(temp));
        temp = core::toInt16(qint64(temp) + 1);
    }
    if (text(table, QStringLiteral("UID")).isEmpty()) {
        table.setValue(QStringLiteral("UID"), QString::number(temp));
        temp = core::toInt16(qint64(temp) + 1);
    }
    table.update();
    Recordset& pending = *ctx.tables.RSCalendarPending;
    tables::vCalCreateNewRecord(pending);
    tables::CopyFromRecordset(pending, table);
    if (flag(table, QStringLiteral("PIM"))) {
        enableSave(ctx, true);
        if (IsNew) {
            ctx.read.vCalPIMCount += 1;
            ctx.read.vCalPIMRead = ctx.read.vCalPIMCount > 0;
        }
    }
}

} // namespace

QString calendarReadFilter(const QString& from, const QString& to) {
    return QStringLiteral("[Start]>=\"") + from + QStringLiteral("\" and [Start] <=\"") + to + u'"';
}

bool vCalReadOutlook(core::Context& ctx, Recordset& table, bool keepGrid) {
    return core::guarded(ctx, kModul, QStringLiteral("vCalReadOutlook"), false,
                         [&] { return readCalendar(ctx, table, keepGrid, false); });
}

bool SilentvCalReadOutlook(core::Context& ctx, Recordset& table) {
    return core::guarded(ctx, kModul, QStringLiteral("SilentvCalReadOutlook"), false,
                         [&] { return readCalendar(ctx, table, true, true); });
}

bool vCalReadSingleOutlookEntry(core::Context& ctx, const QString& itemID, Recordset& table) {
    core::guarded(ctx, kModul, QStringLiteral("vCalReadSingleOutlookEntry"), [&] {
        auto item = asAppointment(ctx.servers.MOL->GetNamespace(QStringLiteral("MAPI"))->GetItemFromID(itemID));
        if (!item)
            return;
        Recordset scratch(QStringLiteral("RSCalendar"));
        initScratch(ctx, scratch);
        tables::vCalCreateNewRecord(scratch);
        sync::InsertEntry(ctx, *item, scratch);
        formats::vCalSyncOutlookEntry(ctx, table, scratch);
    });
    return true;
}

void WriteOutlookEntry(core::Context& ctx, Recordset& table, bool& IsNew) {
    core::guarded(ctx, kModul, QStringLiteral("WriteOutlookEntry"), [&] {
        if (ctx.settings.SaveTyp != 1 && !ctx.flags.GlobalTransferRun) {
            noteWrite(ctx, table, IsNew);
            return;
        }
        const bool onPim = flag(table, QStringLiteral("PIM")) && ctx.flags.GlobalOrganizerOK && ctx.servers.MOL;
        std::shared_ptr<pim::AppointmentItem> item;
        if (onPim) {
            auto ns = ctx.servers.MOL->GetNamespace(QStringLiteral("MAPI"));
            auto folder = ns->GetDefaultFolder(pim::olFolderCalendar);
            if (IsNew) {
                item = asAppointment(folder->Items()->Add());
                if (item) {
                    item->Save();
                    table.setValue(QStringLiteral("UID"), item->EntryID());
                    if (!flag(table, QStringLiteral("Mobile")))
                        table.setValue(QStringLiteral("EntryID"), item->EntryID());
                }
            } else {
                item = asAppointment(ns->GetItemFromID(text(table, QStringLiteral("UID"))));
            }
        }
        if (item) {
            item->setMeetingStatus(text(table, QStringLiteral("Typ")) == u"1" ? pim::olMeeting : pim::olNonMeeting);
            item->setReminderSet(flag(table, QStringLiteral("Alarm")));
            item->setReminderMinutesBeforeStart(0);
            item->setReminderOverrideDefault(true);
            const bool series = flag(table, QStringLiteral("ISRecurring"));
            if (!series) {
                item->ClearRecurrencePattern();
                item->setStart(date(table, QStringLiteral("Start")));
                if (flag(table, QStringLiteral("EndDateFlag")))
                    item->setEnd(VbDate(core::DateValue(date(table, QStringLiteral("EndDate"))).value +
                                        core::TimeValue(date(table, QStringLiteral("EndTime"))).value));
            } else {
                writePattern(ctx, table, *item, IsNew);
            }
            item->setSubject(text(table, QStringLiteral("PIMText")));
            table.update();
            if (series && !IsNew && item->Start().value != date(table, QStringLiteral("altesStartDate")).value) {
                const VbDate recPatt = date(table, QStringLiteral("PIMRecPatt"));
                auto pattern = item->GetRecurrencePattern();
                pattern->setPatternStartDate(recPatt.value != 0 ? recPatt : date(table, QStringLiteral("StartDate")));
                table.setValue(QStringLiteral("PIMRecPatt"), date(table, QStringLiteral("StartDate")));
                table.setValue(QStringLiteral("PimRecPattString"), date(table, QStringLiteral("StartDate")));
                if (text(table, QStringLiteral("RecurrenceType")) == u"Y" && recPatt.value != 0)
                    pattern->setDayOfMonth(core::Day(recPatt));
            }
            item->Save();
            if (IsNew && !ctx.flags.GlobalTransferRun) {
                ctx.read.vCalPIMCount += 1;
                ctx.read.vCalPIMRead = true;
            }
            table.setValue(QStringLiteral("CreationDate"), item->LastModificationTime());
            table.update();
        }
        logPim(ctx, table, IsNew ? log::logActionCreated(ctx) : log::logActionChanged(ctx),
               QStringLiteral("WriteOutlookEntry"));
    });
}

bool RemoveEntryFromOutlook(core::Context& ctx, Recordset& table) {
    return core::guarded(ctx, kModul, QStringLiteral("RemoveEntryFromOutlook"), false, [&] {
        const bool contacts = text(table, QStringLiteral("Recordset")) == u"RSContacts";
        int32_t& count = contacts ? ctx.read.vCardPIMCount : ctx.read.vCalPIMCount;
        bool& read = contacts ? ctx.read.vCardPIMRead : ctx.read.vCalPIMRead;
        if (ctx.settings.SaveTyp != 1 && !ctx.flags.GlobalTransferRun) {
            table.setValue(QStringLiteral("TransferMode"), int32_t(2));
            table.setValue(QStringLiteral("Transfernew"), int32_t(1));
            table.update();
            Recordset& pending = contacts ? *ctx.tables.RSContactsPending : *ctx.tables.RSCalendarPending;
            contacts ? tables::vCardCreateNewRecord(pending) : tables::vCalCreateNewRecord(pending);
            tables::CopyFromRecordset(pending, table);
            if (contacts)
                phone::vcardSaveKontrolle(ctx, pending, text(table, QStringLiteral("EntryID")), false);
            else
                phone::vcalSaveKontrolle(ctx, pending, text(table, QStringLiteral("EntryID")), false);
            enableSave(ctx, pending.recordCount() > 0);
            if (!flag(table, QStringLiteral("PIM"))) {
                count -= 1;
                read = count > 0;
            }
            return true;
        }
        if (flag(table, QStringLiteral("PIM")) && ctx.servers.MOL) {
            try {
                auto ns = ctx.servers.MOL->GetNamespace(QStringLiteral("MAPI"));
                QString storeID;
                if (contacts && ctx.pim.GlobalContactFolder)
                    storeID = ctx.pim.GlobalContactFolder->StoreID();
                else
                    storeID = ns->GetDefaultFolder(pim::olFolderCalendar)->StoreID();
                if (auto item = ns->GetItemFromID(text(table, QStringLiteral("UID")), storeID))
                    item->Delete();
            } catch (const core::TsrError& e) {
                if (!ctx.flags.GlobalTransferRun) {
                    ctx.log.LogTransfer = QStringLiteral("PIM");
                    ctx.log.LogAction = log::logActionDeleted(ctx);
                    log::logWriteEntry(ctx, table, e, kModul, QStringLiteral("RemoveEntryFromOutlook"));
                    core::ErrorReport(ctx, e, kModul, QStringLiteral("RemoveEntryFromOutlook"));
                }
            }
        }
        count -= 1;
        read = count > 0;
        logPim(ctx, table, log::logActionDeleted(ctx), QStringLiteral("RemoveEntryFromOutlook"));
        return true;
    });
}

void SearchingforaOutlookEntry(core::Context& ctx, Recordset& table) {
    core::guarded(ctx, kModul, QStringLiteral("SearchingforaOutlookEntry"), [&] {
        if (!ctx.servers.MOL || !ctx.flags.GlobalOrganizerOK)
            return;
        const auto& f = ctx.formats;
        const VbDate start = date(table, QStringLiteral("Start"));
        // The grid's time style is a named format, so the day and the time are formatted apart.
        const auto findText = [&f](VbDate d) {
            return core::Format(d, f.DateFormat) + u' ' + core::Format(core::TimeValue(d), f.GridTimeStyle);
        };
        QString filter;
        if (!flag(table, QStringLiteral("ISRecurring"))) {
            filter = QStringLiteral("[Start]=\"") + findText(start) + u'"';
        } else {
            filter = QStringLiteral("[Start]>=\"") + findText(start) + QStringLiteral("\" and [Start] <=\"") +
                     findText(core::DateAdd(QStringLiteral("h"), 1, start)) + u'"';
        }
        auto items = defaultCalendar(ctx)->Items();
        items->Sort(QStringLiteral("[Start]"));
        Recordset scratch(QStringLiteral("RSCalendar"));
        initScratch(ctx, scratch);
        int32_t taken = 0;
        for (auto item = items->Find(filter); item; item = items->FindNext()) {
            auto appointment = asAppointment(item);
            if (!appointment)
                continue;
            tables::vCalCreateNewRecord(scratch);
            sync::InsertEntry(ctx, *appointment, scratch);
            VbDate noDate;
            // The table must stay on the row: only that row is asked about.
            const int position = table.absolutePosition();
            if (sync::vCalFindCompare(ctx, table, scratch, noDate) && table.absolutePosition() == position &&
                !flag(table, QStringLiteral("PIM"))) {
                formats::vCalSyncOutlookEntry(ctx, table, scratch);
                table.setValue(QStringLiteral("creafromMob"), true);
                table.update();
                ++taken;
            }
            table.setAbsolutePosition(position);
            scratch.deleteCurrent();
        }
        ctx.read.vCalPIMCount += taken;
        ctx.read.vCalPIMRead = ctx.read.vCalPIMCount > 0;
    });
}

} // namespace tsr::roads
