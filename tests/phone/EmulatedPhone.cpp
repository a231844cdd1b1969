// SPDX-License-Identifier: GPL-3.0-or-later
#include "phone/EmulatedPhone.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <stdexcept>

namespace tsr::test {

QString EmulatedPhone::program() {
    return QStringLiteral(TESSARINE_BINARY_DIR "/tools/phone-emulator/phone-emulator");
}

EmulatedPhone::EmulatedPhone(const QStringList& options) {
    QDir(m_dir.path()).mkpath(QStringLiteral("store/cal"));
    QStringList args{QStringLiteral("--dir"),     m_dir.filePath(QStringLiteral("store")),
                     QStringLiteral("--link"),    link(),
                     QStringLiteral("--journal"), m_dir.filePath(QStringLiteral("journal"))};
    if (!options.join(u' ').contains(QLatin1String("--baud")))
        args << QStringLiteral("--baud") << QStringLiteral("0");
    args << options;
    m_process.setProgram(program());
    m_process.setArguments(args);
    m_process.setProcessChannelMode(QProcess::SeparateChannels);
    m_process.start();
    if (!m_process.waitForStarted(5000))
        throw std::runtime_error("the phone emulator did not start");
    if (devices().isEmpty())
        throw std::runtime_error("the phone emulator announced no device");
}

EmulatedPhone::~EmulatedPhone() {
    kill();
}

void EmulatedPhone::kill() {
    if (m_process.state() != QProcess::NotRunning) {
        m_process.terminate();
        if (!m_process.waitForFinished(3000)) {
            m_process.kill();
            m_process.waitForFinished(3000);
        }
    }
}

QStringList EmulatedPhone::devices(int atLeast) {
    const QDeadlineTimer deadline(2000);
    for (;;) {
        while (m_process.canReadLine())
            m_devices << QString::fromLocal8Bit(m_process.readLine()).trimmed();
        if (m_devices.size() >= atLeast || deadline.hasExpired() || m_process.state() != QProcess::Running)
            return m_devices;
        m_process.waitForReadyRead(50);
    }
}

QString EmulatedPhone::recordPath(int index) const {
    return m_dir.filePath(QStringLiteral("store/cal/%1.vcs").arg(index));
}

void EmulatedPhone::seed(int index, const QByteArray& record) {
    QFile f(recordPath(index));
    if (!f.open(QIODevice::WriteOnly | QIODevice::Truncate) || f.write(record) != record.size())
        throw std::runtime_error("cannot seed a record");
}

bool EmulatedPhone::hasRecord(int index) const {
    return QFileInfo::exists(recordPath(index));
}

QByteArray EmulatedPhone::record(int index) const {
    QFile f(recordPath(index));
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

QMap<int, QByteArray> EmulatedPhone::records() const {
    QMap<int, QByteArray> out;
    const QDir cal(m_dir.filePath(QStringLiteral("store/cal")));
    for (const QString& name : cal.entryList({QStringLiteral("*.vcs")}, QDir::Files))
        out.insert(name.section(u'.', 0, 0).toInt(), record(name.section(u'.', 0, 0).toInt()));
    return out;
}

void EmulatedPhone::seedFile(const QString& path, const QByteArray& bytes) {
    const QString full = m_dir.filePath(QStringLiteral("store/") + path);
    QDir().mkpath(QFileInfo(full).path());
    QFile f(full);
    if (!f.open(QIODevice::WriteOnly | QIODevice::Truncate) || f.write(bytes) != bytes.size())
        throw std::runtime_error("cannot seed a file");
}

QByteArray EmulatedPhone::file(const QString& path) const {
    QFile f(m_dir.filePath(QStringLiteral("store/") + path));
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

QStringList EmulatedPhone::filesIn(const QString& folder) const {
    return QDir(m_dir.filePath(QStringLiteral("store/") + folder)).entryList(QDir::Files, QDir::Name);
}

QStringList EmulatedPhone::journal() const {
    QFile f(m_dir.filePath(QStringLiteral("journal")));
    if (!f.open(QIODevice::ReadOnly))
        return {};
    return QString::fromLatin1(f.readAll()).split(u'\n', Qt::SkipEmptyParts);
}

void EmulatedPhone::clearJournal() {
    QFile::resize(m_dir.filePath(QStringLiteral("journal")), 0);
}

} // namespace tsr::test
