// SPDX-License-Identifier: GPL-3.0-or-later
// The serial line's settings in the settings store: the Linux build keeps them
// in a group of its own, beside the suite's port. A value that is missing or
// cannot be read keeps its default, so a hand-edited file never stops the link.
#pragma once

#include "core/Context.h"
#include "core/Value.h"

#include <optional>

namespace tsr::phone {

// The group of the line settings under the machine-wide root, and the value names.
inline const QString KeyLine = QStringLiteral("Software\\Orvane\\Halvorix 5.0\\Linux");
inline const QString ValueSpeed = QStringLiteral("Speed");
inline const QString ValueDataBits = QStringLiteral("DataBits");
inline const QString ValueParity = QStringLiteral("Parity");
inline const QString ValueStopBits = QStringLiteral("StopBits");
inline const QString ValueFlow = QStringLiteral("Flow");

// Each reading takes a number or a text as the options dialog stores it; nothing for a value
// it cannot read.
std::optional<int32_t> lineSpeedOf(const core::Value& value);    // 50 .. 4000000
std::optional<int16_t> lineDataBitsOf(const core::Value& value); // 5 .. 8
std::optional<core::LineSettings::Parity>
lineParityOf(const core::Value& value); // None/Even/Odd/Mark/Space or N/E/O/M/S
std::optional<core::LineSettings::StopBits> lineStopBitsOf(const core::Value& value); // 1, 1.5, 2
std::optional<core::LineSettings::Flow>
lineFlowOf(const core::Value& value); // None, Hardware (RTS/CTS), Software (XON/XOFF)

// Reloads ctx.phone.Line from the store; every value not there or not readable keeps its default.
bool GetLineSettings(core::Context& ctx);

} // namespace tsr::phone
