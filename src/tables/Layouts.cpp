// SPDX-License-Identifier: GPL-3.0-or-later
#include "tables/Layouts.h"

namespace tsr::tables {

using core::FieldType;
using core::Value;

namespace {

Value unset() {
    return {};
}
Value no() {
    return false;
}
Value zeroDate() {
    return core::VbDate(0);
}
Value emptyText() {
    return QString();
}
Value zero32() {
    return int32_t(0);
}
Value zero64() {
    return int64_t(0);
}
Value minusOne32() {
    return int32_t(-1);
}
Value one32() {
    return int32_t(1);
}
Value zeroText() {
    return QStringLiteral("0");
}
Value minusOneText() {
    return QStringLiteral("-1");
}
Value calendarName() {
    return QStringLiteral("RSCalendar");
}
Value contactsName() {
    return QStringLiteral("RSContacts");
}

constexpr auto B = FieldType::Bool;
constexpr auto D = FieldType::Date;
constexpr auto T = FieldType::Text;
constexpr auto I = FieldType::Int32;
constexpr auto L = FieldType::Int64;

const FieldSpec kCalendar[] = {
    {u"PIM", B, no},
    {u"Mobile", B, no},
    {u"Alarm", B, unset},
    {u"StartDate", D, zeroDate},
    {u"StartTime", T, zeroText},
    {u"Typ", T, emptyText},
    {u"Text", T, emptyText},
    {u"Serie", T, emptyText},
    {u"EndDate", D, zeroDate},
    {u"EndTime", D, zeroDate},
    {u"EndDateFlag", B, no},
    {u"DTStart", D, zeroDate},
    {u"DTStartFlag", B, no},
    {u"AAlarm", D, zeroDate},
    {u"AAlarmFlag", B, no},
    {u"AnniversaryStatus", B, no},
    {u"DAlarm", D, zeroDate},
    {u"DAlarmFlag", B, no},
    {u"Description", T, emptyText},
    {u"WeekDayMask", L, zero64},
    {u"DayOfMonth", L, unset},
    {u"EntryID", T, minusOneText},
    {u"IsRecurring", B, no},
    {u"MeetingStatus", B, no},
    {u"MemoStatus", B, no},
    {u"ModKey", T, unset},
    {u"PhoneCallStatus", B, no},
    {u"RecurrenceDuration", L, unset},
    {u"RecurrenceFrequenz", T, unset},
    {u"RecurrenceType", T, unset},
    {u"RecurrenceIntervall", L, unset},
    {u"Start", D, zeroDate},
    {u"DTEnd", D, zeroDate},
    {u"Summary", T, emptyText},
    {u"SubType", I, minusOne32},
    {u"IsChanged", B, no},
    {u"ChangeString", T, emptyText},
    {u"EntryType", I, zero32},
    {u"EntrySource", I, zero32},
    {u"UID", T, emptyText},
    {u"PIMText", T, emptyText},
    {u"UTF8Flag", B, unset},
    {u"Recordset", T, calendarName},
    {u"CreationDate", D, unset},
    {u"TransferMode", I, one32},
    {u"EntryPath", T, emptyText},
    {u"EntryFile", T, emptyText},
    {u"StartAsText", T, unset},
    {u"PIMNew", B, no},
    {u"TransferNew", I, unset},
    {u"PIMRecPatt", D, zeroDate},
    {u"MobileRecPattern", D, zeroDate},
    {u"oldStartDate", D, zeroDate},
    {u"noPhonecall", B, no},
    {u"PimRecPattString", T, emptyText},
    {u"RecPatternString", T, emptyText},
    {u"altesStartDate", D, zeroDate},
    {u"AllDayEvent", B, no},
    {u"StartEndDiff", L, zero64},
    {u"creafromMob", B, no},
};

const FieldSpec kContact[] = {
    {u"PIM", B, no},
    {u"Mobile", B, no},
    {u"LastName", T, emptyText},
    {u"FirstName", T, emptyText},
    {u"Company", T, emptyText},
    {u"Phone", T, emptyText},
    {u"Street", T, emptyText},
    {u"ZipCode", T, emptyText},
    {u"City", T, emptyText},
    {u"Categories", B, no},
    {u"PhoneWork", T, emptyText},
    {u"PhoneMobile", T, emptyText},
    {u"Fax", T, emptyText},
    {u"eMail", T, emptyText},
    {u"Country", T, emptyText},
    {u"URL", T, emptyText},
    {u"IsChanged", B, no},
    {u"ChangeString", T, emptyText},
    {u"EntryType", I, zero32},
    {u"MobileID", T, emptyText},
    {u"UID", T, emptyText},
    {u"UTF8Flag", B, no},
    {u"Recordset", T, contactsName},
    {u"TransferMode", I, one32},
    {u"EntryPath", T, emptyText},
    {u"EntryFile", T, emptyText},
    {u"CategoriesText", T, emptyText},
    {u"EntryID", T, unset},
    {u"CreationDate", D, unset},
    {u"PIMNew", B, no},
    {u"TransferNew", I, unset},
    {u"PIMLastName", T, emptyText},
    {u"PIMFirstName", T, emptyText},
    {u"PIMCompany", T, emptyText},
    {u"PIMStreet", T, emptyText},
    {u"PIMCity", T, emptyText},
    {u"PIMZipCode", T, emptyText},
    {u"PIMCountry", T, emptyText},
    {u"PIMeMail", T, emptyText},
    {u"PIMURL", T, emptyText},
    {u"PIMPhone", T, emptyText},
    {u"PIMPhoneWork", T, emptyText},
    {u"PIMPhoneMobile", T, emptyText},
    {u"PIMFax", T, emptyText},
    {u"MobileCategoriesText", T, emptyText},
};

} // namespace

std::span<const FieldSpec> calendarLayout() {
    return kCalendar;
}

std::span<const FieldSpec> contactLayout() {
    return kContact;
}

} // namespace tsr::tables
