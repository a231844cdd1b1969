// SPDX-License-Identifier: GPL-3.0-or-later
// What the program holds of the PIM session: the application's name, the
// contact folder in use and the list of contact folders found.
#pragma once

#include <QList>
#include <QString>
#include <cstdint>
#include <memory>

namespace tsr::pim {
class Folder;
}

namespace tsr::core {

// One contact folder: its parent's name, its name and its identity.
struct ContactFolderRecord {
    QString Parent;
    QString Name;
    QString EntryID;
    QString StoreID;
};

struct PimState {
    QString PIMName;
    std::shared_ptr<pim::Folder> GlobalContactFolder;
    QList<ContactFolderRecord> GlobalContactFolderArray;
    int16_t GlobalContactFolderCount = 0;
    // Temporary numbers of rows whose PIM write waits for a transfer run.
    int16_t TempCalID = 51;
    int16_t TempCardID = 0;
};

} // namespace tsr::core
