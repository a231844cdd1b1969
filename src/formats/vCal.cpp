// SPDX-License-Identifier: GPL-3.0-or-later
// The merging half of vCal: the two sides of a matched pair joined into one
// row, and the test of a call number for characters a phone cannot dial.
#include "formats/vCal.h"

#include "core/ErrorReport.h"
#include "core/Numbers.h"
#include "tables/TSRADODB.h"

namespace tsr::formats {

void vCalSyncOutlookEntry(core::Context& ctx, tables::Recordset& target, tables::Recordset& source) {
    core::guarded(ctx, QStringLiteral("vCal"), QStringLiteral("vCalSyncOutlookEntry"), [&] {
        tables::copyFields(target, source, {u"UID", u"PIMText", u"PIM", u"PIMnew"});
        target.setValue(QStringLiteral("EntryType"), int32_t(3));
        target.update();
    });
}

void vCalSyncMobileEntry(core::Context& ctx, tables::Recordset& target, tables::Recordset& source) {
    core::guarded(ctx, QStringLiteral("vCal"), QStringLiteral("vCalSyncMobileEntry"), [&] {
        tables::copyFields(target, source, {u"EntryID"});
        target.setValue(QStringLiteral("SubType"), source.value(QStringLiteral("EntryID")));
        tables::copyFields(target, source, {u"Text", u"Mobile"});
        target.setValue(QStringLiteral("EntryType"), int32_t(3));
        // MemoStatus stays out of this list on purpose; MeetingStatus comes twice.
        tables::copyFields(target, source,
                           {u"Typ", u"AnniversaryStatus", u"MeetingStatus", u"PhoneCallStatus", u"MeetingStatus",
                            u"DTEnd", u"EndDate", u"EndTime", u"EntryFile", u"AAlarmFlag", u"AAlarm", u"DAlarmFlag",
                            u"DAlarm", u"Alarm"});
        target.update();
    });
}

bool check4PhoneCallChar(const QString& text) {
    for (QChar c : text) {
        if (c == u'*' || c == u'#' || c == u'?' || c == u'+')
            continue;
        if (core::IsNumeric(QString(c)))
            continue;
        return true;
    }
    return false;
}

} // namespace tsr::formats
