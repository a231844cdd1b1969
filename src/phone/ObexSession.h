// SPDX-License-Identifier: GPL-3.0-or-later
// One OBEX session on a borrowed serial device, through libopenobex with a
// transport of our own: the library frames the packets, this class moves the
// bytes with the device's deadlines. It also speaks the few raw AT lines that
// switch the line (AT+CPROT). Every failure is raised as a numbered error;
// after a timeout, a broken line or a garbled answer the session is no longer
// sound and the device's state is unknown.
#pragma once

#include <QByteArray>
#include <QList>
#include <QStringList>
#include <cstdint>

class QSerialPort;
struct obex;
struct obex_object;

namespace tsr::phone {

class ObexSession {
public:
    ObexSession(QSerialPort& port, int timeoutMs);
    ~ObexSession();
    ObexSession(const ObexSession&) = delete;
    ObexSession& operator=(const ObexSession&) = delete;

    // Sends one AT command on the raw line and gives its information lines; raises on an
    // error result. `connectEnds`: the answer CONNECT ends it as OK does.
    QList<QByteArray> atCommand(const QByteArray& command, bool connectEnds = false);
    // AT+CPROT=0, then CONNECT to the folder-browsing service.
    void open();
    void disconnect();
    // Walks to a folder given from the root ({"telecom", "pb"}).
    void walkTo(const QStringList& folder);
    // GET of a file in the current folder, or of the folder's listing with an empty name.
    QByteArray get(const QString& name, const QByteArray& type);
    // PUT of a file in the current folder; without body it deletes the file.
    void put(const QString& name, const QByteArray* body);
    bool sound() const { return m_sound; }
    // Bytes that crossed the line both ways, and requests answered (AT lines included).
    qint64 lineBytes() const { return m_lineBytes; }
    int requests() const { return m_requests; }

private:
    enum class Fault { None, Timeout, LineDead, Garbled };
    struct Answer {
        int response = 0;
        QByteArray body;
    };
    obex_object* request(int command);
    Answer run(obex_object* object, const QString& what);
    void setPath(const QString& name, bool toRoot);
    [[noreturn]] void failAfter(Fault fault, const QString& what);
    bool lineIsDead() const;
    qint64 remainingMs() const;

    static int onWrite(obex* handle, void* self, uint8_t* data, int size);
    static int onInput(obex* handle, void* self, int timeout);
    static int onConnect(obex* handle, void* self);
    static void onEvent(obex* handle, obex_object* object, int mode, int event, int command, int response);

    QSerialPort& m_port;
    obex* m_obex = nullptr;
    int m_timeoutMs;
    qint64 m_deadline = 0;
    Fault m_fault = Fault::None;
    bool m_done = false;
    Answer m_answer;
    uint32_t m_connectionId = 0;
    bool m_haveConnectionId = false;
    bool m_sound = true;
    bool m_connected = false;
    QStringList m_folder;
    qint64 m_lineBytes = 0;
    int m_requests = 0;
};

} // namespace tsr::phone
