// SPDX-License-Identifier: GPL-3.0-or-later
// The log's process-wide state.
#pragma once

#include <QString>
#include <cstdint>

namespace tsr::core {

struct LogState {
    bool LogHasError = false;
    int16_t LogErrorCount = 0;
    int16_t LogProgramErrors = 0;
    QString LogDate;
    QString LogStart;
    QString LogEnd;
    QString LogAction;
    QString LogTransfer;
    QString LogPrintMode = QStringLiteral("all");
    QString LogSummaryText;
    // An editor's transfer and an AutoSync keep LogHasError as it stands.
    bool EditorTransferRunning = false;
    bool AutoSyncRunning = false;
    int16_t PIMErrorCount = 0;
};

} // namespace tsr::core
