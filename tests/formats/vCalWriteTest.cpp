// SPDX-License-Identifier: GPL-3.0-or-later
// The text written for the phone: byte-exact against the golden files of
// tests/data/vcal (one ctest per file), and the series fields a new series gets
// on each phone model.
#include "formats/vCal.h"
#include "vCalFixture.h"

#include <QDir>
#include <QFile>

using namespace tsr;
using test::vCalFixture;

namespace {

QString dataDir() {
    return QStringLiteral(TESSARINE_TEST_DATA "/vcal");
}

std::vector<std::string> goldenNames() {
    std::vector<std::string> names;
    const QStringList rows = QDir(dataDir()).entryList({QStringLiteral("*.row")}, QDir::Files, QDir::Name);
    for (const QString& r : rows)
        names.push_back(r.chopped(4).toStdString());
    return names;
}

// A date "yyyy-mm-dd", a date-time "yyyy-mm-dd hh:mm:ss", a time "hh:mm:ss" on day 0, or "0".
core::VbDate readDate(const QString& v) {
    if (v == u"0")
        return core::VbDate();
    if (v.size() == 8 && v[2] == u':')
        return core::fromQDateTime(QDateTime(QDate(1899, 12, 30), QTime::fromString(v, QStringLiteral("HH:mm:ss"))));
    if (v.size() == 10)
        return core::fromQDate(QDate::fromString(v, QStringLiteral("yyyy-MM-dd")));
    const QDateTime dt = QDateTime::fromString(v, QStringLiteral("yyyy-MM-dd HH:mm:ss"));
    EXPECT_TRUE(dt.isValid()) << v.toStdString();
    return core::fromQDateTime(dt);
}

// Fills the row from "Field=value" lines; the value is read by the field's type.
void loadRow(tables::Recordset& t, const QString& path) {
    QFile f(path);
    ASSERT_TRUE(f.open(QIODevice::ReadOnly)) << path.toStdString();
    const QStringList lines = QString::fromUtf8(f.readAll()).split(u'\n', Qt::SkipEmptyParts);
    for (const QString& line : lines) {
        const qsizetype eq = line.indexOf(u'=');
        ASSERT_GT(eq, 0) << line.toStdString();
        const QString name = line.left(eq);
        QString value = line.mid(eq + 1);
        const int index = t.fieldIndex(name);
        ASSERT_GE(index, 0) << name.toStdString();
        switch (t.fieldType(index)) {
        case core::FieldType::Bool:
            t.setValue(index, value == u"true");
            break;
        case core::FieldType::Date:
            t.setValue(index, readDate(value));
            break;
        case core::FieldType::Int32:
        case core::FieldType::Int64:
            t.setValue(index, int64_t(value.toLongLong()));
            break;
        default:
            value.replace(QStringLiteral("\\r"), QStringLiteral("\r"))
                .replace(QStringLiteral("\\n"), QStringLiteral("\n"));
            t.setValue(index, value);
        }
    }
}

class vCalGolden : public vCalFixture, public ::testing::WithParamInterface<std::string> {};

} // namespace

// Each golden row gives exactly the bytes of its .vcs file.
TEST_P(vCalGolden, WritesTheExpectedBytes) {
    const QString base = dataDir() + u'/' + QString::fromStdString(GetParam());
    loadRow(*table, base + QStringLiteral(".row"));
    QFile expected(base + QStringLiteral(".vcs"));
    ASSERT_TRUE(expected.open(QIODevice::ReadOnly));
    const QByteArray want = expected.readAll();

    const QString text = formats::calendarEntryText(*table);
    const QByteArray bytes = formats::calendarEntryBytes(text);
    EXPECT_EQ(bytes.toStdString(), want.toStdString());
    EXPECT_EQ(bytes.size(), text.size());
}

INSTANTIATE_TEST_SUITE_P(Files, vCalGolden, ::testing::ValuesIn(goldenNames()),
                         [](const ::testing::TestParamInfo<std::string>& info) {
                             std::string n = info.param;
                             for (char& c : n)
                                 if (c == '-')
                                     c = '_';
                             return n;
                         });

// The golden folder is not empty: a missing folder would otherwise pass silently.
TEST(vCalGoldenFiles, ArePresentInPairs) {
    const std::vector<std::string> names = goldenNames();
    ASSERT_GE(names.size(), 10u);
    for (const std::string& n : names)
        EXPECT_TRUE(QFile::exists(dataDir() + u'/' + QString::fromStdString(n) + QStringLiteral(".vcs"))) << n;
}

// A text that holds characters above 255 reaches the phone with their low byte
// only; the writer's own output never does, since it is all quoted-printable.
TEST(vCalBytes, KeepTheLowByteOfEachUnit) {
    EXPECT_EQ(formats::calendarEntryBytes(QStringLiteral("AB\r\n")), QByteArray("AB\r\n"));
    EXPECT_EQ(formats::calendarEntryBytes(QString(QChar(0x20AC))), QByteArray("\xAC", 1));
    EXPECT_EQ(formats::calendarEntryBytes(QString()), QByteArray());
}

// The file name is SubType's number, or EntryID while SubType is -1.
TEST_F(vCalFixture, FileNameFromSubTypeOrEntryID) {
    set(QStringLiteral("EntryID"), QStringLiteral("17"));
    EXPECT_EQ(formats::calendarEntryFileName(*table), QStringLiteral("17.vcs"));
    set(QStringLiteral("SubType"), int32_t(4));
    EXPECT_EQ(formats::calendarEntryFileName(*table), QStringLiteral("4.vcs"));
}

// The category: meeting before birthday before call; a row with none is a memo.
TEST_F(vCalFixture, CategoryFollowsTheFirstStatusThatHolds) {
    auto category = [&] {
        const QStringList lines = formats::calendarEntryText(*table).split(QStringLiteral("\r\n"));
        return lines.value(3);
    };
    EXPECT_EQ(category(), QStringLiteral("CATEGORIES:MISCELLANEOUS"));
    set(QStringLiteral("PhoneCallStatus"), true);
    EXPECT_EQ(category(), QStringLiteral("CATEGORIES:PHONE CALL"));
    set(QStringLiteral("AnniversaryStatus"), true);
    EXPECT_EQ(category(), QStringLiteral("CATEGORIES:ANNIVERSARY"));
    set(QStringLiteral("MeetingStatus"), true);
    EXPECT_EQ(category(), QStringLiteral("CATEGORIES:MEETING"));
}

// A series without reference date goes from its Start; a single entry ignores
// PIMRecPatt altogether.
TEST_F(vCalFixture, ReferenceDateOnlyForSeriesWithPattern) {
    setFields({{u"Start", at(2026, 11, 22, 10, 0)}, {u"PIMRecPatt", at(2026, 1, 1)}});
    EXPECT_TRUE(formats::calendarEntryText(*table).contains(QStringLiteral("DTSTART:20261122T100000Z\r\n")));
    set(QStringLiteral("ISRecurring"), true);
    EXPECT_TRUE(formats::calendarEntryText(*table).contains(QStringLiteral("DTSTART:20260101T100000Z\r\n")));
    set(QStringLiteral("PIMRecPatt"), core::VbDate());
    EXPECT_TRUE(formats::calendarEntryText(*table).contains(QStringLiteral("DTSTART:20261122T100000Z\r\n")));
}

// The rule line for each kind, as the phone reads it back.
TEST_F(vCalFixture, RuleLineForEachKind) {
    const test::FieldValues values = {{u"RecurrenceFrequenz", u"W"},
                                      {u"RecurrenceType", u"W"},
                                      {u"RecurrenceIntervall", int64_t(1)},
                                      {u"RecurrenceDuration", int64_t(0)}};
    setFields(values);
    EXPECT_EQ(formats::ruleText(*table), QStringLiteral("W1 #0")); // no mask, no day list
    set(QStringLiteral("Weekdaymask"), int64_t(127));
    EXPECT_EQ(formats::ruleText(*table), QStringLiteral("W1 SU MO TU WE TH FR SA #0"));

    const test::FieldValues values2 = {
        {u"RecurrenceFrequenz", u"M"}, {u"RecurrenceType", u"M"}, {u"ModKey", QString()}, {u"DayOfMonth", int64_t(3)}};
    setFields(values2);
    EXPECT_EQ(formats::ruleText(*table), QStringLiteral("M1 3 #0")); // an older model's empty modifier

    const test::FieldValues values3 = {{u"RecurrenceFrequenz", u"Y"},
                                       {u"RecurrenceType", u"Y"},
                                       {u"ModKey", u"D"},
                                       {u"RecurrenceIntervall", int64_t(2)}};
    setFields(values3);
    EXPECT_EQ(formats::ruleText(*table), QStringLiteral("YD2 #0"));
}

namespace {
struct SerieCase {
    const char* model;
    const char* type;
    const char* frequency;
    int64_t interval;
    const char* modKey; // nullptr: not written
};

// What vCalSetSerieFields leaves for each kind on each model.
const SerieCase kSerieCases[] = {
    {"QX71", "D", "D", 1, nullptr}, {"R52", "D", "D", 1, nullptr},
    {"QX71", "W", "W", 1, nullptr}, {"R52", "W", "D", 7, nullptr},
    {"Q52", "W", "D", 7, nullptr},  {"P52", "W", "D", 7, nullptr},
    {"Q33", "W", "D", 7, nullptr},  {"QX71", "M", "M", 1, "D"},
    {"R52", "M", "M", 1, ""},       {"Q52", "M", "M", 1, ""},
    {"P52", "M", "M", 1, ""},       {"Q33", "M", "M", 1, "D"}, // Q33 is not tested for months
    {"QX71", "Y", "Y", 1, "D"},     {"R52", "Y", "Y", 1, ""},
    {"Q52", "Y", "Y", 1, ""},       {"P52", "Y", "Y", 1, ""},
    {"Q33", "Y", "Y", 1, ""},       {"Siemens Q33 mini", "Y", "Y", 1, ""}, // a model text holding the name
};
} // namespace

// The model rules differ kind by kind: each model against each kind.
TEST_F(vCalFixture, SerieFieldsByModelAndKind) {
    for (const SerieCase& c : kSerieCases) {
        newRow();
        ctx.phone.MobileModel = QString::fromUtf8(c.model);
        setFields({{u"Start", at(2026, 11, 19, 9, 0)}, {u"RecurrenceType", QString::fromUtf8(c.type)}});
        formats::vCalSetSerieFields(ctx, *table);
        const std::string what = std::string(c.model) + " " + c.type;
        EXPECT_EQ(text(QStringLiteral("RecurrenceFrequenz")), QString::fromUtf8(c.frequency)) << what;
        EXPECT_EQ(get(QStringLiteral("RecurrenceIntervall")).toInt64(), c.interval) << what;
        if (c.modKey) {
            EXPECT_EQ(text(QStringLiteral("ModKey")), QString::fromUtf8(c.modKey)) << what;
        } else {
            EXPECT_TRUE(get(QStringLiteral("ModKey")).isEmpty()) << what;
        }
        if (QByteArray(c.type) == "M") {
            EXPECT_EQ(get(QStringLiteral("DayOfMonth")).toInt64(), 19) << what;
        }
    }
    EXPECT_TRUE(ui.boxes.isEmpty());
}

// The weekday boxes reach the mask only when the editor's option is on.
TEST_F(vCalFixture, SerieFieldsTakeTheEditorsWeekdays) {
    set(QStringLiteral("RecurrenceType"), QStringLiteral("W"));
    formats::vCalSetSerieFields(ctx, *table);
    EXPECT_TRUE(get(QStringLiteral("Weekdaymask")).isEmpty());
    formats::vCalSetSerieFields(ctx, *table, int16_t(2 | 16));
    EXPECT_EQ(get(QStringLiteral("Weekdaymask")).toInt64(), 18);
}
