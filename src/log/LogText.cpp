// SPDX-License-Identifier: GPL-3.0-or-later
#include "log/LogText.h"

#include "core/ErrorReport.h"

namespace tsr::log {

namespace {

const QString kModul = QStringLiteral("Log");
const QString kBreak = QStringLiteral("\r\n");
const QString kPrintFont = QStringLiteral("Arial");
constexpr int kPrintSize = 12;

struct Column {
    const char16_t* field;
    int head; // string number of the column head
};

// Column heads in the tables' column order.
const Column kCalendarColumns[] = {{u"Transfer", 813}, {u"Action", 783}, {u"SynchDate", 785},
                                   {u"Date", 787},     {u"Time", 789},   {u"Text", 791},
                                   {u"Typ", 793},      {u"Error", 795},  {u"ErrorDesc", 797}};
const Column kContactColumns[] = {{u"Transfer", 813}, {u"Action", 783}, {u"SynchDate", 785}, {u"Date", 787},
                                  {u"Name", 799},     {u"Phone", 800},  {u"Error", 795},     {u"ErrorDesc", 797}};
const Column kErrorColumns[] = {
    {u"Date", 804}, {u"ErrorNum", 806}, {u"ErrorDesc", 797}, {u"Modul", 808}, {u"Proc", 810}};

int rowsOf(const tables::Recordset* t) {
    return t ? t->recordCount() : 0;
}

QString cellText(const core::Context& ctx, const core::Value& v) {
    if (v.type() == core::FieldType::Date)
        return core::dateText(v.toDate(), ctx.formats.DateFormat, ctx.formats.TimeFormat);
    return v.toText();
}

template <size_t N>
void writeTable(const core::Context& ctx, core::RichText& out, tables::Recordset* table, const Column (&columns)[N]) {
    if (rowsOf(table) == 0)
        return;
    QStringList heads;
    for (const Column& c : columns)
        heads << ctx.strings.text(c.head);
    out.append({heads.join(u'\t'), true});
    out.append({kBreak, false});

    // The grids share these tables: walk them and leave the cursor where it stood.
    const int position = table->absolutePosition();
    QString body;
    for (table->moveFirst(); !table->eof(); table->moveNext()) {
        QStringList cells;
        for (const Column& c : columns)
            cells << cellText(ctx, table->value(QString::fromUtf16(c.field)));
        body += cells.join(u'\t') + kBreak;
    }
    table->setAbsolutePosition(position);
    out.append({body, false});
}

} // namespace

QList<QPair<QString, QString>> logSummaryRows(const core::Context& ctx) {
    const auto& log = ctx.log;
    const int transferred = rowsOf(ctx.tables.LogCalendar.get()) + rowsOf(ctx.tables.LogContacts.get());
    return {
        {ctx.strings.text(764), QString()},
        {ctx.strings.text(765), QString::number(transferred)},
        {ctx.strings.text(766), log.LogDate},
        {ctx.strings.text(767), log.LogStart},
        {ctx.strings.text(768), log.LogEnd},
        {ctx.strings.text(769), QString::number(log.LogErrorCount)},
        {ctx.strings.text(803), QString::number(log.LogProgramErrors)},
    };
}

void LogInitlogSummaryText(core::Context& ctx) {
    const auto rows = logSummaryRows(ctx);
    QStringList lines;
    lines << rows.first().first;
    for (qsizetype i = 1; i < rows.size(); ++i)
        lines << rows[i].first + QStringLiteral("\t\t") + rows[i].second;
    ctx.log.LogSummaryText = lines.join(kBreak);
}

core::RichText logGridZusammensetzung(core::Context& ctx, bool Details) {
    return core::guarded(ctx, kModul, QStringLiteral("logGridZusammensetzung"), core::RichText(), [&] {
        core::RichText out;
        if (Details) {
            const QString title = ctx.strings.text(764);
            out.append({title, true});
            // What stands behind the title in the summary text.
            QString rest = ctx.log.LogSummaryText;
            if (rest.startsWith(title))
                rest = rest.mid(title.size());
            out.append({rest + kBreak + kBreak, false});
        }
        writeTable(ctx, out, ctx.tables.LogCalendar.get(), kCalendarColumns);
        writeTable(ctx, out, ctx.tables.LogContacts.get(), kContactColumns);
        writeTable(ctx, out, ctx.tables.LogErrors.get(), kErrorColumns);
        return out;
    });
}

void logPrint(core::Context& ctx, const QString& Mode) {
    core::guarded(ctx, kModul, QStringLiteral("logPrint"), [&] {
        const bool all = Mode == u"all";
        const int rows = rowsOf(ctx.tables.LogCalendar.get()) + rowsOf(ctx.tables.LogContacts.get()) +
                         rowsOf(ctx.tables.LogErrors.get());
        if (rows == 0 && !all) {
            ctx.ui->msgBox(ctx.strings.text(782), core::MsgButtons::OK, core::MsgIcon::Information, ctx.title());
            return;
        }
        // The summary window, which prints, builds its summary afresh when it opens.
        if (all)
            LogInitlogSummaryText(ctx);
        ctx.ui->printText(logGridZusammensetzung(ctx, all), kPrintFont, kPrintSize);
    });
}

void logPrintSummary(core::Context& ctx) {
    core::guarded(ctx, kModul, QStringLiteral("logPrintSummary"), [&] {
        LogInitlogSummaryText(ctx);
        ctx.ui->printText({{ctx.log.LogSummaryText, false}}, kPrintFont, kPrintSize);
    });
}

} // namespace tsr::log
