// SPDX-License-Identifier: GPL-3.0-or-later
// A user boundary with nobody behind it: every box is answered with its first
// button and nothing is kept, so a long unattended run does not grow. Fuzz
// targets, benchmarks and runs without a display use it.
#pragma once

#include "core/UserInterface.h"

namespace tsr::core {

class SilentUserInterface : public UserInterface {
public:
    MsgResult msgBox(const QString&, MsgButtons buttons, MsgIcon, const QString&) override {
        switch (buttons) {
        case MsgButtons::YesNo:
        case MsgButtons::YesNoCancel:
            return MsgResult::Yes;
        case MsgButtons::AbortRetryIgnore:
            return MsgResult::Abort;
        case MsgButtons::RetryCancel:
            return MsgResult::Retry;
        default:
            return MsgResult::OK;
        }
    }
    void statusShow(const QString&) override {}
    void statusSetText(const QString&) override {}
    void statusHide() override {}
    void processEvents() override {}
    void refreshGrid(int) override {}
    bool mainFormVisibleAndEnabled() const override { return false; }
    void focusMainForm() override {}
    bool printText(const RichText&, const QString&, int) override { return false; }
};

} // namespace tsr::core
