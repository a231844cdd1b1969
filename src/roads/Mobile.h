// SPDX-License-Identifier: GPL-3.0-or-later
// Reading the phone's calendar and contacts into the two tables, with the
// status dialog (the calendar through the AT-command driver) and unattended
// (through the file-transfer driver, which finds nothing while its slot is
// empty). A failed or cancelled read takes the phone's rows off again.
#pragma once

namespace tsr::core {
struct Context;
}

namespace tsr::roads {

bool vCalReadMobile(core::Context& ctx);
bool GetMobileEntries(core::Context& ctx);
bool vCardReadMobile(core::Context& ctx);
bool GetMobileVCardEntries(core::Context& ctx, bool quiet);

bool SilentvCalReadMobile(core::Context& ctx);
bool SilentGetMobileEntries(core::Context& ctx);
bool SilentvCardReadMobile(core::Context& ctx);
bool SilentGetMobileVCardEntries(core::Context& ctx);

} // namespace tsr::roads
