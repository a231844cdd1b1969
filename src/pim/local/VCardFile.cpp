// SPDX-License-Identifier: GPL-3.0-or-later
// Reading and writing the vCard files of the local store.
#include "pim/local/VCardFile.h"

#include "core/Error.h"
#include "pim/Pim.h"

#include <QStringDecoder>
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

// Where the name and parameters of a line end: its first colon outside quotes, or -1.
qsizetype headEnd(const QByteArray& line) {
    bool quoted = false;
    for (qsizetype i = 0; i < line.size(); ++i) {
        if (line[i] == '"')
            quoted = !quoted;
        else if (line[i] == ':' && !quoted)
            return i;
    }
    return -1;
}

// Text as UTF-8 when it is valid UTF-8; other bytes are an 8-bit text of old
// phones and programs, read byte for byte rather than each turned into U+FFFD,
// so that two such values stay apart and read back the same once written.
QString decodeText(const QByteArray& bytes) {
    QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString text = utf8.decode(bytes);
    return utf8.hasError() ? QString::fromLatin1(bytes) : text;
}

// The name and the parameters of a head, split at semicolons outside quotes.
QStringList headParts(const QString& head) {
    QStringList parts;
    QString current;
    bool quoted = false;
    for (QChar c : head) {
        if (c == u'"')
            quoted = !quoted;
        if (c == u';' && !quoted) {
            parts << current;
            current.clear();
        } else {
            current += c;
        }
    }
    parts << current;
    return parts;
}

// A parameter as key (upper case, empty for a bare 2.1 value) and value, the
// value without its quotes and with the ^ escapes of parameter values undone.
std::pair<QString, QString> splitParam(const QString& part) {
    const qsizetype eq = part.indexOf(u'=');
    const QString key = eq < 0 ? QString() : part.left(eq).toUpper();
    QString value = eq < 0 ? part : part.mid(eq + 1);
    if (value.startsWith(u'"') && value.endsWith(u'"') && value.size() >= 2)
        value = value.mid(1, value.size() - 2);
    QString out;
    out.reserve(value.size());
    for (qsizetype i = 0; i < value.size(); ++i) {
        const QChar next = i + 1 < value.size() ? value[i + 1] : QChar();
        if (value[i] == u'^' && (next == u'^' || next == u'\'' || next == u'n' || next == u'N')) {
            out += next == u'^' ? QChar(u'^') : next == u'\'' ? QChar(u'"') : QChar(u'\n');
            ++i;
        } else {
            out += value[i];
        }
    }
    return {key, out};
}

bool isQuotedPrintable(const std::pair<QString, QString>& param) {
    return (param.first == u"ENCODING" || param.first.isEmpty()) &&
           param.second.compare(QStringLiteral("QUOTED-PRINTABLE"), Qt::CaseInsensitive) == 0;
}

// True when the line's own parameters declare quoted-printable, not when the
// words stand somewhere in its value.
bool declaresQuotedPrintable(const QByteArray& line) {
    const qsizetype colon = headEnd(line);
    if (colon < 0)
        return false;
    const QStringList parts = headParts(decodeText(line.left(colon)));
    for (qsizetype i = 1; i < parts.size(); ++i)
        if (isQuotedPrintable(splitParam(parts[i])))
            return true;
    return false;
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
        if (!lines.isEmpty() && lines.last().endsWith('=') && declaresQuotedPrintable(lines.last())) {
            lines.last().chop(1);
            lines.last() += line;
            continue;
        }
        lines << line;
    }
    return lines;
}

// Names of groups, properties and parameters are words of letters, digits,
// "-" and "_"; anything else could not be written back as it was read.
bool isName(const QString& name) {
    if (name.isEmpty())
        return false;
    for (QChar c : name)
        if (!(c.unicode() < 128 && (c.isLetterOrNumber() || c == u'-' || c == u'_')))
            return false;
    return true;
}

// The first name of a property that is no such word, for the error; empty when all are.
QString badName(const VCardProperty& p) {
    if (!p.group.isEmpty() && !isName(p.group))
        return p.group;
    if (!isName(p.name))
        return p.name;
    for (const auto& param : p.params)
        if (!param.first.isEmpty() && !isName(param.first))
            return param.first;
    return {};
}

VCardProperty parseLine(const QByteArray& line) {
    VCardProperty p;
    const qsizetype colon = headEnd(line);
    if (colon < 0)
        return p;
    QByteArray raw = line.mid(colon + 1);
    QStringList parts = headParts(decodeText(line.left(colon)));
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
        auto param = splitParam(part);
        if (isQuotedPrintable(param)) {
            qp = true;
            continue;
        }
        if (param.first == u"CHARSET") {
            charset = param.second;
            continue;
        }
        // "X;=a" names no parameter: it keeps a name that is none, so the reader refuses it.
        if (part.startsWith(u'='))
            param.first = QStringLiteral("=");
        p.params.append(param);
    }
    if (qp) {
        raw = decodeQuotedPrintable(raw);
        // A decoded line break becomes the escaped one of the written form, so the value stays one line.
        raw.replace("\r\n", "\\n");
        raw.replace("\n", "\\n");
    }
    p.value = charset.isEmpty() || charset.compare(QStringLiteral("UTF-8"), Qt::CaseInsensitive) == 0
                  ? decodeText(raw)
                  : QString::fromLatin1(raw);
    return p;
}

// A parameter value as written: quoted when it holds ":" or ";", with "^", a
// line break and a double quote in the ^ escapes, the one way to carry a quote.
QString paramText(const QString& value) {
    QString out;
    out.reserve(value.size());
    for (QChar c : value) {
        if (c == u'^')
            out += QStringLiteral("^^");
        else if (c == u'"')
            out += QStringLiteral("^'");
        else if (c == u'\n')
            out += QStringLiteral("^n");
        else
            out += c;
    }
    if (out.contains(u':') || out.contains(u';'))
        return u'"' + out + u'"';
    return out;
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
        if (inside) {
            const QString bad = badName(p);
            if (!bad.isEmpty())
                corrupt(path, QStringLiteral("\"%1\" is not a name").arg(bad.left(40)));
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
            head += u';' + (key.isEmpty() ? QStringLiteral("TYPE") : key) + u'=' + paramText(value);
        out += foldLine((head + u':' + p.value).toUtf8());
    }
    out += "END:VCARD\r\n";
    return out;
}

} // namespace tsr::pim::local
