// SPDX-License-Identifier: GPL-3.0-or-later
// The process flags: what the command line asked for and where the run stands.
#pragma once

#include "core/VbDate.h"

#include <QString>
#include <cstdint>

namespace tsr::core {

struct StartFlags {
    bool GlobalCommandShowData = false;
    bool GlobalCommandKill = false;
    bool GlobalCommandDebug = false;
    bool GlobalCommandNoOrg = false;
    bool GlobalSilent = false;
    bool GlobalCommandBoth = false;
    bool GlobalCommandVCal = false;
    bool GlobalCommandVCard = false;
    bool GlobalCommandOptions = false;
    QString GlobalCaller;
    int16_t GlobalCommandTimer = 0;

    bool GlobalOrganizerOK = false;
    bool GlobalStartDone = false;
    bool GlobalClosing = false;
    bool GlobalBusy = false;
    bool GlobalEditorOpen = false;
    bool GlobalUnicodeAPI = true;
    bool GDX_Check = false;
    bool GlobalLogReady = false;
    bool GlobalMobileOnline = false;
    bool GlobalTransferRun = false; // a transfer run is on: phone writes and deletes act at once
    bool SecondInstance = false; // TSR2INST: this start hands over and saves nothing

    VbDate GlobalStartDate;
    VbDate GlobalEndDate;
    int16_t GlobalTimeOut = 7500;
    int16_t IrDADelay = 0;

    QString DebugFile;       // the path of the open TSRDebug.txt; empty while the trace is off
    QString LanguageLibrary; // the language table file in use
    QString HelpFile;        // the program's help file (SetHelp)
};

// Options of the Linux build, given as --name=value before the classic tokens.
struct PlatformOptions {
    QString home;   // --home=DIR: HomeDir for this run
    QString config; // --config=DIR: where machine.ini and user.ini live
    QString pim;    // --pim=DIR: the local PIM store
    QString port;   // --port=DEVICE: the phone's serial device
    bool headless = false;
    bool verbose = false; // --verbose: a headless run prints the log's rows too
};

} // namespace tsr::core
