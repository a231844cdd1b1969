// SPDX-License-Identifier: GPL-3.0-or-later
// The log saved as logFile.rtf in HomeDir at the end of a dialog run or after a
// failed start. Only the last run's log is kept.
#pragma once

#include "core/Context.h"

namespace tsr::log {

// Where logWriteFile saves the log.
QString logFilePath(const core::Context& ctx);

// Saves the log with its summary as RTF, replacing the former file. False when
// the file could not be written (the error is reported).
bool logWriteFile(core::Context& ctx);

} // namespace tsr::log
