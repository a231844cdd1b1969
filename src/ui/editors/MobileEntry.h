// SPDX-License-Identifier: GPL-3.0-or-later
// The calendar entry editor: type, subject, summary, start and end, alarm, the
// two sides and the series. Its logic is main::MobileEntryForm; this dialog
// copies the controls into the form's values and back.
#pragma once

#include "main/MobileEntryForm.h"

#include <QDialog>
#include <array>
#include <optional>

class QAction;
class QCheckBox;
class QComboBox;
class QDateEdit;
class QLabel;
class QLineEdit;
class QRadioButton;
class QTimer;
class QToolBar;

namespace tsr::ui {

class MobileEntry : public QDialog {
    Q_OBJECT
public:
    // A new entry, or the row at this position of the calendar table.
    MobileEntry(core::Context& ctx, QWidget* parent, std::optional<int> rowPosition = std::nullopt);
    ~MobileEntry() override;

    main::MobileEntryForm& form() { return m_form; }
    // Puts values into the controls, as a new entry on a chosen day starts.
    void setValues(const main::MobileEntryValues& values);
    // The EntrySave tool: the checks, the save, and the dialog closes when it went through.
    void EntrySave_Click();

protected:
    void reject() override;

private:
    void InitFrame();
    void InitEntryActiveBar();
    void OnOffActiveBarEntry();
    void readControls();
    void showValues();
    void updateCounter();

    core::Context& m_ctx;
    main::MobileEntryForm m_form;
    bool m_showing = false;

    QToolBar* m_tools = nullptr; // EntryTools
    QAction* m_save = nullptr;
    QAction* m_delete = nullptr;
    QAction* m_serie = nullptr;
    QAction* m_time = nullptr;
    QAction* m_timeEnd = nullptr;
    std::array<QRadioButton*, 4> m_options{}; // EntryOptions
    QLineEdit* m_description = nullptr;
    QLabel* m_counter = nullptr;
    QLineEdit* m_summary = nullptr;
    QDateEdit* m_startDate = nullptr; // DTPickerDatum
    QLineEdit* m_startTime = nullptr;
    QDateEdit* m_endDate = nullptr;
    QLineEdit* m_endTime = nullptr;
    QCheckBox* m_alarm = nullptr;
    QCheckBox* m_mobile = nullptr;
    QCheckBox* m_pim = nullptr;
    QComboBox* m_periode = nullptr;     // EntryPeriode
    std::array<QCheckBox*, 7> m_days{}; // Sunday first
    QTimer* m_timer = nullptr;          // EntryFormTimer
};

// The entry point for the main window's new and open commands: modal; true when
// the entry was saved or deleted.
bool MobileEntryFormShow(core::Context& ctx, QWidget* parent, std::optional<int> rowPosition = std::nullopt);

} // namespace tsr::ui
