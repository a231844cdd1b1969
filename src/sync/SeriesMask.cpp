// SPDX-License-Identifier: GPL-3.0-or-later
// Day masks and series length limits (module Allgemein).
#include "sync/SeriesMask.h"

#include "core/ErrorReport.h"
#include "tables/Recordset.h"

#include <QLocale>
#include <QStringList>

namespace tsr::sync {

using core::VbDate;

namespace {
const QString kModul = QStringLiteral("Allgemein");

// The mask taken apart in seven rounds: the lowest bit, then (value - bit) / 2.
std::array<bool, 7> maskFlags(int32_t mask) {
    std::array<bool, 7> flags{};
    int64_t value = mask;
    for (int i = 0; i < 7; ++i) {
        const int64_t bit = value % 2 != 0 ? 1 : 0;
        flags[size_t(i)] = bit != 0;
        value = (value - bit) / 2;
    }
    return flags;
}
} // namespace

QString DayOfWeekMaskToString(core::Context& ctx, int64_t mask) {
    return core::guarded(ctx, kModul, QStringLiteral("DayOfWeekMaskToString"), QString(),
                         [&] { return core::DayOfWeekMaskToString(mask); });
}

int16_t StringToDayOfWeekMask(core::Context& ctx, const QString& text) {
    return core::guarded(ctx, kModul, QStringLiteral("StringToDayOfWeekMask"), int16_t(0),
                         [&] { return core::StringToDayOfWeekMask(text); });
}

WeekdayBoxes BinärtoCheckbox(int32_t mask) {
    return maskFlags(mask);
}

int32_t CheckBoxToBinär(const WeekdayBoxes& boxes) {
    int32_t mask = 0;
    for (int i = 0; i < 7; ++i)
        if (boxes[size_t(i)])
            mask += core::BitToDec(i);
    return mask;
}

QString setString(int n) {
    return n > 0 ? QString(n, u'w') : QString();
}

int32_t MoveWeekdayInMask(core::Context& ctx, int32_t mask, VbDate oldDate, VbDate newDate) {
    return core::guarded(ctx, kModul, QStringLiteral("MoveWeekdayInMask"), mask, [&] {
        const int32_t oldBit = core::BitToDec(core::Weekday(oldDate, 1) - 1);
        const int32_t newBit = core::BitToDec(core::Weekday(newDate, 1) - 1);
        int32_t result = mask;
        if (maskFlags(result)[size_t(core::Weekday(oldDate, 1) - 1)])
            result -= oldBit;
        if (!maskFlags(result)[size_t(core::Weekday(newDate, 1) - 1)])
            result += newBit;
        return result;
    });
}

int32_t WeekSeriesmaxDiff(core::Context& ctx, int32_t mask) {
    return core::guarded(ctx, kModul, QStringLiteral("WeekSeriesmaxDiff"), int32_t(0), [&] {
        const auto flags = maskFlags(mask);
        int first = 0;
        while (first < 7 && !flags[size_t(first)])
            ++first;
        // The count starts again only when best improves; on a set day that does not
        // improve it the count runs on. The result is only ever a limit, so it stays.
        int best = 0;
        int count = 0;
        for (int i = 1; i <= 7; ++i) {
            const int day = (first + i) % 7;
            ++count;
            if (flags[size_t(day)] && (best == 0 || best > count)) {
                best = count;
                count = 0;
            }
        }
        return int32_t(best * 24);
    });
}

void SerieControl(core::Context& ctx, tables::Recordset& table, SerieKind kind, VbDate start, VbDate end,
                  int16_t& Refuse) {
    core::guarded(ctx, kModul, QStringLiteral("SerieControl"), [&] {
        const qint64 minutes = core::DateDiff(QStringLiteral("n"), start, end);
        if (Refuse && kind == SerieKind::Daily && minutes > 1440)
            Refuse = 0;
        if (Refuse && kind == SerieKind::Weekly) {
            const auto mask = int32_t(table.value(QStringLiteral("Weekdaymask")).toInt64());
            if (minutes > qint64(WeekSeriesmaxDiff(ctx, mask)) * 60)
                Refuse = 0;
        }
        if (Refuse && kind == SerieKind::Monthly && minutes > 40320)
            Refuse = 0;
        if (Refuse && kind == SerieKind::Yearly && minutes > 525600)
            Refuse = 0;
    });
}

VbDate startDate_act(core::Context& ctx, std::optional<VbDate> date, const WeekdayBoxes& boxes, bool weekly) {
    const VbDate from = date ? *date : ctx.clock.Date();
    return core::guarded(ctx, kModul, QStringLiteral("startDate_act"), from, [&] {
        const int weekday = core::Weekday(from, 1);
        for (int days = 1; days <= 7; ++days) {
            if (boxes[size_t((weekday - 1 + days) % 7)])
                return weekly ? core::DateAdd(QStringLiteral("d"), days, from) : from;
        }
        return from;
    });
}

QString SetShortDate(core::Context& ctx, int languageId) {
    return core::guarded(ctx, kModul, QStringLiteral("SetShortDate"), QString(), [&] {
        const QLocale locale;
        QString text;
        for (int i = 0; i < 7; ++i) {
            // QLocale counts Monday 1 ... Sunday 7.
            QString name = locale.dayName(i == 0 ? 7 : i, QLocale::ShortFormat);
            if ((languageId == 2052 || languageId == 1028) && !name.isEmpty())
                name = name.right(1);
            text += name + u',';
        }
        return text;
    });
}

} // namespace tsr::sync
