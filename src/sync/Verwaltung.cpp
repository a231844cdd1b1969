// SPDX-License-Identifier: GPL-3.0-or-later
// Entry admission and read state (module Verwaltung; MobileEntriesPruefung is Allgemein's).
#include "sync/Verwaltung.h"

#include "core/ErrorReport.h"
#include "core/Numbers.h"
#include "formats/Allgemein.h"
#include "formats/vCal.h"
#include "tables/TSRADODB.h"

namespace tsr::sync {

using core::VbDate;
using tables::Recordset;

namespace {
const QString kModul = QStringLiteral("Verwaltung");
const QString kOrganizerBand = QStringLiteral("TSROrganizerMenu");
const QString kToolsBand = QStringLiteral("TSRTools");

void setText(Recordset& r, const QString& field, const QString& value) {
    r.setValue(field, value);
}

// Phone models that take no day modifier in a monthly or yearly rule.
bool modelWithout(const QString& model, std::initializer_list<const char16_t*> names) {
    for (const char16_t* n : names)
        if (model.contains(QString::fromUtf16(n)))
            return true;
    return false;
}

void setSeries(core::Context& ctx, pim::AppointmentItem& item, Recordset& r) {
    r.setValue(QStringLiteral("ISRecurring"), item.IsRecurring());
    if (!item.IsRecurring())
        return;
    const auto pattern = item.GetRecurrencePattern();
    r.setValue(QStringLiteral("PIMRecPatt"), pattern->PatternStartDate());
    r.setValue(QStringLiteral("PimRecPattString"), pattern->PatternStartDate());
    QString kind;
    switch (pattern->RecurrenceType()) {
    case pim::olRecursDaily:
        kind = QStringLiteral("D");
        r.setValue(QStringLiteral("RecurrenceIntervall"), int64_t(pattern->Interval() == 7 ? 7 : 1));
        break;
    case pim::olRecursWeekly:
        kind = QStringLiteral("W");
        r.setValue(QStringLiteral("Weekdaymask"), int64_t(pattern->DayOfWeekMask()));
        r.setValue(QStringLiteral("RecurrenceIntervall"), int64_t(1));
        break;
    case pim::olRecursMonthly:
    case pim::olRecursMonthNth:
        kind = QStringLiteral("M");
        r.setValue(QStringLiteral("RecurrenceIntervall"), int64_t(1));
        r.setValue(QStringLiteral("DayOfMonth"), int64_t(pattern->DayOfMonth()));
        r.setValue(QStringLiteral("ModKey"), QStringLiteral("D"));
        if (modelWithout(ctx.phone.MobileModel, {u"R52", u"Q52", u"P52"}))
            r.setValue(QStringLiteral("ModKey"), QString());
        break;
    case pim::olRecursYearly:
    case pim::olRecursYearNth:
        kind = QStringLiteral("Y");
        r.setValue(QStringLiteral("RecurrenceIntervall"), int64_t(1));
        r.setValue(QStringLiteral("ModKey"), QStringLiteral("D"));
        if (modelWithout(ctx.phone.MobileModel, {u"Q33", u"Q52", u"R52", u"P52"}))
            r.setValue(QStringLiteral("ModKey"), QString());
        break;
    default:
        // A pattern the phone cannot keep: the item comes in as a single entry.
        r.setValue(QStringLiteral("ISRecurring"), false);
        r.setValue(QStringLiteral("RecurrenceType"), QString());
        return;
    }
    r.setValue(QStringLiteral("RecurrenceType"), kind);
    r.setValue(QStringLiteral("Serie"), kind);
    r.setValue(QStringLiteral("RecurrenceFrequenz"), kind);
}

void disableMobileTools(core::Context& ctx) {
    ctx.tools.setEnabled(kOrganizerBand, QStringLiteral("TSRAutoSync"), false);
    ctx.tools.setEnabled(kToolsBand, QStringLiteral("TSRAutoSync"), false);
    ctx.tools.setEnabled(kToolsBand, QStringLiteral("TSRClearMobileCal"), false);
}

// Walks the table and takes the phone's side out of each row that has one.
// `alsoDelete` names rows that go even though the PIM holds them.
void clearMobileSide(Recordset& table, bool (*alsoDelete)(const Recordset&)) {
    if (table.recordCount() == 0)
        return;
    table.moveFirst();
    while (!table.eof()) {
        const bool mobile = table.value(QStringLiteral("Mobile")).toBool();
        const int32_t type = table.value(QStringLiteral("EntryType")).toInt32();
        if (mobile || type != 1) {
            if (!table.value(QStringLiteral("PIM")).toBool() || alsoDelete(table)) {
                table.deleteCurrent();
                table.update();
            } else {
                table.setValue(QStringLiteral("Mobile"), false);
                table.setValue(QStringLiteral("EntryType"), int32_t(1));
                table.update();
            }
        }
        table.moveNext();
    }
}

void reset(core::Context& ctx, std::unique_ptr<Recordset>& table, void (*init)(Recordset&), int list) {
    const QString name = table ? table->name() : QString();
    if (table)
        table->close();
    table = std::make_unique<Recordset>(name);
    init(*table);
    tables::applyDateTextForm(ctx, *table);
    ctx.ui->refreshGrid(list);
    if (list == 0) {
        vCalClearMobileStatusArray(ctx);
        vCalClearPIMStatusArray(ctx);
    } else {
        vCardClearMobileStatusArray(ctx);
        vCardClearPIMStatusArray(ctx);
    }
    const bool on = ctx.settings.Sync == 1 && ctx.read.MobileConnected;
    ctx.tools.setEnabled(kOrganizerBand, QStringLiteral("TSRAutoSync"), on);
    ctx.tools.setEnabled(kToolsBand, QStringLiteral("TSRAutoSync"), on);
}
} // namespace

void InsertEntry(core::Context& ctx, pim::AppointmentItem& Item, Recordset& Record) {
    core::guarded(ctx, kModul, QStringLiteral("InsertEntry"), [&] {
        // A meeting that was received counts as one that the user organised.
        const int meeting = Item.MeetingStatus();
        if (meeting == pim::olMeeting || meeting == pim::olMeetingReceived) {
            Record.setValue(QStringLiteral("MeetingStatus"), true);
            setText(Record, QStringLiteral("Typ"), QStringLiteral("1"));
        } else {
            Record.setValue(QStringLiteral("AnniversaryStatus"), false);
            Record.setValue(QStringLiteral("MemoStatus"), true);
            Record.setValue(QStringLiteral("PhoneCallStatus"), false);
            setText(Record, QStringLiteral("Typ"), QString());
        }
        const VbDate start = Item.Start();
        const VbDate end = Item.End();
        Record.setValue(QStringLiteral("AllDayEvent"), Item.AllDayEvent());
        Record.setValue(QStringLiteral("Start"), start);
        Record.setValue(QStringLiteral("DTStart"), start);
        Record.setValue(QStringLiteral("StartasText"), start);
        Record.setValue(QStringLiteral("DTStartFlag"), true);
        Record.setValue(QStringLiteral("StartDate"), core::DateValue(start));
        Record.setValue(QStringLiteral("StartTime"), core::Format(core::TimeValue(start), ctx.formats.TimeFormat));
        Record.setValue(QStringLiteral("DTEnd"), end);
        Record.setValue(QStringLiteral("EndDateFlag"), true);
        Record.setValue(QStringLiteral("EndDate"), core::DateValue(end));
        Record.setValue(QStringLiteral("EndTime"), core::TimeValue(end));
        Record.setValue(QStringLiteral("StartEndDiff"),
                        int64_t(core::DateDiff(QStringLiteral("d"), core::DateValue(start), core::DateValue(end))));
        if (Item.ReminderSet()) {
            // The alarm stands at the start itself, not at the reminder's moment.
            Record.setValue(QStringLiteral("AAlarmFlag"), true);
            Record.setValue(QStringLiteral("AAlarm"), start);
            Record.setValue(QStringLiteral("Alarm"), true);
        }
        setSeries(ctx, Item, Record);
        const QString subject = Item.Subject();
        setText(Record, QStringLiteral("Text"), subject);
        setText(Record, QStringLiteral("Description"), subject);
        setText(Record, QStringLiteral("PIMText"), subject);
        Record.setValue(QStringLiteral("noPhonecall"), formats::check4PhoneCallChar(subject));
        setText(Record, QStringLiteral("UID"), Item.EntryID());
        setText(Record, QStringLiteral("EntryID"), Item.EntryID());
        Record.setValue(QStringLiteral("Start"), start);
        Record.setValue(QStringLiteral("EntryType"), int32_t(1));
        Record.setValue(QStringLiteral("PIM"), true);
        Record.setValue(QStringLiteral("CreationDate"), Item.CreationTime());
        Record.update();
    });
}

void vCardInsertEntry(core::Context& ctx, pim::ContactItem& Item, Recordset& Record) {
    core::guarded(ctx, kModul, QStringLiteral("vCardInsertEntry"), [&] {
        const bool business = !Item.CompanyName().isEmpty();
        const std::pair<const char16_t*, QString> pairs[] = {
            {u"LastName", Item.LastName()},
            {u"FirstName", Item.FirstName()},
            {u"Company", Item.CompanyName()},
            {u"Phone", Item.HomeTelephoneNumber()},
            {u"PhoneWork", Item.BusinessTelephoneNumber()},
            {u"PhoneMobile", Item.MobileTelephoneNumber()},
            {u"eMail", Item.Email1Address()},
            // A contact with a company keeps its address in the business fields.
            {u"Street", business ? Item.BusinessAddressStreet() : Item.HomeAddressStreet()},
            {u"ZipCode", business ? Item.BusinessAddressPostalCode() : Item.HomeAddressPostalCode()},
            {u"City", business ? Item.BusinessAddressCity() : Item.HomeAddressCity()},
            {u"Country", business ? Item.BusinessAddressCountry() : Item.HomeAddressCountry()},
            {u"Fax", business ? Item.BusinessFaxNumber() : Item.HomeFaxNumber()},
        };
        for (const auto& [field, raw] : pairs) {
            const QString clean = formats::RemoveCTRLCharactersFromString(raw);
            const QString name = QString::fromUtf16(field);
            Record.setValue(name, clean);
            Record.setValue(QStringLiteral("PIM") + name, clean);
        }
        setText(Record, QStringLiteral("UID"), Item.EntryID());
        setText(Record, QStringLiteral("EntryID"), Item.EntryID());
        const QString web = formats::RemoveCTRLCharactersFromString(Item.WebPage());
        setText(Record, QStringLiteral("URL"), formats::URLwithouthttp(web));
        setText(Record, QStringLiteral("PIMURL"), web);
        Record.setValue(QStringLiteral("PIM"), true);
        if (Record.value(QStringLiteral("EntryType")).toInt32() == 2)
            Record.setValue(QStringLiteral("EntryType"), int32_t(3));
        const QString categories = formats::RemoveCTRLCharactersFromString(Item.Categories());
        setText(Record, QStringLiteral("MobileCategoriesText"), QStringLiteral("VIP"));
        setText(Record, QStringLiteral("CategoriesText"), categories);
        Record.setValue(QStringLiteral("Categories"), categories.contains(u"VIP", Qt::CaseInsensitive));
        Record.update();
    });
}

bool GetFreeMobileEntryID(core::Context& ctx, Recordset& table, int16_t& EntryID) {
    EntryID = -1;
    bool result = false;
    core::guarded(ctx, kModul, QStringLiteral("GetFreeMobileEntryID"), [&] {
        if (table.recordCount() == 0) {
            EntryID = 1;
            result = true;
            return;
        }
        const int position = table.absolutePosition();
        for (int n = ctx.read.FirstMobileEntryID; n <= ctx.read.LastMobileEntryID; ++n) {
            table.moveFirst();
            if (!table.find(QStringLiteral("EntryID = ") + QString::number(n), 0, 1)) {
                EntryID = int16_t(n);
                result = true;
                break;
            }
        }
        table.setAbsolutePosition(position);
    });
    return result;
}

void MobileEntriesPruefung(core::Context& ctx) {
    core::guarded(ctx, QStringLiteral("Allgemein"), QStringLiteral("MobileEntriesPruefung"), [&] {
        auto& r = ctx.read;
        if (r.FreeCalendarSlots >= r.vCalMobileCount)
            return;
        const int16_t buffer = core::toInt16(qint64(ctx.settings.freeMobileEntries) -
                                             (qint64(r.vCalMobileCount) - qint64(r.FreeCalendarSlots)));
        const QString text = ctx.strings.text(694) + u' ' + QString::number(buffer) + u' ' + ctx.strings.text(512) +
                             u' ' + ctx.strings.text(703);
        ctx.ui->msgBox(text, core::MsgButtons::OK, core::MsgIcon::Exclamation, ctx.title());
        ctx.settings.freeMobileEntries = buffer;
        r.FreeCalendarSlots = core::toInt16(qint64(r.MobileCalendarCapacity) - buffer);
        core::SetStatusBarMobile(ctx);
    });
}

int32_t countPimRows(Recordset& table) {
    if (table.recordCount() == 0)
        return 0;
    // The count leaves the cursor where the read left it: the callers go on from that row.
    const int position = table.absolutePosition();
    int32_t count = 0;
    for (table.moveFirst(); !table.eof(); table.moveNext())
        if (table.value(QStringLiteral("PIM")).toBool())
            ++count;
    if (position > 0)
        table.setAbsolutePosition(position);
    return count;
}

void vCalClearAfterMobileError(core::Context& ctx) {
    core::guarded(ctx, kModul, QStringLiteral("vCalClearAfterMobileError"), [&] {
        Recordset& table = *ctx.tables.RSCalendar;
        // A row the transfer just made on the PIM from the phone goes too.
        clearMobileSide(table, [](const Recordset& r) { return r.value(QStringLiteral("creafromMob")).toBool(); });
        if (table.recordCount() > 0) {
            table.moveFirst();
            table.updateBatch();
        }
        vCalClearMobileStatusArray(ctx);
        core::SetStatusBarMobile(ctx);
        ctx.read.vCalPIMCount = countPimRows(table);
        ctx.read.vCalPIMRead = ctx.read.vCalPIMCount > 0;
        if (table.recordCount() > 0)
            table.moveFirst();
        // The status line again, now with the PIM rows counted anew.
        core::SetStatusBarMobile(ctx);
        ctx.ui->refreshGrid(0);
    });
}

void vCardClearAfterMobileError(core::Context& ctx, bool Quiet, bool KeepStatus) {
    core::guarded(ctx, kModul, QStringLiteral("vCardClearAfterMobileError"), [&] {
        Recordset& table = *ctx.tables.RSContacts;
        clearMobileSide(table, [](const Recordset&) { return false; });
        if (table.recordCount() > 0)
            table.moveFirst();
        vCardClearMobileStatusArray(ctx);
        core::SetStatusBarMobile(ctx);
        if (KeepStatus) {
            ctx.read.vCardPIMCount = countPimRows(table);
            ctx.read.vCardPIMRead = ctx.read.vCardPIMCount > 0;
            if (table.recordCount() > 0)
                table.moveFirst();
        }
        if (!Quiet)
            ctx.ui->refreshGrid(1);
    });
}

void vCalClearMobileStatusArray(core::Context& ctx) {
    ctx.read.vCalMobileRead = false;
    ctx.read.vCalMobileCount = 0;
    ctx.read.MobileConnected = false;
    disableMobileTools(ctx);
}

void vCardClearMobileStatusArray(core::Context& ctx) {
    ctx.read.vCardMobileRead = false;
    ctx.read.vCardMobileCount = 0;
    ctx.read.MobileConnected = false;
    disableMobileTools(ctx);
}

void vCalClearPIMStatusArray(core::Context& ctx) {
    ctx.read.vCalPIMRead = false;
    ctx.read.vCalPIMCount = 0;
}

void vCardClearPIMStatusArray(core::Context& ctx) {
    ctx.read.vCardPIMRead = false;
    ctx.read.vCardPIMCount = 0;
}

void vCalReset(core::Context& ctx, std::unique_ptr<Recordset>& table) {
    core::guarded(ctx, kModul, QStringLiteral("vCalReset"), [&] { reset(ctx, table, tables::InitCalendarRS, 0); });
}

void vCardReset(core::Context& ctx, std::unique_ptr<Recordset>& table) {
    core::guarded(ctx, kModul, QStringLiteral("vCardReset"), [&] { reset(ctx, table, tables::vCardInitRS, 1); });
}

} // namespace tsr::sync
