// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/CreateTime.h"

#include "core/ErrorReport.h"
#include "core/Numbers.h"

#include <QStringList>
#include <cmath>

namespace tsr::core {

VbDate CreateTime(Context& ctx, const QString& text) {
    return guarded(ctx, QStringLiteral("Allgemein"), QStringLiteral("CreateTime"), TimeValue(ctx.clock.Now()), [&] {
        const VbDate now = ctx.clock.Now();
        const QString& separator = ctx.formats.TimeChar;
        const QString& format = ctx.formats.TimeFormat;
        if (text.size() < 4 || separator.isEmpty() || !format.contains(separator))
            return TimeValue(now);

        // The day-half mark stands in front of the time or behind it. Every blank
        // splits, so a second blank makes an empty piece that counts in that choice.
        const QStringList pieces = text.split(u' ');
        const qsizetype timeIndex = (ctx.formats.TimeMarkPos == 1 && pieces.size() > 1) ? 1 : 0;
        const QStringList values = pieces.value(timeIndex).split(separator);
        const QStringList parts = format.split(separator);

        int hms[3] = {Hour(now), Minute(now), Second(now)};
        for (qsizetype i = 0; i < std::min(values.size(), parts.size()); ++i) {
            const QString part = parts[i].trimmed();
            const QChar kind = part.isEmpty() ? QChar() : part.front().toLower();
            const int slot = kind == u'h' ? 0 : kind == u'm' ? 1 : kind == u's' ? 2 : -1;
            if (slot < 0)
                continue;
            // A piece that is no number ends the reading. A number past its unit
            // carries over as a clock does: "25:10" is 01:10 of the next day, and
            // the result then holds that day. Beyond 16 bits it is an overflow.
            if (!IsNumeric(values[i]))
                break;
            hms[slot] = CInt(std::trunc(Val(values[i])));
        }
        const VbDate today = DateValue(now);
        const VbDate at(today.value + TimeSerial(hms[0], hms[1], hms[2]).value);
        return VbDate(at.value - today.value);
    });
}

void CreateTimeFromString(Context& ctx, const QString& text, VbDate& time) {
    guarded(ctx, QStringLiteral("Allgemein"), QStringLiteral("CreateTimeFromString"), [&] {
        // A bare number would read as a count of days; the piece comparison below
        // catches that and hands such a text to CreateTime.
        std::optional<VbDate> read;
        if (IsNumeric(text))
            read = VbDate(Val(text));
        else
            read = parseDate(text, ctx.formats.DateFormat, ctx.formats.TimeFormat);
        if (!read || read->value >= 1 || read->value < 0) {
            time = CreateTime(ctx, text);
            return;
        }
        const VbDate value = TimeValue(*read);
        const QStringList typed = text.split(u' ', Qt::SkipEmptyParts);
        const QStringList shown = Format(value, ctx.formats.TimeFormat).split(u' ', Qt::SkipEmptyParts);
        for (qsizetype i = 0; i < typed.size(); ++i) {
            if (!shown.value(i).startsWith(typed[i], Qt::CaseInsensitive)) {
                time = CreateTime(ctx, text);
                return;
            }
        }
        time = value;
    });
}

} // namespace tsr::core
