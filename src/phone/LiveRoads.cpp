// SPDX-License-Identifier: GPL-3.0-or-later
#include "phone/LiveRoads.h"

#include "phone/Mobile.h"
#include "phone/MobileWrite.h"
#include "pim/DOROutlookCalendar.h"
#include "pim/DOROutlookContacts.h"

namespace tsr::phone {

bool LiveRoads::vCardWriteOutookEntry(core::Context& ctx, tables::Recordset& row) {
    bool isNew = row.value(QStringLiteral("UID")).toText().isEmpty();
    pim::vCardWriteOutookEntry(ctx, row, isNew, ctx.pim.GlobalContactFolder);
    return !row.value(QStringLiteral("UID")).toText().isEmpty();
}

bool LiveRoads::SendSinglevCardEntry(core::Context& ctx, tables::Recordset& row) {
    return phone::SendSinglevCardEntry(ctx, row, row.value(QStringLiteral("MobileID")).toText().isEmpty());
}

void LiveRoads::vCalReadMobile(core::Context& ctx) {
    phone::vCalReadMobile(ctx);
}

void LiveRoads::vCardReadMobile(core::Context& ctx) {
    phone::vCardReadMobile(ctx);
}

void LiveRoads::vCalReadOutlook(core::Context& ctx) {
    pim::vCalReadOutlook(ctx, *ctx.tables.RSCalendar, false);
}

void LiveRoads::vCardReadOutlook(core::Context& ctx) {
    pim::vCardReadOutlook(ctx, *ctx.tables.RSContacts, false);
}

} // namespace tsr::phone
