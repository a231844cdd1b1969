// SPDX-License-Identifier: GPL-3.0-or-later
// The one boundary through which the logic meets the user: message boxes, the
// progress dialog's window, grid refreshes and window queries. The windows
// implement it; tests answer from a queue and record what was shown.
#pragma once

#include <QSize>
#include <QString>
#include <QStringList>
#include <cstdint>
#include <optional>

namespace tsr::tables {
class Recordset;
}

namespace tsr::core {

// Buttons, icons and answers keep the numbers of the classic message box.
enum class MsgButtons { OK = 0, OKCancel = 1, AbortRetryIgnore = 2, YesNoCancel = 3, YesNo = 4, RetryCancel = 5 };
enum class MsgIcon { None = 0, Critical = 16, Question = 32, Exclamation = 48, Information = 64 };
enum class MsgResult { OK = 1, Cancel = 2, Abort = 3, Retry = 4, Ignore = 5, Yes = 6, No = 7 };

// Text with bold runs, tabs and line breaks: what the log writes for print and file.
struct RichTextRun {
    QString text;
    bool bold = false;
};
using RichText = QList<RichTextRun>;

// The main window's state (0 normal, 1 minimised, 2 maximised) and its frame in
// twips; the frame is the current one only while the state is normal.
struct WindowGeometry {
    int16_t state = 0;
    int width = 0;
    int height = 0;
    int top = 0;
    int left = 0;
};

class UserInterface {
public:
    virtual ~UserInterface() = default;

    virtual MsgResult msgBox(const QString& text, MsgButtons buttons, MsgIcon icon, const QString& title) = 0;

    // The progress dialog's window; its logic (Continue, Quiet) lives in StatusAnzeige.
    virtual void statusShow(const QString& title) = 0;
    virtual void statusSetText(const QString& text) = 0;
    virtual void statusHide() = 0;
    // Lets pending window events run (the cancel gestures among them).
    virtual void processEvents() = 0;

    // The grids show their tables anew: 0 calendar, 1 contacts, 2 the log windows.
    virtual void refreshGrid(int list) = 0;

    virtual bool mainFormVisibleAndEnabled() const = 0;
    virtual void focusMainForm() = 0;

    // Prints the text in the given font; false when no printer took it.
    virtual bool printText(const RichText& text, const QString& fontName, int pointSize) = 0;

    // The main window as it stands; nothing while no main window is loaded.
    virtual std::optional<WindowGeometry> mainWindowGeometry() const { return std::nullopt; }
    // The screen's size in twips (15 to a pixel at the usual 96 dots an inch).
    virtual QSize screenTwips() const { return {1024 * 15, 768 * 15}; }
    // A second start asked the first instance to come to the front.
    virtual void activateMainWindow() {}
    // The main window unloads itself, which ends a dialog-mode run.
    virtual void unloadMainForm() {}

    // The log summary window, modal over the main window.
    virtual void showLogSummary() {}
    // The other windows the commands open: modal dialogs, the help, the date frame.
    enum class Form {
        Options,
        About,
        Find,
        Sort,
        DateFrame,
        Help,
        NewEntry,
        OpenEntry,
        DeleteEntry,
        SwitchView,
        Search // the last search again, from the next row
    };
    virtual void showForm(Form form) { (void)form; }
    // The main window comes to the screen at the end of the deferred start.
    virtual void showMainWindow() {}
    // The splash of a dialog-mode start, shown while the start runs; showMainWindow takes it away.
    virtual void showSplash() {}

    // An error that a silent run records without a box; a run without a window says it at once.
    virtual void silentError(int32_t number, const QString& description, const QString& modul, const QString& proc) {
        (void)number;
        (void)description;
        (void)modul;
        (void)proc;
    }

    // The status line shows the phone's state and the entry counts anew.
    virtual void SetStatusBarMobile() {}
    // The busy cursor while the phone works on a single step; false puts the normal one back.
    virtual void setBusyCursor(bool busy) { (void)busy; }
    // The compare dialog for a contact changed on both sides since the last run,
    // modal over the main window: 1 the phone's data overwrite the PIM's, 2 the
    // PIM's overwrite the phone's, anything else leaves both.
    virtual int compareContacts(const tables::Recordset& pimRow, const tables::Recordset& mobileRow) {
        (void)pimRow;
        (void)mobileRow;
        return 0;
    }
};

} // namespace tsr::core
