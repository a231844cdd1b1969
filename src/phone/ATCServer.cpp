// SPDX-License-Identifier: GPL-3.0-or-later
#include "phone/ATCServer.h"

#include "core/Error.h"

#include <QDeadlineTimer>
#include <QRandomGenerator>
#include <QSerialPort>
#include <algorithm>
#include <utility>

namespace tsr::phone {

namespace {

const QString kSource = QStringLiteral("ATCServer");
// Beyond the phone's pause: the last bytes of a broken write may still be crossing the line.
constexpr int kPauseMarginMs = 300;

bool isFinalResult(const QByteArray& line) {
    return line == "OK" || line == "ERROR" || line.startsWith("+CME ERROR:") || line.startsWith("+CMS ERROR:");
}

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
    m_first = m_last = -1;
    m_rangeRead = true;
    ++m_portChanges;
}

void ATCServer::setLineSettings(const core::LineSettings& line) {
    if (line == m_line)
        return;
    closeDevice();
    m_line = line;
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
    forgetReadAhead();
}

void ATCServer::failFraming(const QString& description) {
    // What is left of this answer would be read as the next one's: start that one on a fresh line.
    closeDevice();
    fail(atc::GeneralFailure, description);
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
    applyLineSettings(path);
    waitOutBrokenWrite();
    probe();
    // Echo off and numeric error results; a line without both is closed again, not used half set up.
    setUp(QByteArrayLiteral("ATE0"));
    setUp(QByteArrayLiteral("AT+CMEE=1"));
}

void ATCServer::applyLineSettings(const QString& path) {
    using Line = core::LineSettings;
    const QSerialPort::Parity parity = m_line.parity == Line::Parity::Even    ? QSerialPort::EvenParity
                                       : m_line.parity == Line::Parity::Odd   ? QSerialPort::OddParity
                                       : m_line.parity == Line::Parity::Mark  ? QSerialPort::MarkParity
                                       : m_line.parity == Line::Parity::Space ? QSerialPort::SpaceParity
                                                                              : QSerialPort::NoParity;
    const QSerialPort::StopBits stopBits = m_line.stopBits == Line::StopBits::Two          ? QSerialPort::TwoStop
                                           : m_line.stopBits == Line::StopBits::OneAndHalf ? QSerialPort::OneAndHalfStop
                                                                                           : QSerialPort::OneStop;
    const QSerialPort::FlowControl flow = m_line.flow == Line::Flow::Hardware   ? QSerialPort::HardwareControl
                                          : m_line.flow == Line::Flow::Software ? QSerialPort::SoftwareControl
                                                                                : QSerialPort::NoFlowControl;
    const bool taken = m_serial->setBaudRate(m_line.Speed) &&
                       m_serial->setDataBits(QSerialPort::DataBits(m_line.DataBits)) && m_serial->setParity(parity) &&
                       m_serial->setStopBits(stopBits) && m_serial->setFlowControl(flow);
    if (!taken) {
        const QString text = m_serial->errorString();
        closeDevice();
        fail(atc::GeneralFailure, QStringLiteral("The device %1 does not take the line settings (%2 baud, %3 data "
                                                 "bits): %4")
                                      .arg(path)
                                      .arg(m_line.Speed)
                                      .arg(m_line.DataBits)
                                      .arg(text));
    }
}

void ATCServer::waitOutBrokenWrite() {
    // A phone that still waits for the rest of a record would take our commands for its bytes.
    // It drops the upload after its pause and says so with a final result: wait for that, or for
    // the pause to pass in silence (the result may have come before the device was closed).
    m_serial->clear();
    if (!m_writeBroken)
        return;
    m_writeBroken = false;
    QByteArray line;
    QDeadlineTimer quiet(kUploadPauseMs + kPauseMarginMs);
    const QDeadlineTimer limit(kUploadPauseMs + kPauseMarginMs + m_timeoutMs);
    while (!quiet.hasExpired() && !limit.hasExpired()) {
        if (!m_serial->waitForReadyRead(int(std::min(quiet.remainingTime(), limit.remainingTime())))) {
            if (lineIsDead())
                break;
            continue;
        }
        quiet.setRemainingTime(kUploadPauseMs + kPauseMarginMs);
        line += m_serial->readAll();
        qsizetype eol = -1;
        while ((eol = line.indexOf("\r\n")) >= 0) {
            const QByteArray piece = line.left(eol).trimmed();
            line.remove(0, eol + 2);
            if (isFinalResult(piece))
                return;
        }
    }
}

void ATCServer::probe() {
    // A token the phone sends back: the answer that carries it is the answer to this command, and
    // whatever came before it (the rest of an answer to a host that left) is passed over.
    ++m_commands;
    const QByteArray token = QByteArray::number(QRandomGenerator::global()->generate64(), 16).toUpper();
    const QByteArray cmd = "AT$ECHO=" + token;
    const QByteArray expected = "$ECHO: " + token;
    const qint64 deadline = QDeadlineTimer::current().deadline() + m_timeoutMs;
    m_serial->readAll();
    m_buffer.clear();
    sendAll(cmd + '\r', deadline);
    bool answered = false;
    for (;;) {
        const qsizetype eol = m_buffer.indexOf("\r\n");
        if (eol < 0) {
            waitForData(deadline, cmd);
            continue;
        }
        const QByteArray line = m_buffer.left(eol).trimmed();
        m_buffer.remove(0, eol + 2);
        if (!answered) {
            answered = line == expected;
            continue;
        }
        if (line.isEmpty())
            continue;
        if (line == "OK")
            return;
        closeDevice();
        if (const int n = phoneErrorNumber(line); n >= 0)
            fail(atc::PhoneErrorBase + n, QString::fromLatin1(line));
        fail(atc::GeneralFailure, QStringLiteral("Unexpected answer to the probe: %1").arg(QString::fromLatin1(line)));
    }
}

void ATCServer::setUp(const QByteArray& cmd) {
    try {
        transact(cmd, Blocks::none(), nullptr);
    } catch (const core::TsrError& e) {
        closeDevice();
        fail(e.number(), QStringLiteral("The line to the mobile could not be set up: %1 failed (%2)")
                             .arg(QString::fromLatin1(cmd), e.description()));
    }
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

ATCServer::Reply ATCServer::command(const QByteArray& cmd, Blocks blocks) {
    ensureOpen();
    return transact(cmd, blocks, nullptr);
}

ATCServer::Reply ATCServer::transact(const QByteArray& cmd, Blocks blocks, const QByteArray* upload) {
    ++m_commands;
    const qint64 deadline = QDeadlineTimer::current().deadline() + m_timeoutMs;
    // Whatever came unasked since the last command belongs to no command.
    m_serial->readAll();
    m_buffer.clear();
    sendAll(cmd + '\r', deadline);

    Reply reply;
    const QByteArray payloadPrefix = QByteArrayLiteral("$ORGR:");
    const QString command = QString::fromLatin1(cmd);
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
            if (reply.payloads.size() != blocks.count())
                failFraming(QStringLiteral("%1 of %2 record headers in the answer to %3")
                                .arg(reply.payloads.size())
                                .arg(blocks.count())
                                .arg(command));
            if (upload)
                failFraming(QStringLiteral("The mobile did not ask for the record of %1").arg(command));
            return reply;
        }
        if (line == "ERROR")
            fail(atc::GeneralFailure, QStringLiteral("ERROR after %1").arg(command));
        if (const int n = phoneErrorNumber(line); n >= 0)
            fail(atc::PhoneErrorBase + n, QString::fromLatin1(line));
        if (blocks.count() > 0 && line.startsWith(payloadPrefix)) {
            // Records come in the order asked for, each announced with its index and length.
            const QList<int> header = numbersAfter(line, payloadPrefix);
            const int expected = blocks.first + int(reply.payloads.size());
            if (header.size() != 2 || header[0] != expected || expected > blocks.last || header[1] < 0)
                failFraming(QStringLiteral("Unexpected record header: %1").arg(QString::fromLatin1(line)));
            const qsizetype length = header[1];
            QByteArray payload;
            if (length > 0) {
                // The block follows the header's CR LF at once and ends with a CR LF of its own.
                while (m_buffer.size() < length + 2)
                    waitForData(deadline, cmd);
                if (m_buffer.mid(length, 2) != "\r\n")
                    failFraming(QStringLiteral("The record of %1 is not framed as announced").arg(command));
                payload = m_buffer.left(length);
                m_buffer.remove(0, length + 2);
            }
            reply.payloads << payload;
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
    forgetReadAhead();
    const Reply reply = command("AT$ORGS=" + QByteArray::number(store));
    for (const QByteArray& line : reply.lines) {
        const QList<int> n = numbersAfter(line, QByteArrayLiteral("$ORGS:"));
        if (n.size() >= 3 && n[0] == store) {
            first = int16_t(n[1]);
            last = int16_t(n[2]);
            if (store == atc::CalendarStore) {
                m_first = first;
                m_last = last;
            }
            return;
        }
    }
    fail(atc::GeneralFailure, QStringLiteral("The mobile did not tell the range of store %1").arg(store));
}

void ATCServer::forgetReadAhead() {
    m_ahead.clear();
    m_aheadNext = -1;
}

QByteArray ATCServer::readSingle(int index) {
    const QByteArray cmd = "AT$ORGR=" + QByteArray::number(atc::CalendarStore) + ',' + QByteArray::number(index);
    return command(cmd, Blocks::range(index, index)).payloads.value(0);
}

bool ATCServer::readAhead(int index, QByteArray& text) {
    // Only a walk in index order is served: from the store's first index on, each read the one
    // after the last. Anything else drops what was read ahead, so no record is older than the walk.
    if (index != m_aheadNext)
        forgetReadAhead();
    if (const auto it = m_ahead.find(index); it != m_ahead.end()) {
        text = it.value();
        m_ahead.erase(it);
        m_aheadNext = index + 1;
        return true;
    }
    const bool walking = index == m_first || index == m_aheadNext;
    if (!m_rangeRead || m_last < 0 || !walking || index < m_first || index >= m_last)
        return false;
    const int to = std::min(m_last, index + kReadAhead - 1);
    const QByteArray cmd = "AT$ORGR=" + QByteArray::number(atc::CalendarStore) + ',' + QByteArray::number(index) + ',' +
                           QByteArray::number(to);
    Reply reply;
    try {
        reply = command(cmd, Blocks::range(index, to));
    } catch (const core::TsrError& e) {
        // A phone without range reads refuses the parameters (or the command as a whole) on a line
        // that is still in step: from then on records are read one by one.
        const bool refused = isOpen() && (e.number() == atc::PhoneErrorBase + 50 ||
                                          e.number() == atc::PhoneErrorBase + 4 || e.number() == atc::GeneralFailure);
        if (!refused)
            throw;
        m_rangeRead = false;
        return false;
    }
    for (int i = 0; i < reply.payloads.size(); ++i)
        m_ahead.insert(index + i, reply.payloads[i]);
    text = m_ahead.take(index);
    m_aheadNext = index + 1;
    return true;
}

void ATCServer::ReadEntry(int index, QByteArray& text) {
    text.clear();
    if (readAhead(index, text))
        return;
    text = readSingle(index);
}

void ATCServer::WriteEntry(int index, const QByteArray& text) {
    forgetReadAhead();
    ensureOpen();
    const QByteArray cmd = "AT$ORGW=" + QByteArray::number(atc::CalendarStore) + ',' + QByteArray::number(index) + ',' +
                           QByteArray::number(text.size());
    try {
        transact(cmd, Blocks::none(), &text);
    } catch (const core::TsrError&) {
        // Without the phone's final result the phone may be waiting for the rest of the record.
        m_writeBroken = !isOpen();
        throw;
    }
}

void ATCServer::DeleteEntry(int index) {
    forgetReadAhead();
    command("AT$ORGD=" + QByteArray::number(atc::CalendarStore) + ',' + QByteArray::number(index));
}

} // namespace tsr::phone
