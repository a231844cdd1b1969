// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/ScriptedUi.h"

namespace tsr::test {

using core::MsgButtons;
using core::MsgResult;

core::MsgResult ScriptedUi::msgBox(const QString& text, MsgButtons buttons, core::MsgIcon icon, const QString& title) {
    boxes.append({text, buttons, icon, title});
    if (!m_answers.isEmpty())
        return m_answers.dequeue();
    switch (buttons) {
    case MsgButtons::OK:
    case MsgButtons::OKCancel:
        return MsgResult::OK;
    case MsgButtons::AbortRetryIgnore:
        return MsgResult::Abort;
    case MsgButtons::YesNoCancel:
    case MsgButtons::YesNo:
        return MsgResult::Yes;
    case MsgButtons::RetryCancel:
        return MsgResult::Retry;
    }
    return MsgResult::OK;
}

void ScriptedUi::statusShow(const QString& title) {
    statusTitles << title;
    statusVisible = true;
}

void ScriptedUi::processEvents() {
    if (onProcessEvents)
        onProcessEvents();
}

bool ScriptedUi::printText(const core::RichText& text, const QString& fontName, int pointSize) {
    printed = text;
    printedFont = fontName;
    printedSize = pointSize;
    return true;
}

int ScriptedUi::compareContacts(const tables::Recordset&, const tables::Recordset&) {
    ++compareCount;
    statusVisibleAtCompare = statusVisible;
    return compareAnswers.isEmpty() ? 0 : compareAnswers.dequeue();
}

} // namespace tsr::test
