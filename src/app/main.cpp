// SPDX-License-Identifier: GPL-3.0-or-later
// The program's entry point: makes the context and the windows and hands over
// to the start-up sequence.
#include "core/Context.h"
#include "ui/MainWindow.h"
#include "ui/QtUserInterface.h"

#include <QApplication>
#include <QTextStream>

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Tessarine"));
    QApplication::setApplicationVersion(QStringLiteral(TESSARINE_VERSION));

    tsr::ui::QtUserInterface ui;
    tsr::core::Context ctx(ui);

    const QStringList args = QApplication::arguments();
    if (args.contains(QStringLiteral("--headless"))) {
        QTextStream(stdout) << ctx.title() << ' ' << TESSARINE_VERSION << '\n';
        return 0;
    }
    tsr::ui::MainWindow window(ctx);
    ui.setMainWindow(&window);
    window.show();
    return QApplication::exec();
}
