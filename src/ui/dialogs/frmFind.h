// SPDX-License-Identifier: GPL-3.0-or-later
// The find dialog: a text, the direction, where to start, whole field or part,
// and one column or all shown ones. It asks; the main window searches.
#pragma once

#include "ui/mainwindow/Main_Form.h"

#include <QDialog>

class QCheckBox;
class QComboBox;
class QLineEdit;
class QRadioButton;

namespace tsr::core {
struct Context;
}

namespace tsr::ui {

class EntryTableModel;

class frmFind : public QDialog {
    Q_OBJECT
public:
    frmFind(core::Context& ctx, const EntryTableModel& model, const std::optional<FindRequest>& last,
            QWidget* parent = nullptr);
    FindRequest request() const;

private:
    QLineEdit* m_text;
    QRadioButton* m_forward;
    QRadioButton* m_backward;
    QCheckBox* m_fromCurrent;
    QCheckBox* m_wholeField;
    QCheckBox* m_inColumn;
    QComboBox* m_column;
    std::vector<int> m_columns; // model column of each combo entry
};

} // namespace tsr::ui
