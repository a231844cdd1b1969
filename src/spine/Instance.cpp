// SPDX-License-Identifier: GPL-3.0-or-later
#include "spine/Instance.h"

#include "core/ErrorReport.h"
#include "spine/DebugTrace.h"

#include <QLocalSocket>
#include <QStandardPaths>
#include <unistd.h>

namespace tsr::spine {

namespace {

QString userName() {
    QString user = qEnvironmentVariable("USER");
    if (user.isEmpty())
        user = QString::number(::getuid());
    return user;
}

QString flagText(bool flag) {
    return flag ? QStringLiteral("True") : QStringLiteral("False");
}

} // namespace

QString instanceSocketName(const QString& title) {
    QString folder = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    if (folder.isEmpty())
        folder = QStandardPaths::writableLocation(QStandardPaths::TempLocation);
    QString file = userName() + u'-' + title;
    file.replace(u'/', u'_');
    return folder + u'/' + file;
}

InstanceServer::InstanceServer(core::Context& ctx, QString name, QObject* parent)
    : QObject(parent), m_ctx(ctx), m_name(std::move(name)) {
    m_server.setSocketOptions(QLocalServer::UserAccessOption);
    connect(&m_server, &QLocalServer::newConnection, this, &InstanceServer::onConnection);
}

bool InstanceServer::listen() {
    if (m_server.listen(m_name))
        return true;
    if (m_server.serverError() != QAbstractSocket::AddressInUseError || previousInstanceRuns(m_name))
        return false;
    QLocalServer::removeServer(m_name);
    return m_server.listen(m_name);
}

void InstanceServer::onConnection() {
    while (QLocalSocket* socket = m_server.nextPendingConnection()) {
        connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
        connect(socket, &QLocalSocket::readyRead, this, [this, socket] {
            while (socket->canReadLine()) {
                const QString command = QString::fromUtf8(socket->readLine()).trimmed();
                const bool acknowledged = !Form_LinkExecute(m_ctx, command);
                socket->write(acknowledged ? "ACK\n" : "NAK\n");
                socket->flush();
                emit commandHandled(command, acknowledged);
            }
        });
    }
}

bool previousInstanceRuns(const QString& name) {
    QLocalSocket socket;
    socket.connectToServer(name);
    const bool runs = socket.waitForConnected(1000);
    socket.abort();
    return runs;
}

bool sendInstanceCommand(const QString& name, const QString& command, int timeoutMs) {
    QLocalSocket socket;
    socket.connectToServer(name);
    if (!socket.waitForConnected(timeoutMs))
        return false;
    socket.write(command.toUtf8() + '\n');
    if (!socket.waitForBytesWritten(timeoutMs))
        return false;
    while (!socket.canReadLine())
        if (!socket.waitForReadyRead(timeoutMs))
            return false;
    return socket.readLine().trimmed() == "ACK";
}

bool Form_LinkExecute(core::Context& ctx, const QString& commandIn) {
    const QString command = commandIn.toUpper();
    // Compared with lower-case letters in it, so an upper-cased command never
    // matches; the branch stands as it always has.
    if (command == u"IsTSR")
        return false;
    if (command == u"KILL") {
        if (ctx.flags.GlobalCaller == u"OL")
            ctx.ui->unloadMainForm();
        return false;
    }
    if (command == u"ACTIVATE") {
        ctx.ui->activateMainWindow();
        return false;
    }
    return true;
}

bool Check4PrevInstance(core::Context& ctx, const QString& name) {
    return core::guarded(ctx, QStringLiteral("Main_Modul"), QStringLiteral("Check4PrevInstance"), false, [&] {
        const core::StartFlags& f = ctx.flags;
        bool goOn = false;
        if (previousInstanceRuns(name)) {
            const QString title = ctx.title();
            const QString rest = flagText(true) + QStringLiteral(" : ") + title;
            tracePoint(ctx, QStringLiteral("Debug: App.PrevInstance = ") + rest,
                       QStringLiteral("Debug:  App.PrevInstance = ") + rest);
            if (f.GlobalSilent) {
                ctx.ui->msgBox(ctx.strings.text(883) + QStringLiteral("\r\n") + ctx.strings.text(884),
                               core::MsgButtons::OK, core::MsgIcon::Exclamation, title);
                ctx.ui->unloadMainForm();
            } else {
                // From here on the main window knows it has nothing to save.
                ctx.flags.SecondInstance = true;
                if (f.GlobalCommandKill) {
                    tracePoint(ctx, QStringLiteral("Debug: GlobalCommandKill = ") + flagText(true),
                               QStringLiteral("Debug:  GlobalCommandKill = ") + flagText(true));
                    sendInstanceCommand(name, QStringLiteral("KILL"));
                } else {
                    tracePoint(ctx, QStringLiteral("Debug: erste Instanz akivieren = ") + title);
                    sendInstanceCommand(name, QStringLiteral("ACTIVATE"));
                }
            }
        } else if (f.GlobalCommandKill) {
            ctx.ui->unloadMainForm();
        } else {
            goOn = true;
        }
        tracePoint(ctx, QStringLiteral("Debug: NoPrevInstance"), QStringLiteral("Debug:  NoPrevInstance"));
        return goOn;
    });
}

} // namespace tsr::spine
