// SPDX-License-Identifier: GPL-3.0-or-later
// One contact of the local store: a vCard file as a list of properties, read
// from 2.1, 3.0 or 4.0 text and written back as 3.0. Properties the program
// does not know stay as they stand.
#pragma once

#include "core/VbDate.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>
#include <memory>

namespace tsr::pim::local {

struct VCardProperty {
    QString group;
    QString name;                              // upper case
    QList<std::pair<QString, QString>> params; // names upper case; a bare 2.1 type has an empty name
    QString value;                             // as written, still escaped

    // The TYPE values in upper case, from TYPE=A,B, TYPE=A;TYPE=B and bare 2.1 types.
    QStringList types() const;
};

struct ContactData {
    QList<VCardProperty> props;

    const VCardProperty* first(const QString& name) const;
    // The value of the first property of that name, unescaped.
    QString text(const QString& name) const;
    // Sets or, with an empty value, removes the first property of that name.
    void setText(const QString& name, const QString& value);
    bool isGroup() const;
    // From REV and our own creation stamp, read when asked.
    core::VbDate lastModified() const;
    core::VbDate created() const;
};

QString unescapeValue(const QString& raw);
QString escapeValue(const QString& text);
// The parts of a structured value (N, ADR) split at unescaped semicolons, each unescaped.
QStringList structuredParts(const QString& raw);
QString joinStructured(const QStringList& parts);

// Reads the first vCard of a file; raises pim::err::CorruptData naming the file.
std::unique_ptr<ContactData> parseVCard(const QByteArray& text, const QString& path);
QByteArray writeVCard(ContactData& contact, core::VbDate now);

} // namespace tsr::pim::local
