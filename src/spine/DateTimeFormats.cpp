// SPDX-License-Identifier: GPL-3.0-or-later
#include "spine/DateTimeFormats.h"

#include "core/Error.h"
#include "spine/RegistrySettings.h"
#include "spine/RegistryStore.h"

namespace tsr::spine {

namespace {

// The locale query hands its texts over in a buffer of 40 characters.
constexpr int QueryBuffer = 40;
constexpr int32_t InsufficientBuffer = 122;

QString queried(const QString& text, const QString& item) {
    if (text.size() >= QueryBuffer)
        core::raise(InsufficientBuffer, QStringLiteral("RegDateTimeFormatGet"), item);
    return text;
}

} // namespace

QString dayHalfMark(const QString& text) {
    return text.left(QueryBuffer - 1);
}

namespace {

bool isMarkAt(const QString& f, qsizetype i) {
    return f[i] == u'A' || f[i] == u'a';
}

// Where the day-part mark and the hour stand in a locale's time format.
qsizetype firstOf(const QString& f, auto pred) {
    bool quoted = false;
    for (qsizetype i = 0; i < f.size(); ++i) {
        if (f[i] == u'\'')
            quoted = !quoted;
        else if (!quoted && pred(f, i))
            return i;
    }
    return -1;
}

// A date as the platform's date check takes it: years 100 to 9999 only.
std::optional<core::VbDate> asDate(const QString& text, const QString& format) {
    const auto d = core::parseDate(text, format, QString());
    if (!d || core::Year(*d) < 100 || core::Year(*d) > 9999)
        return std::nullopt;
    return d;
}

} // namespace

QString maskFromLocaleFormat(const QString& f) {
    QString out;
    for (qsizetype i = 0; i < f.size();) {
        const QChar c = f[i];
        if (c == u'\'') {
            const qsizetype end = f.indexOf(u'\'', i + 1);
            const QString literal = f.mid(i + 1, end < 0 ? -1 : end - i - 1);
            if (!literal.isEmpty())
                out += u'"' + literal + u'"';
            else if (end == i + 1)
                out += u'\'';
            i = end < 0 ? f.size() : end + 1;
            continue;
        }
        qsizetype run = 1;
        while (i + run < f.size() && f[i + run] == c)
            ++run;
        switch (c.unicode()) {
        case u'd':
        case u'y':
        case u's':
            out += QString(run, c);
            break;
        case u'M':
            out += QString(run, u'm');
            break;
        case u'm':
            out += QString(std::min<qsizetype>(run, 2), u'm');
            break;
        case u'H':
        case u'h':
            out += QString(std::min<qsizetype>(run, 2), u'h');
            break;
        case u'A':
            out += QStringLiteral("AM/PM");
            if (i + 1 < f.size() && f[i + 1] == u'P')
                ++run;
            break;
        case u'a':
            out += QStringLiteral("am/pm");
            if (i + 1 < f.size() && f[i + 1] == u'p')
                ++run;
            break;
        case u'z':
        case u't':
            break;
        default:
            out += QString(run, c);
        }
        i += run;
    }
    // Leaving out the time zone leaves its blank behind.
    return out.simplified();
}

QString separatorOf(const QString& f) {
    bool quoted = false;
    for (const QChar c : f) {
        if (c == u'\'')
            quoted = !quoted;
        else if (!quoted && !c.isLetter())
            return QString(c);
    }
    return {};
}

QString repairDateFormat(const QString& format, const QString& dateChar, core::VbDate today) {
    const QString fallback = QStringLiteral("yy") + dateChar + QStringLiteral("mm") + dateChar + QStringLiteral("dd");
    if (format.size() <= 2)
        return fallback;
    if (asDate(core::Format(today, format), format))
        return format;
    QStringList parts = dateChar.isEmpty() ? QStringList{format} : format.split(dateChar);
    for (QString& part : parts)
        part = part.left(4);
    const QString rebuilt = parts.join(dateChar);
    const auto back = asDate(core::Format(today, rebuilt), rebuilt);
    if (!back || core::DateValue(*back) != today)
        return fallback;
    return rebuilt;
}

QString BuildTimeNosSecFormat(const core::DateFormats& formats) {
    const QString& format = formats.TimeFormat;
    if (!format.contains(u's', Qt::CaseInsensitive))
        return format;
    QStringList kept;
    for (const QString& part : format.split(u' ', Qt::SkipEmptyParts)) {
        const QString upper = part.toUpper();
        if (upper.contains(u'S') && (upper.contains(u'H') || upper.contains(u'M'))) {
            QStringList pieces;
            for (const QString& piece : part.split(formats.TimeChar)) {
                const QString up = piece.toUpper();
                if (!up.contains(u'S') && (up.contains(u'H') || up.contains(u'M')))
                    pieces << piece;
            }
            kept << pieces.join(formats.TimeChar);
        } else if (formats.TimeIs24 || !(upper.contains(u'A') && upper.contains(u'P'))) {
            kept << part;
        }
    }
    QString result = kept.join(u' ');
    if (!formats.TimeIs24)
        result += u' ' + formats.TimeMark;
    return result;
}

void RegDateTimeFormatGet(core::Context& ctx, const QLocale& locale) {
    core::DateFormats& f = ctx.formats;
    f = core::DateFormats{};
    core::Value unused;
    RegValueGet(ctx, HKEY_CURRENT_USER, KeyInternational, QStringLiteral("Locale"), unused);
    try {
        const QString shortDate = locale.dateFormat(QLocale::ShortFormat);
        const QString longTime = locale.timeFormat(QLocale::LongFormat);
        f.DateChar = queried(separatorOf(shortDate), QStringLiteral("DateChar"));
        f.DateFormat = queried(maskFromLocaleFormat(shortDate), QStringLiteral("Shortdate"));
        f.DateFormat = repairDateFormat(f.DateFormat, f.DateChar, ctx.clock.Date());
        f.TimeFormat = queried(maskFromLocaleFormat(longTime), QStringLiteral("Shorttime"));
        f.TimeChar = queried(separatorOf(longTime), QStringLiteral("TimeChar"));
        const qsizetype mark = firstOf(longTime, isMarkAt);
        f.TimeIs24 = mark < 0 ? 1 : 0;
        f.TimeAM = dayHalfMark(locale.amText());
        f.TimeMarkPM = dayHalfMark(locale.pmText());
        if (f.TimeIs24) {
            f.GridTimeStyle = QStringLiteral("Short Time");
            f.TimeMark.clear();
        } else {
            f.GridTimeStyle = QStringLiteral("Medium Time");
            f.TimeMark = f.TimeAM + f.TimeMarkPM;
        }
        const qsizetype hour = firstOf(longTime, [](const QString& s, qsizetype i) { return s[i].toLower() == u'h'; });
        f.TimeMarkPos = (mark >= 0 && mark < hour) ? 1 : 0;
        f.TimeFormatNoSec = BuildTimeNosSecFormat(f);
        f.DateTimeFormat = f.TimeFormatNoSec + u' ' + f.DateFormat;
    } catch (const core::TsrError& e) {
        showSettingsError(ctx, e, QStringLiteral("RegDateTimeFormatGet"));
    }
}

} // namespace tsr::spine
