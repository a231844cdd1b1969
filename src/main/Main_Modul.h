// SPDX-License-Identifier: GPL-3.0-or-later
// The path from process start to a live main window or a finished unattended
// run: the start-up sequence, the silent run (AutoSync or the options dialog
// alone), the dialog run's set-up and its deferred start. Windows are reached
// only through the user boundary, so the whole sequence runs in tests.
#pragma once

#include <QString>
#include <memory>

namespace tsr::core {
struct Context;
}
namespace tsr::spine {
class InstanceServer;
}

namespace tsr::main {

// What a start leaves running: the first instance's socket for later starts.
struct StartUp {
    std::unique_ptr<spine::InstanceServer> instance;
    StartUp();
    ~StartUp();
};

// The whole start. `commandLine` holds the classic tokens. Returns true when a
// dialog run goes on in the event loop; false when the process is to end (a silent
// run finished, or a fall-out).
bool Main(core::Context& ctx, StartUp& start, const QString& commandLine, const QString& programFolder = {});
bool TSRInitialize(core::Context& ctx, StartUp& start, const QString& commandLine, const QString& programFolder);
bool TSRRunSilent(core::Context& ctx);
void SilentAutoSync(core::Context& ctx);
void SilentOptionForm(core::Context& ctx);
bool TSRRunDialog(core::Context& ctx);
// The deferred start of a dialog run, 1500 ms after TSRRunDialog: status of the
// phone, the first reads, then GlobalStartDone.
void AppTimer_Timer(core::Context& ctx);

// The phone's paths as the file-transfer driver knows them.
void setPhonePaths(core::Context& ctx);

} // namespace tsr::main
