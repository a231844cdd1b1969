// SPDX-License-Identifier: GPL-3.0-or-later
// The AT-command server: the phone's organiser as a store of numbered records,
// reached over a serial device with the dialogue of docs/phone-protocol.md.
// It opens the device on first use and keeps it open; every failure is raised
// as a numbered error (0x80042000 + n for the phone's own error n, 462 when the
// device vanished or the line broke). A walk through the store from its first
// index is read ahead in ranges, so the phone's thinking time is paid once a
// range and not once a record. It knows nothing of the tables.
#pragma once

#include "core/LineSettings.h"

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QStringList>
#include <cstdint>
#include <functional>
#include <memory>

class QSerialPort;

namespace tsr::phone {

// Error numbers of the link.
namespace atc {
inline constexpr int32_t PhoneErrorBase = static_cast<int32_t>(0x80042000); // + the +CME/+CMS number
inline constexpr int32_t GeneralFailure = static_cast<int32_t>(0x80004005); // a bare ERROR
inline constexpr int32_t NotResponding = static_cast<int32_t>(0x80010001);  // no final result in time
inline constexpr int32_t NoDevice = static_cast<int32_t>(0x80070002);
inline constexpr int32_t AccessDenied = static_cast<int32_t>(0x80070005);
inline constexpr int32_t ServerGone = 462;
inline constexpr int CalendarStore = 4;
} // namespace atc

// "COMn" names the n-th serial port, /dev/ttyS(n-1); anything else is a device path.
QString devicePathForPort(const QString& port);

class ATCServer {
public:
    // `defaultPort` is the server's own port until it is given another.
    explicit ATCServer(QString defaultPort = QStringLiteral("COM1"));
    ~ATCServer();
    ATCServer(const ATCServer&) = delete;
    ATCServer& operator=(const ATCServer&) = delete;

    // Port (set): a new port closes the device; the next operation opens the new one.
    void setPort(const QString& port);
    QString port() const { return m_port; }
    // How often the port was set to a different one.
    int portChanges() const { return m_portChanges; }
    // Speed, character size, parity, stop bits and flow: different ones close the device,
    // and the next operation opens it with them.
    void setLineSettings(const core::LineSettings& line);
    const core::LineSettings& lineSettings() const { return m_line; }
    // How long one command may wait for its final result, in milliseconds.
    void setTimeOut(int milliseconds) { m_timeoutMs = milliseconds < 1 ? 1 : milliseconds; }
    int timeOut() const { return m_timeoutMs; }
    bool isOpen() const;

    QString Manufacturer();
    QString Model();
    void GetStoreRange(int store, int16_t& first, int16_t& last);
    // The record's bytes; an empty record gives an empty array.
    void ReadEntry(int index, QByteArray& text);
    void WriteEntry(int index, const QByteArray& text);
    void DeleteEntry(int index);

    // Commands sent since the server was made: a plain count for tests and diagnostics.
    int commandCount() const { return m_commands; }
    // Whether the phone reads ranges of records; false once it refused one.
    bool readsRanges() const { return m_rangeRead; }

    // How long the phone waits for the rest of a record before it drops the upload.
    static constexpr int kUploadPauseMs = 2000;
    // Records read ahead in one range.
    static constexpr int kReadAhead = 32;

    // Lends the open device (opened first if need be) to another protocol on the same line.
    // `reclaim` runs before the next AT command or when the device closes; it must end that
    // protocol and call returnDevice. With `closeIt` the line's state is unknown, and the
    // next command opens the device afresh.
    QSerialPort& lendDevice(std::function<void()> reclaim);
    void returnDevice(bool closeIt);

private:
    struct Reply {
        QList<QByteArray> lines;    // information lines, without CR LF
        QList<QByteArray> payloads; // the blocks after the record headers, in order
    };
    // The record blocks an answer must hold: none, or the indices from `first` to `last`.
    struct Blocks {
        int first = 0;
        int last = -1;
        static Blocks none() { return {}; }
        static Blocks range(int from, int to) { return {from, to}; }
        int count() const { return last - first + 1; }
    };
    void ensureOpen();
    void openDevice();
    void applyLineSettings(const QString& path);
    void closeDevice();
    void waitOutBrokenWrite();
    void probe();
    void setUp(const QByteArray& cmd);
    Reply command(const QByteArray& cmd, Blocks blocks = Blocks::none());
    Reply transact(const QByteArray& cmd, Blocks blocks, const QByteArray* upload);
    bool readAhead(int index, QByteArray& text);
    QByteArray readSingle(int index);
    void forgetReadAhead();
    [[noreturn]] void failFraming(const QString& description);
    QString identification(const QByteArray& cmd);
    // Waits for more bytes until the deadline; raises 0x80010001 when it passes, 462 on a dead line.
    void waitForData(qint64 deadline, const QByteArray& cmd);
    bool lineIsDead() const;
    void sendAll(const QByteArray& bytes, qint64 deadline);
    [[noreturn]] void fail(int32_t number, const QString& description);

    std::unique_ptr<QSerialPort> m_serial;
    QString m_port = QStringLiteral("COM1");
    core::LineSettings m_line;
    QByteArray m_buffer;
    // A write broke off after its command went out: the phone may still wait for the record.
    bool m_writeBroken = false;
    // The calendar store's bounds from the last GetStoreRange; unknown until then.
    int m_first = -1;
    int m_last = -1;
    bool m_rangeRead = true;
    QMap<int, QByteArray> m_ahead; // records read ahead, by index
    int m_aheadNext = -1;          // the index the walk reads next; the read-ahead serves only it
    int m_timeoutMs = 7500;
    int m_commands = 0;
    int m_portChanges = 0;
    std::function<void()> m_reclaim; // set while the device is lent
};

} // namespace tsr::phone
