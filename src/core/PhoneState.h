// SPDX-License-Identifier: GPL-3.0-or-later
// What the program knows of the phone: the AT-command server's port, the
// identification and the calendar store's bounds from the last status read,
// and the file-transfer paths. The phone layer fills it; the error path reads
// the model.
#pragma once

#include "core/LineSettings.h"

#include <QString>
#include <cstdint>

namespace tsr::core {

struct PhoneState {
    QString ATCPort = QStringLiteral("COM1"); // the port of the AT-command server
    LineSettings Line;                        // the serial line's settings for that port
    QString MobileManufacturer;
    QString MobileModel;
    int16_t FirstIndex = 0;
    int16_t LastIndex = 0;
    int16_t MobileCapacity = 0;
    int16_t MaxEntries = 0;
    int16_t MobileCalCount = 0; // the counter the status read resets
    int16_t MobileCardCapacity = 0;

    QString TelecomPath = QStringLiteral("\\telecom\\");
    QString DevInfoFile = QStringLiteral("devinfo.txt");
    QString CalPath = QStringLiteral("\\telecom\\cal\\");
    QString CalInfoFile = QStringLiteral("info.log");
    QString PbPath = QStringLiteral("\\telecom\\pb\\");
    QString PbInfoFile = QStringLiteral("info.log");
    QString FileNameLog = QStringLiteral("FileName.log");
    QString CalFile;  // the file name of the last calendar entry written
    QString CardFile; // the file name of the last contact written
};

} // namespace tsr::core
