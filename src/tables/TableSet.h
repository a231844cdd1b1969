// SPDX-License-Identifier: GPL-3.0-or-later
// The nine process-wide tables. They exist from CreateInitAndSetAllRS to the
// end of the process; a reset replaces a table with a fresh one.
#pragma once

#include "tables/Recordset.h"

#include <memory>

namespace tsr::tables {

struct TableSet {
    std::unique_ptr<Recordset> RSCalendar;
    std::unique_ptr<Recordset> RSCalendarWork;    // one-row scratch table for edits and PIM writes
    std::unique_ptr<Recordset> RSCalendarPending; // rows whose transfer to the phone is put off
    std::unique_ptr<Recordset> RSContacts;
    std::unique_ptr<Recordset> RSContactsWork;
    std::unique_ptr<Recordset> RSContactsPending;
    std::unique_ptr<Recordset> LogCalendar;
    std::unique_ptr<Recordset> LogContacts;
    std::unique_ptr<Recordset> LogErrors;
};

} // namespace tsr::tables
