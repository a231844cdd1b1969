// SPDX-License-Identifier: GPL-3.0-or-later
// The roads to the two sides that the sync engine calls but does not build:
// writing one contact to the PIM or to the phone, and reading a side anew. The
// phone and PIM layers plug the real roads in; tests record the calls.
#pragma once

#include "core/Context.h"
#include "tables/Recordset.h"

namespace tsr::sync {

class Roads {
public:
    virtual ~Roads() = default;

    // Writes the current contact row to the PIM; true on success.
    virtual bool vCardWriteOutookEntry(core::Context& ctx, tables::Recordset& row) = 0;
    // Sends the current contact row to the phone; true on success.
    virtual bool SendSinglevCardEntry(core::Context& ctx, tables::Recordset& row) = 0;

    virtual void vCalReadMobile(core::Context& ctx) = 0;
    virtual void vCardReadMobile(core::Context& ctx) = 0;
    virtual void vCalReadOutlook(core::Context& ctx) = 0;
    virtual void vCardReadOutlook(core::Context& ctx) = 0;
};

} // namespace tsr::sync
