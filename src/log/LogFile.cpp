// SPDX-License-Identifier: GPL-3.0-or-later
#include "log/LogFile.h"

#include "core/ErrorReport.h"
#include "log/LogText.h"
#include "log/RtfWriter.h"

#include <QDir>
#include <QSaveFile>

namespace tsr::log {

QString logFilePath(const core::Context& ctx) {
    return ctx.settings.HomeDir + QStringLiteral("/logFile.rtf");
}

bool logWriteFile(core::Context& ctx) {
    return core::guarded(ctx, QStringLiteral("Log"), QStringLiteral("logWriteFile"), false, [&] {
        if (ctx.log.LogSummaryText.isEmpty())
            LogInitlogSummaryText(ctx);
        const core::RichText text = logGridZusammensetzung(ctx, true);
        const QString path = logFilePath(ctx);
        QDir().mkpath(ctx.settings.HomeDir);
        // Written aside and renamed into place: a failed write keeps the former log whole.
        QSaveFile file(path);
        if (!file.open(QIODevice::WriteOnly))
            core::raise(75, QStringLiteral("logWriteFile"),
                        QStringLiteral("Path/File access error: ") + path + QStringLiteral(" (") + file.errorString() +
                            QStringLiteral(")"));
        file.write(richTextToRtf(text, QStringLiteral("Arial"), 12));
        if (!file.commit())
            core::raise(75, QStringLiteral("logWriteFile"),
                        QStringLiteral("Path/File access error: ") + path + QStringLiteral(" (") + file.errorString() +
                            QStringLiteral(")"));
        return true;
    });
}

} // namespace tsr::log
