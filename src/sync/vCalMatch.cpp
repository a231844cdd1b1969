// SPDX-License-Identifier: GPL-3.0-or-later
// Calendar matching (vCalFindCompare in Verwaltung, the identity test and the
// text cut in Allgemein). The rule is asymmetric on purpose
// in the category test and the text cut; both are kept as they are.
#include "sync/vCalMatch.h"

#include "core/ErrorReport.h"
#include "formats/Allgemein.h"
#include "formats/vCal.h"
#include "tables/TSRADODB.h"

namespace tsr::sync {

using tables::Recordset;

namespace {
const QString kVerwaltung = QStringLiteral("Verwaltung");
const QString kAllgemein = QStringLiteral("Allgemein");
// A plain entry's text counts for this many characters on the phone.

QString text(const Recordset& r, const QString& field) {
    return r.value(field).toText();
}

bool flag(const Recordset& r, const QString& field) {
    return r.value(field).toBool();
}

int32_t entryType(const Recordset& r) {
    return r.value(QStringLiteral("EntryType")).toInt32();
}

bool isMemoBirthdayOrCall(const QString& typ) {
    return typ.isEmpty() || typ == u"2" || typ == u"3";
}

// A phone memo, birthday or call pairs with a PIM memo; a meeting only with a meeting.
bool categoryTest(const Recordset& r, const Recordset& e) {
    const QString rTyp = text(r, QStringLiteral("Typ"));
    const QString eTyp = text(e, QStringLiteral("Typ"));
    return rTyp == eTyp || (flag(r, QStringLiteral("Mobile")) && isMemoBirthdayOrCall(rTyp) && eTyp.isEmpty()) ||
           (flag(e, QStringLiteral("Mobile")) && isMemoBirthdayOrCall(eTyp) && rTyp.isEmpty());
}

bool seriesTest(const Recordset& r, const Recordset& e) {
    const bool eSeries = flag(e, QStringLiteral("ISRecurring"));
    if (flag(r, QStringLiteral("ISRecurring")) != eSeries)
        return false;
    if (text(r, QStringLiteral("RecurrenceType")) != text(e, QStringLiteral("RecurrenceType")))
        return false;
    return !eSeries || text(e, QStringLiteral("PimRecPattString")) == text(r, QStringLiteral("PimRecPattString"));
}

// Two rows of the same one side never pair.
bool sideTest(const Recordset& r, const Recordset& e) {
    const int32_t rType = entryType(r), eType = entryType(e);
    return rType != eType || (rType == 3 && eType == 3);
}

bool sameText(const QString& a, const QString& b) {
    return QString::compare(a, b, Qt::CaseInsensitive) == 0;
}

// The phone keeps only so many characters, so a long PIM subject and its cut
// copy count as equal. E.Typ "3" sets the cut on its own, without the lengths.
bool timeAndTextTest(const Recordset& r, const Recordset& e) {
    if (text(r, QStringLiteral("StartTime")) != text(e, QStringLiteral("StartTime")))
        return false;
    const QString rText = text(r, QStringLiteral("Text"));
    const QString eText = text(e, QStringLiteral("Text"));
    if (rText.isEmpty() && eText.isEmpty())
        return true;
    const QString rTyp = text(r, QStringLiteral("Typ"));
    const QString eTyp = text(e, QStringLiteral("Typ"));
    const int pE = formats::Phonecall_Len(eText);
    const int pR = formats::Phonecall_Len(rText);
    const bool plainLong =
        rTyp != u"3" && eTyp != u"3" && rText.size() >= kPlainTextLen && eText.size() >= kPlainTextLen;
    const bool cut = plainLong || eTyp == u"3" || (rTyp == u"3" && eText.size() >= pE && rText.size() >= pR);
    if (!cut)
        return sameText(rText, eText);
    if (rText.isEmpty() || eText.isEmpty())
        return false;
    if (plainLong)
        return sameText(rText.left(kPlainTextLen), eText.left(kPlainTextLen));
    return sameText(rText.left(pR), eText.left(pE));
}

bool identityTest(const Recordset& r, const Recordset& e, const QString& idField) {
    const int32_t rType = entryType(r), eType = entryType(e);
    if (rType != eType && rType != 3 && eType != 3)
        return true;
    const QString rUid = text(r, QStringLiteral("UID")), eUid = text(e, QStringLiteral("UID"));
    const QString rId = text(r, idField), eId = text(e, idField);
    return (!rUid.isEmpty() && !eUid.isEmpty() && rUid == eUid) || (!rId.isEmpty() && !eId.isEmpty() && rId == eId);
}

} // namespace

bool vCalFindCompare(core::Context& ctx, Recordset& table, Recordset& entry, core::VbDate& SearchDate) {
    bool result = false;
    core::guarded(ctx, kVerwaltung, QStringLiteral("vCalFindCompare"), [&] {
        QString criteria;
        if (SearchDate.value != 0) {
            // The scratch row's field writes the date in the same text form as all rows.
            Recordset scratch;
            tables::InitCalendarRS(scratch);
            tables::applyDateTextForm(ctx, scratch);
            tables::vCalCreateNewRecord(scratch);
            scratch.setValue(QStringLiteral("StartasText"), SearchDate);
            criteria = QStringLiteral("StartAsText = '") + text(scratch, QStringLiteral("StartasText")) + u'\'';
        } else {
            criteria = QStringLiteral("StartAsText = '") + text(entry, QStringLiteral("StartasText")) + u'\'';
            if (flag(entry, QStringLiteral("ISRecurring"))) {
                // A series is found by the date of its pattern start, not by its current occurrence.
                if (text(entry, QStringLiteral("PimRecPattString")).isEmpty()) {
                    entry.setValue(QStringLiteral("PimRecPattString"), entry.value(QStringLiteral("StartDate")));
                    const QString whole = text(entry, QStringLiteral("PimRecPattString"));
                    entry.setValue(QStringLiteral("PimRecPattString"), whole.section(u' ', 0, 0));
                }
                criteria =
                    QStringLiteral("PimRecPattString = '") + text(entry, QStringLiteral("PimRecPattString")) + u'\'';
            }
        }
        const int position = table.absolutePosition();
        if (table.recordCount() > 0)
            table.moveFirst();
        while (!table.eof()) {
            if (!table.find(criteria, 0, 1))
                break;
            if (categoryTest(table, entry) && seriesTest(table, entry) && sideTest(table, entry) &&
                timeAndTextTest(table, entry) && vcalCheckbeforecompare(ctx, table, entry)) {
                result = true;
                return;
            }
            table.moveNext();
        }
        if (table.eof())
            table.setAbsolutePosition(position);
    });
    return result;
}

bool vcalCheckbeforecompare(core::Context& ctx, const Recordset& tableRow, const Recordset& entry) {
    return core::guarded(ctx, kAllgemein, QStringLiteral("vcalCheckbeforecompare"), false,
                         [&] { return identityTest(tableRow, entry, QStringLiteral("EntryID")); });
}

void vcalTextCheck(core::Context& ctx, Recordset& row) {
    core::guarded(ctx, kAllgemein, QStringLiteral("vcalTextCheck"), [&] {
        const QString current = text(row, QStringLiteral("Text"));
        const int limit = text(row, QStringLiteral("Typ")) == u"3" ? formats::Phonecall_Len(current) : kPlainTextLen;
        if (current.size() <= limit)
            return;
        row.setValue(QStringLiteral("Text"), current.left(limit));
        row.setValue(QStringLiteral("Description"), current.left(limit));
    });
}

bool admitCalendarEntry(core::Context& ctx, Recordset& table, Recordset& entry, ReadSide side) {
    const bool otherRead = side == ReadSide::Mobile ? ctx.read.vCalPIMRead && ctx.read.vCalPIMCount > 0
                                                    : ctx.read.vCalMobileRead && ctx.read.vCalMobileCount > 0;
    core::VbDate noDate;
    if (otherRead && vCalFindCompare(ctx, table, entry, noDate)) {
        if (side == ReadSide::Mobile)
            formats::vCalSyncMobileEntry(ctx, table, entry);
        else
            formats::vCalSyncOutlookEntry(ctx, table, entry);
        return true;
    }
    core::guarded(ctx, kVerwaltung, QStringLiteral("admitCalendarEntry"),
                  [&] { tables::vCalCreateCopy(table, entry); });
    return false;
}

} // namespace tsr::sync
