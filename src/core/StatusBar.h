// SPDX-License-Identifier: GPL-3.0-or-later
// The main window's status line as data: four panels in order (Mobile,
// MobileStatus, EntryCounter, ProgressIndicator), each with its text and, for
// the first, a picture. The window draws it; the logic writes it.
#pragma once

#include <QString>

namespace tsr::core {

struct Context;

enum class MobileIcon { None, Connected, NoMobile };

struct StatusBarModel {
    QString Mobile;
    MobileIcon MobilePicture = MobileIcon::None;
    QString MobileStatus;
    QString EntryCounter;
    QString ProgressIndicator;
};

// Writes the phone's panels from the read state: maker and model with the
// "connected" picture and the used/total count of the list shown, or "No
// mobile" and "Offline". Nothing in a silent run. The window is told to redraw.
void SetStatusBarMobile(Context& ctx, bool showContacts);
// The same for the list the main window shows now.
void SetStatusBarMobile(Context& ctx);

} // namespace tsr::core
