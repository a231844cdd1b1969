// SPDX-License-Identifier: GPL-3.0-or-later
// A small program that starts like the real one as far as the instance check:
// it reads the switches, asks for a first instance and, being the first, serves
// until it is told to close. Everything the user would see goes to standard
// output, one line each, for the test that drives two of these.
#include "core/Context.h"
#include "spine/CommandLine.h"
#include "spine/Instance.h"
#include "support/ScriptedUi.h"

#include <QCoreApplication>
#include <QTextStream>

namespace {

class ConsoleUi : public tsr::test::ScriptedUi {
public:
    tsr::core::MsgResult msgBox(const QString& text, tsr::core::MsgButtons buttons, tsr::core::MsgIcon icon,
                                const QString& title) override {
        say(QStringLiteral("BOX ") + QString(text).replace(QStringLiteral("\r\n"), QStringLiteral(" | ")));
        return ScriptedUi::msgBox(text, buttons, icon, title);
    }
    void activateMainWindow() override { say(QStringLiteral("ACTIVATED")); }
    void unloadMainForm() override {
        say(QStringLiteral("UNLOAD"));
        QCoreApplication::quit();
    }

    static void say(const QString& line) {
        QTextStream out(stdout);
        out << line << Qt::endl;
    }
};

} // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    ConsoleUi ui;
    tsr::core::Context ctx(ui);
    const auto split = tsr::spine::takePlatformOptions(ctx.options, QCoreApplication::arguments().mid(1));
    tsr::spine::TSRCommandLine(ctx, split.classic);

    const QString name = tsr::spine::instanceSocketName(QStringLiteral("Tessarine"));
    if (!tsr::spine::Check4PrevInstance(ctx, name)) {
        ConsoleUi::say(QStringLiteral("END second=") + (ctx.flags.SecondInstance ? u'1' : u'0'));
        return 0;
    }
    tsr::spine::InstanceServer server(ctx, name);
    if (!server.listen()) {
        ConsoleUi::say(QStringLiteral("LISTEN FAILED ") + server.errorString());
        return 2;
    }
    QObject::connect(&server, &tsr::spine::InstanceServer::commandHandled, [](const QString& command, bool ack) {
        ConsoleUi::say(QStringLiteral("COMMAND ") + command + (ack ? QStringLiteral(" ACK") : QStringLiteral(" NAK")));
    });
    ConsoleUi::say(QStringLiteral("READY"));
    return QCoreApplication::exec();
}
