// SPDX-License-Identifier: GPL-3.0-or-later
// The options dialog without its window: what its controls show when it opens,
// the rule that enables OK, the numeric fields' limits, and the order in which
// OK stores the settings. The window copies its controls into OptionValues and
// back; everything that decides lives here and runs in tests.
#pragma once

#include "core/VbDate.h"

#include <QString>
#include <QStringList>
#include <array>
#include <cstdint>

namespace tsr::core {
struct Context;
}

namespace tsr::main {

// One language the dialog offers: the option's control name, the code stored in
// Sprache, and the string numbers of its caption and tool tip (0: none).
struct LanguageOption {
    const char* control;
    const char* code;
    int caption;
    int toolTip;
};
// In the order the dialog lists them.
extern const std::array<LanguageOption, 15> LanguageOptions;
// The index of a code among LanguageOptions, compared without regard to case; -1 when not offered.
int languageIndex(const QString& code);

// The entry of the font list that stands for the program's own font.
inline const QString DefaultFontEntry = QStringLiteral("Default-Font");
// The sizes the size list offers.
const QStringList& fontSizeEntries();

// The controls' values, named after the settings they stand for.
struct OptionValues {
    QStringList ports; // cboPort's list
    QString PORT;      // its text
    int16_t Sync = 0;
    int16_t SyncTyp = 2;
    int16_t SyncTermine = 32; // bits 1, 2, 4, 8, 32
    int16_t SyncZeitraum = 3;
    QString SyncAlarmAnzahl;     // Alarm_Anzahl, as typed
    QString SyncnaechstenAnzahl; // nächsten_anzahl, as typed
    core::VbDate SyncEintraegeab;
    int16_t SyncTageWochenMonate = 1; // index into day, week, month, year
    core::VbDate von_date;
    core::VbDate bis_date;
    int16_t SaveTyp = 1;
    QString freeMobileEntries; // Puffer_Anzahl, as typed
    QStringList folders;       // FolderComboBox: "parent\name" per contact folder
    int folderIndex = -1;
    int16_t ReadOnStart = 0;
    int16_t ReadOnStartvCard = 0;
    int16_t Autodel = 0;
    core::VbDate DelDate;
    int16_t DelOption = 0;
    int16_t DelTermine = 0;
    QString DelAnzahl; // loeschen_letzten_anzahl, as typed
    int16_t DelSerie = 0;
    QString FormFont; // the font list's text; DefaultFontEntry for none
    double FormFontSize = 8.0;
    int16_t FormFontIndex = -1;
    int16_t FormFontSizeIndex = 0;
    bool fontTouched = false; // either font list was changed by the user
    QString Sprache;
    bool GDX_Check = false;
    QString GlobalTimeOut;
    QString IrDADelay;
    int16_t FileTransfer = 1;
};

// LoadPropertySettings for the whole dialog: the settings as the controls show
// them, the port list (with the warning when there is none) and the folder list.
// The autodelete option boxes of the context are filled as well, except in a
// silent run, where they stay as they are.
OptionValues loadOptionValues(core::Context& ctx);

// Whether OK is enabled: each group whose switch is on needs at least one type.
bool cmdOkCheck(const OptionValues& v);

// A numeric field as a number: its leading number, cut to `max` when max > 0.
int16_t numericField(const QString& text, int max);
// The upper bound the phone sets for the entry counts; 0 while it is unknown.
int phoneEntryLimit(const core::Context& ctx);

// The range text stored in SyncEintraegevonbis: the start date, a tab, the end
// date with "23:59:59".
QString vonBisText(const core::Context& ctx, core::VbDate von, core::VbDate bis);
// The two dates of a range text; today and a week ahead where a part is no date.
std::pair<core::VbDate, core::VbDate> vonBisDates(const core::Context& ctx, const QString& text);

// What OK changed that the windows must apply.
struct OkOutcome {
    bool saved = false;
    bool languageChanged = false;
    bool fontChanged = false;
};
// Stores the values in the order the program has always stored them, asks about
// pending transfers when changes go over at once from now on, and writes every
// setting (the port included) and the file-transfer switch.
OkOutcome cmdOK_Click(core::Context& ctx, const OptionValues& v);

} // namespace tsr::main
