// SPDX-License-Identifier: GPL-3.0-or-later
// The contact format: a contact travels to and from the phone as one vCard
// text. This module reads such a text into a row of a contact table and builds
// the text the phone gets from a row. Sending it is the phone layer's work.
#pragma once

#include "core/Context.h"
#include "tables/Recordset.h"

#include <QString>

namespace tsr::formats {

// The name a new contact's file has on the phone.
inline const QString kNewContactFile = QStringLiteral("new.vcf");

// Sets the head lines of the contact text, the version line with the version
// text of the last read.
void vCardPreSetActEntryFields(core::Context& ctx);

// Shortens the current row's fields to what the phone keeps (cut at the right end).
void vCardLenControl(core::Context& ctx, tables::Recordset& table);

// Fills the current row of `table` from one vCard text. Raises -1996/-1995 on a
// BEGIN/END that is not VCARD, and the decoding errors of encodeString; the caller
// handles them. A VERSION other than the known one is shown and then taken over.
bool vCardParsEntryFromMobile(core::Context& ctx, tables::Recordset& table, QString& text);

// The text the phone gets for the current row, CR LF after every line. Runs
// vCardPreSetActEntryFields and vCardLenControl first, so the row is shortened too.
QString vCardEntryText(core::Context& ctx, tables::Recordset& table);

// Merges a fresh PIM contact `source` into the matched phone row `target`: the
// identifier, the PIM's values (the PIM... fields) and the PIM flags; the row's
// phone values stay. The row then stands on both sides.
void vCardSyncOutlookEntry(core::Context& ctx, tables::Recordset& target, tables::Recordset& source);
// Merges a fresh phone contact `source` into the matched PIM row `target`: the
// phone's identifiers, its values under the plain names and its file; the PIM's
// values stay in the PIM... fields. The row then stands on both sides.
void vCardSyncMobileEntry(core::Context& ctx, tables::Recordset& target, tables::Recordset& source);

} // namespace tsr::formats
