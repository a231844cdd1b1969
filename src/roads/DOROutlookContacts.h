// SPDX-License-Identifier: GPL-3.0-or-later
// The PIM's contact folder and the contact table: reading the folder into rows
// paired with the phone's, writing a row into the folder, finding the PIM
// partner of a phone contact, and taking the PIM side off a table.
#pragma once

#include <memory>

namespace tsr::core {
struct Context;
}
namespace tsr::tables {
class Recordset;
}

namespace tsr::pim {
class Folder;
}

namespace tsr::roads {

// Reads every contact of the folder; `silent` leaves out the status dialog and the grid.
bool vCardReadOutlook(core::Context& ctx, tables::Recordset& table, bool silent);
bool SilentvCardReadOutlook(core::Context& ctx, tables::Recordset& table);
void vCardWriteOutookEntry(core::Context& ctx, tables::Recordset& table, bool& IsNew,
                           const std::shared_ptr<pim::Folder>& folder);
void vCardSearchingforOutlookEntry(core::Context& ctx, tables::Recordset& table,
                                   const std::shared_ptr<pim::Folder>& folder);
// Rows only on the PIM side leave the table; rows on both keep their phone side.
void ClearOutlookFromGrid(core::Context& ctx, tables::Recordset& table);

} // namespace tsr::roads
