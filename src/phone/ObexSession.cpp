// SPDX-License-Identifier: GPL-3.0-or-later
#include "phone/ObexSession.h"

#include "core/Error.h"
#include "phone/ATCServer.h"

#include <QDeadlineTimer>
#include <QSerialPort>
#include <openobex/obex.h>

namespace tsr::phone {

namespace {

const QString kSource = QStringLiteral("ObexServer");
// The largest packet we take and send; the phone may ask for smaller ones.
constexpr uint16_t kMtu = 4096;
const QByteArray kFolderBrowsing = QByteArray::fromHex("F9EC7BC4953C11D2984E525400DC9E09");
// How long a goodbye may take before the line counts as unknown.
constexpr int kGoodbyeMs = 1000;

qint64 now() {
    return QDeadlineTimer::current().deadline();
}

// A Name header: big-endian UTF-16 with a closing zero; empty stays empty.
QByteArray unicodeName(const QString& name) {
    QByteArray out;
    if (name.isEmpty())
        return out;
    for (const QChar c : name) {
        out += char(c.unicode() >> 8);
        out += char(c.unicode() & 0xFF);
    }
    out += QByteArray(2, '\0');
    return out;
}

int32_t errorForResponse(int response) {
    switch (response & ~OBEX_FINAL) {
    case OBEX_RSP_NOT_FOUND:
        return atc::NoDevice;
    case OBEX_RSP_FORBIDDEN:
    case OBEX_RSP_UNAUTHORIZED:
        return atc::AccessDenied;
    default:
        return atc::GeneralFailure;
    }
}

} // namespace

ObexSession::ObexSession(QSerialPort& port, int timeoutMs) : m_port(port), m_timeoutMs(timeoutMs) {
    m_obex = OBEX_Init(OBEX_TRANS_CUSTOM, &ObexSession::onEvent, 0);
    if (!m_obex)
        core::raise(atc::GeneralFailure, kSource, QStringLiteral("The OBEX library could not start a session"));
    obex_ctrans_t transport{};
    transport.connect = &ObexSession::onConnect;
    transport.write = &ObexSession::onWrite;
    transport.handleinput = &ObexSession::onInput;
    transport.customdata = this;
    OBEX_SetUserData(m_obex, this);
    if (OBEX_RegisterCTransport(m_obex, &transport) < 0 || OBEX_SetTransportMTU(m_obex, kMtu, kMtu) < 0 ||
        OBEX_TransportConnect(m_obex, nullptr, 0) < 0) {
        OBEX_Cleanup(m_obex);
        core::raise(atc::GeneralFailure, kSource, QStringLiteral("The OBEX library refused the serial transport"));
    }
}

ObexSession::~ObexSession() {
    if (m_obex)
        OBEX_Cleanup(m_obex);
}

qint64 ObexSession::remainingMs() const {
    return m_deadline - now();
}

bool ObexSession::lineIsDead() const {
    const auto error = m_port.error();
    return !m_port.isOpen() || (error != QSerialPort::NoError && error != QSerialPort::TimeoutError);
}

void ObexSession::failAfter(Fault fault, const QString& what) {
    m_sound = false;
    switch (fault) {
    case Fault::Timeout:
        core::raise(atc::NotResponding, kSource,
                    QStringLiteral("No answer to %1 within %2 ms").arg(what).arg(m_timeoutMs));
    case Fault::LineDead:
        core::raise(atc::ServerGone, kSource,
                    QStringLiteral("The line to the mobile broke during %1: %2").arg(what, m_port.errorString()));
    default:
        core::raise(atc::GeneralFailure, kSource, QStringLiteral("The mobile's answer to %1 is garbled").arg(what));
    }
}

QList<QByteArray> ObexSession::atCommand(const QByteArray& command, bool connectEnds) {
    m_deadline = now() + m_timeoutMs;
    m_port.clearError();
    m_port.readAll();
    const QByteArray line = command + '\r';
    ++m_requests;
    m_lineBytes += line.size();
    if (m_port.write(line) != line.size())
        failAfter(Fault::LineDead, QString::fromLatin1(command));
    while (m_port.bytesToWrite() > 0)
        if (remainingMs() <= 0 || !m_port.waitForBytesWritten(int(remainingMs())))
            failAfter(lineIsDead() ? Fault::LineDead : Fault::Timeout, QString::fromLatin1(command));
    QByteArray buffer;
    QList<QByteArray> lines;
    for (;;) {
        const qsizetype eol = buffer.indexOf("\r\n");
        if (eol < 0) {
            if (remainingMs() <= 0 || !m_port.waitForReadyRead(int(remainingMs())))
                failAfter(lineIsDead() ? Fault::LineDead : Fault::Timeout, QString::fromLatin1(command));
            const QByteArray more = m_port.readAll();
            m_lineBytes += more.size();
            buffer += more;
            continue;
        }
        const QByteArray text = buffer.left(eol).trimmed();
        buffer.remove(0, eol + 2);
        if (text.isEmpty() || text == command)
            continue;
        if (text == "OK" || (connectEnds && text.startsWith("CONNECT")))
            return lines;
        if (text == "ERROR")
            core::raise(atc::GeneralFailure, kSource,
                        QStringLiteral("ERROR after %1").arg(QString::fromLatin1(command)));
        if (text.startsWith("+CME ERROR:") || text.startsWith("+CMS ERROR:")) {
            bool ok = false;
            const int n = text.mid(11).trimmed().toInt(&ok);
            core::raise(ok ? atc::PhoneErrorBase + n : atc::GeneralFailure, kSource, QString::fromLatin1(text));
        }
        lines << text;
    }
}

void ObexSession::open() {
    atCommand(QByteArrayLiteral("AT+CPROT=0"), true);
    // From here the phone reads OBEX packets only: a failure must not leave it there silently.
    m_connected = true;
    obex_object* connect = request(OBEX_CMD_CONNECT);
    obex_headerdata_t target{};
    target.bs = reinterpret_cast<const uint8_t*>(kFolderBrowsing.constData());
    OBEX_ObjectAddHeader(m_obex, connect, OBEX_HDR_TARGET, target, uint32_t(kFolderBrowsing.size()),
                         OBEX_FL_FIT_ONE_PACKET);
    Answer answer;
    try {
        answer = run(connect, QStringLiteral("CONNECT"));
    } catch (const core::TsrError& e) {
        // The library reads every refusal of a CONNECT as a garbled answer.
        if (e.number() != atc::GeneralFailure)
            throw;
        core::raise(atc::AccessDenied, kSource, QStringLiteral("The mobile refused the file-transfer session"));
    }
    if (answer.response != OBEX_RSP_SUCCESS)
        core::raise(errorForResponse(answer.response), kSource,
                    QStringLiteral("The mobile refused the file-transfer session (%1)")
                        .arg(QString::fromLatin1(OBEX_ResponseToString(answer.response))));
    m_folder.clear();
}

void ObexSession::disconnect() {
    if (!m_connected)
        return;
    m_timeoutMs = std::min(m_timeoutMs, kGoodbyeMs);
    run(request(OBEX_CMD_DISCONNECT), QStringLiteral("DISCONNECT"));
    m_connected = false;
}

obex_object* ObexSession::request(int command) {
    obex_object* object = OBEX_ObjectNew(m_obex, uint8_t(command));
    if (!object)
        core::raise(atc::GeneralFailure, kSource, QStringLiteral("The OBEX library could not make a request"));
    if (m_haveConnectionId && command != OBEX_CMD_CONNECT) {
        obex_headerdata_t id{};
        id.bq4 = m_connectionId;
        OBEX_ObjectAddHeader(m_obex, object, OBEX_HDR_CONNECTION, id, 4, OBEX_FL_FIT_ONE_PACKET);
    }
    return object;
}

ObexSession::Answer ObexSession::run(obex_object* object, const QString& what) {
    m_deadline = now() + m_timeoutMs;
    m_fault = Fault::None;
    m_done = false;
    m_answer = Answer{};
    m_port.clearError();
    ++m_requests;
    if (OBEX_Request(m_obex, object) < 0) {
        OBEX_ObjectDelete(m_obex, object);
        failAfter(Fault::Garbled, what);
    }
    while (!m_done && m_fault == Fault::None) {
        if (OBEX_HandleInput(m_obex, 1) < 0 && m_fault == Fault::None)
            m_fault = Fault::Garbled;
    }
    if (m_fault != Fault::None) {
        OBEX_CancelRequest(m_obex, 0);
        failAfter(m_fault, what);
    }
    return m_answer;
}

void ObexSession::setPath(const QString& name, bool toRoot) {
    obex_object* object = request(OBEX_CMD_SETPATH);
    // Flags: never create a folder; no constants.
    const uint8_t prefix[2] = {0x02, 0x00};
    OBEX_ObjectSetNonHdrData(object, prefix, 2);
    const QByteArray encoded = unicodeName(toRoot ? QString() : name);
    obex_headerdata_t value{};
    value.bs = reinterpret_cast<const uint8_t*>(encoded.constData());
    OBEX_ObjectAddHeader(m_obex, object, OBEX_HDR_NAME, value, uint32_t(encoded.size()), 0);
    const QString what = QStringLiteral("SETPATH %1").arg(toRoot ? QStringLiteral("/") : name);
    const Answer answer = run(object, what);
    if (answer.response != OBEX_RSP_SUCCESS)
        core::raise(errorForResponse(answer.response), kSource,
                    QStringLiteral("The mobile has no folder %1").arg(toRoot ? QStringLiteral("/") : name));
}

void ObexSession::walkTo(const QStringList& folder) {
    if (folder == m_folder)
        return;
    // Whatever the way back, the root and down again is never wrong.
    m_folder.clear();
    setPath(QString(), true);
    for (const QString& name : folder) {
        setPath(name, false);
        m_folder << name;
    }
}

QByteArray ObexSession::get(const QString& name, const QByteArray& type) {
    obex_object* object = request(OBEX_CMD_GET);
    if (!name.isEmpty()) {
        const QByteArray encoded = unicodeName(name);
        obex_headerdata_t value{};
        value.bs = reinterpret_cast<const uint8_t*>(encoded.constData());
        OBEX_ObjectAddHeader(m_obex, object, OBEX_HDR_NAME, value, uint32_t(encoded.size()), 0);
    }
    if (!type.isEmpty()) {
        const QByteArray terminated = type + '\0';
        obex_headerdata_t value{};
        value.bs = reinterpret_cast<const uint8_t*>(terminated.constData());
        OBEX_ObjectAddHeader(m_obex, object, OBEX_HDR_TYPE, value, uint32_t(terminated.size()), 0);
    }
    const QString what = QStringLiteral("GET %1").arg(name.isEmpty() ? QString::fromLatin1(type) : name);
    const Answer answer = run(object, what);
    if (answer.response != OBEX_RSP_SUCCESS)
        core::raise(errorForResponse(answer.response), kSource,
                    QStringLiteral("%1: %2").arg(what, QString::fromLatin1(OBEX_ResponseToString(answer.response))));
    return answer.body;
}

void ObexSession::put(const QString& name, const QByteArray* body) {
    obex_object* object = request(OBEX_CMD_PUT);
    const QByteArray encoded = unicodeName(name);
    obex_headerdata_t value{};
    value.bs = reinterpret_cast<const uint8_t*>(encoded.constData());
    OBEX_ObjectAddHeader(m_obex, object, OBEX_HDR_NAME, value, uint32_t(encoded.size()), 0);
    if (body) {
        obex_headerdata_t length{};
        length.bq4 = uint32_t(body->size());
        OBEX_ObjectAddHeader(m_obex, object, OBEX_HDR_LENGTH, length, 4, 0);
        obex_headerdata_t data{};
        data.bs = reinterpret_cast<const uint8_t*>(body->constData());
        OBEX_ObjectAddHeader(m_obex, object, OBEX_HDR_BODY, data, uint32_t(body->size()), 0);
    }
    const QString what = QStringLiteral("%1 %2").arg(body ? QStringLiteral("PUT") : QStringLiteral("DELETE"), name);
    const Answer answer = run(object, what);
    if (answer.response != OBEX_RSP_SUCCESS)
        core::raise(errorForResponse(answer.response), kSource,
                    QStringLiteral("%1: %2").arg(what, QString::fromLatin1(OBEX_ResponseToString(answer.response))));
}

int ObexSession::onConnect(obex*, void*) {
    return 0;
}

int ObexSession::onWrite(obex*, void* data, uint8_t* bytes, int size) {
    auto* self = static_cast<ObexSession*>(data);
    self->m_lineBytes += size;
    if (self->m_port.write(reinterpret_cast<const char*>(bytes), size) != size) {
        self->m_fault = Fault::LineDead;
        return -1;
    }
    while (self->m_port.bytesToWrite() > 0) {
        if (self->remainingMs() <= 0 || !self->m_port.waitForBytesWritten(int(self->remainingMs()))) {
            self->m_fault = self->lineIsDead() ? Fault::LineDead : Fault::Timeout;
            return -1;
        }
    }
    return size;
}

int ObexSession::onInput(obex* handle, void* data, int) {
    auto* self = static_cast<ObexSession*>(data);
    if (self->m_port.bytesAvailable() == 0) {
        const qint64 remaining = self->remainingMs();
        if (remaining <= 0 || !self->m_port.waitForReadyRead(int(remaining))) {
            if (self->lineIsDead())
                self->m_fault = Fault::LineDead;
            else if (self->remainingMs() <= 0)
                self->m_fault = Fault::Timeout;
            return self->m_fault == Fault::None ? 0 : -1;
        }
    }
    QByteArray bytes = self->m_port.readAll();
    self->m_lineBytes += bytes.size();
    if (OBEX_CustomDataFeed(handle, reinterpret_cast<uint8_t*>(bytes.data()), int(bytes.size())) < 0 &&
        self->m_fault == Fault::None)
        self->m_fault = Fault::Garbled;
    return int(bytes.size());
}

void ObexSession::onEvent(obex* handle, obex_object* object, int, int event, int command, int response) {
    auto* self = static_cast<ObexSession*>(OBEX_GetUserData(handle));
    switch (event) {
    case OBEX_EV_REQDONE: {
        self->m_done = true;
        self->m_answer.response = response & ~OBEX_FINAL;
        uint8_t id = 0;
        obex_headerdata_t value{};
        uint32_t size = 0;
        while (object && OBEX_ObjectGetNextHeader(handle, object, &id, &value, &size)) {
            if ((id == OBEX_HDR_BODY || id == OBEX_HDR_BODY_END) && value.bs)
                self->m_answer.body.append(reinterpret_cast<const char*>(value.bs), qsizetype(size));
            else if (id == OBEX_HDR_CONNECTION && command == OBEX_CMD_CONNECT) {
                self->m_connectionId = value.bq4;
                self->m_haveConnectionId = true;
            }
        }
        break;
    }
    case OBEX_EV_LINKERR:
        if (self->m_fault == Fault::None)
            self->m_fault = self->lineIsDead() ? Fault::LineDead : Fault::Garbled;
        break;
    case OBEX_EV_PARSEERR:
    case OBEX_EV_ABORT:
        if (self->m_fault == Fault::None)
            self->m_fault = Fault::Garbled;
        break;
    default:
        break;
    }
}

} // namespace tsr::phone
