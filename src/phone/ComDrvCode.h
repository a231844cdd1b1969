// SPDX-License-Identifier: GPL-3.0-or-later
// The link session: whether the phone may be used, the server slots, the
// choice of the serial port and the dump hook. The phone is spoken to here
// only to ask, once per link, whether it offers OBEX for the file-transfer slot.
#pragma once

#include "core/Context.h"

#include <QByteArray>
#include <QStringList>

namespace tsr::phone {

class ATCServer;

// The AT-command server in its slot; an empty slot gets a fresh server first,
// which starts on the suite's port. The server waits GlobalTimeOut milliseconds
// for each answer.
ATCServer& atcServer(core::Context& ctx);

// True when the phone may be used; then, with the setting FileTransfer at 1, an empty
// file-transfer slot gets an OBEX server if the phone offers OBEX.
bool InitComm(core::Context& ctx);
void fillFileTransferSlot(core::Context& ctx);
void DeinitComm(core::Context& ctx);

// The serial port control that GetCommPort probes with: opening port n gives the
// control's error number (0 when it opened; 8002 for a port that is not there).
class CommProbe {
public:
    virtual ~CommProbe() = default;
    virtual int32_t openPort(int16_t commPort) = 0;
};
// Opens /dev/ttyS(n-1) and closes it again.
class SerialCommProbe : public CommProbe {
public:
    int32_t openPort(int16_t commPort) override;
};

// The port enumerator: the usable ports as one text, separated by ";".
class PortEnumerator {
public:
    virtual ~PortEnumerator() = default;
    virtual QString ports() = 0;
};
// The serial devices the system lists.
class SerialPortEnumerator : public PortEnumerator {
public:
    QString ports() override;
};

bool GetCommPort(core::Context& ctx, CommProbe& comm, QStringList& combo);
bool GDXGetCommPort(core::Context& ctx, PortEnumerator& enumerator, QStringList& combo);
// The port list of the options dialog: from the enumerator, or by probing when there
// is none. Gives the index to select (the entry equal to PORT, else 0), or -1 for an
// empty list after the warning "No COM-port found!".
int LoadPortList(core::Context& ctx, PortEnumerator* enumerator, CommProbe& comm, QStringList& combo);

bool GetATCPort(core::Context& ctx);
bool SetATCPort(core::Context& ctx);

// Sends one dump item to the monitor named by the environment variable
// TESSARINE_DUMP (a local socket), as one line; nothing when it is unset or no
// one listens.
void dumpItem(const QString& path, const QString& file, const QByteArray& data, const QString& tag);
// The line a dump item travels as: tag, path, file and data separated by tabs,
// with backslash, tab, CR and LF written as \\, \t, \r and \n.
QByteArray dumpLine(const QString& path, const QString& file, const QByteArray& data, const QString& tag);

} // namespace tsr::phone
