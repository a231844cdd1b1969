// SPDX-License-Identifier: GPL-3.0-or-later
// The debug trace of the DEBUG switch: every trace point stops at a plain box
// and then appends a record to TSRDebug.txt in HomeDir. Box and file texts may
// differ on purpose; the callers pass both.
#pragma once

#include "core/Context.h"

namespace tsr::spine {

// Opens HomeDir/TSRDebug.txt afresh, replacing an older one.
bool openDebugFile(core::Context& ctx);
// One trace point, only while the trace is on; fileText empty means the same as boxText.
void tracePoint(core::Context& ctx, const QString& boxText, const QString& fileText = {});
// The record a trace point writes: quoted date-time, CR LF, the text, quote, CR LF.
QByteArray debugRecord(const core::Context& ctx, const QString& text);
void closeDebugFile(core::Context& ctx);

} // namespace tsr::spine
