// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/Icons.h"

#include <QDir>
#include <QFile>
#include <QHash>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>

namespace tsr::ui {

namespace {

// A round badge with one or two letters: readable at 16 pixels, drawn at every
// size the icon is asked for, so it stays sharp on high-density screens.
QIcon badge(const QString& letters, const QColor& colour) {
    QIcon icon;
    for (int size : {16, 24, 32, 48, 64}) {
        QPixmap pm(size, size);
        pm.fill(Qt::transparent);
        QPainter p(&pm);
        p.setRenderHint(QPainter::Antialiasing);
        p.setBrush(colour);
        p.setPen(Qt::NoPen);
        p.drawRoundedRect(QRectF(1, 1, size - 2, size - 2), size / 5.0, size / 5.0);
        QFont f = p.font();
        f.setBold(true);
        f.setPixelSize(letters.size() > 1 ? size * 9 / 20 : size * 5 / 8);
        p.setFont(f);
        p.setPen(Qt::white);
        p.drawText(QRect(0, 0, size, size), Qt::AlignCenter, letters);
        p.end();
        icon.addPixmap(pm);
    }
    return icon;
}

} // namespace

void initIconTheme() {
    if (!QIcon::themeName().isEmpty() && QIcon::themeName() != u"hicolor")
        return;
    for (const char* theme : {"Adwaita", "breeze", "oxygen", "Tango", "gnome"}) {
        for (const QString& root : QIcon::themeSearchPaths()) {
            if (QFile::exists(root + u'/' + QString::fromLatin1(theme) + QStringLiteral("/index.theme"))) {
                QIcon::setThemeName(QString::fromLatin1(theme));
                return;
            }
        }
    }
}

// The two layouts of a grid, drawn: four cards, or the lines of a table.
QIcon layoutIcon(bool cards) {
    QIcon icon;
    for (int size : {16, 24, 32, 48}) {
        QPixmap pm(size, size);
        pm.fill(Qt::transparent);
        QPainter p(&pm);
        p.setRenderHint(QPainter::Antialiasing);
        const QColor ink(0x3d, 0x4f, 0x66);
        const double u = size / 16.0;
        if (cards) {
            for (int i = 0; i < 4; ++i)
                p.fillRect(QRectF((1.5 + (i % 2) * 7) * u, (1.5 + (i / 2) * 7) * u, 6 * u, 6 * u), ink);
        } else {
            for (int i = 0; i < 4; ++i) {
                p.fillRect(QRectF(1.5 * u, (2 + i * 3.5) * u, 3 * u, 2 * u), ink);
                p.fillRect(QRectF(5.5 * u, (2 + i * 3.5) * u, 9 * u, 2 * u), ink);
            }
        }
        p.end();
        icon.addPixmap(pm);
    }
    return icon;
}

QIcon themedIcon(const QString& name) {
    if (name.isEmpty())
        return {};
    if (QIcon::hasThemeIcon(name))
        return QIcon::fromTheme(name);
    const QString shipped = QStringLiteral(":/icons/") + name + QStringLiteral(".png");
    if (QFile::exists(shipped))
        return QIcon(shipped);
    if (name == u"view-grid" || name == u"view-list-details")
        return layoutIcon(name == u"view-grid");
    return badge(name.left(1).toUpper(), QColor(0x4a, 0x6e, 0x9c));
}

QIcon gridImage(int number) {
    static QHash<int, QIcon> cache;
    if (auto it = cache.constFind(number); it != cache.constEnd())
        return *it;
    QIcon icon;
    switch (number) {
    case 1:
        icon = themedIcon(QStringLiteral("x-office-calendar"));
        break;
    case 2:
        icon = themedIcon(QStringLiteral("phone"));
        break;
    case 3:
        icon = badge(QStringLiteral("\u270E"), QColor(0x6d, 0x8f, 0x3c));
        break;
    case 4:
        icon = badge(QStringLiteral("\u2691"), QColor(0x2f, 0x6f, 0xb3));
        break;
    case 5:
        icon = badge(QStringLiteral("\u2605"), QColor(0xb3, 0x4a, 0x8c));
        break;
    case 6:
        icon = badge(QStringLiteral("\u260E"), QColor(0xc0, 0x7a, 0x1a));
        break;
    case 7:
        icon = badge(QStringLiteral("1"), QColor(0x80, 0x80, 0x80));
        break;
    case 8:
        icon = badge(QStringLiteral("D"), QColor(0x3c, 0x7d, 0x8f));
        break;
    case 9:
        icon = badge(QStringLiteral("W"), QColor(0x3c, 0x7d, 0x8f));
        break;
    case 10:
        icon = badge(QStringLiteral("M"), QColor(0x3c, 0x7d, 0x8f));
        break;
    case 11:
        icon = badge(QStringLiteral("Y"), QColor(0x3c, 0x7d, 0x8f));
        break;
    case 12:
        icon = QIcon::hasThemeIcon(QStringLiteral("appointment-soon"))
                   ? QIcon::fromTheme(QStringLiteral("appointment-soon"))
                   : badge(QStringLiteral("!"), QColor(0xc0, 0x30, 0x30));
        break;
    default:
        break;
    }
    cache.insert(number, icon);
    return icon;
}

QIcon programIcon() {
    QIcon icon;
    for (int size : {16, 32, 48, 64, 128, 256})
        icon.addFile(QStringLiteral(":/icons/tessarine-%1.png").arg(size), QSize(size, size));
    return icon;
}

} // namespace tsr::ui
