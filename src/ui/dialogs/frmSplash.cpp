// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/dialogs/frmSplash.h"

#include "core/Context.h"
#include "ui/FormHelpers.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QLinearGradient>
#include <QPainter>
#include <QScreen>

namespace tsr::ui {

frmSplash::frmSplash(core::Context& ctx)
    : QWidget(nullptr, Qt::SplashScreen | Qt::FramelessWindowHint), m_picture(picture(ctx)) {
    setObjectName(QStringLiteral("frmSplash"));
    setWindowIcon(programIcon());
    setFixedSize(m_picture.size());
    const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
    move(screen.center() - rect().center());
}

QPixmap frmSplash::picture(const core::Context& ctx) {
    QPixmap pm(480, 280);
    QPainter p(&pm);
    p.setRenderHint(QPainter::Antialiasing);
    QLinearGradient sky(0, 0, 0, pm.height());
    sky.setColorAt(0, QColor(0x1e, 0x3c, 0x72));
    sky.setColorAt(1, QColor(0x2a, 0x52, 0x98));
    p.fillRect(pm.rect(), sky);
    const QIcon icon = programIcon();
    p.drawPixmap(32, 40, icon.pixmap(48, 48).scaled(96, 96, Qt::KeepAspectRatio, Qt::SmoothTransformation));
    QFont title = savedFont(ctx);
    title.setPointSize(30);
    title.setBold(true);
    p.setFont(title);
    p.setPen(Qt::white);
    p.drawText(QRect(150, 40, 310, 60), Qt::AlignLeft | Qt::AlignVCenter, ctx.title());
    QFont small = savedFont(ctx);
    small.setPointSize(11);
    p.setFont(small);
    p.setPen(QColor(0xdd, 0xe6, 0xf5));
    p.drawText(QRect(150, 100, 310, 24), Qt::AlignLeft | Qt::AlignVCenter, ctx.strings.text(463));
    p.drawText(QRect(150, 124, 310, 24), Qt::AlignLeft | Qt::AlignVCenter,
               ctx.strings.text(754) + u' ' + QStringLiteral(TESSARINE_VERSION));
    p.drawText(QRect(32, 220, 420, 30), Qt::AlignLeft | Qt::AlignVCenter, ctx.strings.text(471));
    return pm;
}

void frmSplash::paintEvent(QPaintEvent*) {
    QPainter(this).drawPixmap(0, 0, m_picture);
}

void frmSplash::keyPressEvent(QKeyEvent* event) {
    event->accept();
}

frmSplash* showSplash(core::Context& ctx) {
    auto* splash = new frmSplash(ctx);
    splash->setCursor(Qt::WaitCursor);
    splash->show();
    splash->raise();
    return splash;
}

} // namespace tsr::ui
