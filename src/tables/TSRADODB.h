// SPDX-License-Identifier: GPL-3.0-or-later
// Creating the nine tables and the field-level operations on their rows: new
// rows with their start values, copies between tables, and the row-wise setters
// that change every row of a series (all rows sharing one EntryID).
#pragma once

#include "core/Context.h"
#include "tables/Recordset.h"

#include <QStringList>
#include <initializer_list>

namespace tsr::tables {

// Makes a throw-away table as a test of the table service; raises -1989 when it fails.
bool Test4ADO(core::Context& ctx);
// Creates all nine tables (the three log tables through LogInit); false when the
// table service fails, with no table made.
bool CreateInitAndSetAllRS(core::Context& ctx);

void InitCalendarRS(Recordset& table);
void vCardInitRS(Recordset& table);
// The date text form of the user's formats, for every table of the context.
void applyDateTextForm(const core::Context& ctx, Recordset& table);

void ClearRecordSet(Recordset& table);
void vCalCreateNewRecord(Recordset& table);
void vCalClearRecurrance(Recordset& table);
void vCardCreateNewRecord(Recordset& table);
// Copies the source's current row into the target's current row field by field;
// the source stays on its row.
bool CopyFromRecordset(Recordset& target, Recordset& source);
// vCalCreateNewRecord and CopyFromRecordset in one step: a new current row of the
// target holding the source's current row.
void vCalCreateCopy(Recordset& target, Recordset& source);
// Copies the named fields of the source's current row into the target's current row.
void copyFields(Recordset& target, const Recordset& source, std::initializer_list<const char16_t*> fields);
bool vCalClearSerieRecords(Recordset& table, const QString& entryId);
// Fills the current row from line `index` of the state file's token array.
void vCardFillRecordFromTokens(Recordset& table, const QList<QStringList>& tokens, int index);

// Row-wise setters: every row with the given EntryID, the cursor restored afterwards.
void SeriesClearMobile(Recordset& table, const QString& entryId);
void SeriesClearPIM(Recordset& table, const QString& entryId);
void SeriesClearBoth(Recordset& table, const QString& entryId);
void SeriesSetPIM(Recordset& table, const QString& entryId);
void SeriesSetEntryID(Recordset& table, const QString& entryId, const QString& newValue);
void SeriesSetSubType(Recordset& table, const QString& entryId, int32_t newValue);
void SeriesSetUID(Recordset& table, const QString& entryId, const QString& newValue);
void SeriesSetMobileID(Recordset& table, const QString& entryId, const QString& newValue);
void SeriesSetEntryType(Recordset& table, const QString& entryId, int32_t newValue);
// Finds by UID when byUid is true, else by EntryID; writes UID, and EntryID too
// unless the row's Mobile holds.
void SeriesSetUIDAndEntryID(Recordset& table, const QString& id, const QString& newValue, bool byUid);
void SeriesSetWeekdayMask(Recordset& table, const QString& entryId, int64_t mask);
void SeriesSetTyp(Recordset& table, const QString& entryId, const QString& typ);
void SeriesSetAlarm(Recordset& table, const QString& entryId, bool on);
// Goes to the first row with that EntryID; on a miss the table stays where it was.
bool FindEntryByID(Recordset& table, const QString& entryId);

} // namespace tsr::tables
