// SPDX-License-Identifier: GPL-3.0-or-later
// The session with the PIM: opening it at start, checking its version,
// finding the default calendar and the contact folder the user chose, and
// walking the contact folders for the options dialog. Also where the store
// lives (--pim=DIR).
#pragma once

#include "core/Context.h"
#include "pim/Pim.h"

#include <QStringList>

namespace tsr::pim {

// Takes "--pim=DIR" into ctx.options.pim; false for any other token.
bool PimOption(core::Context& ctx, const QString& token);
// The store's folder: --pim=DIR, or $XDG_DATA_HOME/Tessarine/pim.
QString PimStoreDir(const core::Context& ctx);

bool Check4Outlook(core::Context& ctx);
bool TestOLCalFolder(core::Context& ctx);
bool InitContactFolder(core::Context& ctx);
bool PreSetFolderArray(core::Context& ctx);
void OutlookContactFolder(core::Context& ctx, bool silent);
bool OutlookContactFolderList(core::Context& ctx, Folder& folder, QList<core::ContactFolderRecord>& array, bool silent);

// What the options dialog's folder list shows: "parent\name" per folder and the one selected (-1: none).
struct ContactFolderList {
    QStringList entries;
    int selected = -1;
};
ContactFolderList BuildOutlookContactFolderList(const core::Context& ctx);

} // namespace tsr::pim
