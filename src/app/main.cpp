// SPDX-License-Identifier: GPL-3.0-or-later
// The program's entry point: takes the "--" options out of the command line
// (answering --help and --version before any window system is touched), makes
// the context and the windows and hands over to the start-up sequence.
#include "core/Context.h"
#include "core/HeadlessUserInterface.h"
#include "main/HeadlessRun.h"
#include "main/Main_Modul.h"
#include "spine/CommandLine.h"
#include "ui/Icons.h"
#include "ui/QtUserInterface.h"
#include "ui/mainwindow/Main_Form.h"

#include <QApplication>
#include <QTextStream>

int main(int argc, char** argv) {
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments << QString::fromLocal8Bit(argv[i]);
    tsr::core::PlatformOptions options;
    const tsr::spine::SplitCommandLine split = tsr::spine::takePlatformOptions(options, arguments);
    if (split.help) {
        QTextStream(stdout) << tsr::spine::usageText();
        return 0;
    }
    if (split.version) {
        QTextStream(stdout) << "Tessarine " << TESSARINE_VERSION << '\n';
        return 0;
    }
    if (!split.unknown.isEmpty()) {
        QTextStream(stderr) << "tessarine: unknown option " << split.unknown.first() << '\n'
                            << "Try 'tessarine --help' for more information.\n";
        return 2;
    }

    if (options.headless) {
        // No window system is touched: the run is for cron, timers and terminals.
        QCoreApplication app(argc, argv);
        QCoreApplication::setApplicationName(QStringLiteral("Tessarine"));
        QTextStream out(stdout);
        QTextStream err(stderr);
        tsr::core::HeadlessUserInterface ui(err);
        tsr::core::Context ctx(ui);
        ctx.options = options;
        ctx.flags.GlobalSilent = true;
        out << ctx.title() << ' ' << TESSARINE_VERSION << Qt::endl;
        return tsr::main::runHeadless(ctx, split.classic, out, err);
    }

    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Tessarine"));
    QApplication::setApplicationVersion(QStringLiteral(TESSARINE_VERSION));
    QGuiApplication::setDesktopFileName(QStringLiteral("tessarine"));
    tsr::ui::initIconTheme();
    QApplication::setWindowIcon(tsr::ui::programIcon());

    tsr::ui::QtUserInterface ui;
    tsr::core::Context ctx(ui);
    ctx.options = options;
    tsr::ui::Main_Form window(ctx);
    ui.setMainForm(&window, &ctx);
    tsr::main::StartUp start;
    // A silent run, a second start or a failed start ends here; a dialog run
    // goes on in the event loop, where the deferred start reads the phone.
    if (!tsr::main::Main(ctx, start, split.classic, QCoreApplication::applicationDirPath()))
        return 0;
    window.applySavedFont();
    window.applySavedGeometry();
    window.show();
    return QApplication::exec();
}
