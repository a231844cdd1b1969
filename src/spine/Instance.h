// SPDX-License-Identifier: GPL-3.0-or-later
// One program per user: the first instance serves a local socket named after
// the user and the title, in the user's runtime folder and reachable by that
// user only; a second start finds it there and hands over: it asks the first
// to come to the front, or with KILL to close, and ends.
#pragma once

#include "core/Context.h"

#include <QLocalServer>
#include <QObject>

namespace tsr::spine {

// The socket's path: <runtime folder>/<user>-<title>.
QString instanceSocketName(const QString& title);

// The first instance's side: answers the commands of later starts.
class InstanceServer : public QObject {
    Q_OBJECT
public:
    InstanceServer(core::Context& ctx, QString name, QObject* parent = nullptr);
    // Starts serving; a socket left behind by a crashed instance is replaced.
    bool listen();
    QString errorString() const { return m_server.errorString(); }

signals:
    // A command came in and was answered (acknowledged or not).
    void commandHandled(const QString& command, bool acknowledged);

private:
    void onConnection();

    core::Context& m_ctx;
    QString m_name;
    QLocalServer m_server;
};

// Whether a first instance answers under this name.
bool previousInstanceRuns(const QString& name);
// Sends one command to the first instance; true when it acknowledged it.
bool sendInstanceCommand(const QString& name, const QString& command, int timeoutMs = 5000);

// The first instance's handling of a command: upper-cased; KILL is acknowledged
// and closes the main window only for a start with CALLER=OL; ACTIVATE brings the
// window to the front. Returns false (the cancel flag) for an acknowledged command.
bool Form_LinkExecute(core::Context& ctx, const QString& command);

// True only for a first instance that is to go on. A second start marks itself
// (SecondInstance), shows the silent run's box or hands over, and gives false.
bool Check4PrevInstance(core::Context& ctx, const QString& name);

} // namespace tsr::spine
