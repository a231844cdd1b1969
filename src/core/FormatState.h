// SPDX-License-Identifier: GPL-3.0-or-later
// What the entry formats keep between two entries: the head lines of the texts
// written for the phone and the contact version text, which the last VERSION
// read replaces so that a contact written after a read carries the phone's version.
#pragma once

#include <QString>

namespace tsr::core {

struct VCardHeads {
    QString vCardVersion = QStringLiteral("1.0");
    QString Version;
    QString Begin;
    QString End;
    QString TelHome;
    QString TelWork;
    QString TelFax;
    QString TelCell;
    QString Categories;
    QString Url;
    QString Email;
};

struct FormatState {
    VCardHeads vCard;
};

} // namespace tsr::core
