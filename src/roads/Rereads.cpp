// SPDX-License-Identifier: GPL-3.0-or-later
// Reading a side again after a transfer, and the delete question (module Allgemein).
#include "roads/Rereads.h"

#include "core/ErrorReport.h"
#include "tables/TSRADODB.h"

namespace tsr::roads {

using tables::Recordset;

namespace {
const QString kModul = QStringLiteral("Allgemein");

bool hasTransferMark(Recordset& pending, int32_t mark) {
    for (pending.moveFirst(); !pending.eof(); pending.moveNext()) {
        const core::Value v = pending.value(QStringLiteral("Transfernew"));
        if (!v.isEmpty() && v.toInt32() == mark)
            return true;
    }
    return false;
}

// Drops the changes the user chose not to transfer and, when one of them was
// meant for that side, reads the side again so its rows show what it holds.
void reRead(core::Context& ctx, Recordset& pending, int32_t mark, sync::Roads& roads, bool mobile) {
    if (pending.recordCount() == 0)
        return;
    const bool found = hasTransferMark(pending, mark);
    pending.moveFirst();
    const bool contacts = pending.value(QStringLiteral("Recordset")).toText() == u"RSContacts";
    tables::ClearRecordSet(pending);
    if (!found)
        return;
    if (mobile)
        contacts ? roads.vCardReadMobile(ctx) : roads.vCalReadMobile(ctx);
    else
        contacts ? roads.vCardReadOutlook(ctx) : roads.vCalReadOutlook(ctx);
}
} // namespace

void reReadMobile(core::Context& ctx, Recordset& LogTable, sync::Roads& roads) {
    core::guarded(ctx, kModul, QStringLiteral("reReadMobile"), [&] { reRead(ctx, LogTable, 2, roads, true); });
}

void reReadPIM(core::Context& ctx, Recordset& LogTable, sync::Roads& roads) {
    core::guarded(ctx, kModul, QStringLiteral("reReadPIM"), [&] { reRead(ctx, LogTable, 1, roads, false); });
}

bool ConfirmEntryDelete(core::Context& ctx, const Recordset& Row, EntryKind kind, DeleteSides sides) {
    return core::guarded(ctx, kModul, QStringLiteral("ConfirmEntryDelete"), false, [&] {
        auto field = [&](const char16_t* name) { return Row.value(QString::fromUtf16(name)).toText(); };
        QString text;
        if (kind == EntryKind::Calendar) {
            QString subject = field(u"Text");
            while (subject.startsWith(u' '))
                subject.remove(0, 1);
            text = ctx.strings.text(461) + QStringLiteral(": ") +
                   core::Format(Row.value(QStringLiteral("StartDate")).toDate(), ctx.formats.DateFormat) + u' ' +
                   field(u"StartTime") + QStringLiteral("  ") + subject;
        } else {
            text = ctx.strings.text(564) + QStringLiteral(": ") + field(u"LastName") + u' ' + field(u"FirstName") +
                   QStringLiteral("  ") + field(u"Phone");
        }
        const bool series = kind == EntryKind::Calendar && Row.value(QStringLiteral("ISRecurring")).toBool();
        enum { Both, Pim, Mobile, None } side = None;
        switch (Row.value(QStringLiteral("EntryType")).toInt32()) {
        case 3:
            side = sides.both ? Both : sides.pim ? Pim : sides.mobile ? Mobile : None;
            break;
        case 1:
            side = Pim;
            break;
        case 2:
            side = Mobile;
            break;
        default:
            break;
        }
        // Warning texts: series first, then single entries, each for both, PIM, phone.
        static const int kWarnings[2][3] = {{546, 547, 457}, {543, 544, 545}};
        if (side != None)
            text += QStringLiteral("\n\n") + ctx.strings.text(kWarnings[series ? 1 : 0][side]);
        return ctx.ui->msgBox(text, core::MsgButtons::OKCancel, core::MsgIcon::Exclamation, ctx.title()) ==
               core::MsgResult::OK;
    });
}

} // namespace tsr::roads
