// SPDX-License-Identifier: GPL-3.0-or-later
#include "tables/Recordset.h"
#include "core/Error.h"

#include <gtest/gtest.h>

using namespace tsr;
using core::FieldType;
using core::Value;
using core::VbDate;
using tables::Recordset;

namespace {

// A table of EntryID/Text rows: ("1","a"), ("2","b"), ("1","c"), ("3","d").
void fill(Recordset& t) {
    t.appendField(QStringLiteral("EntryID"), FieldType::Text);
    t.appendField(QStringLiteral("Text"), FieldType::Text);
    t.appendField(QStringLiteral("SubType"), FieldType::Int32);
    t.appendField(QStringLiteral("Start"), FieldType::Date);
    t.open();
    const char* rows[][2] = {{"1", "a"}, {"2", "b"}, {"1", "c"}, {"3", "d"}};
    int i = 0;
    for (auto& r : rows) {
        t.addNew();
        t.setValue(QStringLiteral("EntryID"), QString::fromLatin1(r[0]));
        t.setValue(QStringLiteral("Text"), QString::fromLatin1(r[1]));
        t.setValue(QStringLiteral("SubType"), int32_t(10 + i));
        t.setValue(QStringLiteral("Start"), core::DateSerial(2025, 1, 1 + i));
        t.update();
        ++i;
    }
}

} // namespace

TEST(Recordset, FieldNamesIgnoreCase) {
    Recordset t;
    fill(t);
    t.moveFirst();
    EXPECT_EQ(t.value(QStringLiteral("entryid")).toText(), QStringLiteral("1"));
    EXPECT_EQ(t.fieldIndex(QStringLiteral("TEXT")), 1);
    EXPECT_THROW(t.value(QStringLiteral("NoSuchField")), core::TsrError);
}

TEST(Recordset, FindSearchesFromTheCursorAndLeavesEofOnAMiss) {
    Recordset t;
    fill(t);
    t.moveFirst();
    ASSERT_TRUE(t.find(QStringLiteral("EntryID = 1")));
    EXPECT_EQ(t.absolutePosition(), 1);
    t.moveNext();
    ASSERT_TRUE(t.find(QStringLiteral("EntryID = 1")));
    EXPECT_EQ(t.value(QStringLiteral("Text")).toText(), QStringLiteral("c"));
    t.moveNext();
    EXPECT_FALSE(t.find(QStringLiteral("EntryID = 1")));
    EXPECT_TRUE(t.eof());
    EXPECT_EQ(t.absolutePosition(), Recordset::PosEOF);
    // Quoted and unquoted values compare alike; numbers compare by their text form.
    t.moveFirst();
    EXPECT_TRUE(t.find(QStringLiteral("Text = 'd'")));
    t.moveFirst();
    EXPECT_TRUE(t.find(QStringLiteral("SubType = 12")));
    EXPECT_EQ(t.value(QStringLiteral("Text")).toText(), QStringLiteral("c"));
    EXPECT_THROW(t.find(QStringLiteral("this is no criteria")), core::TsrError);
}

// The index behind Find follows every change of the searched field.
TEST(Recordset, FindSeesChangesAfterTheFirstSearch) {
    Recordset t;
    fill(t);
    t.moveFirst();
    ASSERT_TRUE(t.find(QStringLiteral("EntryID = 3")));
    t.setValue(QStringLiteral("EntryID"), QStringLiteral("9"));
    t.moveFirst();
    EXPECT_FALSE(t.find(QStringLiteral("EntryID = 3")));
    t.moveFirst();
    EXPECT_TRUE(t.find(QStringLiteral("EntryID = 9")));
    t.addNew();
    t.setValue(QStringLiteral("EntryID"), QStringLiteral("3"));
    t.moveFirst();
    ASSERT_TRUE(t.find(QStringLiteral("EntryID = 3")));
    EXPECT_EQ(t.absolutePosition(), 5);
    t.moveFirst();
    t.deleteCurrent();
    t.moveFirst();
    ASSERT_TRUE(t.find(QStringLiteral("EntryID = 1")));
    EXPECT_EQ(t.value(QStringLiteral("Text")).toText(), QStringLiteral("c"));
}

TEST(Recordset, DeleteLoopClearsTheTable) {
    Recordset t;
    fill(t);
    // first row, delete, next, until EOF
    while (t.recordCount() > 0) {
        t.moveFirst();
        t.deleteCurrent();
        t.moveNext();
        if (t.eof())
            break;
    }
    EXPECT_EQ(t.recordCount(), 0);
}

TEST(Recordset, DeletedRowHasNoValueAndNextMovesBehindTheGap) {
    Recordset t;
    fill(t);
    t.setAbsolutePosition(2);
    t.deleteCurrent();
    EXPECT_THROW(t.value(QStringLiteral("Text")), core::TsrError);
    EXPECT_FALSE(t.eof());
    t.moveNext();
    EXPECT_EQ(t.value(QStringLiteral("Text")).toText(), QStringLiteral("c"));
}

TEST(Recordset, GetRowsReadsInFieldOrderAndMovesOn) {
    Recordset t;
    fill(t);
    t.setAbsolutePosition(2);
    const auto row = t.getRows();
    ASSERT_EQ(row.size(), 4u);
    EXPECT_EQ(row[0].toText(), QStringLiteral("2"));
    EXPECT_EQ(row[1].toText(), QStringLiteral("b"));
    EXPECT_EQ(t.absolutePosition(), 3);
}

TEST(Recordset, DateFieldsCompareThroughTheirTextForm) {
    Recordset t;
    t.setDateTextForm(QStringLiteral("dd.mm.yy"), QStringLiteral("hh:mm"));
    fill(t);
    t.moveFirst();
    EXPECT_TRUE(t.find(QStringLiteral("Start = '03.01.25'")));
    EXPECT_EQ(t.value(QStringLiteral("Text")).toText(), QStringLiteral("c"));
    // A date written into a text field takes the same text form.
    t.setValue(QStringLiteral("Text"), core::DateSerial(2025, 1, 3));
    EXPECT_EQ(t.value(QStringLiteral("Text")).toText(), QStringLiteral("03.01.25"));
}

TEST(Recordset, SortAndFilterChangeTheView) {
    Recordset t;
    fill(t);
    t.setSort(QStringLiteral("EntryID DESC, Text"));
    t.moveFirst();
    QStringList order;
    while (!t.eof()) {
        order << t.value(QStringLiteral("Text")).toText();
        t.moveNext();
    }
    EXPECT_EQ(order, (QStringList{QStringLiteral("d"), QStringLiteral("b"), QStringLiteral("a"), QStringLiteral("c")}));
    t.setFilter(QStringLiteral("EntryID = 1"));
    EXPECT_EQ(t.recordCount(), 2);
    t.setFilter({});
    t.setSort({});
    EXPECT_EQ(t.recordCount(), 4);
    t.moveFirst();
    EXPECT_EQ(t.value(QStringLiteral("Text")).toText(), QStringLiteral("a"));
}

TEST(Recordset, ValuesConvertToTheFieldType) {
    Recordset t;
    fill(t);
    t.moveFirst();
    t.setValue(QStringLiteral("SubType"), QStringLiteral("42"));
    EXPECT_EQ(t.value(QStringLiteral("SubType")).type(), FieldType::Int32);
    EXPECT_EQ(t.value(QStringLiteral("SubType")).toInt32(), 42);
    EXPECT_THROW(t.setValue(QStringLiteral("SubType"), QStringLiteral("x")), core::TsrError);
    t.setValue(QStringLiteral("Text"), true);
    EXPECT_EQ(t.value(QStringLiteral("Text")).toText(), QStringLiteral("True"));
}

// Every spelling of an equality finds the same row, whichever way it is read;
// a value that is no quoted text stays text, quotes and all.
TEST(Recordset, EqualityCriteriaReadAlike) {
    struct Case {
        const char16_t* criteria;
        int row; // 0 for a miss
    };
    const Case cases[] = {
        {u"Text = 'c'", 3}, {u"Text='c'", 3},       {u"  Text\t=\t'c'  ", 3}, {u"[Text] = 'c'", 3}, {u"text = 'C'", 3},
        {u"Text = c", 3},   {u"Text = \"c\"", 3},   {u"Text = ''c''", 0},     {u"Text = 'c' ", 3},  {u"Text = ' c'", 0},
        {u"Text = 'x'", 0}, {u"SubType = '12'", 3}, {u"EntryID = '3'", 4},    {u"Text <> 'a'", 2},  {u"Text >= 'c'", 3},
    };
    for (const Case& c : cases) {
        Recordset t;
        fill(t);
        t.moveFirst();
        const QString criteria = QString::fromUtf16(c.criteria);
        EXPECT_EQ(t.find(criteria), c.row > 0) << criteria.toStdString();
        if (c.row > 0) {
            EXPECT_EQ(t.absolutePosition(), c.row) << criteria.toStdString();
        }
    }
    for (const char16_t* bad : {u"Text = 'c'\nText", u"NoSuchField = 'c'", u"= 'c'", u"1Text = 'c'"}) {
        Recordset t;
        fill(t);
        t.moveFirst();
        EXPECT_THROW(t.find(QString::fromUtf16(bad)), core::TsrError) << QString::fromUtf16(bad).toStdString();
    }
}

// A row added with all its values at once is converted like single writes and joins Find's index.
TEST(Recordset, AddNewWithValuesJoinsTheIndex) {
    Recordset t;
    fill(t);
    t.moveFirst();
    ASSERT_TRUE(t.find(QStringLiteral("EntryID = '2'"))); // the index on EntryID now exists
    t.addNew({Value(QStringLiteral("2")), Value(QStringLiteral("e")), Value(QStringLiteral("14")),
              Value(core::DateSerial(2025, 2, 1))});
    EXPECT_EQ(t.absolutePosition(), 5);
    EXPECT_EQ(t.value(QStringLiteral("SubType")).type(), FieldType::Int32);
    EXPECT_EQ(t.value(QStringLiteral("SubType")).toInt32(), 14);
    t.moveFirst();
    ASSERT_TRUE(t.find(QStringLiteral("EntryID = '2'")));
    t.moveNext();
    ASSERT_TRUE(t.find(QStringLiteral("EntryID = '2'")));
    EXPECT_EQ(t.value(QStringLiteral("Text")).toText(), QStringLiteral("e"));
    t.setValue(QStringLiteral("EntryID"), QStringLiteral("7"));
    t.moveFirst();
    ASSERT_TRUE(t.find(QStringLiteral("EntryID = '7'")));
    EXPECT_EQ(t.absolutePosition(), 5);
    // A row of the wrong width is refused and adds nothing.
    EXPECT_THROW(t.addNew({Value(QStringLiteral("8"))}), core::TsrError);
    EXPECT_EQ(t.recordCount(), 5);
}

// Field names are remembered by where their text stands; a name that only borrows
// that place, and another name taking it later, each find their own field.
TEST(Recordset, ABorrowedNameIsReadAnewWhenItsTextChanges) {
    // Many pairs of names, as a stale entry of a hash table shows only where two keys meet.
    for (int round = 0; round < 100; ++round) {
        const QString first = QStringLiteral("A%1").arg(round, 3, 10, QLatin1Char('0'));
        const QString second = QStringLiteral("B%1").arg(round, 3, 10, QLatin1Char('0'));
        Recordset t;
        t.appendField(first, FieldType::Text);
        t.appendField(second, FieldType::Text);
        t.open();
        char16_t text[4];
        std::copy_n(first.utf16(), 4, text);
        const QString borrowed = QString::fromRawData(reinterpret_cast<const QChar*>(text), 4);
        ASSERT_EQ(t.fieldIndex(borrowed), 0);
        ASSERT_EQ(t.fieldIndex(borrowed), 0);
        std::copy_n(second.utf16(), 4, text);
        ASSERT_EQ(t.fieldIndex(borrowed), 1) << "round " << round;
        std::copy_n(u"Gamm", 4, text);
        ASSERT_EQ(t.fieldIndex(borrowed), -1) << "round " << round;
        ASSERT_EQ(t.fieldIndex(second.toLower()), 1);
    }
}
