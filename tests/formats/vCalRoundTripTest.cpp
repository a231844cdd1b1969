// SPDX-License-Identifier: GPL-3.0-or-later
// Row -> text for the phone -> bytes -> text read back -> parser -> row, over
// generated rows of every type, series kind and alarm combination, on a current
// and an older phone model. Every field the format carries must come back.
#include "formats/Globals.h"
#include "formats/unicode.h"
#include "formats/vCal.h"
#include "vCalFixture.h"

using namespace tsr;

namespace {

struct Sample {
    const char16_t* text;     // what the row holds (at most the phone's 32 characters)
    const char16_t* readBack; // what the parser gives back as Text
};
const Sample kSamples[] = {
    {u"Zahnarzt Müller", u"Zahnarzt Müller"},
    {u"Grüße ä ö ü ß Ä", u"Grüße ä ö ü ß Ä"},
    {u"€ 5 = fünf", u"€ 5 = fünf"},
    {u"会议 东京 第一", u"会议 东京 第一"},
    {u"a;b;c", u"a;b;c"},
    {u"x=3D y", u"x=3D y"},
    {u"line one\r\nline two", u"line one line two"},
    {u"tab\there", u"tab here"},
    {u"  padded  ", u"padded"},
    {u"\U0001F600 smile", u"\U0001F600 smile"},
    {u"12345678901234567890123456789012", u"12345678901234567890123456789012"},
    {u"Call: +49 (30) 1234", u"Call: +49 (30) 1234"},
};

const char16_t* const kTypes[] = {u"", u"1", u"2", u"3"};
const char16_t* const kStatus[] = {u"MemoStatus", u"MeetingStatus", u"AnniversaryStatus", u"PhoneCallStatus"};
enum class Kind { Single, Daily, WeeklyOneDay, WeeklyDays, Monthly, Yearly };
const Kind kKinds[] = {Kind::Single, Kind::Daily, Kind::WeeklyOneDay, Kind::WeeklyDays, Kind::Monthly, Kind::Yearly};
constexpr int16_t kSeveralDays = 2 | 16 | 64; // MO TH SA

class vCalRoundTrip : public test::vCalFixture, public ::testing::WithParamInterface<const char*> {
protected:
    struct Made {
        core::VbDate start, end;
        core::VbDate alarmA, alarmD;
        bool hasA = false, hasD = false;
        QString text;
        QString readBack;
        bool summary = false;
        Kind kind = Kind::Single;
        int16_t mask = 0;
    };

    Made makeRow(int n, int typeIndex, Kind kind, int alarms) {
        newRow();
        Made m;
        const Sample& s = kSamples[size_t(n) % std::size(kSamples)];
        m.text = QString::fromUtf16(s.text);
        m.readBack = QString::fromUtf16(s.readBack);
        m.kind = kind;
        const int diff = n % 3;
        m.start = at(2026, 11, 1 + n % 28, 6 + n % 14, (n * 7) % 60);
        m.end = core::VbDate(m.start.value + diff + core::TimeSerial(0, 45, 0).value);
        set(QStringLiteral("Start"), m.start);
        set(QStringLiteral("StartDate"), core::DateValue(m.start));
        set(QStringLiteral("DTEnd"), m.end);
        set(QStringLiteral("EndTime"), core::TimeValue(m.end));
        set(QStringLiteral("StartEndDiff"), int64_t(diff));
        set(QStringLiteral("Typ"), QString::fromUtf16(kTypes[typeIndex]));
        set(QString::fromUtf16(kStatus[typeIndex]), true);
        set(QStringLiteral("Description"), m.text);
        m.summary = n % 2 == 0;
        if (m.summary)
            set(QStringLiteral("Summary"), QStringLiteral("short"));
        // Alarms at the start: an earlier alarm would move the shown start, which
        // its own test covers.
        m.hasA = alarms & 1;
        m.hasD = alarms & 2;
        m.alarmA = m.alarmD = m.start;
        set(QStringLiteral("AAlarmFlag"), m.hasA);
        set(QStringLiteral("DAlarmFlag"), m.hasD);
        if (m.hasA)
            set(QStringLiteral("AAlarm"), core::TimeValue(m.start));
        if (m.hasD)
            set(QStringLiteral("DAlarm"), core::TimeValue(m.start));

        if (kind != Kind::Single) {
            static const char16_t* const types[] = {u"", u"D", u"W", u"W", u"M", u"Y"};
            set(QStringLiteral("ISRecurring"), true);
            set(QStringLiteral("RecurrenceType"), QString::fromUtf16(types[int(kind)]));
            set(QStringLiteral("RecurrenceDuration"), int64_t(0));
            set(QStringLiteral("PIMRecPatt"), core::DateValue(m.start));
            std::optional<int16_t> boxes;
            if (kind == Kind::WeeklyOneDay)
                boxes = m.mask = int16_t(1 << (core::Weekday(m.start) - 1));
            if (kind == Kind::WeeklyDays)
                boxes = m.mask = kSeveralDays;
            formats::vCalSetSerieFields(ctx, *table, boxes);
        }
        return m;
    }

    void readBackInto(const QByteArray& bytes) {
        newRow();
        QString t = formats::textFromCodePage(bytes);
        ASSERT_TRUE(formats::ParsEntryFromMobile(ctx, *table, t));
    }

    void expectSameEntry(const Made& m, bool olderModel, const std::string& what) {
        EXPECT_EQ(when(QStringLiteral("DTStart")), core::toQDateTime(m.start)) << what;
        EXPECT_EQ(when(QStringLiteral("Start")), core::toQDateTime(m.start)) << what;
        EXPECT_EQ(when(QStringLiteral("StartDate")), core::toQDateTime(core::DateValue(m.start))) << what;
        EXPECT_EQ(when(QStringLiteral("DTEnd")), core::toQDateTime(m.end)) << what;
        EXPECT_EQ(when(QStringLiteral("EndDate")), core::toQDateTime(core::DateValue(m.end))) << what;
        EXPECT_EQ(core::Format(get(QStringLiteral("EndTime")).toDate(), QStringLiteral("hh:mm:ss")),
                  core::Format(m.end, QStringLiteral("hh:mm:ss")))
            << what;
        EXPECT_EQ(flag(QStringLiteral("AAlarmFlag")), m.hasA) << what;
        EXPECT_EQ(flag(QStringLiteral("DAlarmFlag")), m.hasD) << what;
        EXPECT_EQ(flag(QStringLiteral("Alarm")), m.hasA || m.hasD) << what;
        if (m.hasA) {
            EXPECT_EQ(when(QStringLiteral("AAlarm")), core::toQDateTime(m.alarmA)) << what;
        }
        if (m.hasD) {
            EXPECT_EQ(when(QStringLiteral("DAlarm")), core::toQDateTime(m.alarmD)) << what;
        }
        EXPECT_EQ(text(QStringLiteral("Text")), m.readBack) << what;
        EXPECT_EQ(text(QStringLiteral("Description")), m.readBack) << what;
        // SUMMARY carries the description's encoded text, not the summary's, under a
        // head without parameters: it comes back still quoted-printable.
        if (m.summary) {
            EXPECT_EQ(text(QStringLiteral("Summary")), formats::StringToUniToUTFToQuoted(m.text)) << what;
        }

        const bool series = m.kind != Kind::Single;
        EXPECT_EQ(flag(QStringLiteral("ISRecurring")), series) << what;
        if (!series)
            return;
        static const char* const types[] = {"", "D", "W", "W", "M", "Y"};
        EXPECT_EQ(text(QStringLiteral("RecurrenceType")), QString::fromUtf8(types[int(m.kind)])) << what;
        EXPECT_EQ(text(QStringLiteral("Serie")), QString::fromUtf8(types[int(m.kind)])) << what;
        const bool weekly = m.kind == Kind::WeeklyOneDay || m.kind == Kind::WeeklyDays;
        EXPECT_EQ(get(QStringLiteral("RecurrenceIntervall")).toInt64(), weekly && olderModel ? 7 : 1) << what;
        // The older models' "D7" rule has no day list, so the mask stays behind.
        if (weekly && !olderModel) {
            EXPECT_EQ(get(QStringLiteral("Weekdaymask")).toInt64(), m.mask) << what;
        }
        if (m.kind == Kind::Monthly) {
            EXPECT_EQ(get(QStringLiteral("DayOfMonth")).toInt64(), core::Day(m.start)) << what;
            // Q33 keeps the monthly modifier; the other older models drop it.
            const bool drops = formats::modelIsOneOf(ctx.phone.MobileModel, {u"R52", u"Q52", u"P52"});
            EXPECT_EQ(text(QStringLiteral("ModKey")), drops ? QString() : QStringLiteral("D")) << what;
        }
        if (m.kind == Kind::Yearly) {
            EXPECT_EQ(text(QStringLiteral("ModKey")), olderModel ? QString() : QStringLiteral("D")) << what;
        }
    }
};

} // namespace

// Every type x series kind x alarm combination comes back as it went out.
TEST_P(vCalRoundTrip, EveryTypeKindAndAlarm) {
    ctx.phone.MobileModel = QString::fromUtf8(GetParam());
    const bool older = formats::modelIsOneOf(ctx.phone.MobileModel, {u"R52", u"Q52", u"P52", u"Q33"});
    int n = 0, rows = 0;
    for (int typeIndex = 0; typeIndex < 4; ++typeIndex) {
        for (Kind kind : kKinds) {
            for (int alarms = 0; alarms < 4; ++alarms, ++n) {
                const Made m = makeRow(n, typeIndex, kind, alarms);
                const QByteArray bytes = formats::calendarEntryBytes(formats::calendarEntryText(*table));
                // The phone gets 7-bit text only: everything else is quoted-printable.
                for (char c : bytes)
                    ASSERT_LT(uchar(c), 128u) << bytes.toStdString();
                readBackInto(bytes);
                const std::string what = "row " + std::to_string(n) + " " + bytes.toStdString();
                EXPECT_EQ(text(QStringLiteral("Typ")), QString::fromUtf16(kTypes[typeIndex])) << what;
                EXPECT_TRUE(flag(QString::fromUtf16(kStatus[typeIndex]))) << what;
                expectSameEntry(m, older, what);
                ++rows;
            }
        }
    }
    EXPECT_EQ(rows, 4 * 6 * 4);
    EXPECT_TRUE(ui.boxes.isEmpty());
}

INSTANTIATE_TEST_SUITE_P(Models, vCalRoundTrip, ::testing::Values("QX71", "R52", "Q33"));
