// SPDX-License-Identifier: GPL-3.0-or-later
// The option boxes of the options dialog that the logic reads while it runs:
// the autodelete mode and type boxes. LoadPropertySettings fills them from the
// settings; the dialog shows and changes them; the autodelete pass reads them,
// so it runs without a window.
#pragma once

namespace tsr::core {

struct Context;

struct OptionsModel {
    // Autodelete mode: entries before DelDate, the oldest DelAnzahl, all passed ones.
    bool loeschen_vor_option = false;
    bool loeschen_letzten_option = false;
    bool vergangene_option = false;
    // Entry types that may go.
    bool delete_notiz_option = false;
    bool delete_treffen_option = false;
    bool delete_geburtstage_option = false;
    bool delete_nummer_option = false;
    bool delete_all_option = false;
    // Series entries too.
    bool delete_serie_check = false;
};

// Puts the autodelete settings on the boxes; in a silent run they stay as they are.
void LoadPropertySettings(Context& ctx);

} // namespace tsr::core
