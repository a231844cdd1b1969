// SPDX-License-Identifier: GPL-3.0-or-later
// The layouts of the calendar row (60 fields) and the contact row (45 fields),
// in the order they are created, with the value a new row gets.
#pragma once

#include "core/Value.h"

#include <span>

namespace tsr::tables {

struct FieldSpec {
    const char16_t* name;
    core::FieldType type;
    // The value of a new row; Empty where a new row leaves the field unset.
    core::Value (*initial)();
};

std::span<const FieldSpec> calendarLayout();
std::span<const FieldSpec> contactLayout();

} // namespace tsr::tables
