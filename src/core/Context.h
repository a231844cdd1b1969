// SPDX-License-Identifier: GPL-3.0-or-later
// Everything the program holds process-wide, in one object that main() makes
// and passes on by reference. Tests make as many as they like.
#pragma once

#include "core/Clock.h"
#include "core/FormatState.h"
#include "core/LogState.h"
#include "core/OptionsModel.h"
#include "core/PhoneState.h"
#include "core/PimState.h"
#include "core/ReadState.h"
#include "core/ResStrings.h"
#include "core/Servers.h"
#include "core/Settings.h"
#include "core/StartFlags.h"
#include "core/StatusAnzeige.h"
#include "core/StatusBar.h"
#include "core/ToolsModel.h"
#include "core/UserInterface.h"
#include "tables/TableSet.h"

namespace tsr::core {

struct Context {
    explicit Context(UserInterface& userInterface) : ui(&userInterface) {}
    Context(const Context&) = delete;
    Context& operator=(const Context&) = delete;

    UserInterface* ui;
    Clock clock;
    Settings settings;
    DateFormats formats;
    StartFlags flags;
    PlatformOptions options;
    ReadState read;
    LogState log;
    tables::TableSet tables;
    Servers servers;
    PhoneState phone;
    PimState pim;
    FormatState entryFormats;
    ToolsModel tools;
    StatusBarModel statusBar;
    OptionsModel optionBoxes;
    ResStrings strings;
    StatusAnzeige status{*this};

    // The program's name as the user sees it.
    QString title() const { return strings.text(449); }
};

} // namespace tsr::core
