// SPDX-License-Identifier: GPL-3.0-or-later
// The progress dialog's logic: its Continue and Quiet flags and the cancel
// question. Long loops ask GetState between steps and stop when it says false.
#pragma once

#include <QString>

namespace tsr::core {

struct Context;

class StatusAnzeige {
public:
    explicit StatusAnzeige(Context& ctx) : m_ctx(ctx) {}

    void Start(const QString& title, bool quiet);
    void Quit();
    void SetText(const QString& message);
    bool GetState();
    // The cancel gestures of the dialog (Enter, Escape, the cancel button).
    void cancelRequested() { m_continue = false; }

    bool isQuiet() const { return m_quiet; }
    bool isContinue() const { return m_continue; }

private:
    Context& m_ctx;
    bool m_continue = false;
    bool m_quiet = true;
};

} // namespace tsr::core
