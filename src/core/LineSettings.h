// SPDX-License-Identifier: GPL-3.0-or-later
// The serial line's settings as the link uses them: speed, character size,
// parity, stop bits and flow control. The defaults serve USB-ACM and rfcomm
// devices; a real RS-232 cable may need others. The phone layer reads them
// from the settings store and hands them to the serial device.
#pragma once

#include <cstdint>

namespace tsr::core {

struct LineSettings {
    enum class Parity { None, Even, Odd, Mark, Space };
    enum class StopBits { One, OneAndHalf, Two };
    enum class Flow { None, Hardware, Software };

    int32_t Speed = 115200;
    int16_t DataBits = 8;
    Parity parity = Parity::None;
    StopBits stopBits = StopBits::One;
    Flow flow = Flow::None;

    bool operator==(const LineSettings&) const = default;
};

} // namespace tsr::core
