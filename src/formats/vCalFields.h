// SPDX-License-Identifier: GPL-3.0-or-later
// Reading the fields of a calendar row as the formats need them: an empty value
// reads as false, 0 or "" so a freshly made row can be written at once.
#pragma once

#include "tables/Recordset.h"

namespace tsr::formats::detail {

inline bool boolField(const tables::Recordset& t, const QString& name) {
    const core::Value v = t.value(name);
    return !v.isEmpty() && v.toBool();
}
inline core::VbDate dateField(const tables::Recordset& t, const QString& name) {
    const core::Value v = t.value(name);
    return v.isEmpty() ? core::VbDate() : v.toDate();
}
inline int64_t intField(const tables::Recordset& t, const QString& name) {
    const core::Value v = t.value(name);
    return v.isEmpty() ? 0 : v.toInt64();
}
inline QString textField(const tables::Recordset& t, const QString& name) {
    return t.value(name).toText();
}

} // namespace tsr::formats::detail
