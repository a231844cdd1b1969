// SPDX-License-Identifier: GPL-3.0-or-later
// The progress dialog's window: a caption, a text, a progress bar and the
// cancel button. Its logic (Continue, Quiet, the cancel question) is
// core::StatusAnzeige; the window only turns the cancel gestures into
// cancelRequested(), and the question comes at the next GetState.
#pragma once

#include <QDialog>
#include <QPointer>

class QLabel;
class QProgressBar;
class QPushButton;

namespace tsr::core {
struct Context;
}

namespace tsr::ui {

class Status_Anzeige : public QDialog {
    Q_OBJECT
public:
    Status_Anzeige(core::Context& ctx, QWidget* owner);

    QProgressBar* progressBar() const { return m_progress; }

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void reject() override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    friend class StatusWindow;
    core::Context& m_ctx;
    QLabel* m_text;
    QProgressBar* m_progress;
    QPushButton* m_cancel; // Abbrechen
    QPushButton* m_ok;     // OK: calls Quit
};

// The window behind the user boundary's statusShow, statusSetText, statusHide
// and processEvents; one per main window, made on first use.
class StatusWindow {
public:
    StatusWindow(core::Context& ctx, QWidget* owner) : m_ctx(ctx), m_owner(owner) {}
    ~StatusWindow();
    StatusWindow(const StatusWindow&) = delete;
    StatusWindow& operator=(const StatusWindow&) = delete;

    // Centred over the owner, shown without blocking, the text emptied.
    void statusShow(const QString& title);
    void statusSetText(const QString& text);
    void statusHide();
    // Lets pending window events run, the cancel gestures among them.
    void processEvents();

    Status_Anzeige* dialog() const { return m_dialog; }

private:
    core::Context& m_ctx;
    QPointer<QWidget> m_owner;
    QPointer<Status_Anzeige> m_dialog;
};

} // namespace tsr::ui
