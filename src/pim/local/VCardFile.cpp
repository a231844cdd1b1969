// SPDX-License-Identifier: GPL-3.0-or-later
// Reading and writing the vCard files of the local store.
#include "pim/local/VCardFile.h"

#include "core/Error.h"
#include "pim/Pim.h"

#include <QRegularExpression>
#include <QTimeZone>

namespace tsr::pim::local {

namespace {

[[noreturn]] void corrupt(const QString& path, const QString& why) {
    core::raise(err::CorruptData, QStringLiteral("LocalStore"),
                QStringLiteral("The file \"%1\" cannot be read: %2").arg(path, why));
}

QByteArray decodeQuotedPrintable(const QByteArray& in) {
    QByteArray out;
    out.reserve(in.size());
    for (qsizetype i = 0; i < in.size(); ++i) {
        if (in[i] == '=' && i + 2 < in.size()) {
            bool ok = false;
            const int v = in.mid(i + 1, 2).toInt(&ok, 16);
            if (ok) {
                out += char(v);
                i += 2;
                continue;
            }
        }
        out += in[i];
    }
    return out;
}

// Unfolds the lines: a line that begins with a blank continues the one before;
// a quoted-printable line that ends in "=" continues on the next.
QList<QByteArray> logicalLines(const QByteArray& text) {
    QList<QByteArray> lines;
    for (QByteArray line : text.split('\n')) {
        if (line.endsWith('\r'))
            line.chop(1);
        if (!lines.isEmpty() && (line.startsWith(' ') || line.startsWith('\t'))) {
            lines.last() += line.mid(1);
            continue;
        }
        if (!lines.isEmpty() && lines.last().endsWith('=') && lines.last().toUpper().contains("QUOTED-PRINTABLE")) {
            lines.last().chop(1);
            lines.last() += line;
            continue;
        }
        lines << line;
    }
    return lines;
}

VCardProperty parseLine(const QByteArray& line) {
    VCardProperty p;
    // The name and parameters end at the first colon outside quotes.
    qsizetype colon = -1;
    bool quoted = false;
    for (qsizetype i = 0; i < line.size(); ++i) {
        if (line[i] == '"')
            quoted = !quoted;
        else if (line[i] == ':' && !quoted) {
            colon = i;
            break;
        }
    }
    if (colon < 0)
        return p;
    const QString head = QString::fromUtf8(line.left(colon));
    QByteArray raw = line.mid(colon + 1);
    QStringList parts = head.split(u';');
    QString name = parts.takeFirst();
    const qsizetype dot = name.indexOf(u'.');
    if (dot >= 0) {
        p.group = name.left(dot);
        name = name.mid(dot + 1);
    }
    p.name = name.toUpper();
    QString charset;
    bool qp = false;
    for (const QString& part : parts) {
        const qsizetype eq = part.indexOf(u'=');
        const QString key = eq < 0 ? QString() : part.left(eq).toUpper();
        QString value = eq < 0 ? part : part.mid(eq + 1);
        if (value.startsWith(u'"') && value.endsWith(u'"') && value.size() >= 2)
            value = value.mid(1, value.size() - 2);
        if ((key == u"ENCODING" && value.toUpper() == u"QUOTED-PRINTABLE") ||
            (key.isEmpty() && value.toUpper() == u"QUOTED-PRINTABLE")) {
            qp = true;
            continue;
        }
        if (key == u"CHARSET") {
            charset = value;
            continue;
        }
        p.params.append({key, value});
    }
    if (qp)
        raw = decodeQuotedPrintable(raw);
    p.value = charset.isEmpty() || charset.compare(QStringLiteral("UTF-8"), Qt::CaseInsensitive) == 0
                  ? QString::fromUtf8(raw)
                  : QString::fromLatin1(raw);
    return p;
}

QByteArray foldLine(const QByteArray& line) {
    // Lines longer than 75 octets are folded, never inside a UTF-8 sequence.
    if (line.size() <= 75)
        return line + "\r\n";
    QByteArray out;
    qsizetype pos = 0, width = 75;
    while (pos < line.size()) {
        qsizetype n = std::min(width, line.size() - pos);
        while (pos + n < line.size() && (uchar(line[pos + n]) & 0xC0) == 0x80)
            --n;
        out += (pos ? QByteArray(" ") : QByteArray()) + line.mid(pos, n) + "\r\n";
        pos += n;
        width = 74;
    }
    return out;
}

} // namespace

QStringList VCardProperty::types() const {
    QStringList out;
    for (const auto& [key, value] : params)
        if (key == u"TYPE" || key.isEmpty())
            for (const QString& t : value.split(u',', Qt::SkipEmptyParts))
                out << t.trimmed().toUpper();
    return out;
}

const VCardProperty* ContactData::first(const QString& name) const {
    for (const VCardProperty& p : props)
        if (p.name == name)
            return &p;
    return nullptr;
}

QString ContactData::text(const QString& name) const {
    const VCardProperty* p = first(name);
    return p ? unescapeValue(p->value) : QString();
}

void ContactData::setText(const QString& name, const QString& value) {
    for (qsizetype i = 0; i < props.size(); ++i)
        if (props[i].name == name) {
            if (value.isEmpty())
                props.removeAt(i);
            else
                props[i].value = escapeValue(value);
            return;
        }
    if (!value.isEmpty())
        props.append({QString(), name, {}, escapeValue(value)});
}

bool ContactData::isGroup() const {
    const QString kind = text(QStringLiteral("KIND")) + text(QStringLiteral("X-ADDRESSBOOKSERVER-KIND"));
    return kind.compare(QStringLiteral("group"), Qt::CaseInsensitive) == 0;
}

core::VbDate ContactData::lastModified() const {
    const QString rev = text(QStringLiteral("REV"));
    if (rev.isEmpty())
        return {};
    QDateTime t = QDateTime::fromString(rev, Qt::ISODate);
    if (!t.isValid())
        t = QDateTime::fromString(rev.left(15), QStringLiteral("yyyyMMdd'T'HHmmss"));
    if (!t.isValid())
        return {};
    if (rev.endsWith(u'Z'))
        t = QDateTime(t.date(), t.time(), QTimeZone::utc()).toLocalTime();
    return core::fromQDateTime(t);
}

core::VbDate ContactData::created() const {
    const QString stamp = text(QStringLiteral("X-TESSARINE-CREATED"));
    const QDateTime t = QDateTime::fromString(stamp, Qt::ISODate);
    return t.isValid() ? core::fromQDateTime(t) : lastModified();
}

QString unescapeValue(const QString& raw) {
    QString out;
    out.reserve(raw.size());
    for (qsizetype i = 0; i < raw.size(); ++i) {
        if (raw[i] == u'\\' && i + 1 < raw.size()) {
            const QChar c = raw[++i];
            out += (c == u'n' || c == u'N') ? QChar(u'\n') : c;
        } else {
            out += raw[i];
        }
    }
    return out;
}

QString escapeValue(const QString& text) {
    QString out;
    out.reserve(text.size());
    for (QChar c : text) {
        if (c == u'\\' || c == u';' || c == u',')
            out += u'\\';
        if (c == u'\r')
            continue;
        out += c == u'\n' ? QStringLiteral("\\n") : QString(c);
    }
    return out;
}

QStringList structuredParts(const QString& raw) {
    QStringList parts;
    QString current;
    for (qsizetype i = 0; i < raw.size(); ++i) {
        if (raw[i] == u'\\' && i + 1 < raw.size()) {
            current += raw[i];
            current += raw[++i];
        } else if (raw[i] == u';') {
            parts << unescapeValue(current);
            current.clear();
        } else {
            current += raw[i];
        }
    }
    parts << unescapeValue(current);
    return parts;
}

QString joinStructured(const QStringList& parts) {
    QStringList escaped;
    for (const QString& p : parts)
        escaped << escapeValue(p);
    return escaped.join(u';');
}

std::unique_ptr<ContactData> parseVCard(const QByteArray& text, const QString& path) {
    auto contact = std::make_unique<ContactData>();
    bool inside = false, ended = false;
    for (const QByteArray& line : logicalLines(text)) {
        if (line.trimmed().isEmpty())
            continue;
        VCardProperty p = parseLine(line);
        if (p.name.isEmpty()) {
            if (inside)
                corrupt(path, QStringLiteral("the line \"%1\" has no value").arg(QString::fromUtf8(line.left(40))));
            continue;
        }
        if (p.name == u"BEGIN" && p.value.trimmed().toUpper() == u"VCARD") {
            if (inside)
                corrupt(path, QStringLiteral("a vCard begins inside another"));
            inside = true;
            continue;
        }
        if (p.name == u"END" && p.value.trimmed().toUpper() == u"VCARD") {
            ended = inside;
            break;
        }
        if (!inside)
            continue;
        if (p.name == u"VERSION")
            continue;
        contact->props << p;
    }
    if (!ended)
        corrupt(path, inside ? QStringLiteral("the vCard does not end") : QStringLiteral("it holds no vCard"));
    if (contact->text(QStringLiteral("UID")).isEmpty())
        corrupt(path, QStringLiteral("the vCard has no UID"));
    return contact;
}

QByteArray writeVCard(ContactData& contact, core::VbDate now) {
    if (contact.text(QStringLiteral("X-TESSARINE-CREATED")).isEmpty()) {
        const core::VbDate created = contact.lastModified().value == 0.0 ? now : contact.lastModified();
        contact.setText(QStringLiteral("X-TESSARINE-CREATED"), core::toQDateTime(created).toString(Qt::ISODate));
    }
    // REV is universal time, as the format demands of it.
    contact.setText(QStringLiteral("REV"),
                    core::toQDateTime(now).toUTC().toString(QStringLiteral("yyyyMMdd'T'HHmmss'Z'")));
    QByteArray out = "BEGIN:VCARD\r\nVERSION:3.0\r\n";
    for (const VCardProperty& p : contact.props) {
        QString head = p.group.isEmpty() ? p.name : p.group + u'.' + p.name;
        for (const auto& [key, value] : p.params)
            head += u';' + (key.isEmpty() ? QStringLiteral("TYPE=") + value : key + u'=' + value);
        out += foldLine((head + u':' + p.value).toUtf8());
    }
    out += "END:VCARD\r\n";
    return out;
}

} // namespace tsr::pim::local
