// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/HeadlessUserInterface.h"

namespace tsr::core {

namespace {

QString answerText(MsgResult r) {
    switch (r) {
    case MsgResult::OK:
        return QStringLiteral("OK");
    case MsgResult::Cancel:
        return QStringLiteral("Cancel");
    case MsgResult::Abort:
        return QStringLiteral("Abort");
    case MsgResult::Retry:
        return QStringLiteral("Retry");
    case MsgResult::Ignore:
        return QStringLiteral("Ignore");
    case MsgResult::Yes:
        return QStringLiteral("Yes");
    case MsgResult::No:
        return QStringLiteral("No");
    }
    return {};
}

// One line for the run's log: line breaks of the box become " / ".
QString oneLine(QString text) {
    text.replace(QLatin1String("\r\n"), QLatin1String(" / "));
    text.replace(u'\n', QLatin1String(" / "));
    text.replace(u'\r', QLatin1String(" / "));
    return text.simplified();
}

} // namespace

MsgResult HeadlessUserInterface::safeAnswer(MsgButtons buttons) {
    switch (buttons) {
    case MsgButtons::OK:
        return MsgResult::OK;
    case MsgButtons::OKCancel:
    case MsgButtons::YesNoCancel:
    case MsgButtons::RetryCancel:
        return MsgResult::Cancel;
    case MsgButtons::YesNo:
        return MsgResult::No;
    case MsgButtons::AbortRetryIgnore:
        return MsgResult::Abort;
    }
    return MsgResult::Cancel;
}

MsgResult HeadlessUserInterface::msgBox(const QString& text, MsgButtons buttons, MsgIcon icon, const QString&) {
    const MsgResult answer = safeAnswer(buttons);
    const QString kind = icon == MsgIcon::Critical || icon == MsgIcon::Exclamation ? QStringLiteral("warning")
                                                                                   : QStringLiteral("message");
    if (buttons == MsgButtons::OK)
        m_err << "tessarine: " << kind << ": " << oneLine(text) << Qt::endl;
    else
        m_err << "tessarine: question: " << oneLine(text) << " -> " << answerText(answer) << Qt::endl;
    return answer;
}

void HeadlessUserInterface::silentError(int32_t number, const QString& description, const QString& modul,
                                        const QString& proc) {
    m_err << "tessarine: error " << number << " (" << modul << ", " << proc << "): " << oneLine(description)
          << Qt::endl;
}

int HeadlessUserInterface::compareContacts(const tables::Recordset&, const tables::Recordset&) {
    m_err << "tessarine: question: a contact changed on the phone and in the PIM -> both kept as they are" << Qt::endl;
    return 0;
}

} // namespace tsr::core
