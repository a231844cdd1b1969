// SPDX-License-Identifier: GPL-3.0-or-later
// The real roads to the phone and the PIM, for the sync engine's calls.
#pragma once

#include "sync/Roads.h"

namespace tsr::roads {

class LiveRoads : public sync::Roads {
public:
    bool vCardWriteOutookEntry(core::Context& ctx, tables::Recordset& row) override;
    bool SendSinglevCardEntry(core::Context& ctx, tables::Recordset& row) override;
    void vCalReadMobile(core::Context& ctx) override;
    void vCardReadMobile(core::Context& ctx) override;
    void vCalReadOutlook(core::Context& ctx) override;
    void vCardReadOutlook(core::Context& ctx) override;
};

} // namespace tsr::roads
