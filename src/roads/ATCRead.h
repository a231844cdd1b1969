// SPDX-License-Identifier: GPL-3.0-or-later
// The AT-command driver's read of the whole calendar store into the calendar
// table: one record after the other, each paired with its PIM partner or
// appended, the series rows made, and the autodelete pass at the end.
#pragma once

namespace tsr::core {
struct Context;
}

namespace tsr::roads {

// True when every index of the store was read; a cancel or a failure takes the
// phone's rows off the table again.
bool ATCGetMobileEntries(core::Context& ctx);

} // namespace tsr::roads
