// SPDX-License-Identifier: GPL-3.0-or-later
#include "sync/AutoSync.h"

#include "tables/Recordset.h"

namespace tsr::sync {

bool EntryTypeCheck(int32_t Mask, const tables::Recordset& Table) {
    if (Mask & 32)
        return true;
    const QString typ = Table.value(QStringLiteral("Typ")).toText();
    if (typ.isEmpty())
        return Mask & 1;
    if (typ == u"1")
        return Mask & 2;
    if (typ == u"2")
        return Mask & 4;
    if (typ == u"3")
        return Mask & 8;
    return false;
}

} // namespace tsr::sync
