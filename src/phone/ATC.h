// SPDX-License-Identifier: GPL-3.0-or-later
// The AT-command driver: the routines through which the program reaches the
// phone's calendar store. Each starts with the guard (the server in its slot,
// SetATCPort), reports a failure through ErrorsCode under the module "ATC" and
// returns false then. Records travel as 8-bit bytes; turning them into text is
// the formats layer's work.
#pragma once

#include "core/Context.h"

#include <QByteArray>

namespace tsr::tables {
class Recordset;
}

namespace tsr::phone {

// Makes the server in its slot. When there is none it reports -1990 (source "ATCTEST") itself and gives false.
bool ATCTest(core::Context& ctx);
// Identification and the calendar store's bounds and capacity.
bool ATCInfo(core::Context& ctx);
bool ATCGetSingleMobileEntry(core::Context& ctx, QByteArray& text, int index);
// Writes one record; the index is the number before the first "." of `file` (0 when it has no ".").
bool ATCWriteAppointment(core::Context& ctx, const QByteArray& text, const QString& file);
// Deletes the row's entry from the phone under the busy cursor and logs the row, failed or not;
// or notes the wish in SaveTyp 2.
bool ATCRemoveEntryFromMobile(core::Context& ctx, tables::Recordset& row);

// The capacity of a store with the given bounds: a zero-based store holds one more.
int16_t storeCapacity(int16_t first, int16_t last);

} // namespace tsr::phone
