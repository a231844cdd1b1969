// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/Numbers.h"

#include "core/Error.h"

#include <QRegularExpression>
#include <cmath>
#include <limits>

namespace tsr::core {

double Val(const QString& text) {
    static const QRegularExpression re(QStringLiteral(R"(^[ \t]*([+-]?(\d+\.?\d*|\.\d+)([eE][+-]?\d+)?))"));
    const auto m = re.match(text);
    return m.hasMatch() ? m.captured(1).toDouble() : 0.0;
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
