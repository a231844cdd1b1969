// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/FormHelpers.h"

#include <QApplication>

namespace tsr::ui {

QFont savedFont(const core::Context& ctx) {
    QFont font = QApplication::font();
    if (!ctx.settings.FormFont.isEmpty())
        font.setFamily(ctx.settings.FormFont);
    if (ctx.settings.FormFontSize >= 6.0)
        font.setPointSizeF(std::max(ctx.settings.FormFontSize, 9.0));
    return font;
}

} // namespace tsr::ui
