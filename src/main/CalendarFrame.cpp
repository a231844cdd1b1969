// SPDX-License-Identifier: GPL-3.0-or-later
#include "main/CalendarFrame.h"

#include "core/Context.h"
#include "core/ErrorReport.h"
#include "roads/DOROutlookCalendar.h"
#include "roads/Mobile.h"
#include "roads/Transfer.h"
#include "spine/DateRange.h"
#include "sync/Verwaltung.h"

namespace tsr::main {

using core::VbDate;

namespace {

const QString kModul = QStringLiteral("Main_Form");

// The text up to its first blank, read as a date in the user's format.
std::optional<VbDate> typedDate(const core::Context& ctx, const QString& text) {
    const QString head = text.trimmed().section(u' ', 0, 0);
    if (head.isEmpty())
        return std::nullopt;
    const auto d = core::parseDate(head, ctx.formats.DateFormat, QString());
    if (!d)
        return std::nullopt;
    return core::DateValue(*d);
}

} // namespace

CalendarFrame::CalendarFrame(core::Context& ctx) : m_ctx(ctx) {
    m_v.units = spine::PeriodUnits(ctx, 2);
}

void CalendarFrame::fill() {
    core::guarded(m_ctx, kModul, QStringLiteral("TSRCalendar_Click"), [&] {
        const auto& f = m_ctx.flags;
        // A frame that was never set up starts on days, which is what DateRange counts.
        if (m_v.periodText.isEmpty() || m_v.unit == 0)
            m_v.periodText = QString::number(m_ctx.settings.DateRange);
        m_v.units = spine::PeriodUnits(m_ctx, m_v.periodText.toInt());
        m_v.start = core::DateValue(f.GlobalStartDate);
        m_v.end = core::DateValue(f.GlobalEndDate);
        m_v.startText = spine::SetStartDate(m_ctx, *m_v.start);
        m_v.endText = spine::SetStartDate(m_ctx, *m_v.end);
        enableOk();
        m_noted = m_v;
        m_notedGlobalStart = f.GlobalStartDate;
        m_notedRange = m_ctx.settings.DateRange;
        m_escStartText = m_v.startText;
        m_escEndText = m_v.endText;
        m_escPeriodText = m_v.periodText;
    });
}

void CalendarFrame::PeriodeCombo_Click(int unit) {
    core::guarded(m_ctx, kModul, QStringLiteral("PeriodeCombo_Click"), [&] {
        if (unit < 0 || unit >= int(spine::PeriodLimits.size()))
            return;
        m_v.unit = unit;
        bool ok = false;
        const int number = m_v.periodText.toInt(&ok);
        if (ok && number > spine::PeriodLimits.at(unit))
            m_v.periodText = QString::number(spine::PeriodLimits.at(unit));
        // The end follows the new unit at once, as it does for a typed number.
        PeriodeText_Change(m_v.periodText);
        m_escStartText = m_v.startText;
        m_escEndText = m_v.endText;
    });
}

void CalendarFrame::PeriodeText_Change(const QString& text) {
    core::guarded(m_ctx, kModul, QStringLiteral("PeriodeText_Change"), [&] {
        m_v.periodText = text;
        bool ok = false;
        const short number = text.trimmed().toShort(&ok);
        if (!ok || number < 1)
            return;
        // More than the unit takes would run the dates off the calendar: the text
        // shows the largest number the unit takes.
        const int limited = spine::limitPeriod(number, m_v.unit);
        if (limited != number)
            m_v.periodText = QString::number(limited);
        m_v.units = spine::PeriodUnits(m_ctx, limited);
        computeEnd(limited);
    });
}

void CalendarFrame::PeriodeText_Escape() {
    PeriodeText_Change(m_escPeriodText);
}

void CalendarFrame::computeEnd(int number) {
    if (!m_v.start)
        return;
    const VbDate end = spine::CalcDateAddNew(m_ctx, spine::PeriodIntervals.at(size_t(m_v.unit)), number, *m_v.start);
    m_v.end = core::DateValue(end);
    m_v.endText = spine::SetStartDate(m_ctx, *m_v.end);
    spine::PeriodeAct(m_ctx, *m_v.start, end);
    enableOk();
}

void CalendarFrame::enableOk() {
    m_v.okEnabled = m_v.start && m_v.end && !(*m_v.start > *m_v.end);
}

void CalendarFrame::StartDatePicker_Change(std::optional<VbDate> date) {
    core::guarded(m_ctx, kModul, QStringLiteral("StartDatePicker_Change"), [&] {
        m_v.start = date ? std::optional(core::DateValue(*date)) : std::nullopt;
        enableOk();
        if (!m_v.start)
            return;
        m_v.startText = spine::SetStartDate(m_ctx, *m_v.start);
        if (m_v.end)
            spine::PeriodeAct(m_ctx, *m_v.start, *m_v.end);
    });
}

void CalendarFrame::EndDatePicker_Change(std::optional<VbDate> date) {
    core::guarded(m_ctx, kModul, QStringLiteral("EndDatePicker_Change"), [&] {
        m_v.end = date ? std::optional(core::DateValue(*date)) : std::nullopt;
        enableOk();
        if (!m_v.end)
            return;
        m_v.endText = spine::SetStartDate(m_ctx, *m_v.end);
        if (m_v.start)
            spine::PeriodeAct(m_ctx, *m_v.start, *m_v.end);
    });
}

void CalendarFrame::StartDateText_Enter(const QString& text) {
    const auto d = typedDate(m_ctx, text);
    if (!d) {
        m_v.startText = m_escStartText;
        return;
    }
    if (spine::SetStartDate(m_ctx, *d) != m_escStartText)
        StartDatePicker_Change(d);
    m_v.startText = spine::SetStartDate(m_ctx, *d);
    m_escStartText = m_v.startText;
}

void CalendarFrame::EndDateText_Enter(const QString& text) {
    const auto d = typedDate(m_ctx, text);
    if (!d) {
        m_v.endText = m_escEndText;
        return;
    }
    if (spine::SetStartDate(m_ctx, *d) != m_escEndText)
        EndDatePicker_Change(d);
    m_v.endText = spine::SetStartDate(m_ctx, *d);
    m_escEndText = m_v.endText;
}

bool CalendarFrame::calendarHasPimRows() const {
    return m_ctx.read.vCalPIMRead && m_ctx.read.vCalPIMCount > 0;
}

void CalendarFrame::CalCommandOK_Click() {
    auto& f = m_ctx.flags;
    core::guarded(m_ctx, kModul, QStringLiteral("CalCommandOK_Click"), [&] {
        if (!m_v.okEnabled)
            return;
        f.GlobalBusy = true;
        if (m_v.start == m_noted.start && m_v.end == m_noted.end)
            return;
        const bool pimRows = calendarHasPimRows();
        // "Synchronise with the new date range?"
        if (pimRows && m_ctx.ui->msgBox(m_ctx.strings.text(474), core::MsgButtons::OKCancel, core::MsgIcon::None,
                                        m_ctx.title()) == core::MsgResult::Cancel) {
            CalCommandCancel_Click();
            return;
        }
        f.GlobalStartDate = *m_v.start;
        f.GlobalEndDate = VbDate(core::DateValue(*m_v.end).value + core::TimeSerial(23, 59, 59).value);
        if (!pimRows)
            return;
        m_ctx.ui->setBusyCursor(true);
        // The question is German in every language.
        if (m_ctx.tables.RSCalendarPending->recordCount() > 0 &&
            m_ctx.ui->msgBox(QStringLiteral("Ihre Änderungen, wurden noch nicht übertragen . Soll jetzt übertragen "
                                            "werden?"),
                             core::MsgButtons::YesNo, core::MsgIcon::Exclamation,
                             m_ctx.title()) == core::MsgResult::Yes)
            roads::TransfertoMobile(m_ctx, *m_ctx.tables.RSContactsPending, *m_ctx.tables.RSCalendarPending);
        const bool mobileRead = m_ctx.read.vCalMobileRead;
        if (mobileRead && m_ctx.read.vCalMobileCount >= 1)
            sync::vCalClearAfterMobileError(m_ctx);
        roads::vCalReadOutlook(m_ctx, *m_ctx.tables.RSCalendar, false);
        if (mobileRead)
            roads::vCalReadMobile(m_ctx);
        m_ctx.ui->refreshGrid(0);
        m_ctx.ui->setBusyCursor(false);
    });
    f.GlobalBusy = false;
}

void CalendarFrame::CalCommandCancel_Click() {
    m_v = m_noted;
    m_ctx.flags.GlobalStartDate = m_notedGlobalStart;
    m_ctx.settings.DateRange = m_notedRange;
    m_escStartText = m_v.startText;
    m_escEndText = m_v.endText;
    m_escPeriodText = m_v.periodText;
}

} // namespace tsr::main
