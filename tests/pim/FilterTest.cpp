// SPDX-License-Identifier: GPL-3.0-or-later
// The restriction texts of Find as the logic builds them in the user's formats,
// and the texts a filter must refuse.
#include "pim/Filter.h"

#include "PimTestSupport.h"

namespace tsr::test {
namespace {

using pim::FilterOp;

core::DateFormats germanFormats() {
    core::DateFormats f;
    f.DateFormat = QStringLiteral("dd.mm.yy");
    f.GridTimeStyle = QStringLiteral("hh:mm");
    f.DateTimeFormat = QStringLiteral("hh:mm dd.mm.yy");
    return f;
}

int raisedNumber(const QString& filter, const core::DateFormats& formats) {
    try {
        pim::parseFilter(filter, formats);
    } catch (const core::TsrError& e) {
        return e.number();
    }
    return 0;
}

// The read's range: first day in DateFormat, last day with a GridTimeStyle time.
TEST(FilterReading, RangeInDateFormatAndGridTimeStyle) {
    const auto f = germanFormats();
    const QString d1 = core::Format(at(2026, 3, 1), f.DateFormat);
    const QString d2 =
        core::Format(at(2026, 3, 31), f.DateFormat) + u' ' + core::Format(at(2026, 3, 31, 23, 59), f.GridTimeStyle);
    const pim::Filter filter =
        pim::parseFilter(QStringLiteral("[Start]>=\"") + d1 + QStringLiteral("\" and [Start] <=\"") + d2 + u'"', f);
    ASSERT_EQ(filter.terms.size(), 2);
    EXPECT_EQ(filter.terms[0].op, FilterOp::Ge);
    EXPECT_EQ(filter.terms[1].op, FilterOp::Le);
    EXPECT_EQ(*filter.startFrom, at(2026, 3, 1));
    EXPECT_EQ(*filter.startTo, at(2026, 3, 31, 23, 59));
}

// The silent read formats both ends with DateTimeFormat, time before date.
TEST(FilterReading, SilentRangeInDateTimeFormat) {
    const auto f = germanFormats();
    const QString filter = QStringLiteral("[Start]>=\"%1\" and [Start] <=\"%2\"")
                               .arg(core::Format(at(2026, 12, 24, 0, 0), f.DateTimeFormat),
                                    core::Format(at(2027, 1, 6, 18, 30), f.DateTimeFormat));
    const pim::Filter parsed = pim::parseFilter(filter, f);
    EXPECT_EQ(*parsed.startFrom, at(2026, 12, 24));
    EXPECT_EQ(*parsed.startTo, at(2027, 1, 6, 18, 30));
}

// Month-first formats with a 12-hour time are read in their own order.
TEST(FilterReading, UsFormatsWithDayPart) {
    core::DateFormats f;
    f.DateFormat = QStringLiteral("mm/dd/yyyy");
    f.GridTimeStyle = QStringLiteral("hh:mm AM/PM");
    f.DateTimeFormat = QStringLiteral("mm/dd/yyyy hh:mm AM/PM");
    const pim::Filter parsed = pim::parseFilter(QStringLiteral("[Start]=\"03/04/2026 02:30 PM\""), f);
    EXPECT_EQ(*parsed.startFrom, at(2026, 3, 4, 14, 30));
    EXPECT_EQ(*parsed.startTo, at(2026, 3, 4, 14, 30));
}

// The contact search's restrictions: both names, each half alone, quotes doubled inside.
TEST(FilterReading, NameRestrictions) {
    const auto f = germanFormats();
    auto both = pim::parseFilter(QStringLiteral("[LastName] =\"O\"\"Brien\" and [FirstName] =\"Ann\""), f);
    ASSERT_EQ(both.terms.size(), 2);
    EXPECT_EQ(both.terms[0].property, QStringLiteral("LastName"));
    EXPECT_EQ(both.terms[0].text, QStringLiteral("O\"Brien"));
    EXPECT_EQ(both.terms[1].property, QStringLiteral("FirstName"));
    EXPECT_FALSE(both.startFrom.has_value());
    EXPECT_EQ(pim::parseFilter(QStringLiteral("[FirstName] =\"Ann\""), f).terms.size(), 1);
    EXPECT_EQ(pim::parseFilter(QStringLiteral("[LastName] ='Smith'"), f).terms[0].text, QStringLiteral("Smith"));
}

// Texts it cannot read raise the object model's error; none of them matches everything.
TEST(FilterReading, UnreadableFiltersRaise) {
    const auto f = germanFormats();
    const int bad = pim::err::InvalidArgument;
    EXPECT_EQ(raisedNumber(QString(), f), bad);
    EXPECT_EQ(raisedNumber(QStringLiteral("[Start]>=\"01.03.26\" or [Start]<=\"02.03.26\""), f), bad);
    EXPECT_EQ(raisedNumber(QStringLiteral("[Nickname] =\"Bob\""), f), bad);
    EXPECT_EQ(raisedNumber(QStringLiteral("[Start]>=\"tomorrow\""), f), bad);
    EXPECT_EQ(raisedNumber(QStringLiteral("[Start]>=\"01.03.26"), f), bad);
    EXPECT_EQ(raisedNumber(QStringLiteral("[LastName] =\"Smith\" junk"), f), bad);
    EXPECT_EQ(raisedNumber(QStringLiteral("LastName = Smith"), f), bad);
    EXPECT_EQ(raisedNumber(QStringLiteral("[Start]>=\"01.03.26\""), f), 0);
}

// Sort takes bracketed and bare names; anything else raises.
TEST(FilterReading, SortPropertyNames) {
    EXPECT_EQ(pim::sortProperty(QStringLiteral("[Start]")), QStringLiteral("Start"));
    EXPECT_EQ(pim::sortProperty(QStringLiteral("[fileas]")), QStringLiteral("FileAs"));
    EXPECT_EQ(pim::sortProperty(QStringLiteral("LastName")), QStringLiteral("LastName"));
    EXPECT_THROW(pim::sortProperty(QStringLiteral("[Start] desc, x")), core::TsrError);
}

class FilterInStore : public PimStoreTest {};

// A filter with an unreadable date raises through Find and leaves the items alone.
TEST_F(FilterInStore, FindWithBadDateRaisesInsteadOfMatchingAll) {
    auto a = newAppointment();
    a->setSubject(QStringLiteral("Lunch"));
    a->Save();
    auto items = calendarItems();
    EXPECT_THROW(items->Find(QStringLiteral("[Start]>=\"32.13.2026\"")), core::TsrError);
    EXPECT_EQ(items->FindNext(), nullptr);
    EXPECT_THROW(items->Find(QStringLiteral("[LastName] =\"x\"")), core::TsrError); // no such field on appointments
}

// [Start]="..." finds the item of that minute only; the range finds both ends inclusive.
TEST_F(FilterInStore, EqualityAndRangeOnStart) {
    for (int h : {8, 9, 10}) {
        auto a = newAppointment();
        a->setStart(at(2026, 3, 5, h, 0));
        a->setEnd(at(2026, 3, 5, h, 30));
        a->setSubject(QStringLiteral("h%1").arg(h));
        a->Save();
    }
    auto items = calendarItems();
    auto one = findAll<pim::AppointmentItem>(*items, QStringLiteral("[Start]=\"05.03.2026 09:00\""));
    ASSERT_EQ(one.size(), 1);
    EXPECT_EQ(one[0]->Subject(), QStringLiteral("h9"));
    items->Sort(QStringLiteral("[Start]"));
    auto range = findAll<pim::AppointmentItem>(
        *items, QStringLiteral("[Start]>=\"05.03.2026\" and [Start] <=\"05.03.2026 09:00\""));
    ASSERT_EQ(range.size(), 2);
    EXPECT_EQ(range[0]->Subject(), QStringLiteral("h8"));
    EXPECT_EQ(range[1]->Subject(), QStringLiteral("h9"));
}

// Contacts sort on LastName and FileAs and are found by name without regard to case.
TEST_F(FilterInStore, ContactSortAndNameSearch) {
    const QList<std::pair<QString, QString>> names{{QStringLiteral("Zeta"), QStringLiteral("Anna")},
                                                   {QStringLiteral("adams"), QStringLiteral("Bert")},
                                                   {QStringLiteral("Miller"), QStringLiteral("Carl")}};
    for (const auto& [last, first] : names) {
        auto c = newContact();
        c->setLastName(last);
        c->setFirstName(first);
        c->Save();
    }
    auto items = contactItems();
    items->Sort(QStringLiteral("[LastName]"));
    ASSERT_EQ(items->Count(), 3);
    EXPECT_EQ(pim::asContact(items->ItemAt(1))->LastName(), QStringLiteral("adams"));
    EXPECT_EQ(pim::asContact(items->ItemAt(3))->LastName(), QStringLiteral("Zeta"));
    items->Sort(QStringLiteral("[FileAs]"), true);
    EXPECT_EQ(pim::asContact(items->ItemAt(1))->FileAs(), QStringLiteral("Zeta, Anna"));
    EXPECT_THROW(items->ItemAt(4), core::TsrError);
    EXPECT_THROW(items->Sort(QStringLiteral("[Start]")), core::TsrError);

    auto hit = findAll<pim::ContactItem>(*items, QStringLiteral("[LastName] =\"ADAMS\" and [FirstName] =\"bert\""));
    ASSERT_EQ(hit.size(), 1);
    EXPECT_EQ(hit[0]->FirstName(), QStringLiteral("Bert"));
    EXPECT_TRUE(findAll(*items, QStringLiteral("[LastName] =\"Adams\" and [FirstName] =\"Carl\"")).isEmpty());
    EXPECT_EQ(findAll(*items, QStringLiteral("[FirstName] =\"Carl\"")).size(), 1);
}

} // namespace
} // namespace tsr::test
