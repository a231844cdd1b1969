// SPDX-License-Identifier: GPL-3.0-or-later
#include "log/LogWrite.h"

#include "core/CreateTime.h"
#include "core/ErrorReport.h"

#include <QRegularExpression>

namespace tsr::log {

using core::Value;
using core::VbDate;

namespace {

const QString kModul = QStringLiteral("Log");

// The localised type of a calendar row; a type outside the four leaves it empty.
QString typText(const core::Context& ctx, const QString& typ) {
    if (typ.isEmpty())
        return ctx.strings.text(761);
    if (typ == u"1")
        return ctx.strings.text(812);
    if (typ == u"2")
        return ctx.strings.text(525);
    if (typ == u"3")
        return ctx.strings.text(526);
    return {};
}

// Writers may name the action in English; the row carries it in the current language.
QString actionText(const core::Context& ctx, const QString& action) {
    if (action == u"created")
        return logActionCreated(ctx);
    if (action == u"changed")
        return logActionChanged(ctx);
    if (action == u"deleted")
        return logActionDeleted(ctx);
    return action;
}

QString text(const tables::Recordset& rs, const QString& field) {
    return rs.hasField(field) ? rs.value(field).toText() : QString();
}

// The entry's start time read as a typed time; what cannot be read gives the time now.
Value startTime(core::Context& ctx, const tables::Recordset& entry) {
    core::VbDate time;
    core::CreateTimeFromString(ctx, text(entry, QStringLiteral("StartTime")), time);
    return Value(time);
}

using Cells = QList<QPair<QString, Value>>;

// The entry's part of a log row. Read before the row is added, so that an entry
// without a current row leaves no half row behind.
Cells calendarCells(core::Context& ctx, const tables::Recordset& entry) {
    const Value start = entry.value(QStringLiteral("StartDate"));
    return {{QStringLiteral("Date"), start.isEmpty() ? Value() : Value(start.toDate())},
            {QStringLiteral("Time"), startTime(ctx, entry)},
            {QStringLiteral("Text"), text(entry, QStringLiteral("Text"))},
            {QStringLiteral("Typ"), typText(ctx, text(entry, QStringLiteral("Typ")))}};
}

Cells contactCells(const tables::Recordset& entry) {
    // A business contact is reached at work.
    const bool company = !text(entry, QStringLiteral("Company")).isEmpty();
    return {{QStringLiteral("Name"), text(entry, QStringLiteral("LastName"))},
            {QStringLiteral("Phone"), text(entry, company ? QStringLiteral("PhoneWork") : QStringLiteral("Phone"))}};
}

} // namespace

QString logActionCreated(const core::Context& ctx) {
    return ctx.strings.text(529);
}
QString logActionChanged(const core::Context& ctx) {
    return ctx.strings.text(530);
}
QString logActionDeleted(const core::Context& ctx) {
    return ctx.strings.text(531);
}

void logWriteError(core::Context& ctx, const core::TsrError& error, const QString& hint, const QString& modul,
                   const QString& proc) {
    // Runs without a handler of its own: a failure here must not report itself again.
    if (!ctx.flags.GlobalLogReady || !ctx.tables.LogErrors)
        return;
    QString message = hint;
    if (!hint.isEmpty() && !error.description().isEmpty())
        message += QStringLiteral(" : ");
    message += error.description();
    // Each line replaces the one before, so a row keeps to one line: the last line stays.
    const QStringList lines = message.split(QRegularExpression(QStringLiteral("\r\n|\r|\n")));
    const QString last = lines.last() + QLatin1Char(' ');

    auto& t = *ctx.tables.LogErrors;
    t.addNew();
    t.setValue(QStringLiteral("Date"), core::dateText(ctx.clock.Now(), ctx.formats.DateFormat, ctx.formats.TimeFormat));
    t.setValue(QStringLiteral("ErrorNum"), QString::number(error.number()));
    t.setValue(QStringLiteral("ErrorDesc"), last);
    t.setValue(QStringLiteral("Modul"), modul);
    t.setValue(QStringLiteral("Proc"), proc);
    t.update();
    ctx.ui->refreshGrid(2);
    ++ctx.log.LogProgramErrors;
}

void logWriteEntry(core::Context& ctx, const tables::Recordset& entry, const core::TsrError& error,
                   const QString& modul, const QString& proc) {
    core::guarded(ctx, kModul, QStringLiteral("logWriteEntry"), [&] {
        const VbDate now = ctx.clock.Now();
        // Field 3, counted from 0, tells the layouts apart: a calendar row has StartDate there.
        const bool calendar = entry.fieldCount() > 3 && entry.fieldName(3) == u"StartDate";
        tables::Recordset* log = calendar ? ctx.tables.LogCalendar.get() : ctx.tables.LogContacts.get();
        if (!log)
            return;
        const Cells cells = calendar ? calendarCells(ctx, entry) : contactCells(entry);
        log->addNew();
        log->setValue(QStringLiteral("Transfer"), ctx.log.LogTransfer);
        log->setValue(QStringLiteral("Action"), actionText(ctx, ctx.log.LogAction));
        log->setValue(QStringLiteral("SynchDate"), now);
        for (const auto& [field, value] : cells)
            log->setValue(field, value);

        // An editor's transfer and an AutoSync keep the flag as it stands.
        const bool keepFlag = ctx.log.EditorTransferRunning || ctx.log.AutoSyncRunning;
        if (error.description().isEmpty()) {
            log->setValue(QStringLiteral("Error"), ctx.strings.text(801));
            log->setValue(QStringLiteral("ErrorDesc"), QString());
            if (!keepFlag)
                ctx.log.LogHasError = false;
        } else {
            log->setValue(QStringLiteral("Error"), ctx.strings.text(802));
            log->setValue(QStringLiteral("ErrorDesc"), QString::number(error.number()) + error.description());
            ctx.log.LogHasError = true;
            ++ctx.log.LogErrorCount;
        }
        log->update();

        if (ctx.log.LogStart.isEmpty())
            ctx.log.LogStart = core::Format(now, ctx.formats.TimeFormat);
        ctx.log.LogDate = core::Format(now, ctx.formats.DateFormat);
        ctx.log.LogEnd = core::Format(now, ctx.formats.TimeFormat);
        ctx.ui->refreshGrid(2);

        if (error.number() != 0 && ctx.log.LogHasError && !ctx.flags.GlobalSilent && !keepFlag) {
            const QString title = ctx.strings.text(481) + ctx.title() + QStringLiteral(":") + modul;
            const QString text = ctx.strings.text(482) + QString::number(error.number()) + QStringLiteral("\r\n") +
                                 ctx.strings.text(480) + error.description() + QStringLiteral("\r\n") +
                                 ctx.strings.text(483) + error.source() + QStringLiteral(":") + modul +
                                 QStringLiteral(":") + proc;
            ctx.ui->msgBox(text, core::MsgButtons::OKCancel, core::MsgIcon::Exclamation, title);
        }
    });
}

} // namespace tsr::log
