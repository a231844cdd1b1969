// SPDX-License-Identifier: GPL-3.0-or-later
#include "roads/LiveRoads.h"

#include "roads/DOROutlookCalendar.h"
#include "roads/DOROutlookContacts.h"
#include "roads/Mobile.h"
#include "roads/MobileWrite.h"

namespace tsr::roads {

bool LiveRoads::vCardWriteOutookEntry(core::Context& ctx, tables::Recordset& row) {
    bool isNew = row.value(QStringLiteral("UID")).toText().isEmpty();
    roads::vCardWriteOutookEntry(ctx, row, isNew, ctx.pim.GlobalContactFolder);
    return !row.value(QStringLiteral("UID")).toText().isEmpty();
}

bool LiveRoads::SendSinglevCardEntry(core::Context& ctx, tables::Recordset& row) {
    return roads::SendSinglevCardEntry(ctx, row, row.value(QStringLiteral("MobileID")).toText().isEmpty());
}

void LiveRoads::vCalReadMobile(core::Context& ctx) {
    roads::vCalReadMobile(ctx);
}

void LiveRoads::vCardReadMobile(core::Context& ctx) {
    roads::vCardReadMobile(ctx);
}

void LiveRoads::vCalReadOutlook(core::Context& ctx) {
    roads::vCalReadOutlook(ctx, *ctx.tables.RSCalendar, false);
}

void LiveRoads::vCardReadOutlook(core::Context& ctx) {
    roads::vCardReadOutlook(ctx, *ctx.tables.RSContacts, false);
}

} // namespace tsr::roads
