// SPDX-License-Identifier: GPL-3.0-or-later
// What each side of each table holds after the last read, and the phone's capacity.
#pragma once

#include <QList>
#include <QStringList>
#include <cstdint>

namespace tsr::core {

struct ReadState {
    bool vCalMobileRead = false;
    int32_t vCalMobileCount = 0;
    bool vCalPIMRead = false;
    int32_t vCalPIMCount = 0;
    bool vCardMobileRead = false;
    int32_t vCardMobileCount = 0;
    bool vCardPIMRead = false;
    int32_t vCardPIMCount = 0;
    bool MobileConnected = false;

    int16_t FirstMobileEntryID = 1;
    int16_t LastMobileEntryID = 0;
    int16_t MobileCalendarCapacity = 0;
    int16_t FreeCalendarSlots = 0; // capacity less the entries the user keeps free
    int16_t FreeContactSlots = 0;

    // True while an AutoSync run compares: contact matching then fills gaps.
    bool SyncRunning = false;
    // The phone's rows of this run were removed already: SyncRemove runs once a run.
    bool MobileCleared = false;
    // A row loop of the run is to end after the present row.
    bool SyncStop = false;

    // The contacts of MobFile.txt as last read, one text list a line.
    QList<QStringList> MobFileLines;
    bool MobFileFilled = false;
};

} // namespace tsr::core
