// SPDX-License-Identifier: GPL-3.0-or-later
#include "spine/DebugTrace.h"

#include <QFile>

namespace tsr::spine {

bool openDebugFile(core::Context& ctx) {
    const QString path = ctx.settings.HomeDir + QStringLiteral("/TSRDebug.txt");
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return false;
    ctx.flags.DebugFile = path;
    return true;
}

QByteArray debugRecord(const core::Context& ctx, const QString& text) {
    const QString when = core::Format(ctx.clock.Now(), ctx.formats.DateFormat + u' ' + ctx.formats.TimeFormat);
    return (u'"' + when + QStringLiteral("\r\n") + text + QStringLiteral("\"\r\n")).toUtf8();
}

void tracePoint(core::Context& ctx, const QString& boxText, const QString& fileText) {
    if (!ctx.flags.GlobalCommandDebug)
        return;
    ctx.ui->msgBox(boxText, core::MsgButtons::OK, core::MsgIcon::None, ctx.title());
    if (ctx.flags.DebugFile.isEmpty())
        return;
    QFile file(ctx.flags.DebugFile);
    if (file.open(QIODevice::Append))
        file.write(debugRecord(ctx, fileText.isEmpty() ? boxText : fileText));
}

void closeDebugFile(core::Context& ctx) {
    ctx.flags.DebugFile.clear();
}

} // namespace tsr::spine
