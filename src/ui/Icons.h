// SPDX-License-Identifier: GPL-3.0-or-later
// Icons by freedesktop name from the desktop's theme, with a fall-back that
// ships in the program's resources or, for the grid's small badges, is drawn.
#pragma once

#include <QIcon>
#include <QString>

namespace tsr::ui {

// Makes the theme lookup work outside a desktop session (Xvfb, a bare window
// manager): takes a theme installed on the system when Qt found none.
void initIconTheme();

// The tool's icon: the theme's, else the shipped one, else a drawn badge.
QIcon themedIcon(const QString& name);

// The grid's images by number: 1 the PIM, 2 the phone, 3-6 the entry types
// (memo, meeting, birthday, call), 7-11 the series (single, daily, weekly,
// monthly, yearly), 12 the alarm.
QIcon gridImage(int number);

// The program's own icon.
QIcon programIcon();

} // namespace tsr::ui
