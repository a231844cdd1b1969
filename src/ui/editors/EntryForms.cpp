// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/editors/EntryForms.h"

#include "core/Context.h"
#include "ui/editors/MobileEntry.h"
#include "ui/editors/vCardEntry.h"

namespace tsr::ui {

bool showEntryForm(core::Context& ctx, QWidget* parent, bool newEntry) {
    const bool contacts = ctx.settings.ActiveAPP == 1;
    tables::Recordset& table = contacts ? *ctx.tables.RSContacts : *ctx.tables.RSCalendar;
    std::optional<int> row;
    if (!newEntry) {
        const int position = table.absolutePosition();
        if (position < 1)
            return false;
        row = position;
    }
    return contacts ? showContactEntry(ctx, parent, row) : MobileEntryFormShow(ctx, parent, row);
}

} // namespace tsr::ui
