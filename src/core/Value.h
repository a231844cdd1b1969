// SPDX-License-Identifier: GPL-3.0-or-later
// One field value of a table row: empty, true/false, a date-time, text, a 32-bit
// or a 64-bit whole number, or a floating number. Conversions follow the loose
// rules the program relies on (a number read from text, text from a number).
#pragma once

#include "core/VbDate.h"

#include <QString>
#include <cstdint>
#include <variant>

namespace tsr::core {

enum class FieldType { Empty, Bool, Date, Text, Int32, Int64, Double };

struct Empty {
    friend constexpr bool operator==(Empty, Empty) { return true; }
};

class Value {
public:
    Value() = default;
    Value(Empty) {}
    Value(bool b) : m_v(b) {}
    Value(VbDate d) : m_v(d) {}
    Value(const QString& s) : m_v(s) {}
    Value(QString&& s) : m_v(std::move(s)) {}
    Value(const char16_t* s) : m_v(QString::fromUtf16(s)) {}
    Value(QLatin1StringView s) : m_v(QString(s)) {}
    Value(int32_t i) : m_v(i) {}
    Value(int64_t i) : m_v(i) {}
    Value(long long i) : m_v(static_cast<int64_t>(i)) {}
    Value(double d) : m_v(d) {}

    FieldType type() const { return static_cast<FieldType>(m_v.index()); }
    bool isEmpty() const { return type() == FieldType::Empty; }

    // Conversions; text that is no number raises error 13 "Type mismatch" where a
    // number is asked for, as does a date asked of text that is no date.
    bool toBool() const;
    VbDate toDate() const;
    QString toText() const;
    int32_t toInt32() const;
    int64_t toInt64() const;
    double toDouble() const;

    // This value converted for a field of the given type; Empty stays Empty.
    Value convertedTo(FieldType t) const;

    // Same type and same content.
    friend bool operator==(const Value& a, const Value& b) { return a.m_v == b.m_v; }

private:
    std::variant<Empty, bool, VbDate, QString, int32_t, int64_t, double> m_v;
};

// The text form of a date: the date in dateMask, the time behind it after a blank;
// a date without time shows only its date, a time on day 0 only its time.
QString dateText(VbDate d, const QString& dateMask = QStringLiteral("dd.mm.yyyy"),
                 const QString& timeMask = QStringLiteral("hh:mm:ss"));

} // namespace tsr::core
