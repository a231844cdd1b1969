// SPDX-License-Identifier: GPL-3.0-or-later
// The calendar entry editor without its widgets: the values of its controls,
// the save list of the values on opening, the checks before a save and the save
// itself, which writes the row of the calendar table and sends it to the phone
// and the PIM. Every question goes through the user boundary.
#pragma once

#include "core/VbDate.h"
#include "sync/SeriesMask.h"

#include <QString>
#include <optional>

namespace tsr::core {
struct Context;
}

namespace tsr::main {

// EntryOptions, in the order of its four choices.
enum class EntryKind { Memo = 0, Meeting = 1, Birthday = 2, Call = 3 };

struct MobileEntryValues {
    EntryKind kind = EntryKind::Memo;
    QString description; // EntryDescriptionText: the subject, or a call's number
    QString summary;     // EntrySummaryText
    core::VbDate startDate;
    QString startTime; // StartTime as typed, in the user's time format without seconds
    core::VbDate endDate;
    QString endTime;
    bool alarm = false;                              // EntryAlarm
    bool mobile = true;                              // CheckMobile
    bool pim = true;                                 // CheckPIM
    sync::SerieKind serie = sync::SerieKind::Single; // EntrySerie / EntryPeriode
    sync::WeekdayBoxes weekdays{};                   // CheckSo ... CheckSa, Sunday first

    friend bool operator==(const MobileEntryValues&, const MobileEntryValues&) = default;
};

// What the dialog does after a save.
enum class EntrySaveResult {
    Stay,    // a check refused the save, or the phone could not be reached
    Saved,   // the row was written and sent
    Deleted, // both sides were cleared: the entry went
};

// The checks of an entry's values, before anything is sent.
enum class EntryProblem { None, EmptyText, EndBeforeStart, NoWeekday, SeriesTooLong };

class MobileEntryForm {
public:
    // A new entry: today, from now for 30 minutes, on the phone and, with a PIM, there too.
    explicit MobileEntryForm(core::Context& ctx);
    // The current row of the calendar table.
    MobileEntryForm(core::Context& ctx, int rowPosition);

    MobileEntryValues& values() { return m_v; }
    const MobileEntryValues& values() const { return m_v; }
    bool isNew() const { return m_row < 0; }

    // The characters of the subject the phone keeps: 32, or 40 for a call's number
    // (41 with a leading "+").
    int textLimit() const;

    // The lost-focus handlers of the time boxes: a typed time is read and shown in
    // the user's format.
    void StartTime_LostFocus();
    void EndTime_LostFocus();
    // EntryTime and EntryTimeEnd: now, and now plus 30 minutes.
    void EntryTime_Click();
    void EntryTimeEnd_Click();

    core::VbDate start() const;
    core::VbDate end() const;

    // The first check an entry fails, in the order the dialog asks them.
    EntryProblem checkEntry() const;
    QString problemText(EntryProblem problem) const;

    bool Check4Changes() const;
    // The whole save of the dialog's EntrySave tool.
    EntrySaveResult EntrySave();
    // Closing: on a change "Save changes?"; true when the dialog may close.
    bool queryClose();

private:
    bool CheckEntryAlarm();
    bool confirmTextLength();
    void moveWeeklyStart();
    bool vCalEntrySave();
    EntrySaveResult deleteEntry();
    bool goToRow();
    core::VbDate readTime(const QString& text) const;

    core::Context& m_ctx;
    int m_row = -1;
    QString m_entryId; // of an existing row, to find it again after the table moved
    MobileEntryValues m_v;
    MobileEntryValues m_saved; // the save list: the values on opening
};

} // namespace tsr::main
