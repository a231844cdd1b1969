// SPDX-License-Identifier: GPL-3.0-or-later
#include "phone/MobileSave.h"

#include "core/ErrorReport.h"
#include "tables/Recordset.h"

namespace tsr::phone {

bool vcalSaveKontrolle(core::Context& ctx, tables::Recordset& store, const QString& key, bool isUID) {
    return core::guarded(ctx, QStringLiteral("Mobile"), QStringLiteral("vcalSaveKontrolle"), true, [&] {
        if (store.recordCount() == 0)
            return true;
        store.moveFirst();
        const QString field = isUID ? QStringLiteral("UID") : QStringLiteral("EntryID");
        if (!store.find(field + QStringLiteral(" = '") + key + u'\''))
            return true;
        // A noted write (TransferMode 1) for an entry that is now to be deleted has nothing left to do.
        if (store.value(QStringLiteral("TransferMode")).toInt32() == 1)
            store.deleteCurrent();
        return true;
    });
}

bool vcardSaveKontrolle(core::Context& ctx, tables::Recordset& store, const QString& key, bool isMobileID) {
    return core::guarded(ctx, QStringLiteral("Mobile"), QStringLiteral("vcardSaveKontrolle"), true, [&] {
        if (store.recordCount() == 0)
            return true;
        store.moveFirst();
        const QString field = isMobileID ? QStringLiteral("MobileID") : QStringLiteral("EntryID");
        if (!store.find(field + QStringLiteral(" = '") + key + u'\''))
            return true;
        if (store.value(QStringLiteral("TransferMode")).toInt32() == 1)
            store.deleteCurrent();
        return true;
    });
}

} // namespace tsr::phone
