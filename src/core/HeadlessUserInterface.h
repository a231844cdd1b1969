// SPDX-License-Identifier: GPL-3.0-or-later
// The user boundary of a run without a window (cron, timers, a terminal): no
// question waits for a person. Each is answered with the choice that loses no
// data (Cancel, No, Abort, leave both sides as they are), and the question and
// its answer are written to standard error, so the run's log shows what was decided.
#pragma once

#include "core/UserInterface.h"

#include <QTextStream>

namespace tsr::core {

class HeadlessUserInterface : public UserInterface {
public:
    explicit HeadlessUserInterface(QTextStream& err) : m_err(err) {}

    MsgResult msgBox(const QString& text, MsgButtons buttons, MsgIcon icon, const QString& title) override;
    void statusShow(const QString&) override {}
    void statusSetText(const QString&) override {}
    void statusHide() override {}
    void processEvents() override {}
    void refreshGrid(int) override {}
    bool mainFormVisibleAndEnabled() const override { return false; }
    void focusMainForm() override {}
    bool printText(const RichText&, const QString&, int) override { return false; }
    int compareContacts(const tables::Recordset& pimRow, const tables::Recordset& mobileRow) override;
    void silentError(int32_t number, const QString& description, const QString& modul, const QString& proc) override;

    // The answer a headless run gives to a box with these buttons.
    static MsgResult safeAnswer(MsgButtons buttons);

private:
    QTextStream& m_err;
};

} // namespace tsr::core
