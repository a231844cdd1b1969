// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/OptionsModel.h"

#include "core/Context.h"

namespace tsr::core {

void LoadPropertySettings(Context& ctx) {
    if (ctx.flags.GlobalSilent)
        return;
    const Settings& s = ctx.settings;
    OptionsModel& o = ctx.optionBoxes;
    o.loeschen_vor_option = s.DelOption == 1;
    o.loeschen_letzten_option = s.DelOption == 2;
    o.vergangene_option = s.DelOption == 3;
    const int mask = s.DelTermine;
    o.delete_notiz_option = mask & 1;
    o.delete_treffen_option = mask & 2;
    o.delete_geburtstage_option = mask & 4;
    o.delete_nummer_option = mask & 8;
    o.delete_all_option = mask & 32;
    o.delete_serie_check = s.DelSerie != 0;
}

} // namespace tsr::core
