// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/dialogs/Status_Anzeige.h"

#include "core/Context.h"
#include "ui/FormHelpers.h"

#include <QApplication>
#include <QCloseEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QProgressBar>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>

namespace tsr::ui {

namespace {

bool isCancelKey(const QKeyEvent* e) {
    return e->key() == Qt::Key_Return || e->key() == Qt::Key_Enter || e->key() == Qt::Key_Escape;
}

} // namespace

Status_Anzeige::Status_Anzeige(core::Context& ctx, QWidget* owner) : QDialog(owner), m_ctx(ctx) {
    setObjectName(QStringLiteral("Status_Anzeige"));
    setWindowModality(Qt::NonModal);
    setWindowIcon(programIcon());
    setFont(savedFont(ctx));
    m_text = new QLabel(this);
    m_text->setObjectName(QStringLiteral("Text"));
    m_text->setWordWrap(true);
    m_text->setMinimumWidth(fontMetrics().horizontalAdvance(QLatin1Char('x')) * 48);
    m_text->setMinimumHeight(fontMetrics().lineSpacing() * 3);
    m_text->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    m_progress = new QProgressBar(this);
    m_progress->setObjectName(QStringLiteral("ProgressBar"));
    m_progress->setRange(0, 0); // busy until a caller gives it steps
    m_progress->setTextVisible(false);
    m_cancel = new QPushButton(ctx.strings.text(453), this);
    m_cancel->setObjectName(QStringLiteral("Abbrechen"));
    m_cancel->setAutoDefault(false);
    m_ok = new QPushButton(ctx.strings.text(691), this);
    m_ok->setObjectName(QStringLiteral("OK"));
    m_ok->setVisible(false);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_text);
    layout->addWidget(m_progress);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(m_ok);
    buttons->addWidget(m_cancel);
    layout->addLayout(buttons);

    // The press itself cancels: a long loop may not come back to run a click.
    m_cancel->installEventFilter(this);
    connect(m_ok, &QPushButton::clicked, this, [this] { m_ctx.status.Quit(); });
}

bool Status_Anzeige::eventFilter(QObject* watched, QEvent* event) {
    if (watched == m_cancel) {
        if (event->type() == QEvent::MouseButtonPress && static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton) {
            m_ctx.status.cancelRequested();
            return true;
        }
        if (event->type() == QEvent::KeyPress && isCancelKey(static_cast<QKeyEvent*>(event))) {
            m_ctx.status.cancelRequested();
            return true;
        }
    }
    return QDialog::eventFilter(watched, event);
}

void Status_Anzeige::keyPressEvent(QKeyEvent* event) {
    if (isCancelKey(event)) {
        m_ctx.status.cancelRequested();
        return;
    }
    QDialog::keyPressEvent(event);
}

void Status_Anzeige::keyReleaseEvent(QKeyEvent* event) {
    if (isCancelKey(event)) {
        m_ctx.status.cancelRequested();
        return;
    }
    QDialog::keyReleaseEvent(event);
}

// Closing the window from its frame is one more cancel gesture; the loop decides.
void Status_Anzeige::closeEvent(QCloseEvent* event) {
    m_ctx.status.cancelRequested();
    event->ignore();
}

void Status_Anzeige::reject() {
    m_ctx.status.cancelRequested();
}

StatusWindow::~StatusWindow() {
    delete m_dialog;
}

void StatusWindow::statusShow(const QString& title) {
    if (!m_dialog)
        m_dialog = new Status_Anzeige(m_ctx, m_owner);
    m_dialog->setWindowTitle(title);
    m_dialog->m_text->clear();
    m_dialog->adjustSize();
    const QRect area =
        m_owner && m_owner->isVisible() ? m_owner->frameGeometry() : QApplication::primaryScreen()->availableGeometry();
    m_dialog->move(area.center() - m_dialog->rect().center());
    m_dialog->show();
    m_dialog->raise();
}

void StatusWindow::statusSetText(const QString& text) {
    if (m_dialog)
        m_dialog->m_text->setText(text);
}

void StatusWindow::statusHide() {
    if (m_dialog)
        m_dialog->hide();
}

void StatusWindow::processEvents() {
    QApplication::processEvents();
}

} // namespace tsr::ui
