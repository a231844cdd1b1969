// SPDX-License-Identifier: GPL-3.0-or-later
// The compare dialog's data without its window: the properties it lists, the
// table of both versions line by line, the lines that differ, and the answer
// read from its three boxes.
#pragma once

#include "tables/Recordset.h"

#include <QList>
#include <QString>
#include <cstdint>
#include <memory>

namespace tsr::core {
struct Context;
}

namespace tsr::main {

struct EntryShowProperty {
    QString field;
    QString caption;
};

// EntryShowAnswer: 0 no choice, 1 the phone's version overwrites the PIM's, 2 the
// PIM's overwrites the phone's, 3 both are kept.
enum EntryShowChoice : int16_t { NoChoice = 0, MobileOverPim = 1, PimOverMobile = 2, MobileAndPim = 3 };

// The contact properties, one a line of the grid, with their captions.
QList<EntryShowProperty> InitEigenschaftenArray(const core::Context& ctx);
// The grid's table: Typ (the caption), Mobile and PIM.
std::unique_ptr<tables::Recordset> InitShowGridRS();
void FillShowGridRS(const core::Context& ctx, tables::Recordset& grid, const tables::Recordset& pimRow,
                    const tables::Recordset& mobileRow);
// The lines (from 0) whose two values differ: the grid shows them in the style "Found".
QList<int> setGridBackColor(tables::Recordset& grid);
// The boxes read in the dialog's order: both kept, then the phone's, then the PIM's.
int16_t EntryShowAnswer(bool chMobileoverPIM, bool chPIMoverMobile, bool chMobandPIM);

} // namespace tsr::main
