// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/StatusAnzeige.h"

#include "core/Context.h"

namespace tsr::core {

void StatusAnzeige::Start(const QString& title, bool quiet) {
    m_quiet = quiet;
    if (quiet)
        return;
    m_continue = true;
    m_ctx.ui->statusShow(title);
    m_ctx.ui->statusSetText(QString());
}

void StatusAnzeige::Quit() {
    m_quiet = true;
    m_ctx.ui->statusHide();
}

void StatusAnzeige::SetText(const QString& message) {
    m_ctx.ui->processEvents();
    if (!m_quiet)
        m_ctx.ui->statusSetText(message);
}

bool StatusAnzeige::GetState() {
    m_ctx.ui->processEvents();
    bool result = true;
    if (!m_quiet && !m_continue) {
        // "Do you really want to cancel?"
        if (m_ctx.ui->msgBox(m_ctx.strings.text(939), MsgButtons::YesNo, MsgIcon::Question, m_ctx.title()) ==
            MsgResult::Yes)
            result = false;
        else
            m_continue = true;
    }
    if (m_ctx.flags.GlobalClosing)
        result = false;
    return result;
}

} // namespace tsr::core
