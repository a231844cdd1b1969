// SPDX-License-Identifier: GPL-3.0-or-later
#include "phone/ComDrvCode.h"

#include "core/ErrorReport.h"
#include "phone/ATCServer.h"
#include "phone/LineSettings.h"
#include "phone/ObexServer.h"
#include "spine/RegistryStore.h"

#include <QLocalSocket>
#include <QSerialPort>
#include <QSerialPortInfo>

namespace tsr::phone {

namespace {
const QString kComDrvCode = QStringLiteral("ComDrvCode");
const QString kATC = QStringLiteral("ATC");
const QString kGDX = QStringLiteral("GDX");
} // namespace

ATCServer& atcServer(core::Context& ctx) {
    if (!ctx.servers.ATCServer) {
        // Like a server with a configuration of its own, a new one starts on the suite's port;
        // SetATCPort gives it another only when ATCPort changed.
        GetATCPort(ctx);
        GetLineSettings(ctx);
        ctx.servers.ATCServer = std::make_shared<ATCServer>(ctx.phone.ATCPort);
        ctx.servers.ATCServer->setLineSettings(ctx.phone.Line);
    }
    ctx.servers.ATCServer->setTimeOut(ctx.flags.GlobalTimeOut);
    return *ctx.servers.ATCServer;
}

bool InitComm(core::Context& ctx) {
    if (ctx.flags.GDX_Check)
        fillFileTransferSlot(ctx);
    return ctx.flags.GDX_Check;
}

void fillFileTransferSlot(core::Context& ctx) {
    if (ctx.servers.GDXServer || ctx.settings.FileTransfer != 1)
        return;
    try {
        ATCServer& link = atcServer(ctx);
        SetATCPort(ctx);
        // Asked once per link and port: a phone without OBEX is not asked again at every step.
        // A phone that gave no answer is asked again: it may be plugged in by then.
        if (ctx.servers.FileTransferProbed.lock() == ctx.servers.ATCServer &&
            ctx.servers.FileTransferProbedPort == link.port())
            return;
        const std::optional<bool> offered = ObexServer::offeredBy(link);
        if (!offered)
            return;
        ctx.servers.FileTransferProbed = ctx.servers.ATCServer;
        ctx.servers.FileTransferProbedPort = link.port();
        if (!*offered)
            return;
        ctx.servers.GDXServer = std::make_shared<ObexServer>([&ctx] {
            atcServer(ctx);
            SetATCPort(ctx);
            return ctx.servers.ATCServer;
        });
    } catch (const std::exception&) {
        // A phone that does not answer is the AT road's to report, at its own step.
    }
}

void DeinitComm(core::Context&) {}

int32_t SerialCommProbe::openPort(int16_t commPort) {
    QSerialPort port;
    port.setPortName(QStringLiteral("/dev/ttyS") + QString::number(commPort - 1));
    if (port.open(QIODevice::ReadWrite)) {
        port.close();
        return 0;
    }
    switch (port.error()) {
    case QSerialPort::PermissionError:
        return 8005; // held by another program, or closed to us: the port is there all the same
    default:
        return 8002;
    }
}

QString SerialPortEnumerator::ports() {
    QStringList names;
    for (const QSerialPortInfo& info : QSerialPortInfo::availablePorts())
        names << info.systemLocation();
    return names.join(u';');
}

bool GetCommPort(core::Context& ctx, CommProbe& comm, QStringList& combo) {
    return core::guarded(ctx, kComDrvCode, QStringLiteral("GetCommPort"), true, [&] {
        for (int16_t i = 1; i <= 32; ++i) {
            switch (comm.openPort(i)) {
            // Each of these proves the port is there, one in use by another program included.
            case 0:
            case 8000:
            case 8003:
            case 8005:
            case 8010:
            case 8013:
            case 8015:
            case 8019:
                combo << QStringLiteral("COM") + QString::number(i);
                break;
            default:
                break;
            }
        }
        return true;
    });
}

bool GDXGetCommPort(core::Context& ctx, PortEnumerator& enumerator, QStringList& combo) {
    return core::guarded(ctx, kGDX, QStringLiteral("GDXGetCommPort"), true, [&] {
        const QString list = enumerator.ports();
        combo.clear();
        if (list.isEmpty())
            return true;
        for (const QString& piece : list.split(u';'))
            combo << piece.trimmed();
        return true;
    });
}

int LoadPortList(core::Context& ctx, PortEnumerator* enumerator, CommProbe& comm, QStringList& combo) {
    if (!enumerator)
        GetCommPort(ctx, comm, combo);
    else
        GDXGetCommPort(ctx, *enumerator, combo);
    if (combo.isEmpty()) {
        ctx.ui->msgBox(QStringLiteral("No COM-port found!"), core::MsgButtons::OK, core::MsgIcon::Exclamation,
                       ctx.title());
        return -1;
    }
    for (int i = 0; i < combo.size(); ++i) {
        if (combo[i].compare(ctx.settings.PORT, Qt::CaseInsensitive) == 0)
            return i;
    }
    return 0;
}

bool GetATCPort(core::Context& ctx) {
    return core::guarded(ctx, kATC, QStringLiteral("GetATCPort"), true, [&] {
        // The suite-level value, not the program's own under TSR: after the first
        // driver step the suite's port rules.
        core::Value value;
        if (spine::RegValQuery(ctx, spine::HKEY_LOCAL_MACHINE, spine::KeySuite, QStringLiteral("Port"), value)) {
            QString text = value.toText();
            // The store may hand the text with its terminator.
            if (text.contains(QChar(0)))
                text.chop(2);
            ctx.phone.ATCPort = text;
        } else {
            ctx.phone.ATCPort = QStringLiteral("COM1");
        }
        // A device named on the command line is this run's port, whatever the store says.
        if (!ctx.options.port.isEmpty())
            ctx.phone.ATCPort = ctx.options.port;
        return true;
    });
}

bool SetATCPort(core::Context& ctx) {
    return core::guarded(ctx, kATC, QStringLiteral("SetATCPort"), true, [&] {
        GetATCPort(ctx);
        if (ctx.servers.ATCServer && ctx.phone.ATCPort != ctx.servers.ATCPortSet) {
            ctx.servers.ATCServer->setPort(ctx.phone.ATCPort);
            ctx.servers.ATCPortSet = ctx.phone.ATCPort;
        }
        // The line's settings go with the port: a change takes effect when the device opens next.
        GetLineSettings(ctx);
        if (ctx.servers.ATCServer)
            ctx.servers.ATCServer->setLineSettings(ctx.phone.Line);
        return true;
    });
}

QByteArray dumpLine(const QString& path, const QString& file, const QByteArray& data, const QString& tag) {
    auto escaped = [](const QByteArray& in) {
        QByteArray out;
        out.reserve(in.size());
        for (const char c : in) {
            switch (c) {
            case '\\':
                out += "\\\\";
                break;
            case '\t':
                out += "\\t";
                break;
            case '\r':
                out += "\\r";
                break;
            case '\n':
                out += "\\n";
                break;
            default:
                out += c;
            }
        }
        return out;
    };
    return escaped(tag.toUtf8()) + '\t' + escaped(path.toUtf8()) + '\t' + escaped(file.toUtf8()) + '\t' +
           escaped(data) + '\n';
}

void dumpItem(const QString& path, const QString& file, const QByteArray& data, const QString& tag) {
    const QString name = qEnvironmentVariable("TESSARINE_DUMP");
    if (name.isEmpty())
        return;
    // The monitor is looked up, never started; a missing one means no dump.
    QLocalSocket socket;
    socket.connectToServer(name, QIODevice::WriteOnly);
    if (!socket.waitForConnected(200))
        return;
    socket.write(dumpLine(path, file, data, tag));
    socket.waitForBytesWritten(200);
    socket.disconnectFromServer();
}

} // namespace tsr::phone
