// SPDX-License-Identifier: GPL-3.0-or-later
// The user boundary for tests: answers questions from a queue and records what
// was shown, so a test can say which boxes came up and with what text.
#pragma once

#include "core/UserInterface.h"

#include <QList>
#include <QQueue>
#include <functional>

namespace tsr::test {

struct ShownBox {
    QString text;
    core::MsgButtons buttons;
    core::MsgIcon icon;
    QString title;
};

class ScriptedUi : public core::UserInterface {
public:
    // The answers to the next questions, in order. With the queue empty a box is
    // answered with its first button (OK, Yes, Abort, Retry).
    void answer(core::MsgResult r) { m_answers.enqueue(r); }

    core::MsgResult msgBox(const QString& text, core::MsgButtons buttons, core::MsgIcon icon,
                           const QString& title) override;
    void statusShow(const QString& title) override;
    void statusSetText(const QString& text) override { statusTexts << text; }
    void statusHide() override { statusVisible = false; }
    void processEvents() override;
    void refreshGrid(int list) override { refreshed << list; }
    bool mainFormVisibleAndEnabled() const override { return mainVisible; }
    void focusMainForm() override { ++focusCount; }
    bool printText(const core::RichText& text, const QString& fontName, int pointSize) override;
    std::optional<core::WindowGeometry> mainWindowGeometry() const override { return mainGeometry; }
    QSize screenTwips() const override { return screen; }
    void activateMainWindow() override { ++activateCount; }
    void unloadMainForm() override { ++unloadCount; }
    void SetStatusBarMobile() override { ++statusBarCount; }
    void setBusyCursor(bool busy) override { busyCursor << busy; }
    // Answers from compareAnswers, 0 when it is empty.
    int compareContacts(const tables::Recordset& pimRow, const tables::Recordset& mobileRow) override;

    QList<ShownBox> boxes;
    QStringList statusTitles;
    QStringList statusTexts;
    bool statusVisible = false;
    QList<int> refreshed;
    bool mainVisible = false;
    int focusCount = 0;
    core::RichText printed;
    QString printedFont;
    int printedSize = 0;
    std::optional<core::WindowGeometry> mainGeometry;
    QSize screen{1024 * 15, 768 * 15};
    int activateCount = 0;
    int unloadCount = 0;
    int statusBarCount = 0;
    QList<bool> busyCursor; // every change of the busy cursor, in order
    QQueue<int> compareAnswers;
    int compareCount = 0;
    bool statusVisibleAtCompare = false;
    // Called at every processEvents: tests use it to press cancel mid-run.
    std::function<void()> onProcessEvents;

private:
    QQueue<core::MsgResult> m_answers;
};

} // namespace tsr::test
