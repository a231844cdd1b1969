// SPDX-License-Identifier: GPL-3.0-or-later
// The clock the program reads "now" and "today" from; tests set it.
#pragma once

#include "core/VbDate.h"

#include <QDateTime>
#include <optional>

namespace tsr::core {

class Clock {
public:
    VbDate Now() const { return fromQDateTime(m_fixed ? *m_fixed : QDateTime::currentDateTime()); }
    VbDate Date() const { return DateValue(Now()); }
    void setFixed(const QDateTime& at) { m_fixed = at; }
    void clearFixed() { m_fixed.reset(); }

private:
    std::optional<QDateTime> m_fixed;
};

} // namespace tsr::core
