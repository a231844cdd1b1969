// SPDX-License-Identifier: GPL-3.0-or-later
// A user boundary for the fuzz targets: every box is answered with its first
// button and nothing is kept, so a long run does not grow.
#pragma once

#include "core/UserInterface.h"

namespace tsr::fuzz {

class SilentUi : public core::UserInterface {
public:
    core::MsgResult msgBox(const QString&, core::MsgButtons buttons, core::MsgIcon, const QString&) override {
        switch (buttons) {
        case core::MsgButtons::YesNo:
        case core::MsgButtons::YesNoCancel:
            return core::MsgResult::Yes;
        case core::MsgButtons::AbortRetryIgnore:
            return core::MsgResult::Abort;
        case core::MsgButtons::RetryCancel:
            return core::MsgResult::Retry;
        default:
            return core::MsgResult::OK;
        }
    }
    void statusShow(const QString&) override {}
    void statusSetText(const QString&) override {}
    void statusHide() override {}
    void processEvents() override {}
    void refreshGrid(int) override {}
    bool mainFormVisibleAndEnabled() const override { return false; }
    void focusMainForm() override {}
    bool printText(const core::RichText&, const QString&, int) override { return false; }
};

} // namespace tsr::fuzz
