// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/ErrorReport.h"

#include "log/LogWrite.h"

namespace tsr::core {

QString friendlyText(const Context&, int32_t, const QString&) {
    return {};
}

QString atcErrorName(int32_t) {
    return {};
}

TsrError asTsrError(const std::exception& e, const QString& source) {
    return TsrError(err::InvalidProcedureCall, source, QString::fromLocal8Bit(e.what()));
}

void ErrorsCode(Context& ctx, const TsrError& error, const QString& modul, const QString& proc, const QString& extra) {
    if (error.number() == 0)
        return;
    QString m = friendlyText(ctx, error.number(), modul);
    if (!extra.isEmpty())
        m += QStringLiteral("\r\n") + extra;
    ctx.flags.GlobalStartDone = true;
    if (!ctx.flags.GlobalSilent && ctx.log.PIMErrorCount == 0 && !error.description().contains(u'~')) {
        const QString text = QStringLiteral("Description:") + m + QStringLiteral("\r\n\r\nNumber:") +
                             QString::number(error.number()) + QStringLiteral("\r\n") + error.description() +
                             QStringLiteral("\r\n");
        ctx.ui->msgBox(text, MsgButtons::OK, MsgIcon::Exclamation, ctx.title());
        if (ctx.ui->mainFormVisibleAndEnabled())
            ctx.ui->focusMainForm();
    }
    log::logWriteError(ctx, error, m, modul, proc);
}

void ErrorReport(Context& ctx, const TsrError& error, const QString& modul, const QString& proc, const QString& extra) {
    ErrorsCode(ctx, error, modul, proc, extra);
}

} // namespace tsr::core
