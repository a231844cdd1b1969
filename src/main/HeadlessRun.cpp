// SPDX-License-Identifier: GPL-3.0-or-later
#include "main/HeadlessRun.h"

#include "core/Context.h"
#include "log/LogText.h"
#include "main/MainCommands.h"
#include "main/Main_Modul.h"
#include "tables/Recordset.h"

namespace tsr::main {

namespace {

bool hasToken(const QString& line, const char* token) {
    const QStringList tokens = line.toUpper().split(u' ', Qt::SkipEmptyParts);
    return tokens.contains(QString::fromLatin1(token));
}

void appendRows(QStringList& out, const QString& title, tables::Recordset* table) {
    if (!table || table->recordCount() == 0)
        return;
    out << title;
    for (table->moveFirst(); !table->eof(); table->moveNext()) {
        QStringList fields;
        for (int i = 0; i < table->fieldCount(); ++i)
            fields << table->value(i).toText();
        out << fields.join(u'\t');
    }
}

} // namespace

QString logRowsText(core::Context& ctx) {
    QStringList out;
    appendRows(out, QStringLiteral("Calendar entries:"), ctx.tables.LogCalendar.get());
    appendRows(out, QStringLiteral("Contacts:"), ctx.tables.LogContacts.get());
    appendRows(out, QStringLiteral("Errors:"), ctx.tables.LogErrors.get());
    return out.join(u'\n');
}

int runHeadless(core::Context& ctx, const QString& classicLine, QTextStream& out, QTextStream& err) {
    if (hasToken(classicLine, "OPTIONS")) {
        err << "tessarine: the options dialog needs a display; run without --headless" << Qt::endl;
        return 2;
    }
    if (!hasToken(classicLine, "BOTH") && !hasToken(classicLine, "VCAL") && !hasToken(classicLine, "VCARD")) {
        err << "tessarine: a headless run needs BOTH, VCAL or VCARD" << Qt::endl
            << "Try 'tessarine --help' for more information." << Qt::endl;
        return 2;
    }
    StartUp start;
    Main(ctx, start, classicLine);
    // What unloading the hidden main window does at the end of a silent run: the log file.
    if (ctx.flags.GlobalLogReady) {
        main::Form_QueryUnload(ctx, false);
        main::Form_Unload(ctx);
    }
    log::LogInitlogSummaryText(ctx);
    QString summary = ctx.log.LogSummaryText;
    summary.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    out << summary << Qt::endl;
    if (ctx.options.verbose) {
        const QString rows = logRowsText(ctx);
        if (!rows.isEmpty())
            out << rows << Qt::endl;
    }
    const bool errors = (ctx.tables.LogErrors && ctx.tables.LogErrors->recordCount() > 0) ||
                        ctx.log.LogErrorCount > 0 || ctx.log.LogProgramErrors > 0;
    return errors ? 1 : 0;
}

} // namespace tsr::main
