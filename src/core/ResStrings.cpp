// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/ResStrings.h"

namespace tsr::core {

ResStrings::ResStrings() : m_table(english()) {}

QString ResStrings::text(int number) const {
    auto it = m_table.constFind(number);
    if (it != m_table.constEnd())
        return *it;
    return english().value(number);
}

void ResStrings::resetToEnglish() {
    m_table = english();
}

} // namespace tsr::core
