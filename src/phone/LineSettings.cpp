// SPDX-License-Identifier: GPL-3.0-or-later
#include "phone/LineSettings.h"

#include "spine/RegistryStore.h"

namespace tsr::phone {

namespace {

using Line = core::LineSettings;

// A whole number, stored as one or written as text.
std::optional<int64_t> wholeNumberOf(const core::Value& value) {
    if (value.type() == core::FieldType::Text) {
        bool ok = false;
        const int64_t n = value.toText().trimmed().toLongLong(&ok);
        return ok ? std::optional<int64_t>(n) : std::nullopt;
    }
    if (value.type() == core::FieldType::Int32 || value.type() == core::FieldType::Int64)
        return value.toInt64();
    return std::nullopt;
}

// The text's word compared without regard to case: "even", "E" and "Even" are the same.
bool namesWord(const QString& text, const QString& word) {
    return text.compare(word, Qt::CaseInsensitive) == 0;
}

} // namespace

std::optional<int32_t> lineSpeedOf(const core::Value& value) {
    const auto n = wholeNumberOf(value);
    if (!n || *n < 50 || *n > 4000000)
        return std::nullopt;
    return int32_t(*n);
}

std::optional<int16_t> lineDataBitsOf(const core::Value& value) {
    const auto n = wholeNumberOf(value);
    if (!n || *n < 5 || *n > 8)
        return std::nullopt;
    return int16_t(*n);
}

std::optional<Line::Parity> lineParityOf(const core::Value& value) {
    const QString text = value.toText().trimmed();
    static const std::pair<const char*, Line::Parity> names[] = {{"None", Line::Parity::None},
                                                                 {"Even", Line::Parity::Even},
                                                                 {"Odd", Line::Parity::Odd},
                                                                 {"Mark", Line::Parity::Mark},
                                                                 {"Space", Line::Parity::Space}};
    for (const auto& [name, parity] : names) {
        const QString word = QString::fromLatin1(name);
        if (namesWord(text, word) || namesWord(text, word.left(1)))
            return parity;
    }
    return std::nullopt;
}

std::optional<Line::StopBits> lineStopBitsOf(const core::Value& value) {
    const QString text = value.toText().trimmed();
    if (text == QLatin1String("1"))
        return Line::StopBits::One;
    if (text == QLatin1String("1.5") || text == QLatin1String("1,5"))
        return Line::StopBits::OneAndHalf;
    if (text == QLatin1String("2"))
        return Line::StopBits::Two;
    return std::nullopt;
}

std::optional<Line::Flow> lineFlowOf(const core::Value& value) {
    const QString text = value.toText().trimmed();
    if (namesWord(text, QStringLiteral("None")))
        return Line::Flow::None;
    if (namesWord(text, QStringLiteral("Hardware")) || namesWord(text, QStringLiteral("RTS/CTS")))
        return Line::Flow::Hardware;
    if (namesWord(text, QStringLiteral("Software")) || namesWord(text, QStringLiteral("XON/XOFF")))
        return Line::Flow::Software;
    return std::nullopt;
}

bool GetLineSettings(core::Context& ctx) {
    Line line;
    auto take = [&](const QString& name, auto reading, auto& field) {
        core::Value value;
        if (!spine::RegValQuery(ctx, spine::HKEY_LOCAL_MACHINE, KeyLine, name, value))
            return;
        if (const auto read = reading(value))
            field = *read;
    };
    take(ValueSpeed, lineSpeedOf, line.Speed);
    take(ValueDataBits, lineDataBitsOf, line.DataBits);
    take(ValueParity, lineParityOf, line.parity);
    take(ValueStopBits, lineStopBitsOf, line.stopBits);
    take(ValueFlow, lineFlowOf, line.flow);
    ctx.phone.Line = line;
    return true;
}

} // namespace tsr::phone
