// SPDX-License-Identifier: GPL-3.0-or-later
// The local store's files and folders, and its application, namespace and
// folder objects.
#include "pim/local/LocalStore.h"

#include "core/ErrorReport.h"
#include "pim/local/LocalItems.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSaveFile>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <optional>

namespace tsr::pim::local {

namespace {

const QString kCalendar = QStringLiteral("calendar");
const QString kContacts = QStringLiteral("contacts");
const QString kDisplayName = QStringLiteral("displayname");
const QString kFolderPrefix = QStringLiteral("TSRF0000");
const QString kStorePrefix = QStringLiteral("TSRS0000");

class LocalFolder : public Folder {
public:
    LocalFolder(std::shared_ptr<LocalStore> store, QString rel) : m_store(std::move(store)), m_rel(std::move(rel)) {}
    QString Name() const override { return m_store->displayName(m_rel); }
    std::shared_ptr<Folder> Parent() const override {
        if (m_rel.isEmpty())
            return nullptr;
        const qsizetype slash = m_rel.lastIndexOf(u'/');
        return std::make_shared<LocalFolder>(m_store, slash < 0 ? QString() : m_rel.left(slash));
    }
    QString EntryID() const override { return m_store->folderEntryID(m_rel); }
    QString StoreID() const override { return m_store->storeID(); }
    std::shared_ptr<pim::Items> Items() override {
        if (!QFileInfo(m_store->absPath(m_rel)).isDir())
            core::raise(err::NotFound, QStringLiteral("Folder:Items"),
                        QStringLiteral("The folder \"%1\" is gone.").arg(m_store->absPath(m_rel)));
        return makeItems(m_store, m_rel);
    }
    QList<std::shared_ptr<Folder>> Folders() override {
        QList<std::shared_ptr<Folder>> out;
        for (const QString& child : m_store->subfolders(m_rel))
            out << std::make_shared<LocalFolder>(m_store, child);
        return out;
    }
    int DefaultItemType() const override {
        if (m_rel.isEmpty())
            return 0; // the top of the store holds mail in the object model's terms
        return m_store->isCalendarFolder(m_rel) ? olAppointmentItem : olContactItem;
    }

private:
    std::shared_ptr<LocalStore> m_store;
    QString m_rel;
};

class LocalNamespace : public Namespace {
public:
    explicit LocalNamespace(std::shared_ptr<LocalStore> store) : m_store(std::move(store)) {}
    std::shared_ptr<Folder> GetDefaultFolder(int folderType) override {
        QString rel;
        if (folderType == olFolderCalendar)
            rel = kCalendar;
        else if (folderType == olFolderContacts)
            rel = kContacts;
        else
            core::raise(err::InvalidArgument, QStringLiteral("Namespace:GetDefaultFolder"),
                        QStringLiteral("The store has no default folder %1.").arg(folderType));
        if (!QFileInfo(m_store->absPath(rel)).isDir())
            core::raise(err::NotFound, QStringLiteral("Namespace:GetDefaultFolder"),
                        QStringLiteral("The folder \"%1\" does not exist.").arg(m_store->absPath(rel)));
        return std::make_shared<LocalFolder>(m_store, rel);
    }
    std::shared_ptr<Folder> GetFolderFromID(const QString& entryID, const QString& storeID) override {
        const auto rel = m_store->relFromEntryID(entryID);
        if (!rel || (!storeID.isEmpty() && !m_store->ownsStoreID(storeID)) ||
            !QFileInfo(m_store->absPath(*rel)).isDir())
            core::raise(err::NotFound, QStringLiteral("Namespace:GetFolderFromID"),
                        QStringLiteral("The folder was not found."));
        return std::make_shared<LocalFolder>(m_store, *rel);
    }
    std::shared_ptr<Item> GetItemFromID(const QString& entryID, const QString& storeID) override {
        if (!storeID.isEmpty() && !m_store->ownsStoreID(storeID))
            core::raise(err::NotFound, QStringLiteral("Namespace:GetItemFromID"),
                        QStringLiteral("The store of the item was not found."));
        auto item = m_store->findItem(entryID);
        if (!item)
            core::raise(err::NotFound, QStringLiteral("Namespace:GetItemFromID"),
                        QStringLiteral("The item \"%1\" was not found.").arg(entryID));
        return item;
    }
    QList<std::shared_ptr<Folder>> Folders() override { return {std::make_shared<LocalFolder>(m_store, QString())}; }

private:
    std::shared_ptr<LocalStore> m_store;
};

class LocalApplication : public Application {
public:
    explicit LocalApplication(std::shared_ptr<LocalStore> store) : m_store(std::move(store)) {}
    std::shared_ptr<Namespace> GetNamespace(const QString& type) override {
        if (type.compare(QStringLiteral("MAPI"), Qt::CaseInsensitive) != 0)
            core::raise(err::InvalidArgument, QStringLiteral("Application:GetNamespace"),
                        QStringLiteral("The namespace \"%1\" is not known.").arg(type));
        return std::make_shared<LocalNamespace>(m_store);
    }
    QString Name() const override { return QStringLiteral("Local PIM"); }
    QString Version() const override { return QStringLiteral("16.0.0.0"); }

private:
    std::shared_ptr<LocalStore> m_store;
};

// A file's modification time and size straight from stat: QFileInfo turns the time
// into local time, which costs more than the stat itself on a folder of thousands.
struct FileTimes {
    qint64 mtimeNs = 0;
    qint64 size = -1;
};

FileTimes fileTimes(const QString& path) {
    struct stat st {};
    if (::stat(QFile::encodeName(path).constData(), &st) != 0)
        return {};
    return {qint64(st.st_mtim.tv_sec) * 1000000000 + st.st_mtim.tv_nsec, qint64(st.st_size)};
}

// The whole text of a file and its times, through one descriptor; the error text when it cannot be read.
std::optional<QByteArray> readWhole(const QString& path, FileTimes& times, QString& error) {
    const int fd = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) {
        error = qt_error_string(errno);
        times = fileTimes(path);
        return std::nullopt;
    }
    struct stat st {};
    QByteArray text;
    bool ok = ::fstat(fd, &st) == 0;
    if (ok) {
        times = {qint64(st.st_mtim.tv_sec) * 1000000000 + st.st_mtim.tv_nsec, qint64(st.st_size)};
        // Read to the end, whatever the size said: a file may grow while it is read.
        text.resize(qsizetype(st.st_size) + 1);
        qsizetype filled = 0;
        while (ok) {
            if (filled == text.size())
                text.resize(text.size() * 2 + 4096);
            const ssize_t n = ::read(fd, text.data() + filled, size_t(text.size() - filled));
            if (n < 0 && errno == EINTR)
                continue;
            if (n <= 0) {
                ok = n == 0;
                break;
            }
            filled += n;
        }
        text.truncate(filled);
    }
    if (!ok)
        error = qt_error_string(errno);
    ::close(fd);
    if (!ok)
        return std::nullopt;
    return text;
}

bool makeFolder(const QString& path, const QString& displayName) {
    if (!QDir().mkpath(path))
        return false;
    const QString namePath = path + u'/' + kDisplayName;
    if (QFileInfo::exists(namePath))
        return true;
    QSaveFile f(namePath);
    return f.open(QIODevice::WriteOnly) && f.write(displayName.toUtf8()) >= 0 && f.commit();
}

} // namespace

LocalStore::LocalStore(core::Context& ctx, const QString& root) : m_ctx(ctx), m_root(QDir(root).absolutePath()) {
    // The store's identity is its path; the settings store forgets ids under 100 characters.
    const QByteArray path = m_root.toUtf8();
    m_storeID = kStorePrefix + QString::fromLatin1(QCryptographicHash::hash(path, QCryptographicHash::Sha256).toHex()) +
                QString::fromLatin1(path.toHex());
    while (m_storeID.size() < 100)
        m_storeID += u'0';
}

QString LocalStore::absPath(const QString& rel) const {
    return rel.isEmpty() ? m_root : m_root + u'/' + rel;
}

QString LocalStore::folderEntryID(const QString& rel) const {
    return kFolderPrefix + QString::fromLatin1(rel.toUtf8().toHex()).toUpper();
}

std::optional<QString> LocalStore::relFromEntryID(const QString& entryID) const {
    if (!entryID.startsWith(kFolderPrefix))
        return std::nullopt;
    const QByteArray hex = entryID.mid(kFolderPrefix.size()).toLatin1();
    static const QRegularExpression hexRe(QStringLiteral("^([0-9A-Fa-f]{2})*$"));
    if (!hexRe.match(QString::fromLatin1(hex)).hasMatch())
        return std::nullopt;
    const QString rel = QString::fromUtf8(QByteArray::fromHex(hex));
    if (rel.contains(QStringLiteral("..")) || rel.startsWith(u'/'))
        return std::nullopt;
    return rel;
}

bool LocalStore::ownsStoreID(const QString& storeID) const {
    return storeID.compare(m_storeID, Qt::CaseInsensitive) == 0;
}

bool LocalStore::isCalendarFolder(const QString& rel) const {
    if (rel == kCalendar || rel.startsWith(kCalendar + u'/'))
        return true;
    const QDir dir(absPath(rel));
    return !dir.entryList({QStringLiteral("*.ics")}, QDir::Files).isEmpty() &&
           dir.entryList({QStringLiteral("*.vcf")}, QDir::Files).isEmpty();
}

QString LocalStore::displayName(const QString& rel) const {
    QFile f(absPath(rel) + u'/' + kDisplayName);
    if (f.open(QIODevice::ReadOnly)) {
        const QString name = QString::fromUtf8(f.readAll()).trimmed();
        if (!name.isEmpty())
            return name;
    }
    return rel.isEmpty() ? QFileInfo(m_root).fileName() : rel.section(u'/', -1);
}

QStringList LocalStore::subfolders(const QString& rel) const {
    QStringList out;
    const QStringList names = QDir(absPath(rel)).entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
    for (const QString& name : names)
        out << (rel.isEmpty() ? name : rel + u'/' + name);
    return out;
}

QStringList LocalStore::allFolders() const {
    QStringList out, todo = subfolders(QString());
    while (!todo.isEmpty()) {
        const QString rel = todo.takeFirst();
        out << rel;
        todo = subfolders(rel) + todo;
    }
    return out;
}

namespace {
// A read pass asks for a folder once per entry it pairs: within this time, and
// while the folder's own time stands, its files are not looked at one by one again.
constexpr qint64 kSweepMs = 2000;
} // namespace

void LocalStore::noteOwnChange(const QString& rel) {
    auto it = m_sweeps.find(rel);
    if (it != m_sweeps.end())
        it->folderTimeNs = fileTimes(absPath(rel)).mtimeNs;
}

LocalStore::DirCache& LocalStore::refresh(const QString& rel) {
    DirCache& cache = m_dirs[rel];
    const QString folder = absPath(rel);
    const qint64 folderTimeNs = fileTimes(folder).mtimeNs;
    auto sweep = m_sweeps.find(rel);
    if (sweep != m_sweeps.end() && sweep->folderTimeNs == folderTimeNs && sweep->age.isValid() &&
        sweep->age.elapsed() < kSweepMs)
        return cache;
    Sweep& next = m_sweeps[rel];
    next.folderTimeNs = folderTimeNs;
    next.age.start();
    const bool calendar = isCalendarFolder(rel);
    const QStringList names =
        QDir(folder).entryList({calendar ? QStringLiteral("*.ics") : QStringLiteral("*.vcf")}, QDir::Files, QDir::Name);
    QSet<QString> seen;
    seen.reserve(names.size());
    ZoneCache& zones = m_zones[rel];
    for (const QString& name : names) {
        seen.insert(name);
        const QString path = folder + u'/' + name;
        Entry& entry = cache[name];
        if (entry.size >= 0) {
            const FileTimes times = fileTimes(path);
            if (times.size >= 0 && entry.size == times.size && entry.mtimeNs == times.mtimeNs)
                continue;
        }
        entry = Entry{};
        FileTimes times;
        QString error;
        const std::optional<QByteArray> read = readWhole(path, times, error);
        entry.mtimeNs = times.mtimeNs;
        entry.size = times.size;
        try {
            if (!read)
                core::raise(err::CorruptData, QStringLiteral("LocalStore"),
                            QStringLiteral("The file \"%1\" cannot be opened: %2").arg(path, error));
            const QByteArray& text = *read;
            if (calendar)
                entry.event = parseEvent(text, path, zones);
            else
                entry.contact = parseVCard(text, path);
        } catch (const core::TsrError& e) {
            entry.failed = true;
            m_problems << e.description();
            core::ErrorReport(m_ctx, e, QStringLiteral("LocalStore"), QStringLiteral("ReadFolder"));
        }
    }
    for (auto it = cache.begin(); it != cache.end();)
        it = seen.contains(it.key()) ? std::next(it) : cache.erase(it);
    return cache;
}

LocalStore::Entry& LocalStore::writeFile(const QString& rel, const QString& fileName, const QByteArray& text) {
    const QString path = absPath(rel) + u'/' + fileName;
    QSaveFile f(path);
    if (!f.open(QIODevice::WriteOnly) || f.write(text) != text.size() || !f.commit())
        core::raise(err::DiskError, QStringLiteral("LocalStore"),
                    QStringLiteral("The file \"%1\" cannot be written: %2").arg(path, f.errorString()));
    const FileTimes times = fileTimes(path);
    Entry& entry = m_dirs[rel][fileName];
    entry.mtimeNs = times.mtimeNs;
    entry.size = times.size;
    entry.failed = false;
    noteOwnChange(rel);
    return entry;
}

void LocalStore::removeFile(const QString& rel, const QString& fileName) {
    const QString path = absPath(rel) + u'/' + fileName;
    if (QFileInfo::exists(path) && !QFile::remove(path))
        core::raise(err::DiskError, QStringLiteral("LocalStore"),
                    QStringLiteral("The file \"%1\" cannot be removed.").arg(path));
    m_dirs[rel].remove(fileName);
    noteOwnChange(rel);
}

QString LocalStore::newFileName(const QString& rel, const QString& uid, const QString& ext) const {
    static const QRegularExpression safeRe(QStringLiteral("^[A-Za-z0-9@._-]{1,100}$"));
    QString base = safeRe.match(uid).hasMatch()
                       ? uid
                       : QString::fromLatin1(QCryptographicHash::hash(uid.toUtf8(), QCryptographicHash::Sha1).toHex());
    QString name = base + ext;
    for (int n = 1; QFileInfo::exists(absPath(rel) + u'/' + name); ++n)
        name = base + u'-' + QString::number(n) + ext;
    return name;
}

std::shared_ptr<Item> LocalStore::findItem(const QString& entryID) {
    QStringList folders{kCalendar};
    for (const QString& rel : allFolders())
        if (rel != kCalendar)
            folders << rel;
    for (const QString& rel : folders) {
        DirCache& cache = refresh(rel);
        for (auto it = cache.cbegin(); it != cache.cend(); ++it) {
            const Entry& e = it.value();
            const bool hit = (e.event && e.event->uid == entryID) ||
                             (e.contact && e.contact->text(QStringLiteral("UID")) == entryID);
            if (hit)
                return makeItem(shared_from_this(), rel, it.key(), e);
        }
    }
    return nullptr;
}

std::shared_ptr<Application> openLocalApplication(core::Context& ctx, const QString& dir) {
    if (!makeFolder(dir + u'/' + kCalendar, QStringLiteral("Calendar")) ||
        !makeFolder(dir + u'/' + kContacts, QStringLiteral("Contacts")))
        core::raise(err::DiskError, QStringLiteral("LocalStore"),
                    QStringLiteral("The PIM folder \"%1\" cannot be made.").arg(dir));
    return std::make_shared<LocalApplication>(std::make_shared<LocalStore>(ctx, dir));
}

} // namespace tsr::pim::local
