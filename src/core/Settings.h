// SPDX-License-Identifier: GPL-3.0-or-later
// The persistent settings as the program holds them while it runs, and the
// user's date and time formats. The settings store reads them at start and
// writes them back; everything else reads and writes these variables.
#pragma once

#include "core/VbDate.h"

#include <QString>
#include <cstdint>

namespace tsr::core {

struct Settings {
    int16_t ActiveAPP = 0;
    int16_t WindowState = 0;
    int16_t Width = 0;
    int16_t Height = 0;
    int16_t Top = 0;
    int16_t Left = 0;
    int16_t Button_Width = 0;
    int16_t Autodel = 0;
    int16_t Sync = 0;
    QString Sprache;
    VbDate DelDate;
    int16_t ReadOnStart = 0;
    int16_t ReadOnStartvCard = 0;
    int16_t DelOption = 0;
    int16_t DelTermine = 0;
    int16_t DelAnzahl = 0;
    int16_t DelSerie = 0;
    int16_t SyncTyp = 2;
    int16_t SyncTermine = 32;
    int16_t SyncZeitraum = 3;
    int16_t SyncAlarmAnzahl = 0;
    VbDate SyncEintraegeab;
    int16_t SyncTageWochenMonate = 1;
    QString SyncEintraegevonbis;
    int16_t SyncnaechstenAnzahl = 1;
    int16_t SaveTyp = 1;
    QString FormFont;
    double FormFontSize = 8.0;
    int16_t FormFontIndex = -1;
    int16_t FormFontSizeIndex = 0;
    QString FolderParent;
    QString FolderName;
    QString FolderEntryID;
    QString FolderStoreID;
    int16_t freeMobileEntries = 0;
    int16_t DateRange = 6;
    QString HomeDir = QStringLiteral("c:");
    QString PORT = QStringLiteral("COM1"); // the file-transfer server's port
    QString Port = QStringLiteral("COM1"); // the AT-command server's port
    int16_t FileTransfer = 1;              // Linux build: 1 fills the file-transfer slot when the phone offers OBEX
};

// The user's date and time formats, with their start values.
struct DateFormats {
    QString DateFormat = QStringLiteral("dd.mm.yy");
    QString TimeFormat = QStringLiteral("hh:mm:ss");
    QString TimeFormatNoSec = QStringLiteral("hh:mm");
    QString DateTimeFormat = QStringLiteral("hh:mm dd.mm.yy");
    QString DateChar = QStringLiteral(".");
    QString TimeChar = QStringLiteral(":");
    QString TimeMark;
    int16_t TimeIs24 = 1;
    QString TimeAM;
    QString TimeMarkPM;
    int16_t TimeMarkPos = 0;
    QString GridTimeStyle;
};

} // namespace tsr::core
