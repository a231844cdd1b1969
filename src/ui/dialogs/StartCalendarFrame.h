// SPDX-License-Identifier: GPL-3.0-or-later
// The date frame under the main window's tool band: start, end and the length
// of the calendar's date range. Its logic is main::CalendarFrame; this widget
// shows the values and passes the controls' events on.
#pragma once

#include "main/CalendarFrame.h"

#include <QFrame>

class QComboBox;
class QDateEdit;
class QLineEdit;
class QPushButton;

namespace tsr::ui {

class StartCalendarFrame : public QFrame {
    Q_OBJECT
public:
    StartCalendarFrame(core::Context& ctx, QWidget* parent);

    // TSRCalendar_Click: fills and shows a hidden frame, hides a showing one.
    void toggle();
    main::CalendarFrame& logic() { return m_frame; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void showValues();
    void CalendarFrameSetMainForm();
    void CalendarFrameClear();

    core::Context& m_ctx;
    main::CalendarFrame m_frame;
    bool m_showing = false; // while the values go to the controls, their events are not handlers
    QDateEdit* m_startPicker;
    QDateEdit* m_endPicker;
    QLineEdit* m_startText;
    QLineEdit* m_endText;
    QLineEdit* m_periodText;
    QComboBox* m_periodCombo;
    QPushButton* m_ok;
    QPushButton* m_cancel;
};

// The entry point of the main window's TSRCalendar tool: one frame per window, toggled.
StartCalendarFrame* showDateFrame(core::Context& ctx, QWidget* mainWindow);

} // namespace tsr::ui
