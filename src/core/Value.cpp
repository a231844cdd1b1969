// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/Value.h"

#include "core/Error.h"
#include "core/Numbers.h"

#include <cmath>
#include <limits>

namespace tsr::core {

[[noreturn]] static void typeMismatch() {
    raise(err::TypeMismatch);
}

static double textToNumber(const QString& s) {
    bool ok = false;
    const double d = s.trimmed().toDouble(&ok);
    if (ok)
        return d;
    if (s.trimmed().compare(u"True", Qt::CaseInsensitive) == 0)
        return -1;
    if (s.trimmed().compare(u"False", Qt::CaseInsensitive) == 0)
        return 0;
    typeMismatch();
}

bool Value::toBool() const {
    switch (type()) {
    case FieldType::Empty:
        return false;
    case FieldType::Bool:
        return std::get<bool>(m_v);
    case FieldType::Text:
        return textToNumber(std::get<QString>(m_v)) != 0;
    default:
        return toDouble() != 0;
    }
}

VbDate Value::toDate() const {
    switch (type()) {
    case FieldType::Empty:
        return VbDate();
    case FieldType::Date:
        return std::get<VbDate>(m_v);
    case FieldType::Text: {
        if (auto d = parseDate(std::get<QString>(m_v), QStringLiteral("dd.mm.yyyy"), QStringLiteral("hh:mm:ss")))
            return *d;
        bool ok = false;
        const double n = std::get<QString>(m_v).trimmed().toDouble(&ok);
        if (ok)
            return VbDate(n);
        typeMismatch();
    }
    default:
        return VbDate(toDouble());
    }
}

static QString numberText(double d) {
    if (d == std::trunc(d) && std::fabs(d) < 1e15)
        return QString::number(qint64(d));
    QString s = QString::number(d, 'g', 15);
    return s;
}

QString Value::toText() const {
    switch (type()) {
    case FieldType::Empty:
        return {};
    case FieldType::Bool:
        return std::get<bool>(m_v) ? QStringLiteral("True") : QStringLiteral("False");
    case FieldType::Date:
        return dateText(std::get<VbDate>(m_v));
    case FieldType::Text:
        return std::get<QString>(m_v);
    case FieldType::Int32:
        return QString::number(std::get<int32_t>(m_v));
    case FieldType::Int64:
        return QString::number(std::get<int64_t>(m_v));
    case FieldType::Double:
        return numberText(std::get<double>(m_v));
    }
    return {};
}

double Value::toDouble() const {
    switch (type()) {
    case FieldType::Empty:
        return 0;
    case FieldType::Bool:
        return std::get<bool>(m_v) ? -1 : 0;
    case FieldType::Date:
        return std::get<VbDate>(m_v).value;
    case FieldType::Text:
        return textToNumber(std::get<QString>(m_v));
    case FieldType::Int32:
        return std::get<int32_t>(m_v);
    case FieldType::Int64:
        return double(std::get<int64_t>(m_v));
    case FieldType::Double:
        return std::get<double>(m_v);
    }
    return 0;
}

int32_t Value::toInt32() const {
    if (type() == FieldType::Int32)
        return std::get<int32_t>(m_v);
    return CLng(toDouble());
}

int64_t Value::toInt64() const {
    if (type() == FieldType::Int64)
        return std::get<int64_t>(m_v);
    if (type() == FieldType::Int32)
        return std::get<int32_t>(m_v);
    const double r = std::nearbyint(toDouble());
    if (!(r >= -9.2e18 && r <= 9.2e18))
        raise(err::Overflow);
    return int64_t(r);
}

Value Value::convertedTo(FieldType t) const {
    if (isEmpty() || t == type())
        return *this;
    switch (t) {
    case FieldType::Empty:
        return Value();
    case FieldType::Bool:
        return Value(toBool());
    case FieldType::Date:
        return Value(toDate());
    case FieldType::Text:
        return Value(toText());
    case FieldType::Int32:
        return Value(toInt32());
    case FieldType::Int64:
        return Value(toInt64());
    case FieldType::Double:
        return Value(toDouble());
    }
    return *this;
}

QString dateText(VbDate d, const QString& dateMask, const QString& timeMask) {
    const VbDate datePart = DateValue(d);
    const VbDate timePart = TimeValue(d);
    if (timePart.value == 0)
        return Format(d, dateMask);
    if (datePart.value == 0)
        return Format(d, timeMask);
    return Format(d, dateMask) + QLatin1Char(' ') + Format(d, timeMask);
}

} // namespace tsr::core
