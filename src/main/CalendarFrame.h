// SPDX-License-Identifier: GPL-3.0-or-later
// The date frame of the main window without its widgets: the values of its
// controls, the values noted on opening for Cancel, and its handlers. The window
// shows `values()` after every handler; tests drive the handlers directly.
#pragma once

#include "core/VbDate.h"

#include <QString>
#include <array>
#include <optional>

namespace tsr::core {
struct Context;
}

namespace tsr::main {

struct CalendarFrameValues {
    std::optional<core::VbDate> start; // StartDatePicker; nothing while it holds no date
    std::optional<core::VbDate> end;   // EndDatePicker
    QString startText;                 // StartDateText
    QString endText;                   // EndDateText
    QString periodText;                // PeriodeText: the number of units
    int unit = 0;                      // PeriodeCombo: day, week, month, year
    std::array<QString, 4> units;      // the combo's names, singular or plural
    bool okEnabled = true;             // CalCommandOK
};

class CalendarFrame {
public:
    explicit CalendarFrame(core::Context& ctx);

    // TSRCalendar_Click on a hidden frame: the controls take the current range and
    // are noted for Cancel.
    void fill();
    void PeriodeCombo_Click(int unit);
    void PeriodeText_Change(const QString& text);
    // Escape in PeriodeText puts the noted number back.
    void PeriodeText_Escape();
    void StartDatePicker_Change(std::optional<core::VbDate> date);
    void EndDatePicker_Change(std::optional<core::VbDate> date);
    // Enter in a date text: a date is taken over into its picker, anything else
    // brings the noted text back.
    void StartDateText_Enter(const QString& text);
    void EndDateText_Enter(const QString& text);
    void StartDateText_Escape() { m_v.startText = m_escStartText; }
    void EndDateText_Escape() { m_v.endText = m_escEndText; }
    // Takes the new range over, with the question and the rereads it needs.
    void CalCommandOK_Click();
    void CalCommandCancel_Click();

    const CalendarFrameValues& values() const { return m_v; }

private:
    void computeEnd(int number);
    void enableOk();
    bool calendarHasPimRows() const;

    core::Context& m_ctx;
    CalendarFrameValues m_v;
    CalendarFrameValues m_noted; // on opening, for Cancel
    core::VbDate m_notedGlobalStart;
    int16_t m_notedRange = 0;
    QString m_escStartText; // what Escape in the date texts brings back
    QString m_escEndText;
    QString m_escPeriodText;
};

} // namespace tsr::main
