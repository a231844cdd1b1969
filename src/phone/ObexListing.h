// SPDX-License-Identifier: GPL-3.0-or-later
// The x-obex/folder-listing document a phone sends for a folder, read into
// the rows the file-transfer driver lists: one per file, name then size.
#pragma once

#include <QByteArray>
#include <QList>
#include <QStringList>
#include <optional>

namespace tsr::phone {

// The files whose names match `mask` ("*.vcf", case ignored), in the phone's order;
// nothing when the document is not a folder listing.
std::optional<QList<QStringList>> obexListedFiles(const QByteArray& document, const QString& mask);

} // namespace tsr::phone
