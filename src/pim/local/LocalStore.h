// SPDX-License-Identifier: GPL-3.0-or-later
// The local PIM store: a folder in the vdir layout that khal, khard and
// vdirsyncer share. calendar/ holds one .ics per event; contact folders are
// directories of .vcf files, nested as deep as the user likes, each with an
// optional "displayname" file. The store keeps what it parsed and re-reads a
// file only when it changed on disk.
#pragma once

#include "core/Context.h"
#include "pim/Pim.h"
#include "pim/local/IcsEvent.h"
#include "pim/local/VCardFile.h"

#include <QElapsedTimer>
#include <QHash>
#include <QMap>
#include <QStringList>
#include <memory>

namespace tsr::pim::local {

class LocalStore : public std::enable_shared_from_this<LocalStore> {
public:
    struct Entry {
        qint64 mtimeNs = 0; // as the file system has it, to the nanosecond
        qint64 size = -1;
        std::shared_ptr<EventData> event;
        std::shared_ptr<ContactData> contact;
        bool failed = false;
    };
    using DirCache = QMap<QString, Entry>; // by file name, so the order is stable

    LocalStore(core::Context& ctx, const QString& root);

    core::Context& ctx() const { return m_ctx; }
    const QString& root() const { return m_root; }
    const QString& storeID() const { return m_storeID; }
    QString absPath(const QString& rel) const;
    QString folderEntryID(const QString& rel) const;
    // The folder path of an EntryID, or nothing when it names no folder of this store.
    std::optional<QString> relFromEntryID(const QString& entryID) const;
    bool ownsStoreID(const QString& storeID) const;
    bool isCalendarFolder(const QString& rel) const;
    QString displayName(const QString& rel) const;
    QStringList subfolders(const QString& rel) const;

    // The folder's items as they stand on disk now. A file that cannot be read is
    // reported once (a numbered error naming it) and left out.
    DirCache& refresh(const QString& rel);
    // Writes through a temporary file renamed into place; raises err::DiskError.
    Entry& writeFile(const QString& rel, const QString& fileName, const QByteArray& text);
    void removeFile(const QString& rel, const QString& fileName);
    // A file name for a new item; the UID when it makes a safe name.
    QString newFileName(const QString& rel, const QString& uid, const QString& ext) const;

    // Every folder below the root, depth first.
    QStringList allFolders() const;
    std::shared_ptr<Item> findItem(const QString& entryID);

    // The damaged files seen so far, with the reason.
    const QStringList& problems() const { return m_problems; }

private:
    core::Context& m_ctx;
    QString m_root;
    QString m_storeID;
    QHash<QString, DirCache> m_dirs;
    QHash<QString, ZoneCache> m_zones;
    QStringList m_problems;

    // When a folder's files were last looked at one by one, and its own time then.
    struct Sweep {
        qint64 folderTimeNs = 0;
        QElapsedTimer age;
    };
    QHash<QString, Sweep> m_sweeps;
    // After a write or a remove of our own: the folder's new time is ours, not a stranger's.
    void noteOwnChange(const QString& rel);
};

// An item object over the store's data for the folder `rel`.
std::shared_ptr<Item> makeItem(const std::shared_ptr<LocalStore>& store, const QString& rel, const QString& fileName,
                               const LocalStore::Entry& entry);

// The application object of a local store in `dir`, made with empty calendar/
// and contacts/ folders when they are missing; raises err::DiskError when it cannot.
std::shared_ptr<Application> openLocalApplication(core::Context& ctx, const QString& dir);

} // namespace tsr::pim::local
