// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/FormHelpers.h"

#include <QApplication>
#include <QPainter>

namespace tsr::ui {

QFont savedFont(const core::Context& ctx) {
    QFont font = QApplication::font();
    if (!ctx.settings.FormFont.isEmpty())
        font.setFamily(ctx.settings.FormFont);
    if (ctx.settings.FormFontSize >= 6.0)
        font.setPointSizeF(std::max(ctx.settings.FormFontSize, 9.0));
    return font;
}

QIcon programIcon() {
    QIcon icon;
    for (int size : {16, 32, 48}) {
        QPixmap pm(size, size);
        pm.fill(Qt::transparent);
        QPainter p(&pm);
        p.setRenderHint(QPainter::Antialiasing);
        // A phone beside a calendar sheet: the two sides the program keeps in step.
        p.setBrush(QColor(0x2b, 0x57, 0x9a));
        p.setPen(Qt::NoPen);
        p.drawRoundedRect(QRectF(size * 0.05, size * 0.1, size * 0.38, size * 0.8), size * 0.08, size * 0.08);
        p.setBrush(QColor(0xf2, 0xf2, 0xf2));
        p.setPen(QPen(QColor(0x40, 0x40, 0x40), std::max(1.0, size / 16.0)));
        p.drawRect(QRectF(size * 0.5, size * 0.2, size * 0.45, size * 0.65));
        p.setBrush(QColor(0xc0, 0x39, 0x2b));
        p.setPen(Qt::NoPen);
        p.drawRect(QRectF(size * 0.5, size * 0.2, size * 0.45, size * 0.15));
        icon.addPixmap(pm);
    }
    return icon;
}

} // namespace tsr::ui
