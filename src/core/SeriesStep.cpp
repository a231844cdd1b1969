// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/SeriesStep.h"

#include "core/Numbers.h"

#include <QStringList>
#include <array>

namespace tsr::core {

namespace {
constexpr std::array<const char16_t*, 7> kDayTokens = {u"SU", u"MO", u"TU", u"WE", u"TH", u"FR", u"SA"};
constexpr int64_t kWeekBits = 127;
} // namespace

QString DayOfWeekMaskToString(int64_t mask) {
    QString out;
    // The mask is taken apart as the phone's day list is read: lowest bit first.
    int64_t rest = mask;
    for (int day = 0; day < 7; ++day) {
        const int64_t bit = rest & 1;
        rest = (rest - bit) / 2;
        if (bit == 0)
            continue;
        if (!out.isEmpty())
            out += u' ';
        out += QString::fromUtf16(kDayTokens[size_t(day)]);
    }
    return out;
}

int16_t StringToDayOfWeekMask(QStringView text) {
    int64_t sum = 0;
    for (QStringView token : text.tokenize(u' ')) {
        const QString upper = token.toString().toUpper();
        for (int day = 0; day < 7; ++day) {
            if (upper == QStringView(kDayTokens[size_t(day)])) {
                sum += BitToDec(day);
                break;
            }
        }
    }
    return toInt16(sum);
}

int32_t BitToDec(int n) {
    int32_t value = 1;
    for (int i = 0; i < n; ++i)
        value *= 2;
    return value;
}

bool isSingleDayMask(int64_t mask) {
    return mask > 0 && mask <= kWeekBits && (mask & (mask - 1)) == 0;
}

QString seriesStepInterval(const QString& recurrenceType) {
    if (recurrenceType == u"W")
        return QStringLiteral("ww");
    if (recurrenceType == u"M")
        return QStringLiteral("m");
    if (recurrenceType == u"Y")
        return QStringLiteral("yyyy");
    return QStringLiteral("d");
}

std::optional<VbDate> stepIntoPeriod(VbDate from, const QString& interval, VbDate periodStart, VbDate periodEnd) {
    VbDate d = from;
    while (d < periodStart)
        d = DateAdd(interval, 1, d);
    if (d > periodEnd)
        return std::nullopt;
    return d;
}

int daysToNextMaskDay(int weekday, int64_t mask) {
    for (int k = 1; k <= 7; ++k) {
        const int day = (weekday - 1 + k) % 7; // 0 = Sunday
        if (mask & BitToDec(day))
            return k;
    }
    return 0;
}

std::optional<VbDate> stepMaskIntoPeriod(VbDate from, int64_t mask, VbDate periodStart, VbDate periodEnd) {
    if ((mask & kWeekBits) == 0)
        return std::nullopt;
    VbDate d = from;
    if ((mask & BitToDec(Weekday(d) - 1)) == 0)
        d = DateAdd(QStringLiteral("d"), daysToNextMaskDay(Weekday(d), mask), d);
    while (d < periodStart)
        d = DateAdd(QStringLiteral("d"), daysToNextMaskDay(Weekday(d), mask), d);
    if (d > periodEnd)
        return std::nullopt;
    return d;
}

} // namespace tsr::core
