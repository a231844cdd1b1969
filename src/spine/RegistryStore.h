// SPDX-License-Identifier: GPL-3.0-or-later
// The settings store's primitives: named values under keys of two roots, kept
// in two INI files (machine.ini for the machine-wide root, user.ini for the
// user's). Groups keep the key paths. A value keeps its type: a whole number
// (DWORD) or text (SZ). The primitives report true or false, never raise.
#pragma once

#include "core/Context.h"
#include "core/Value.h"

#include <QString>
#include <cstdint>

namespace tsr::spine {

inline constexpr int32_t HKEY_CURRENT_USER = static_cast<int32_t>(0x80000001);
inline constexpr int32_t HKEY_LOCAL_MACHINE = static_cast<int32_t>(0x80000002);

// The key paths of the program's settings.
inline const QString KeySuite = QStringLiteral("Software\\Orvane\\Halvorix 5.0");
inline const QString KeyTSR = QStringLiteral("Software\\Orvane\\Halvorix 5.0\\TSR");
inline const QString KeySettings = QStringLiteral("Software\\Orvane\\Halvorix 5.0\\TSR\\Settings");
// The Linux build's own settings, beside the program's.
inline const QString KeyLinux = QStringLiteral("Software\\Orvane\\Halvorix 5.0\\TSR\\Linux");
inline const QString KeyInternational = QStringLiteral("Control Panel\\International");

// The folder of the two INI files: --config=DIR, else the user's configuration folder.
QString configFolder(const core::Context& ctx);
// The INI file that holds a root; empty for a root the store does not know.
QString rootFile(const core::Context& ctx, int32_t root);

// Why a primitive failed, numbered as the platform numbers it (2 no such key or
// value, 5 access denied, 87 an unknown root), for the error boxes.
struct RegFailure {
    int32_t number = 0;
    QString description;
};

bool RegKeyExists(const core::Context& ctx, int32_t root, const QString& key);
// Reads a value: a DWORD comes back as a 32-bit number, anything else as text.
bool RegValQuery(const core::Context& ctx, int32_t root, const QString& key, const QString& name, core::Value& out);
// Creates the key with the given class; true only when it did not exist before.
bool RegKeyCreate(const core::Context& ctx, int32_t root, const QString& key, const QString& keyClass,
                  RegFailure* failure = nullptr);
// Writes by the value's type: whole numbers and text as they are, everything else
// (dates, floating numbers) rounded to a 32-bit number.
bool RegValWrite(const core::Context& ctx, int32_t root, const QString& key, const QString& name,
                 const core::Value& value, RegFailure* failure = nullptr);
bool RegValueGet(const core::Context& ctx, int32_t root, const QString& key, const QString& name, core::Value& out);
// True when the key exists and the write was attempted.
bool RegValuePut(const core::Context& ctx, int32_t root, const QString& key, const QString& name,
                 const core::Value& value, RegFailure* failure = nullptr);
// Several values of one root, put in order under RegValuePut's rules and written in
// one go: a value whose key is missing stops the run there, and a file that cannot
// be written fails at the first value. Returns how many were written.
struct RegEntry {
    QString key;
    QString name;
    core::Value value;
};
qsizetype RegValuesPut(const core::Context& ctx, int32_t root, const QList<RegEntry>& entries,
                       RegFailure* failure = nullptr);
// Creates the key when it is missing; a failed creation shows "Registry Error ..." and gives false.
bool RegKeyEnsure(core::Context& ctx, int32_t root, const QString& key, const QString& keyClass);

} // namespace tsr::spine
