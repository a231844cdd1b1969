// SPDX-License-Identifier: GPL-3.0-or-later
// The splash shown while a dialog-mode start reads the phone: the program's
// picture, centred on the screen, deaf to keys.
#pragma once

#include <QWidget>

namespace tsr::core {
struct Context;
}

namespace tsr::ui {

class frmSplash : public QWidget {
    Q_OBJECT
public:
    explicit frmSplash(core::Context& ctx);

    static QPixmap picture(const core::Context& ctx);

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    QPixmap m_picture;
};

// Shows the splash with the hourglass on it; the caller deletes it when the start is done.
frmSplash* showSplash(core::Context& ctx);

} // namespace tsr::ui
