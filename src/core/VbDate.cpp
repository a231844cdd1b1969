// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/VbDate.h"

#include "core/Error.h"
#include "core/Value.h"

#include <QLocale>
#include <QRegularExpression>
#include <cmath>
#include <ctime>

namespace tsr::core {

namespace {

constexpr qint64 kSecondsPerDay = 86400;
const qint64 kDayZero = QDate(1899, 12, 30).toJulianDay();

// A date-time split into its whole day (counted from day 0) and the seconds of that day.
struct Parts {
    qint64 day;
    qint64 seconds;
};

Parts split(VbDate d) {
    const double whole = std::trunc(d.value);
    double frac = std::fabs(d.value - whole);
    qint64 seconds = std::llround(frac * kSecondsPerDay);
    qint64 day = qint64(whole);
    if (seconds >= kSecondsPerDay) { // rounding reached midnight
        seconds -= kSecondsPerDay;
        day += d.value < 0 ? -1 : 1;
    }
    return {day, seconds};
}

VbDate join(qint64 day, qint64 seconds) {
    const double frac = double(seconds) / kSecondsPerDay;
    return VbDate(day < 0 ? double(day) - frac : double(day) + frac);
}

// Seconds on a straight line, for arithmetic across day 0.
qint64 linearSeconds(VbDate d) {
    const Parts p = split(d);
    return p.day * kSecondsPerDay + p.seconds;
}

VbDate fromLinearSeconds(qint64 s) {
    qint64 day = s / kSecondsPerDay;
    qint64 sec = s % kSecondsPerDay;
    if (sec < 0) {
        sec += kSecondsPerDay;
        --day;
    }
    return join(day, sec);
}

QDate dateOf(VbDate d) {
    return QDate::fromJulianDay(kDayZero + split(d).day);
}

VbDate withDate(const QDate& date, qint64 seconds) {
    return join(date.toJulianDay() - kDayZero, seconds);
}

} // namespace

VbDate fromQDate(const QDate& d) {
    return VbDate(double(d.toJulianDay() - kDayZero));
}

VbDate fromQDateTime(const QDateTime& dt) {
    const QTime t = dt.time();
    return withDate(dt.date(), t.hour() * 3600 + t.minute() * 60 + t.second());
}

QDate toQDate(VbDate d) {
    return dateOf(d);
}

QDateTime toQDateTime(VbDate d) {
    const Parts p = split(d);
    return QDateTime(QDate::fromJulianDay(kDayZero + p.day), QTime(0, 0).addSecs(int(p.seconds)));
}

VbDate utcToLocal(VbDate utc) {
    // Straight through the C library: a QDateTime in local time asks the system to
    // read its zone file again on every conversion, and a read converts thousands.
    constexpr qint64 kUnixDayZero = 25569; // 1970-01-01
    const time_t t = time_t(linearSeconds(utc) - kUnixDayZero * kSecondsPerDay);
    tm local{};
    if (!localtime_r(&t, &local))
        return utc;
    const QDate date(local.tm_year + 1900, local.tm_mon + 1, local.tm_mday);
    return withDate(date, local.tm_hour * 3600 + local.tm_min * 60 + local.tm_sec);
}

VbDate DateSerial(int year, int month, int day) {
    // Months and days out of range roll over, as the classic DateSerial does.
    if (year >= 0 && year < 30)
        year += 2000;
    else if (year >= 30 && year < 100)
        year += 1900;
    const int m0 = month - 1;
    const int y = year + (m0 >= 0 ? m0 / 12 : -((11 - m0) / 12));
    const int m = ((m0 % 12) + 12) % 12 + 1;
    const QDate first(y, m, 1);
    return fromQDate(first.addDays(day - 1));
}

VbDate TimeSerial(int hour, int minute, int second) {
    return fromLinearSeconds(qint64(hour) * 3600 + qint64(minute) * 60 + second);
}

VbDate DateValue(VbDate d) {
    return VbDate(double(split(d).day));
}

VbDate TimeValue(VbDate d) {
    return VbDate(double(split(d).seconds) / kSecondsPerDay);
}

int Year(VbDate d) {
    return dateOf(d).year();
}
int Month(VbDate d) {
    return dateOf(d).month();
}
int Day(VbDate d) {
    return dateOf(d).day();
}
int Hour(VbDate d) {
    return int(split(d).seconds / 3600);
}
int Minute(VbDate d) {
    return int(split(d).seconds / 60 % 60);
}
int Second(VbDate d) {
    return int(split(d).seconds % 60);
}

int Weekday(VbDate d, int firstDayOfWeek) {
    const int sundayBased = dateOf(d).dayOfWeek() % 7 + 1; // Qt: Monday 1 .. Sunday 7
    return (sundayBased - firstDayOfWeek + 7) % 7 + 1;
}

static QDate addMonths(const QDate& date, qint64 months) {
    return date.addMonths(int(months)); // clamps the day to the month's end
}

VbDate DateAdd(const QString& interval, double number, VbDate d) {
    const qint64 n = qint64(std::trunc(number));
    const QString i = interval.toLower();
    const Parts p = split(d);
    if (i == u"d" || i == u"y" || i == u"w")
        return withDate(dateOf(d).addDays(n), p.seconds);
    if (i == u"ww")
        return withDate(dateOf(d).addDays(7 * n), p.seconds);
    if (i == u"m")
        return withDate(addMonths(dateOf(d), n), p.seconds);
    if (i == u"q")
        return withDate(addMonths(dateOf(d), 3 * n), p.seconds);
    if (i == u"yyyy")
        return withDate(addMonths(dateOf(d), 12 * n), p.seconds);
    if (i == u"h")
        return fromLinearSeconds(linearSeconds(d) + n * 3600);
    if (i == u"n")
        return fromLinearSeconds(linearSeconds(d) + n * 60);
    if (i == u"s")
        return fromLinearSeconds(linearSeconds(d) + n);
    raise(err::InvalidProcedureCall, QStringLiteral("DateAdd"));
}

static qint64 floorDiv(qint64 a, qint64 b) {
    qint64 q = a / b;
    if ((a % b != 0) && ((a < 0) != (b < 0)))
        --q;
    return q;
}

qint64 DateDiff(const QString& interval, VbDate d1, VbDate d2, int firstDayOfWeek) {
    const QString i = interval.toLower();
    const QDate a = dateOf(d1), b = dateOf(d2);
    if (i == u"d" || i == u"y")
        return a.daysTo(b);
    if (i == u"w")
        return a.daysTo(b) / 7;
    if (i == u"ww") {
        // Counts the first days of the week between the two dates.
        auto weekStart = [&](const QDate& x) { return x.addDays(-(Weekday(fromQDate(x), firstDayOfWeek) - 1)); };
        return weekStart(a).daysTo(weekStart(b)) / 7;
    }
    if (i == u"m")
        return qint64(b.year() - a.year()) * 12 + (b.month() - a.month());
    if (i == u"q")
        return qint64(b.year() - a.year()) * 4 + ((b.month() - 1) / 3 - (a.month() - 1) / 3);
    if (i == u"yyyy")
        return b.year() - a.year();
    const qint64 s1 = linearSeconds(d1), s2 = linearSeconds(d2);
    if (i == u"h")
        return floorDiv(s2, 3600) - floorDiv(s1, 3600);
    if (i == u"n")
        return floorDiv(s2, 60) - floorDiv(s1, 60);
    if (i == u"s")
        return s2 - s1;
    raise(err::InvalidProcedureCall, QStringLiteral("DateDiff"));
}

// --- Format --------------------------------------------------------------

namespace {

void appendPad2(QString& out, int v) {
    if (v >= 0 && v < 100) {
        out += QChar(u'0' + v / 10);
        out += QChar(u'0' + v % 10);
    } else {
        out += QStringLiteral("%1").arg(v, 2, 10, QLatin1Char('0'));
    }
}

void appendYear(QString& out, int y) {
    if (y >= 0 && y <= 9999) {
        for (int div = 1000; div > 0; div /= 10)
            out += QChar(u'0' + y / div % 10);
    } else {
        out += QStringLiteral("%1").arg(y, 4, 10, QLatin1Char('0'));
    }
}

int weekOfYear(const QDate& date) {
    const QDate jan1(date.year(), 1, 1);
    const int jan1Weekday = jan1.dayOfWeek() % 7; // Sunday 0
    return (date.dayOfYear() - 1 + jan1Weekday) / 7 + 1;
}

bool startsWithAt(QStringView mask, int at, QStringView word) {
    return mask.mid(at, word.size()).compare(word, Qt::CaseInsensitive) == 0;
}

} // namespace

// Masks are formatted for every row of a read, so nothing here allocates more than the result.
QString Format(VbDate d, const QString& maskIn) {
    QStringView mask = maskIn;
    if (maskIn.compare(u"short date", Qt::CaseInsensitive) == 0)
        mask = u"dd.mm.yyyy";
    else if (maskIn.compare(u"long date", Qt::CaseInsensitive) == 0)
        mask = u"dddd, d. mmmm yyyy";
    else if (maskIn.compare(u"short time", Qt::CaseInsensitive) == 0)
        mask = u"hh:nn";
    else if (maskIn.compare(u"medium time", Qt::CaseInsensitive) == 0)
        mask = u"hh:nn AMPM";
    else if (maskIn.compare(u"long time", Qt::CaseInsensitive) == 0)
        mask = u"hh:nn:ss";
    else if (maskIn.compare(u"general date", Qt::CaseInsensitive) == 0)
        return dateText(d);

    const QDate date = dateOf(d);
    int year = 0, month = 0, day = 0;
    date.getDate(&year, &month, &day);
    const Parts p = split(d);
    const int hour = int(p.seconds / 3600), minute = int(p.seconds / 60 % 60), second = int(p.seconds % 60);

    // A mask that asks for a day-part mark anywhere counts hours on a 12-hour clock.
    const bool twelve = mask.contains(u"AM/PM", Qt::CaseInsensitive) || mask.contains(u"A/P", Qt::CaseInsensitive) ||
                        mask.contains(u"AMPM", Qt::CaseInsensitive);

    QString out;
    out.reserve(mask.size() + 8);
    bool lastWasHour = false;
    const int n = int(mask.size());
    auto countRun = [&](int at, QChar c) {
        int k = at;
        while (k < n && mask[k].toLower() == c)
            ++k;
        return k - at;
    };
    // True when the next date-time letter after `at` is an "s": "mm" before seconds means minutes.
    auto secondsFollow = [&](int at) {
        for (int k = at; k < n; ++k) {
            const QChar c = mask[k].toLower();
            if (c == u's')
                return true;
            if (QStringView(u"dmyhnwq").contains(c))
                return false;
        }
        return false;
    };
    for (int i = 0; i < n;) {
        const QChar c = mask[i];
        const QChar lc = c.toLower();
        if (c == u'"') {
            const int end = int(mask.indexOf(u'"', i + 1));
            out += mask.mid(i + 1, end < 0 ? n - i - 1 : end - i - 1);
            i = end < 0 ? n : end + 1;
            continue;
        }
        if (c == u'\\' && i + 1 < n) {
            out += mask[i + 1];
            i += 2;
            continue;
        }
        if (startsWithAt(mask, i, u"AM/PM")) {
            const bool upper = mask[i].isUpper();
            out += hour >= 12 ? (upper ? u"PM" : u"pm") : (upper ? u"AM" : u"am");
            i += 5;
            continue;
        }
        if (startsWithAt(mask, i, u"AMPM")) {
            const QLocale locale;
            out += hour >= 12 ? locale.pmText() : locale.amText();
            i += 4;
            continue;
        }
        if (startsWithAt(mask, i, u"A/P")) {
            const bool pm = hour >= 12;
            out += mask[i].isUpper() ? (pm ? u'P' : u'A') : (pm ? u'p' : u'a');
            i += 3;
            continue;
        }
        const int run = countRun(i, lc);
        if (lc == u'd') {
            if (run >= 4)
                out += QLocale().dayName(date.dayOfWeek(), QLocale::LongFormat);
            else if (run == 3)
                out += QLocale().dayName(date.dayOfWeek(), QLocale::ShortFormat);
            else if (run == 2)
                appendPad2(out, day);
            else
                out += QString::number(day);
            i += std::min(run, 4);
            lastWasHour = false;
        } else if (lc == u'm') {
            const bool minutes = run <= 2 && (lastWasHour || secondsFollow(i + run));
            if (minutes) {
                if (run == 2)
                    appendPad2(out, minute);
                else
                    out += QString::number(minute);
            } else if (run >= 4) {
                out += QLocale().monthName(month, QLocale::LongFormat);
            } else if (run == 3) {
                out += QLocale().monthName(month, QLocale::ShortFormat);
            } else if (run == 2) {
                appendPad2(out, month);
            } else {
                out += QString::number(month);
            }
            i += std::min(run, 4);
            lastWasHour = false;
        } else if (lc == u'y') {
            if (run >= 3) {
                appendYear(out, year);
                i += std::min(run, 4);
            } else if (run == 2) {
                appendPad2(out, year % 100);
                i += 2;
            } else {
                out += QString::number(date.dayOfYear());
                i += 1;
            }
            lastWasHour = false;
        } else if (lc == u'h') {
            int h = hour;
            if (twelve) {
                h = hour % 12;
                if (h == 0)
                    h = 12;
            }
            if (run >= 2)
                appendPad2(out, h);
            else
                out += QString::number(h);
            i += std::min(run, 2);
            lastWasHour = true;
        } else if (lc == u'n') {
            if (run >= 2)
                appendPad2(out, minute);
            else
                out += QString::number(minute);
            i += std::min(run, 2);
            lastWasHour = false;
        } else if (lc == u's') {
            if (run >= 2)
                appendPad2(out, second);
            else
                out += QString::number(second);
            i += std::min(run, 2);
            lastWasHour = false;
        } else if (lc == u'w') {
            if (run >= 2) {
                out += QString::number(weekOfYear(date));
                i += 2;
            } else {
                out += QString::number(Weekday(d));
                i += 1;
            }
            lastWasHour = false;
        } else if (lc == u'q') {
            out += QString::number((month - 1) / 3 + 1);
            i += 1;
        } else {
            out += c;
            ++i;
        }
    }
    return out;
}

// --- parsing -------------------------------------------------------------

static int expandYear(int y, int digits) {
    if (digits <= 2)
        return y < 30 ? 2000 + y : 1900 + y;
    return y;
}

std::optional<VbDate> parseDate(const QString& textIn, const QString& dateMask, const QString& timeMask) {
    Q_UNUSED(timeMask);
    QString text = textIn.trimmed();
    if (text.isEmpty())
        return std::nullopt;

    // The time: hours and minutes joined by a colon, seconds optional, a day-part mark optional.
    static const QRegularExpression timeColonRe(
        QStringLiteral(R"((\d{1,2}):(\d{1,2})(?::(\d{1,2}))?\s*(AM|PM|A|P)?(?=\s|$))"),
        QRegularExpression::CaseInsensitiveOption);
    qint64 seconds = 0;
    bool hasTime = false;
    auto tm = timeColonRe.match(text);
    if (tm.hasMatch()) {
        int h = tm.captured(1).toInt(), m = tm.captured(2).toInt(), s = tm.captured(3).toInt();
        const QString mark = tm.captured(4).toUpper();
        if (!mark.isEmpty()) {
            if (h < 1 || h > 12)
                return std::nullopt;
            h = h % 12 + (mark.startsWith(u'P') ? 12 : 0);
        }
        if (h > 23 || m > 59 || s > 59)
            return std::nullopt;
        seconds = h * 3600 + m * 60 + s;
        hasTime = true;
        text.remove(tm.capturedStart(), tm.capturedLength());
    }

    static const QRegularExpression numRe(QStringLiteral(R"(\d+)"));
    QList<QString> groups;
    for (auto it = numRe.globalMatch(text); it.hasNext();)
        groups << it.next().captured();
    QString rest = text;
    rest.remove(numRe);
    static const QRegularExpression sepRe(QStringLiteral(R"([\s./\-,T]+)"));
    rest.remove(sepRe);
    if (!rest.isEmpty())
        return std::nullopt;

    if (groups.isEmpty())
        return hasTime ? std::optional<VbDate>(join(0, seconds)) : std::nullopt;
    if (groups.size() != 3)
        return std::nullopt;

    // The order of day, month and year follows the date mask; a four-digit first group is year first.
    int posD = int(dateMask.indexOf(u'd', 0, Qt::CaseInsensitive));
    int posM = int(dateMask.indexOf(u'm', 0, Qt::CaseInsensitive));
    int posY = int(dateMask.indexOf(u'y', 0, Qt::CaseInsensitive));
    if (posD < 0 || posM < 0 || posY < 0) {
        posD = 0;
        posM = 1;
        posY = 2;
    }
    int order[3]; // order[k]: which of d(0), m(1), y(2) stands k-th
    {
        std::pair<int, int> ps[3] = {{posD, 0}, {posM, 1}, {posY, 2}};
        std::sort(std::begin(ps), std::end(ps));
        for (int k = 0; k < 3; ++k)
            order[k] = ps[k].second;
    }
    if (groups[0].size() == 4) {
        order[0] = 2;
        order[1] = 1;
        order[2] = 0;
    }
    int vals[3] = {0, 0, 0};
    int yearDigits = 4;
    for (int k = 0; k < 3; ++k) {
        vals[order[k]] = groups[k].toInt();
        if (order[k] == 2)
            yearDigits = int(groups[k].size());
    }
    const QDate date(expandYear(vals[2], yearDigits), vals[1], vals[0]);
    if (!date.isValid())
        return std::nullopt;
    return withDate(date, seconds);
}

} // namespace tsr::core
