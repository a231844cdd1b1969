// SPDX-License-Identifier: GPL-3.0-or-later
// Contacts of the local store. Home and business values are the vCard
// properties typed HOME and WORK; an untyped telephone or address counts as
// a home one when no typed one is there, as other tools write them so.
#include "core/Error.h"
#include "pim/local/LocalItemTypes.h"

#include <QRegularExpression>
#include <QUuid>

namespace tsr::pim::local {

namespace {

const QString kN = QStringLiteral("N");
const QString kAdr = QStringLiteral("ADR");
const QString kTel = QStringLiteral("TEL");

bool hasType(const VCardProperty& p, const QString& type) {
    return p.types().contains(type);
}

LocalStore::Entry& saveContact(ItemPlace& place, ContactData& data) {
    LocalStore& store = *place.store;
    if (data.text(QStringLiteral("UID")).isEmpty())
        data.setText(QStringLiteral("UID"), QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper());
    if (place.fileName.isEmpty())
        place.fileName = store.newFileName(place.rel, data.text(QStringLiteral("UID")), QStringLiteral(".vcf"));
    const QByteArray text = writeVCard(data, store.ctx().clock.Now());
    return store.writeFile(place.rel, place.fileName, text);
}

void deleteFile(ItemPlace& place) {
    if (!place.fileName.isEmpty())
        place.store->removeFile(place.rel, place.fileName);
    place.fileName.clear();
}

} // namespace

LocalContact::LocalContact(ItemPlace place, std::shared_ptr<ContactData> data)
    : m_place(std::move(place)), m_data(std::move(data)) {}

QString LocalContact::namePart(int index) const {
    const VCardProperty* n = m_data->first(kN);
    if (!n)
        return {};
    return structuredParts(n->value).value(index).trimmed();
}

void LocalContact::setNamePart(int index, const QString& v) {
    QStringList parts;
    for (const VCardProperty& p : m_data->props)
        if (p.name == kN)
            parts = structuredParts(p.value);
    while (parts.size() < 5)
        parts << QString();
    parts[index] = v;
    const QString value = joinStructured(parts);
    bool found = false;
    for (VCardProperty& p : m_data->props)
        if (p.name == kN && !found) {
            p.value = value;
            found = true;
        }
    if (!found)
        m_data->props.prepend({QString(), kN, {}, value});
    m_namesChanged = true;
}

QString LocalContact::FileAs() const {
    const QString stored = m_data->text(QStringLiteral("X-TESSARINE-FILEAS"));
    if (!stored.isEmpty())
        return stored;
    const QString last = LastName(), first = FirstName();
    if (!last.isEmpty() && !first.isEmpty())
        return last + QStringLiteral(", ") + first;
    if (!last.isEmpty() || !first.isEmpty())
        return last + first;
    const QString company = CompanyName();
    return company.isEmpty() ? FullName() : company;
}

QString LocalContact::CompanyName() const {
    const VCardProperty* org = m_data->first(QStringLiteral("ORG"));
    return org ? structuredParts(org->value).value(0) : QString();
}

void LocalContact::setCompanyName(const QString& v) {
    m_data->setText(QStringLiteral("ORG"), v);
}

VCardProperty* LocalContact::findAddress(bool home) const {
    const QString type = home ? QStringLiteral("HOME") : QStringLiteral("WORK");
    VCardProperty* untyped = nullptr;
    for (VCardProperty& p : m_data->props) {
        if (p.name != kAdr)
            continue;
        if (hasType(p, type))
            return &p;
        if (!untyped && !hasType(p, QStringLiteral("HOME")) && !hasType(p, QStringLiteral("WORK")))
            untyped = &p;
    }
    return home ? untyped : nullptr;
}

QString LocalContact::address(bool home, int part) const {
    const VCardProperty* p = findAddress(home);
    return p ? structuredParts(p->value).value(part) : QString();
}

void LocalContact::setAddress(bool home, int part, const QString& v) {
    VCardProperty* p = findAddress(home);
    if (!p) {
        if (v.isEmpty())
            return;
        m_data->props.append({QString(),
                              kAdr,
                              {{QStringLiteral("TYPE"), home ? QStringLiteral("home") : QStringLiteral("work")}},
                              QStringLiteral(";;;;;;")});
        p = &m_data->props.last();
    }
    QStringList parts = structuredParts(p->value);
    while (parts.size() < 7)
        parts << QString();
    parts[part] = v;
    if (std::all_of(parts.begin(), parts.end(), [](const QString& s) { return s.isEmpty(); })) {
        m_data->props.removeIf([p](const VCardProperty& x) { return &x == p; });
        return;
    }
    p->value = joinStructured(parts);
}

VCardProperty* LocalContact::findPhone(Phone kind) const {
    VCardProperty* untyped = nullptr;
    for (VCardProperty& p : m_data->props) {
        if (p.name != kTel)
            continue;
        const QStringList t = p.types();
        const bool fax = t.contains(QStringLiteral("FAX")), cell = t.contains(QStringLiteral("CELL"));
        const bool home = t.contains(QStringLiteral("HOME")), work = t.contains(QStringLiteral("WORK"));
        switch (kind) {
        case Phone::Home:
            if (home && !fax && !cell)
                return &p;
            if (!untyped && !home && !work && !fax && !cell && !t.contains(QStringLiteral("PAGER")))
                untyped = &p;
            break;
        case Phone::Business:
            if (work && !fax && !cell)
                return &p;
            break;
        case Phone::Mobile:
            if (cell)
                return &p;
            break;
        case Phone::HomeFax:
            if (fax && !work)
                return &p;
            break;
        case Phone::BusinessFax:
            if (fax && work)
                return &p;
            break;
        }
    }
    return kind == Phone::Home ? untyped : nullptr;
}

QString LocalContact::phone(Phone kind) const {
    const VCardProperty* p = findPhone(kind);
    return p ? unescapeValue(p->value) : QString();
}

void LocalContact::setPhone(Phone kind, const QString& v) {
    VCardProperty* p = findPhone(kind);
    if (p && v.isEmpty()) {
        m_data->props.removeIf([p](const VCardProperty& x) { return &x == p; });
        return;
    }
    if (p) {
        p->value = escapeValue(v);
        return;
    }
    if (v.isEmpty())
        return;
    static const QHash<int, QString> types{{int(Phone::Home), QStringLiteral("home")},
                                           {int(Phone::Business), QStringLiteral("work")},
                                           {int(Phone::Mobile), QStringLiteral("cell")},
                                           {int(Phone::HomeFax), QStringLiteral("home,fax")},
                                           {int(Phone::BusinessFax), QStringLiteral("work,fax")}};
    m_data->props.append({QString(), kTel, {{QStringLiteral("TYPE"), types.value(int(kind))}}, escapeValue(v)});
}

void LocalContact::setEmail1Address(const QString& v) {
    const bool had = m_data->first(QStringLiteral("EMAIL")) != nullptr;
    m_data->setText(QStringLiteral("EMAIL"), v);
    if (!had && !v.isEmpty())
        m_data->props.last().params.append({QStringLiteral("TYPE"), QStringLiteral("internet")});
}

QString LocalContact::Categories() const {
    QStringList out;
    for (const VCardProperty& p : m_data->props) {
        if (p.name != u"CATEGORIES")
            continue;
        // Categories are separated by unescaped commas.
        QString current;
        for (qsizetype i = 0; i < p.value.size(); ++i) {
            if (p.value[i] == u'\\' && i + 1 < p.value.size())
                current += p.value[++i];
            else if (p.value[i] == u',') {
                out << current.trimmed();
                current.clear();
            } else
                current += p.value[i];
        }
        out << current.trimmed();
    }
    out.removeAll(QString());
    return out.join(QStringLiteral(", "));
}

void LocalContact::setCategories(const QString& v) {
    static const QRegularExpression sepRe(QStringLiteral("\\s*[,;]\\s*"));
    QStringList escaped;
    for (const QString& c : v.split(sepRe, Qt::SkipEmptyParts))
        escaped << escapeValue(c.trimmed());
    m_data->props.removeIf([](const VCardProperty& p) { return p.name == u"CATEGORIES"; });
    if (!escaped.isEmpty())
        m_data->props.append({QString(), QStringLiteral("CATEGORIES"), {}, escaped.join(u',')});
}

void LocalContact::Save() {
    // The formatted name follows the names when they changed; a vCard 3.0 needs N and FN.
    if (m_namesChanged || FullName().isEmpty()) {
        QString fn = (FirstName() + u' ' + LastName()).trimmed();
        if (fn.isEmpty())
            fn = CompanyName();
        if (fn.isEmpty())
            fn = Email1Address();
        m_data->setText(QStringLiteral("FN"), fn);
        m_namesChanged = false;
    }
    if (!m_data->first(kN))
        m_data->props.prepend({QString(), kN, {}, QStringLiteral(";;;;")});
    saveContact(m_place, *m_data).contact = m_data;
}

void LocalContact::Delete() {
    deleteFile(m_place);
}

void LocalDistList::Save() {
    saveContact(m_place, *m_data).contact = m_data;
}

void LocalDistList::Delete() {
    deleteFile(m_place);
}

} // namespace tsr::pim::local
