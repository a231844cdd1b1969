// SPDX-License-Identifier: GPL-3.0-or-later
#include "main/MobileEntryForm.h"

#include "core/Context.h"
#include "core/CreateTime.h"
#include "core/ErrorReport.h"
#include "formats/Allgemein.h"
#include "formats/vCal.h"
#include "phone/ComDrvCode.h"
#include "roads/DOROutlookCalendar.h"
#include "roads/Mobile.h"
#include "roads/MobileWrite.h"
#include "spine/DateRange.h"
#include "sync/Verwaltung.h"
#include "sync/vCalMatch.h"
#include "tables/TSRADODB.h"

namespace tsr::main {

using core::MsgButtons;
using core::MsgIcon;
using core::MsgResult;
using core::VbDate;
using sync::SerieKind;

namespace {

const QString kModul = QStringLiteral("MobileEntry");
constexpr int kPhoneTextLength = sync::kPlainTextLen;

QString typOf(EntryKind kind) {
    return kind == EntryKind::Memo ? QString() : QString::number(int(kind));
}

EntryKind kindOf(const QString& typ) {
    const int n = typ.toInt();
    return n >= 1 && n <= 3 ? EntryKind(n) : EntryKind::Memo;
}

QString seriesCode(SerieKind kind) {
    switch (kind) {
    case SerieKind::Daily:
        return QStringLiteral("D");
    case SerieKind::Weekly:
        return QStringLiteral("W");
    case SerieKind::Monthly:
        return QStringLiteral("M");
    case SerieKind::Yearly:
        return QStringLiteral("Y");
    case SerieKind::Single:
        break;
    }
    return {};
}

SerieKind kindOfSeries(const QString& code) {
    if (code == u"D")
        return SerieKind::Daily;
    if (code == u"W")
        return SerieKind::Weekly;
    if (code == u"M")
        return SerieKind::Monthly;
    if (code == u"Y")
        return SerieKind::Yearly;
    return SerieKind::Single;
}

VbDate joined(VbDate date, VbDate time) {
    return VbDate(core::DateValue(date).value + core::TimeValue(time).value);
}

} // namespace

MobileEntryForm::MobileEntryForm(core::Context& ctx) : m_ctx(ctx) {
    m_v.startDate = ctx.clock.Date();
    m_v.startTime = spine::SetActTime(ctx);
    m_v.endDate = core::DateValue(core::DateAdd(QStringLiteral("n"), 30, ctx.clock.Now()));
    m_v.endTime = spine::SetActTimeEnd(ctx);
    m_v.pim = ctx.flags.GlobalOrganizerOK;
    m_saved = m_v;
}

MobileEntryForm::MobileEntryForm(core::Context& ctx, int rowPosition) : m_ctx(ctx), m_row(rowPosition) {
    core::guarded(ctx, kModul, QStringLiteral("MobileEntryFormShow"), [&] {
        if (!goToRow())
            return;
        tables::Recordset& t = *ctx.tables.RSCalendar;
        auto text = [&](const char* f) { return t.value(QString::fromLatin1(f)).toText(); };
        auto date = [&](const char* f) { return t.value(QString::fromLatin1(f)).toDate(); };
        auto flag = [&](const char* f) { return t.value(QString::fromLatin1(f)).toBool(); };
        m_entryId = text("EntryID");
        m_v.kind = kindOf(text("Typ"));
        m_v.description = text("Text");
        // The phone's short text shows only where it says more than the subject.
        m_v.summary = text("Summary") == m_v.description ? QString() : text("Summary");
        const VbDate start = date("Start");
        m_v.startDate = core::DateValue(start);
        m_v.startTime = core::Format(start, ctx.formats.TimeFormatNoSec);
        const VbDate end = flag("EndDateFlag") ? joined(date("EndDate"), date("EndTime")) : start;
        m_v.endDate = core::DateValue(end);
        m_v.endTime = core::Format(end, ctx.formats.TimeFormatNoSec);
        m_v.alarm = flag("Alarm");
        m_v.mobile = flag("Mobile");
        m_v.pim = flag("PIM");
        m_v.serie = flag("ISRecurring") ? kindOfSeries(text("RecurrenceType")) : SerieKind::Single;
        m_v.weekdays = sync::BinärtoCheckbox(int32_t(t.value(QStringLiteral("Weekdaymask")).toInt64()));
    });
    m_saved = m_v;
}

bool MobileEntryForm::goToRow() {
    tables::Recordset& t = *m_ctx.tables.RSCalendar;
    if (m_row < 1 || m_row > t.recordCount())
        return false;
    t.setAbsolutePosition(m_row);
    return m_entryId.isEmpty() || t.value(QStringLiteral("EntryID")).toText() == m_entryId;
}

int MobileEntryForm::textLimit() const {
    return m_v.kind == EntryKind::Call ? formats::Phonecall_Len(m_v.description) : kPhoneTextLength;
}

VbDate MobileEntryForm::readTime(const QString& text) const {
    VbDate time;
    core::CreateTimeFromString(m_ctx, text, time);
    return time;
}

void MobileEntryForm::StartTime_LostFocus() {
    m_v.startTime = core::Format(readTime(m_v.startTime), m_ctx.formats.TimeFormatNoSec);
}

void MobileEntryForm::EndTime_LostFocus() {
    m_v.endTime = core::Format(readTime(m_v.endTime), m_ctx.formats.TimeFormatNoSec);
}

void MobileEntryForm::EntryTime_Click() {
    m_v.startTime = spine::SetActTime(m_ctx);
}

void MobileEntryForm::EntryTimeEnd_Click() {
    m_v.endTime = spine::SetActTimeEnd(m_ctx);
}

VbDate MobileEntryForm::start() const {
    return joined(m_v.startDate, readTime(m_v.startTime));
}

VbDate MobileEntryForm::end() const {
    return joined(m_v.endDate, readTime(m_v.endTime));
}

EntryProblem MobileEntryForm::checkEntry() const {
    if (m_v.description.trimmed().isEmpty() && m_v.summary.trimmed().isEmpty())
        return EntryProblem::EmptyText;
    if (end() < start())
        return EntryProblem::EndBeforeStart;
    if (m_v.serie == SerieKind::Weekly && sync::CheckBoxToBinär(m_v.weekdays) == 0)
        return EntryProblem::NoWeekday;
    if (m_v.serie != SerieKind::Single) {
        // The weekly limit is read from a row: the scratch table holds the editor's mask.
        tables::Recordset& work = *m_ctx.tables.RSCalendarWork;
        tables::ClearRecordSet(work);
        tables::vCalCreateNewRecord(work);
        work.setValue(QStringLiteral("Weekdaymask"), int64_t(sync::CheckBoxToBinär(m_v.weekdays)));
        int16_t refuse = -1;
        sync::SerieControl(m_ctx, work, m_v.serie, start(), end(), refuse);
        tables::ClearRecordSet(work);
        if (!refuse)
            return EntryProblem::SeriesTooLong;
    }
    return EntryProblem::None;
}

QString MobileEntryForm::problemText(EntryProblem problem) const {
    const auto& s = m_ctx.strings;
    switch (problem) {
    case EntryProblem::EmptyText:
        return s.text(2101);
    case EntryProblem::EndBeforeStart:
        return s.text(2102);
    case EntryProblem::NoWeekday:
        return s.text(2103);
    case EntryProblem::SeriesTooLong:
        return s.text(843) + u'\n' + s.text(844);
    case EntryProblem::None:
        break;
    }
    return {};
}

bool MobileEntryForm::Check4Changes() const {
    if (isNew())
        return m_v != m_saved;
    return m_v.mobile != m_saved.mobile || m_v.pim != m_saved.pim || m_v.kind != m_saved.kind ||
           m_v.startTime != m_saved.startTime || m_v.endTime != m_saved.endTime || m_v.serie != m_saved.serie ||
           m_v.startDate != m_saved.startDate || m_v.endDate != m_saved.endDate ||
           m_v.description != m_saved.description || m_v.summary != m_saved.summary || m_v.alarm != m_saved.alarm ||
           m_v.weekdays != m_saved.weekdays;
}

bool MobileEntryForm::queryClose() {
    if (!Check4Changes())
        return true;
    // "Save changes?"
    switch (m_ctx.ui->msgBox(m_ctx.strings.text(583), MsgButtons::YesNoCancel, MsgIcon::Question, m_ctx.title())) {
    case MsgResult::Yes:
        return EntrySave() != EntrySaveResult::Stay;
    case MsgResult::No:
        return true;
    default:
        return false;
    }
}

bool MobileEntryForm::CheckEntryAlarm() {
    if (!m_v.alarm || !(start() < m_ctx.clock.Now()))
        return true;
    // "Alarm cannot be activated as the alarm time has already passed. Do you agree?"
    if (m_ctx.ui->msgBox(m_ctx.strings.text(459), MsgButtons::YesNoCancel, MsgIcon::Question, m_ctx.title()) !=
        MsgResult::Yes)
        return false;
    m_v.alarm = false;
    return true;
}

bool MobileEntryForm::confirmTextLength() {
    const int limit = textLimit();
    if (!m_v.mobile || m_v.description.size() <= limit)
        return true;
    // The phone would cut the text on its own; the user sees the cut before it happens.
    const QString text = m_ctx.strings.text(2104).arg(limit);
    if (m_ctx.ui->msgBox(text, MsgButtons::YesNo, MsgIcon::Exclamation, m_ctx.title()) != MsgResult::Yes)
        return false;
    m_v.description = m_v.description.left(limit);
    return true;
}

EntrySaveResult MobileEntryForm::EntrySave() {
    return core::guarded(m_ctx, kModul, QStringLiteral("ActiveBar21_ToolClick"), EntrySaveResult::Stay, [&] {
        StartTime_LostFocus();
        EndTime_LostFocus();
        if (!m_v.mobile && !m_v.pim)
            return deleteEntry();
        const EntryProblem problem = checkEntry();
        if (problem != EntryProblem::None) {
            m_ctx.ui->msgBox(problemText(problem), MsgButtons::OK, MsgIcon::Exclamation, m_ctx.title());
            return EntrySaveResult::Stay;
        }
        if (!confirmTextLength())
            return EntrySaveResult::Stay;
        moveWeeklyStart();
        if (m_v.mobile && !phone::InitComm(m_ctx))
            return EntrySaveResult::Stay;
        if (!CheckEntryAlarm())
            return EntrySaveResult::Stay;
        if (!vCalEntrySave())
            return EntrySaveResult::Stay;
        m_saved = m_v;
        return EntrySaveResult::Saved;
    });
}

void MobileEntryForm::moveWeeklyStart() {
    if (m_v.serie != SerieKind::Weekly || m_v.weekdays[size_t(core::Weekday(m_v.startDate) - 1)])
        return;
    // The phone's series begins on its first occurrence: the start goes to the next
    // checked weekday and the end keeps the entry's length.
    const VbDate moved = sync::startDate_act(m_ctx, m_v.startDate, m_v.weekdays, true);
    m_v.endDate = VbDate(m_v.endDate.value + (moved.value - m_v.startDate.value));
    m_v.startDate = moved;
}

EntrySaveResult MobileEntryForm::deleteEntry() {
    if (isNew())
        return EntrySaveResult::Deleted;
    if (!goToRow())
        return EntrySaveResult::Stay;
    tables::Recordset& t = *m_ctx.tables.RSCalendar;
    // "Warning! This entry will be deleted from mobile and PIM!"
    if (m_ctx.ui->msgBox(m_ctx.strings.text(546), MsgButtons::OKCancel, MsgIcon::Exclamation, m_ctx.title()) !=
        MsgResult::OK)
        return EntrySaveResult::Stay;
    if (t.value(QStringLiteral("Mobile")).toBool() && phone::InitComm(m_ctx)) {
        roads::RemoveEntryFromMobile(m_ctx, t);
        phone::DeinitComm(m_ctx);
    }
    if (t.value(QStringLiteral("PIM")).toBool())
        roads::RemoveEntryFromOutlook(m_ctx, t);
    t.deleteCurrent();
    t.updateBatch();
    m_ctx.ui->refreshGrid(0);
    return EntrySaveResult::Deleted;
}

bool MobileEntryForm::vCalEntrySave() {
    tables::Recordset& t = *m_ctx.tables.RSCalendar;
    bool wasMobile = false;
    bool wasPim = false;
    VbDate oldStart;
    const bool needsNumber = m_v.mobile && (isNew() || (goToRow() && t.value(QStringLiteral("SubType")).toInt32() < 1));
    if (needsNumber && !m_ctx.read.vCalMobileRead) {
        // A free number is only known once the phone's entries are in the table:
        // without that read a new entry could land on one of them.
        if (!roads::vCalReadMobile(m_ctx) || !phone::InitComm(m_ctx))
            return false;
        if (!isNew()) {
            if (!tables::FindEntryByID(t, m_entryId))
                return false;
            m_row = t.absolutePosition();
        }
    }
    if (isNew()) {
        tables::vCalCreateNewRecord(t);
    } else {
        if (!goToRow())
            return false;
        wasMobile = t.value(QStringLiteral("Mobile")).toBool();
        wasPim = t.value(QStringLiteral("PIM")).toBool();
        oldStart = t.value(QStringLiteral("Start")).toDate();
    }
    auto set = [&](const char* field, const core::Value& v) { t.setValue(QString::fromLatin1(field), v); };

    if (m_v.mobile && t.value(QStringLiteral("SubType")).toInt32() < 1) {
        int16_t id = -1;
        if (!sync::GetFreeMobileEntryID(m_ctx, t, id) || id < 1) {
            m_ctx.ui->msgBox(m_ctx.strings.text(721), MsgButtons::OK, MsgIcon::Exclamation, m_ctx.title());
            if (isNew())
                t.deleteCurrent();
            return false;
        }
        set("SubType", int32_t(id));
        if (isNew())
            set("EntryID", QString::number(id));
    }
    // A side the user cleared loses the entry first, while the row still says it stands there.
    if (wasMobile && !m_v.mobile)
        roads::RemoveEntryFromMobile(m_ctx, t);
    if (wasPim && !m_v.pim)
        roads::RemoveEntryFromOutlook(m_ctx, t);

    const VbDate start = this->start();
    const VbDate end = this->end();
    const QString typ = typOf(m_v.kind);
    set("Mobile", m_v.mobile);
    set("PIM", m_v.pim);
    set("EntryType", int32_t(m_v.mobile && m_v.pim ? 3 : (m_v.mobile ? 2 : 1)));
    set("oldStartDate", oldStart);
    set("altesStartDate", oldStart);
    set("Start", start);
    set("DTStart", start);
    set("DTStartFlag", true);
    set("StartasText", start);
    set("StartDate", core::DateValue(start));
    set("StartTime", core::Format(core::TimeValue(start), m_ctx.formats.TimeFormat));
    set("DTEnd", end);
    set("EndDate", core::DateValue(end));
    set("EndTime", core::TimeValue(end));
    set("EndDateFlag", true);
    set("StartEndDiff", int64_t(core::DateDiff(QStringLiteral("d"), core::DateValue(start), core::DateValue(end))));
    const QString text = m_v.description.isEmpty() ? m_v.summary : m_v.description;
    set("Text", text);
    set("Description", m_v.description);
    set("Summary", m_v.summary);
    set("PIMText", text);
    set("Typ", typ);
    set("MemoStatus", m_v.kind == EntryKind::Memo);
    set("MeetingStatus", m_v.kind == EntryKind::Meeting);
    set("AnniversaryStatus", m_v.kind == EntryKind::Birthday);
    set("PhoneCallStatus", m_v.kind == EntryKind::Call);
    set("Alarm", m_v.alarm);
    set("AAlarmFlag", m_v.alarm);
    set("DAlarmFlag", m_v.alarm);
    set("AAlarm", m_v.alarm ? start : VbDate());
    set("DAlarm", m_v.alarm ? start : VbDate());
    set("IsChanged", true);
    if (m_v.serie == SerieKind::Single) {
        tables::vCalClearRecurrance(t);
    } else {
        const int32_t mask = sync::CheckBoxToBinär(m_v.weekdays);
        set("ISRecurring", true);
        set("RecurrenceType", seriesCode(m_v.serie));
        set("Serie", seriesCode(m_v.serie));
        set("Weekdaymask", int64_t(m_v.serie == SerieKind::Weekly ? mask : 0));
        set("RecurrenceIntervall", int64_t(1));
        set("RecurrenceDuration", int64_t(0));
        if (m_v.serie == SerieKind::Weekly)
            formats::vCalSetSerieFields(m_ctx, t, int16_t(mask));
        else
            formats::vCalSetSerieFields(m_ctx, t);
    }
    t.update();
    m_row = t.absolutePosition();
    m_entryId = t.value(QStringLiteral("EntryID")).toText();

    bool ok = true;
    if (m_v.mobile) {
        ok = roads::SendSingleEntry(m_ctx, t);
        phone::DeinitComm(m_ctx);
    }
    if (ok && m_v.pim) {
        bool isNewItem = !wasPim;
        roads::WriteOutlookEntry(m_ctx, t, isNewItem);
    }
    m_entryId = t.value(QStringLiteral("EntryID")).toText();
    m_row = t.absolutePosition();
    m_ctx.ui->refreshGrid(0);
    return ok;
}

} // namespace tsr::main
