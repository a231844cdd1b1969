// SPDX-License-Identifier: GPL-3.0-or-later
// The layout of the menu and tool bar: which tools stand in which band, in what
// order, with which string numbers, icon and keyboard shortcut. InitActiveBar
// puts the captions into the tools model; the window draws from both. Nothing
// here knows a widget.
#pragma once

#include <QString>
#include <vector>

namespace tsr::core {
struct Context;
}

namespace tsr::main {

struct ToolDef {
    QString tool;        // the tool's name, the dispatcher's key; empty for a separator
    int caption = 0;     // string number of the menu text (with its "&" mnemonic)
    int description = 0; // string number of the tool tip; 0 for the caption's text
    QString icon;        // freedesktop icon name
    QString shortcut;    // portable key sequence text, empty for none
};

struct BandDef {
    QString band;
    int caption = 0; // string number of the band's title; 0 for none
    std::vector<ToolDef> tools;
};

// The menu bands in the order of the menu bar (under MainMenu's entries), then the tool band.
const std::vector<BandDef>& activeBarBands();
// The band that MainMenu's entry opens ("TSROrganizer" opens "TSROrganizerMenu").
QString menuBandOf(const QString& mainMenuTool);
// MainMenu's entries in order.
const std::vector<ToolDef>& mainMenuTools();

// Captions and descriptions of every band and tool from the string table.
void InitActiveBar(core::Context& ctx);
void StringZuweisung(core::Context& ctx);

// The caption and icon of TSRSwitchView for the layout that a click would switch to.
struct SwitchViewLook {
    int caption;
    QString icon;
};
SwitchViewLook switchViewLook(bool cardsShowing);

// The language changed: the table anew, the tools' texts, the status line and
// the grids' columns.
void SetLanguage(core::Context& ctx);

} // namespace tsr::main
