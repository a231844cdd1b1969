// SPDX-License-Identifier: GPL-3.0-or-later
// The file-transfer driver: the phone seen as a small file system (a folder per
// kind of data, one file per entry, an info.log per folder). Every routine takes
// the server slot and does nothing when it is empty, which it always is in the
// program: no one creates a file-transfer server. The routines stand so that
// their callers keep their shape, and a server can be put in the slot.
#pragma once

#include "core/Context.h"

#include <QByteArray>
#include <QList>
#include <QStringList>
#include <memory>
#include <utility>

namespace tsr::phone {

// The operations of a file-transfer server; failures are raised as numbered errors.
class GDXServerInterface {
public:
    virtual ~GDXServerInterface() = default;
    // Removes one file; a missing file is an error.
    virtual void DeleteFile(const QString& fullPath) = 0;
    // One row per file, column 0 holding its name; an empty folder gives no rows.
    virtual QList<QStringList> ListFiles(const QString& pathWithMask, int flags) = 0;
    virtual QByteArray ReadFile(const QString& fullPath) = 0;
    // Creates or replaces one file.
    virtual void WriteFile(const QString& fullPath, const QByteArray& stream, int flags) = 0;
};

using GDXServerSlot = std::shared_ptr<GDXServerInterface>;

// The parsed info.log: key and value of each line; a line without ":" is an empty row.
using GDXInfoTable = QList<std::pair<QString, QString>>;

// The identification an info.log gives.
struct GDXDeviceInfo {
    QString Manufacturer;
    QString Model;
};

bool getMobileGDXInfo(core::Context& ctx, GDXServerSlot& server, const QString& path, const QString& file,
                      GDXInfoTable& table);
void GDXInfoAuswertung(core::Context& ctx, const GDXInfoTable& table, GDXDeviceInfo& info, int16_t& maxOut,
                       int16_t& totalOut, int16_t& lastOut, bool isCard);
bool GDXInfoAll(core::Context& ctx, GDXServerSlot& server, const QString& path);
bool GDXInfovCal(core::Context& ctx, GDXServerSlot& server, const QString& path);
bool GDXInfovCard(core::Context& ctx, GDXServerSlot& server, const QString& path);
bool GetSingleMobileEntry(core::Context& ctx, GDXServerSlot& server, const QString& path, QByteArray& text,
                          const QString& file);
// The number of names, or -1 with no server.
int DirMobileEntryFiles(core::Context& ctx, GDXServerSlot& server, const QString& path, const QString& mask,
                        QStringList& names);
// The file name for a new contact: the last used index and ".vcf"; empty when info.log could not be read.
bool getvCardMobileEntryName(core::Context& ctx, GDXServerSlot& server, QString& name, const QString& path);
// The phone's contact capacity from the info.log of the contact folder, into
// MobileCardCapacity and FreeContactSlots. Only the file-transfer road tells it:
// with the slot empty both keep what they had and the result is false.
bool readCardCapacity(core::Context& ctx, GDXServerSlot& server, const QString& path);
bool GDXWriteStream(core::Context& ctx, GDXServerSlot& server, const QByteArray& text, const QString& path,
                    const QString& file);

// Path and file name joined with one "\" between them.
QString gdxJoin(const QString& path, const QString& file);

} // namespace tsr::phone
