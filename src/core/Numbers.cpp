// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/Numbers.h"

#include "core/Error.h"

#include <cmath>
#include <limits>

namespace tsr::core {

double Val(QStringView text) {
    // The leading number: blanks and tabs, a sign, digits with a point (or a
    // point and digits), an exponent with at least one digit.
    const qsizetype n = text.size();
    qsizetype i = 0;
    while (i < n && (text[i] == u' ' || text[i] == u'\t'))
        ++i;
    const qsizetype start = i;
    if (i < n && (text[i] == u'+' || text[i] == u'-'))
        ++i;
    auto digitsFrom = [&text, n](qsizetype k) {
        while (k < n && text[k] >= u'0' && text[k] <= u'9')
            ++k;
        return k;
    };
    qsizetype end = digitsFrom(i);
    if (end > i) {
        if (end < n && text[end] == u'.')
            end = digitsFrom(end + 1);
    } else if (i < n && text[i] == u'.' && digitsFrom(i + 1) > i + 1) {
        end = digitsFrom(i + 1);
    } else {
        return 0.0;
    }
    if (end < n && (text[end] == u'e' || text[end] == u'E')) {
        qsizetype k = end + 1;
        if (k < n && (text[k] == u'+' || text[k] == u'-'))
            ++k;
        if (const qsizetype last = digitsFrom(k); last > k)
            end = last;
    }
    return text.mid(start, end - start).toDouble();
}

static double roundHalfEven(double v) {
    return std::nearbyint(v); // the default rounding mode rounds halves to even
}

int16_t CInt(double value) {
    const double r = roundHalfEven(value);
    if (!(r >= std::numeric_limits<int16_t>::min() && r <= std::numeric_limits<int16_t>::max()))
        raise(err::Overflow);
    return int16_t(r);
}

int32_t CLng(double value) {
    const double r = roundHalfEven(value);
    if (!(r >= std::numeric_limits<int32_t>::min() && r <= std::numeric_limits<int32_t>::max()))
        raise(err::Overflow);
    return int32_t(r);
}

int16_t toInt16(qint64 value) {
    if (value < std::numeric_limits<int16_t>::min() || value > std::numeric_limits<int16_t>::max())
        raise(err::Overflow);
    return int16_t(value);
}

bool IsNumeric(const QString& text) {
    bool ok = false;
    text.trimmed().toDouble(&ok);
    return ok;
}

} // namespace tsr::core
