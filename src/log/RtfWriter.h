// SPDX-License-Identifier: GPL-3.0-or-later
// A small writer of Rich Text Format for the log's text: bold runs, tabs and
// line breaks in one font. It writes nothing else (no colours, no tables).
#pragma once

#include "core/UserInterface.h"

#include <QByteArray>

namespace tsr::log {

// The text as a complete RTF document in the given font and size (points).
// "\", "{" and "}" are escaped, characters beyond ASCII written as \uN followed by
// their Windows-1252 fallback (\'hh, "?" where it has none), tabs as \tab and line
// breaks (CR LF, CR or LF) as \par.
QByteArray richTextToRtf(const core::RichText& text, const QString& fontName, int pointSize);

} // namespace tsr::log
