// SPDX-License-Identifier: GPL-3.0-or-later
#include "phone/ObexListing.h"

#include <QRegularExpression>
#include <QXmlStreamReader>

namespace tsr::phone {

std::optional<QList<QStringList>> obexListedFiles(const QByteArray& document, const QString& mask) {
    const QRegularExpression match(
        QRegularExpression::wildcardToRegularExpression(mask.isEmpty() ? QStringLiteral("*") : mask),
        QRegularExpression::CaseInsensitiveOption);
    QXmlStreamReader xml(document);
    QList<QStringList> rows;
    bool listing = false;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        if (xml.name() == QLatin1String("folder-listing")) {
            listing = true;
        } else if (listing && xml.name() == QLatin1String("file")) {
            const QString name = xml.attributes().value(QLatin1String("name")).toString();
            if (!name.isEmpty() && match.match(name).hasMatch())
                rows.append({name, xml.attributes().value(QLatin1String("size")).toString()});
        }
    }
    if (!listing || xml.hasError())
        return std::nullopt;
    return rows;
}

} // namespace tsr::phone
