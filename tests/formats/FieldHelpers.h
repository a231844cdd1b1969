// SPDX-License-Identifier: GPL-3.0-or-later
// Setting and checking several fields of a row in one call, so that a test
// lists its values as a table instead of one statement per field.
#pragma once

#include "tables/Recordset.h"

#include <gtest/gtest.h>

namespace tsr::test {

using FieldValues = std::initializer_list<std::pair<const char16_t*, core::Value>>;
using FieldTexts = std::initializer_list<std::pair<const char16_t*, const char16_t*>>;

inline void setFields(tables::Recordset& row, FieldValues values) {
    for (const auto& [name, value] : values)
        row.setValue(QString::fromUtf16(name), value);
}

// Each named field reads as the given text.
inline void expectTexts(const tables::Recordset& row, FieldTexts texts) {
    for (const auto& [name, text] : texts)
        EXPECT_EQ(row.value(QString::fromUtf16(name)).toText().toStdString(), QString::fromUtf16(text).toStdString())
            << QString::fromUtf16(name).toStdString();
}

// Each named field holds the given truth value; an empty field counts as false.
inline void expectFlags(const tables::Recordset& row, std::initializer_list<const char16_t*> names, bool want) {
    for (const char16_t* name : names) {
        const core::Value v = row.value(QString::fromUtf16(name));
        EXPECT_EQ(!v.isEmpty() && v.toBool(), want) << QString::fromUtf16(name).toStdString();
    }
}

} // namespace tsr::test
