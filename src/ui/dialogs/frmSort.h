// SPDX-License-Identifier: GPL-3.0-or-later
// The sort dialog: up to three columns of the active grid, each ascending or
// descending. It asks; the grid's model sorts.
#pragma once

#include <QDialog>
#include <vector>

class QComboBox;

namespace tsr::core {
struct Context;
}

namespace tsr::ui {

class EntryTableModel;

class frmSort : public QDialog {
    Q_OBJECT
public:
    frmSort(core::Context& ctx, const EntryTableModel& model, QWidget* parent = nullptr);
    // The chosen keys, in order, without the rows left at "(none)".
    std::vector<std::pair<int, Qt::SortOrder>> keys() const;

private:
    QComboBox* m_field[3];
    QComboBox* m_order[3];
    std::vector<int> m_columns; // model column of each field entry (after "(none)")
};

} // namespace tsr::ui
