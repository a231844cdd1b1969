// SPDX-License-Identifier: GPL-3.0-or-later
#include "phone/ATCServer.h"

#include "core/Error.h"

#include <QDeadlineTimer>
#include <QSerialPort>
#include <utility>

namespace tsr::phone {

namespace {

const QString kSource = QStringLiteral("ATCServer");
// How long the line must stay quiet before a freshly opened device counts as clean.
constexpr int kQuietMs = 20;

// "+CME ERROR: 22" and "+CMS ERROR: 22" give 22; anything else -1.
int phoneErrorNumber(const QByteArray& line) {
    if (!line.startsWith("+CME ERROR:") && !line.startsWith("+CMS ERROR:"))
        return -1;
    bool ok = false;
    const int n = line.mid(11).trimmed().toInt(&ok);
    return ok && n >= 0 ? n : -1;
}

// The numbers after "<prefix>" separated by commas: "$ORGS: 4,1,100,3" gives 4 1 100 3.
QList<int> numbersAfter(const QByteArray& line, const QByteArray& prefix) {
    QList<int> out;
    if (!line.startsWith(prefix))
        return out;
    for (const QByteArray& piece : line.mid(prefix.size()).split(',')) {
        bool ok = false;
        const int n = piece.trimmed().toInt(&ok);
        if (!ok)
            return {};
        out << n;
    }
    return out;
}

} // namespace

QString devicePathForPort(const QString& port) {
    const QString p = port.trimmed();
    if (p.startsWith(QLatin1String("COM"), Qt::CaseInsensitive)) {
        bool ok = false;
        const int n = p.mid(3).toInt(&ok);
        if (ok && n >= 1)
            return QStringLiteral("/dev/ttyS") + QString::number(n - 1);
    }
    return p;
}

ATCServer::ATCServer(QString defaultPort) : m_port(std::move(defaultPort)) {}

ATCServer::~ATCServer() {
    closeDevice();
}

void ATCServer::setPort(const QString& port) {
    if (port == m_port)
        return;
    closeDevice();
    m_port = port;
    ++m_portChanges;
}

bool ATCServer::isOpen() const {
    return m_serial && m_serial->isOpen();
}

void ATCServer::fail(int32_t number, const QString& description) {
    core::raise(number, kSource, description);
}

void ATCServer::closeDevice() {
    if (auto reclaim = std::exchange(m_reclaim, nullptr))
        reclaim();
    if (m_serial) {
        m_serial->close();
        m_serial.reset();
    }
    m_buffer.clear();
}

void ATCServer::ensureOpen() {
    if (auto reclaim = std::exchange(m_reclaim, nullptr))
        reclaim();
    if (!isOpen())
        openDevice();
}

QSerialPort& ATCServer::lendDevice(std::function<void()> reclaim) {
    ensureOpen();
    m_buffer.clear();
    m_reclaim = std::move(reclaim);
    return *m_serial;
}

void ATCServer::returnDevice(bool closeIt) {
    m_reclaim = nullptr;
    if (closeIt)
        closeDevice();
}

void ATCServer::openDevice() {
    closeDevice();
    const QString path = devicePathForPort(m_port);
    m_serial = std::make_unique<QSerialPort>();
    m_serial->setPortName(path);
    if (!m_serial->open(QIODevice::ReadWrite)) {
        const auto error = m_serial->error();
        const QString text = m_serial->errorString();
        m_serial.reset();
        if (error == QSerialPort::PermissionError)
            fail(atc::AccessDenied, QStringLiteral("Access to %1 denied: %2").arg(path, text));
        fail(atc::NoDevice, QStringLiteral("The device %1 cannot be opened: %2").arg(path, text));
    }
    m_serial->setBaudRate(QSerialPort::Baud115200);
    m_serial->setDataBits(QSerialPort::Data8);
    m_serial->setParity(QSerialPort::NoParity);
    m_serial->setStopBits(QSerialPort::OneStop);
    m_serial->setFlowControl(QSerialPort::NoFlowControl);
    drainStaleAnswer();
    // Echo off and numeric error results; the phone must answer both.
    transact(QByteArrayLiteral("ATE0"), -1, nullptr);
    transact(QByteArrayLiteral("AT+CMEE=1"), -1, nullptr);
}

void ATCServer::drainStaleAnswer() {
    // A phone may still be sending the answer to a host that left: a stale final result
    // would be taken for ours. Read until the line has been quiet for a moment.
    m_serial->clear();
    const qint64 deadline = QDeadlineTimer::current().deadline() + m_timeoutMs;
    while (m_serial->waitForReadyRead(kQuietMs) && QDeadlineTimer::current().deadline() < deadline)
        m_serial->readAll();
    m_serial->readAll();
}

bool ATCServer::lineIsDead() const {
    // A timeout is the phone's silence; any other failure of the device is a broken line.
    const auto error = m_serial->error();
    return error != QSerialPort::NoError && error != QSerialPort::TimeoutError;
}

void ATCServer::waitForData(qint64 deadline, const QByteArray& cmd) {
    const qint64 remaining = deadline - QDeadlineTimer::current().deadline();
    if (remaining <= 0 || !m_serial->waitForReadyRead(int(remaining))) {
        if (lineIsDead()) {
            const QString text = m_serial->errorString();
            closeDevice();
            fail(atc::ServerGone,
                 QStringLiteral("The line to the mobile broke during %1: %2").arg(QString::fromLatin1(cmd), text));
        }
        if (QDeadlineTimer::current().deadline() >= deadline) {
            // Whatever still comes belongs to this command: start the next one on a fresh line.
            closeDevice();
            fail(atc::NotResponding,
                 QStringLiteral("No answer to %1 within %2 ms").arg(QString::fromLatin1(cmd)).arg(m_timeoutMs));
        }
        return;
    }
    m_buffer += m_serial->readAll();
}

void ATCServer::sendAll(const QByteArray& bytes, qint64 deadline) {
    if (m_serial->write(bytes) != bytes.size()) {
        const QString text = m_serial->errorString();
        closeDevice();
        fail(atc::ServerGone, QStringLiteral("The line to the mobile broke: %1").arg(text));
    }
    while (m_serial->bytesToWrite() > 0) {
        const qint64 remaining = deadline - QDeadlineTimer::current().deadline();
        if (remaining <= 0 || !m_serial->waitForBytesWritten(int(remaining))) {
            const bool dead = lineIsDead();
            const QString text = m_serial->errorString();
            closeDevice();
            if (dead)
                fail(atc::ServerGone, QStringLiteral("The line to the mobile broke: %1").arg(text));
            fail(atc::NotResponding, QStringLiteral("The mobile does not take data within %1 ms (%2)")
                                         .arg(m_timeoutMs)
                                         .arg(int(m_serial ? m_serial->error() : 0)));
        }
    }
}

ATCServer::Reply ATCServer::command(const QByteArray& cmd, int payloadFor) {
    ensureOpen();
    return transact(cmd, payloadFor, nullptr);
}

ATCServer::Reply ATCServer::transact(const QByteArray& cmd, int payloadFor, const QByteArray* upload) {
    ++m_commands;
    const qint64 deadline = QDeadlineTimer::current().deadline() + m_timeoutMs;
    // Whatever came unasked since the last command belongs to no command.
    m_serial->readAll();
    m_buffer.clear();
    sendAll(cmd + '\r', deadline);

    Reply reply;
    bool headerSeen = false;
    const QByteArray payloadPrefix = QByteArrayLiteral("$ORGR:");
    for (;;) {
        if (upload && m_buffer.startsWith("> ")) {
            m_buffer.remove(0, 2);
            sendAll(*upload, deadline);
            upload = nullptr;
            continue;
        }
        const qsizetype eol = m_buffer.indexOf("\r\n");
        if (eol < 0) {
            waitForData(deadline, cmd);
            continue;
        }
        const QByteArray line = m_buffer.left(eol).trimmed();
        m_buffer.remove(0, eol + 2);
        if (line.isEmpty() || line == cmd)
            continue;
        if (line == "OK") {
            if (payloadFor >= 0 && !headerSeen)
                fail(atc::GeneralFailure,
                     QStringLiteral("No record header in the answer to %1").arg(QString::fromLatin1(cmd)));
            if (upload)
                fail(atc::GeneralFailure,
                     QStringLiteral("The mobile did not ask for the record of %1").arg(QString::fromLatin1(cmd)));
            return reply;
        }
        if (line == "ERROR")
            fail(atc::GeneralFailure, QStringLiteral("ERROR after %1").arg(QString::fromLatin1(cmd)));
        if (const int n = phoneErrorNumber(line); n >= 0)
            fail(atc::PhoneErrorBase + n, QString::fromLatin1(line));
        if (payloadFor >= 0 && line.startsWith(payloadPrefix)) {
            const QList<int> header = numbersAfter(line, payloadPrefix);
            if (header.size() != 2 || header[0] != payloadFor || header[1] < 0)
                fail(atc::GeneralFailure,
                     QStringLiteral("Unexpected record header: %1").arg(QString::fromLatin1(line)));
            const qsizetype length = header[1];
            headerSeen = true;
            if (length > 0) {
                // The block follows the header's CR LF at once and ends with a CR LF of its own.
                while (m_buffer.size() < length + 2)
                    waitForData(deadline, cmd);
                if (m_buffer.mid(length, 2) != "\r\n")
                    fail(atc::GeneralFailure,
                         QStringLiteral("The record of %1 is not framed as announced").arg(QString::fromLatin1(cmd)));
                reply.payload = m_buffer.left(length);
                m_buffer.remove(0, length + 2);
            }
            continue;
        }
        reply.lines << line;
    }
}

QString ATCServer::identification(const QByteArray& cmd) {
    const Reply reply = command(cmd);
    if (reply.lines.isEmpty())
        return {};
    QByteArray text = reply.lines.first();
    // Some phones repeat the command's name before the value.
    const QByteArray prefix = cmd.mid(2) + ':';
    if (text.startsWith(prefix))
        text = text.mid(prefix.size()).trimmed();
    return QString::fromLatin1(text);
}

QString ATCServer::Manufacturer() {
    return identification(QByteArrayLiteral("AT+CGMI"));
}

QString ATCServer::Model() {
    return identification(QByteArrayLiteral("AT+CGMM"));
}

void ATCServer::GetStoreRange(int store, int16_t& first, int16_t& last) {
    const Reply reply = command("AT$ORGS=" + QByteArray::number(store));
    for (const QByteArray& line : reply.lines) {
        const QList<int> n = numbersAfter(line, QByteArrayLiteral("$ORGS:"));
        if (n.size() >= 3 && n[0] == store) {
            first = int16_t(n[1]);
            last = int16_t(n[2]);
            return;
        }
    }
    fail(atc::GeneralFailure, QStringLiteral("The mobile did not tell the range of store %1").arg(store));
}

void ATCServer::ReadEntry(int index, QByteArray& text) {
    text.clear();
    const QByteArray cmd = "AT$ORGR=" + QByteArray::number(atc::CalendarStore) + ',' + QByteArray::number(index);
    text = command(cmd, index).payload;
}

void ATCServer::WriteEntry(int index, const QByteArray& text) {
    ensureOpen();
    const QByteArray cmd = "AT$ORGW=" + QByteArray::number(atc::CalendarStore) + ',' + QByteArray::number(index) + ',' +
                           QByteArray::number(text.size());
    transact(cmd, -1, &text);
}

void ATCServer::DeleteEntry(int index) {
    command("AT$ORGD=" + QByteArray::number(atc::CalendarStore) + ',' + QByteArray::number(index));
}

} // namespace tsr::phone
