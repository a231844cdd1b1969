// SPDX-License-Identifier: GPL-3.0-or-later
#include "tables/TSRADODB.h"

#include "core/ErrorReport.h"
#include "log/LogInit.h"
#include "tables/Layouts.h"

#include <algorithm>
#include <optional>
#include <vector>

namespace tsr::tables {

using core::TsrError;
using core::Value;

namespace {

const QString kModul = QStringLiteral("TSRADODB");

QString entryIdCriteria(const QString& id) {
    return QStringLiteral("EntryID = ") + id;
}

void appendLayout(Recordset& table, std::span<const FieldSpec> layout) {
    for (const FieldSpec& f : layout)
        table.appendField(QString::fromUtf16(f.name), f.type);
    table.open();
}

void createNewRow(Recordset& table, std::span<const FieldSpec> layout) {
    table.addNew();
    for (int i = 0; i < int(layout.size()); ++i) {
        Value v = layout[size_t(i)].initial();
        if (!v.isEmpty())
            table.setValue(i, v);
    }
}

// A new row is always the same: `make` is run once on a scratch table of the
// layout and its row is kept, to be copied into every new row after. Nothing is
// kept where a value would need the table's date forms to become its field's type.
std::optional<std::vector<Value>> newRowValues(std::span<const FieldSpec> layout, void (*make)(Recordset&)) {
    for (const FieldSpec& f : layout) {
        const Value v = f.initial();
        if (!v.isEmpty() && v.type() != f.type)
            return std::nullopt;
    }
    Recordset scratch;
    appendLayout(scratch, layout);
    make(scratch);
    scratch.moveFirst();
    return scratch.getRows();
}

// Appends a row holding `values`, copied in one go; false, and no row, where the
// table's layout differs or a Find index must see the values come in one by one.
bool appendCopy(Recordset& table, const std::optional<std::vector<Value>>& values) {
    if (!values || !table.writableInPlace() || table.fieldCount() != int(values->size()))
        return false;
    table.addNew();
    std::ranges::copy(*values, table.currentValues().begin());
    return true;
}

// Saves the position, walks every row whose `criteria` field matches, calls
// `write` on it, and restores the position.
template <class Write> void forEachSeriesRow(Recordset& table, const QString& criteria, Write&& write) {
    if (table.recordCount() == 0)
        return;
    const int position = table.absolutePosition();
    table.moveFirst();
    while (!table.eof()) {
        if (!table.find(criteria, 0, 1))
            break;
        write();
        table.moveNext();
    }
    table.setAbsolutePosition(position);
}

} // namespace

bool Test4ADO(core::Context& ctx) {
    try {
        Recordset probe;
        probe.appendField(QStringLiteral("Test"), core::FieldType::Text);
        probe.open();
        probe.addNew();
        probe.setValue(0, QStringLiteral("Test"));
        probe.update();
        probe.close();
    } catch (const TsrError& e) {
        QString text = e.description().isEmpty() ? QString() : e.description() + QStringLiteral("\r\n");
        text += ctx.strings.text(936) + QStringLiteral("\r\n") + ctx.strings.text(937);
        throw TsrError(core::err::NoTableService, QStringLiteral("Test4ADO"), text);
    }
    return true;
}

bool CreateInitAndSetAllRS(core::Context& ctx) {
    return core::guarded(ctx, kModul, QStringLiteral("CreateInitAndSetAllRS"), false, [&] {
        if (!Test4ADO(ctx))
            return false;
        auto& t = ctx.tables;
        t.RSCalendar = std::make_unique<Recordset>(QStringLiteral("RSCalendar"));
        t.RSCalendarWork = std::make_unique<Recordset>(QStringLiteral("RSCalendarWork"));
        t.RSCalendarPending = std::make_unique<Recordset>(QStringLiteral("RSCalendarPending"));
        t.RSContacts = std::make_unique<Recordset>(QStringLiteral("RSContacts"));
        t.RSContactsWork = std::make_unique<Recordset>(QStringLiteral("RSContactsWork"));
        t.RSContactsPending = std::make_unique<Recordset>(QStringLiteral("RSContactsPending"));
        for (Recordset* r : {t.RSCalendar.get(), t.RSCalendarWork.get(), t.RSCalendarPending.get()}) {
            applyDateTextForm(ctx, *r);
            InitCalendarRS(*r);
        }
        for (Recordset* r : {t.RSContacts.get(), t.RSContactsWork.get(), t.RSContactsPending.get()}) {
            applyDateTextForm(ctx, *r);
            vCardInitRS(*r);
        }
        log::LogInit(ctx);
        ctx.flags.GlobalLogReady = true;
        ctx.ui->refreshGrid(0);
        ctx.ui->refreshGrid(1);
        return true;
    });
}

void InitCalendarRS(Recordset& table) {
    appendLayout(table, calendarLayout());
}

void vCardInitRS(Recordset& table) {
    appendLayout(table, contactLayout());
}

void applyDateTextForm(const core::Context& ctx, Recordset& table) {
    table.setDateTextForm(ctx.formats.DateFormat, ctx.formats.TimeFormat);
}

void ClearRecordSet(Recordset& table) {
    if (table.recordCount() > 0) {
        table.moveFirst();
        while (!table.eof()) {
            table.moveFirst();
            table.deleteCurrent();
            table.moveNext();
        }
    }
    table.updateBatch();
}

void vCalCreateNewRecord(Recordset& table) {
    auto make = [](Recordset& t) {
        createNewRow(t, calendarLayout());
        vCalClearRecurrance(t);
    };
    static const std::optional<std::vector<Value>> made = newRowValues(calendarLayout(), make);
    if (!appendCopy(table, made))
        make(table);
    table.update();
}

void vCalClearRecurrance(Recordset& table) {
    static const QString recurring = QStringLiteral("ISRecurring");
    static const QString cleared[] = {QStringLiteral("RecurrenceDuration"),  QStringLiteral("RecurrenceFrequenz"),
                                      QStringLiteral("RecurrenceType"),      QStringLiteral("Serie"),
                                      QStringLiteral("RecurrenceIntervall"), QStringLiteral("ModKey"),
                                      QStringLiteral("Weekdaymask"),         QStringLiteral("DayOfMonth")};
    table.setValue(recurring, false);
    for (const QString& f : cleared)
        table.setValue(f, Value());
}

void vCardCreateNewRecord(Recordset& table) {
    auto make = [](Recordset& t) { createNewRow(t, contactLayout()); };
    static const std::optional<std::vector<Value>> made = newRowValues(contactLayout(), make);
    if (!appendCopy(table, made))
        make(table);
    table.update();
}

bool CopyFromRecordset(Recordset& target, Recordset& source) {
    const int position = source.absolutePosition();
    const std::vector<Value> row = source.getRows();
    source.setAbsolutePosition(position);
    for (int i = 0; i < target.fieldCount() && i < int(row.size()); ++i)
        target.setValue(i, row[size_t(i)]);
    target.updateBatch();
    return true;
}

void vCalCreateCopy(Recordset& target, Recordset& source) {
    // With one layout on both sides every field of the new row is overwritten, so
    // the row is made from the source's values at once.
    if (target.fieldCount() != source.fieldCount()) {
        vCalCreateNewRecord(target);
        CopyFromRecordset(target, source);
        return;
    }
    const std::span<Value> values = source.currentValues();
    target.addNew(std::vector<Value>(values.begin(), values.end()));
    target.updateBatch();
}

void copyFields(Recordset& target, const Recordset& source, std::initializer_list<const char16_t*> fields) {
    for (const char16_t* f : fields) {
        const QString name = QString::fromUtf16(f);
        target.setValue(name, source.value(name));
    }
}

bool vCalClearSerieRecords(Recordset&, const QString&) {
    return true;
}

void vCardFillRecordFromTokens(Recordset& table, const QList<QStringList>& tokens, int index) {
    // Token columns of the state file: 2 and 3 hold the Mobile and PIM marks and are not read here.
    static const std::pair<int, const char16_t*> columns[] = {
        {0, u"MobileID"}, {1, u"UID"},         {4, u"LastName"},   {5, u"FirstName"},
        {6, u"Company"},  {7, u"Phone"},       {8, u"Street"},     {9, u"ZipCode"},
        {10, u"City"},    {11, u"Categories"}, {12, u"PhoneWork"}, {13, u"PhoneMobile"},
        {14, u"Fax"},     {15, u"eMail"},      {16, u"Country"},   {17, u"URL"},
    };
    table.setValue(QStringLiteral("Mobile"), true);
    table.setValue(QStringLiteral("EntryType"), int32_t(3));
    const QStringList& line = tokens.at(index);
    for (const auto& [column, field] : columns) {
        const QString token = line.value(column);
        if (token.isEmpty())
            continue;
        const QString name = QString::fromUtf16(field);
        if (name == u"Categories")
            table.setValue(name, token != u"0");
        else
            table.setValue(name, token);
    }
}

void SeriesClearMobile(Recordset& table, const QString& entryId) {
    forEachSeriesRow(table, entryIdCriteria(entryId), [&] {
        table.setValue(QStringLiteral("Mobile"), false);
        table.updateBatch();
    });
    table.updateBatch();
}

void SeriesClearPIM(Recordset& table, const QString& entryId) {
    forEachSeriesRow(table, entryIdCriteria(entryId), [&] { table.setValue(QStringLiteral("PIM"), false); });
}

void SeriesClearBoth(Recordset& table, const QString& entryId) {
    forEachSeriesRow(table, entryIdCriteria(entryId), [&] {
        table.setValue(QStringLiteral("Mobile"), false);
        table.setValue(QStringLiteral("PIM"), false);
    });
}

void SeriesSetPIM(Recordset& table, const QString& entryId) {
    forEachSeriesRow(table, entryIdCriteria(entryId), [&] { table.setValue(QStringLiteral("PIM"), true); });
}

void SeriesSetEntryID(Recordset& table, const QString& entryId, const QString& newValue) {
    forEachSeriesRow(table, entryIdCriteria(entryId), [&] { table.setValue(QStringLiteral("EntryID"), newValue); });
}

void SeriesSetSubType(Recordset& table, const QString& entryId, int32_t newValue) {
    forEachSeriesRow(table, entryIdCriteria(entryId), [&] { table.setValue(QStringLiteral("SubType"), newValue); });
}

void SeriesSetUID(Recordset& table, const QString& entryId, const QString& newValue) {
    forEachSeriesRow(table, entryIdCriteria(entryId), [&] { table.setValue(QStringLiteral("UID"), newValue); });
}

void SeriesSetMobileID(Recordset& table, const QString& entryId, const QString& newValue) {
    forEachSeriesRow(table, entryIdCriteria(entryId), [&] { table.setValue(QStringLiteral("MobileID"), newValue); });
}

void SeriesSetEntryType(Recordset& table, const QString& entryId, int32_t newValue) {
    forEachSeriesRow(table, entryIdCriteria(entryId), [&] { table.setValue(QStringLiteral("EntryType"), newValue); });
}

void SeriesSetUIDAndEntryID(Recordset& table, const QString& id, const QString& newValue, bool byUid) {
    const QString criteria = (byUid ? QStringLiteral("UID = ") : QStringLiteral("EntryID = ")) + id;
    forEachSeriesRow(table, criteria, [&] {
        table.setValue(QStringLiteral("UID"), newValue);
        if (!table.value(QStringLiteral("Mobile")).toBool())
            table.setValue(QStringLiteral("EntryID"), newValue);
    });
}

void SeriesSetWeekdayMask(Recordset& table, const QString& entryId, int64_t mask) {
    forEachSeriesRow(table, entryIdCriteria(entryId), [&] { table.setValue(QStringLiteral("Weekdaymask"), mask); });
}

void SeriesSetTyp(Recordset& table, const QString& entryId, const QString& typ) {
    forEachSeriesRow(table, entryIdCriteria(entryId), [&] {
        table.setValue(QStringLiteral("Typ"), typ);
        for (const char16_t* f : {u"MemoStatus", u"MeetingStatus", u"AnniversaryStatus", u"PhoneCallStatus"})
            table.setValue(QString::fromUtf16(f), false);
        const QString status = typ == u"1"   ? QStringLiteral("MeetingStatus")
                               : typ == u"2" ? QStringLiteral("AnniversaryStatus")
                               : typ == u"3" ? QStringLiteral("PhoneCallStatus")
                                             : QStringLiteral("MemoStatus");
        table.setValue(status, true);
    });
}

void SeriesSetAlarm(Recordset& table, const QString& entryId, bool on) {
    forEachSeriesRow(table, entryIdCriteria(entryId), [&] {
        const Value alarmTime = on ? table.value(QStringLiteral("Start")) : Value(core::VbDate(0));
        table.setValue(QStringLiteral("DAlarm"), alarmTime);
        table.setValue(QStringLiteral("AAlarm"), alarmTime);
        table.setValue(QStringLiteral("Alarm"), on);
        table.setValue(QStringLiteral("AAlarmFlag"), on);
        table.setValue(QStringLiteral("DAlarmFlag"), on);
    });
}

bool FindEntryByID(Recordset& table, const QString& entryId) {
    const int position = table.absolutePosition();
    table.moveFirst();
    if (table.find(entryIdCriteria(entryId), 0, 1))
        return true;
    if (position != Recordset::PosUnknown)
        table.setAbsolutePosition(position);
    return false;
}

} // namespace tsr::tables
