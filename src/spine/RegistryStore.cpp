// SPDX-License-Identifier: GPL-3.0-or-later
#include "spine/RegistryStore.h"

#include "core/Numbers.h"

#include <QDir>
#include <QFileInfo>
#include <QSettings>
#include <QStandardPaths>

namespace tsr::spine {

namespace {

// A key exists once it was created, even without a value: this entry marks it
// and keeps the class it was created with.
const QString ClassEntry = QStringLiteral("(class)");
const QString DwordPrefix = QStringLiteral("dword:");
const QString TextPrefix = QStringLiteral("sz:");

QString groupOf(const QString& key) {
    QString g = key;
    g.replace(u'\\', u'/');
    return g;
}

void fail(RegFailure* failure, int32_t number, const QString& description) {
    if (failure)
        *failure = {number, description};
}

// Value names compare without regard to case, as in the registry the settings
// were laid out for. The open group's entry of that name in the spelling it was
// first written with; a hand-edited file holding several spellings gives the
// exact one first. Empty when there is none.
QString storedName(const QSettings& store, const QString& name) {
    QString found;
    for (const QString& entry : store.childKeys()) {
        if (entry == name)
            return entry;
        if (found.isEmpty() && entry.compare(name, Qt::CaseInsensitive) == 0)
            found = entry;
    }
    return found;
}

// Sets a value of the open group under its first spelling; other spellings of
// the same name, left by hand edits, go so that one value stays.
void setNamed(QSettings& store, const QString& name, const QString& text) {
    QString spelling = storedName(store, name);
    if (spelling.isEmpty())
        spelling = name;
    for (const QString& entry : store.childKeys())
        if (entry != spelling && entry.compare(name, Qt::CaseInsensitive) == 0)
            store.remove(entry);
    store.setValue(spelling, text);
}

bool keyPresent(QSettings& store, const QString& key) {
    store.beginGroup(groupOf(key));
    const bool present = !store.allKeys().isEmpty();
    store.endGroup();
    return present;
}

// DWORDs carry a prefix so that the file keeps the type; text that would read as
// such a prefix is written with a prefix of its own.
QString encode(const core::Value& value) {
    if (value.type() == core::FieldType::Text) {
        const QString text = value.toText();
        if (text.startsWith(DwordPrefix) || text.startsWith(TextPrefix))
            return TextPrefix + text;
        return text;
    }
    int32_t number = 0;
    if (value.type() == core::FieldType::Int32)
        number = value.toInt32();
    else if (value.type() == core::FieldType::Date)
        number = core::CLng(value.toDate().value);
    else if (!value.isEmpty())
        number = core::CLng(value.toDouble());
    return DwordPrefix + QStringLiteral("%1").arg(static_cast<uint32_t>(number), 8, 16, QLatin1Char('0'));
}

core::Value decode(const QVariant& stored) {
    QString text = stored.typeId() == QMetaType::QStringList ? stored.toStringList().join(u',') : stored.toString();
    if (text.startsWith(DwordPrefix)) {
        bool ok = false;
        const uint32_t bits = text.mid(DwordPrefix.size()).toUInt(&ok, 16);
        if (ok)
            return core::Value(static_cast<int32_t>(bits));
    }
    if (text.startsWith(TextPrefix))
        text = text.mid(TextPrefix.size());
    // Text comes back through a buffer one longer than the stored data: stored text
    // ends in its terminator, which is cut with the spare character; empty text was
    // stored without one, so the spare blank stays.
    if (text.isEmpty())
        return core::Value(QStringLiteral(" "));
    return core::Value(text);
}

} // namespace

QString configFolder(const core::Context& ctx) {
    if (!ctx.options.config.isEmpty())
        return ctx.options.config;
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           QStringLiteral("/Orvane/Halvorix 5.0");
}

QString rootFile(const core::Context& ctx, int32_t root) {
    if (root == HKEY_LOCAL_MACHINE)
        return configFolder(ctx) + QStringLiteral("/machine.ini");
    if (root == HKEY_CURRENT_USER)
        return configFolder(ctx) + QStringLiteral("/user.ini");
    return {};
}

bool RegKeyExists(const core::Context& ctx, int32_t root, const QString& key) {
    const QString file = rootFile(ctx, root);
    if (file.isEmpty() || !QFileInfo(file).isFile())
        return false;
    QSettings store(file, QSettings::IniFormat);
    return keyPresent(store, key);
}

bool RegValQuery(const core::Context& ctx, int32_t root, const QString& key, const QString& name, core::Value& out) {
    const QString file = rootFile(ctx, root);
    if (file.isEmpty() || !QFileInfo(file).isFile())
        return false;
    QSettings store(file, QSettings::IniFormat);
    store.beginGroup(groupOf(key));
    const QString spelling = storedName(store, name);
    if (spelling.isEmpty() || spelling == ClassEntry)
        return false;
    out = decode(store.value(spelling));
    return true;
}

// Sets one entry of a key and writes the file at once, as the store's flush does.
// With onlyNewKey the entry is not set when the key exists already.
bool writeEntry(const core::Context& ctx, int32_t root, const QString& key, const QString& name, const QString& text,
                bool onlyNewKey, RegFailure* failure) {
    const QString file = rootFile(ctx, root);
    if (file.isEmpty()) {
        fail(failure, 87, QStringLiteral("The parameter is incorrect."));
        return false;
    }
    QDir().mkpath(QFileInfo(file).absolutePath());
    QSettings store(file, QSettings::IniFormat);
    if (onlyNewKey && keyPresent(store, key))
        return false;
    store.beginGroup(groupOf(key));
    setNamed(store, name, text);
    store.endGroup();
    store.sync();
    if (store.status() != QSettings::NoError) {
        fail(failure, 5, QStringLiteral("Access is denied."));
        return false;
    }
    return true;
}

bool RegKeyCreate(const core::Context& ctx, int32_t root, const QString& key, const QString& keyClass,
                  RegFailure* failure) {
    return writeEntry(ctx, root, key, ClassEntry, keyClass, true, failure);
}

bool RegValWrite(const core::Context& ctx, int32_t root, const QString& key, const QString& name,
                 const core::Value& value, RegFailure* failure) {
    return writeEntry(ctx, root, key, name, encode(value), false, failure);
}

bool RegValueGet(const core::Context& ctx, int32_t root, const QString& key, const QString& name, core::Value& out) {
    return RegKeyExists(ctx, root, key) && RegValQuery(ctx, root, key, name, out);
}

bool RegValuePut(const core::Context& ctx, int32_t root, const QString& key, const QString& name,
                 const core::Value& value, RegFailure* failure) {
    if (!RegKeyExists(ctx, root, key)) {
        fail(failure, 2, QStringLiteral("The system cannot find the file specified."));
        return false;
    }
    RegValWrite(ctx, root, key, name, value, failure);
    return true;
}

qsizetype RegValuesPut(const core::Context& ctx, int32_t root, const QList<RegEntry>& entries, RegFailure* failure) {
    const QString file = rootFile(ctx, root);
    if (file.isEmpty() || !QFileInfo(file).isFile()) {
        fail(failure, 2, QStringLiteral("The system cannot find the file specified."));
        return 0;
    }
    QSettings store(file, QSettings::IniFormat);
    qsizetype written = 0;
    for (const RegEntry& e : entries) {
        if (!keyPresent(store, e.key)) {
            fail(failure, 2, QStringLiteral("The system cannot find the file specified."));
            break;
        }
        store.beginGroup(groupOf(e.key));
        setNamed(store, e.name, encode(e.value));
        store.endGroup();
        ++written;
    }
    store.sync();
    if (store.status() != QSettings::NoError) {
        fail(failure, 5, QStringLiteral("Access is denied."));
        return 0;
    }
    return written;
}

bool RegKeyEnsure(core::Context& ctx, int32_t root, const QString& key, const QString& keyClass) {
    if (RegKeyExists(ctx, root, key))
        return true;
    RegFailure failure;
    if (RegKeyCreate(ctx, root, key, keyClass, &failure))
        return true;
    ctx.ui->msgBox(QStringLiteral("Registry Error ") + QString::number(failure.number) + QStringLiteral(":   ") +
                       failure.description,
                   core::MsgButtons::OK, core::MsgIcon::None, ctx.title());
    return false;
}

} // namespace tsr::spine
