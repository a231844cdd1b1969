// SPDX-License-Identifier: GPL-3.0-or-later
#include "log/LogWrite.h"

#include <QRegularExpression>

namespace tsr::log {

void logWriteError(core::Context& ctx, const core::TsrError& error, const QString& hint, const QString& modul,
                   const QString& proc) {
    if (!ctx.flags.GlobalLogReady || !ctx.tables.LogErrors)
        return;
    QString text = hint;
    if (!hint.isEmpty() && !error.description().isEmpty())
        text += QStringLiteral(" : ");
    text += error.description();
    // Only the last line stays, followed by a blank, so that a row keeps to one line.
    const QStringList lines = text.split(QRegularExpression(QStringLiteral("\r\n|\r|\n")));
    const QString last = lines.isEmpty() ? QString() : lines.last() + QLatin1Char(' ');
    auto& t = *ctx.tables.LogErrors;
    t.addNew();
    t.setValue(QStringLiteral("Date"), core::dateText(ctx.clock.Now()));
    t.setValue(QStringLiteral("ErrorNum"), QString::number(error.number()));
    t.setValue(QStringLiteral("ErrorDesc"), last);
    t.setValue(QStringLiteral("Modul"), modul);
    t.setValue(QStringLiteral("Proc"), proc);
    t.update();
    ctx.ui->refreshGrid(2);
    ++ctx.log.LogProgramErrors;
}

} // namespace tsr::log
