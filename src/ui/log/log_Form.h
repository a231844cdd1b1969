// SPDX-License-Identifier: GPL-3.0-or-later
// The log details: the three log tables in three grids (calendar entries,
// contacts, program errors) with localised heads and tool tips. Grids without
// rows step aside for those with rows.
#pragma once

#include <QDialog>

class QPushButton;
class QTableWidget;

namespace tsr::core {
struct Context;
}
namespace tsr::tables {
class Recordset;
}

namespace tsr::ui {

class log_Form : public QDialog {
    Q_OBJECT
public:
    explicit log_Form(core::Context& ctx, QWidget* parent = nullptr);

    // Binds the grids to the log tables again and lays them out by their rows.
    void LogInitlogForm();
    QSize sizeHint() const override { return {960, 560}; }

private:
    void fill(QTableWidget* grid, tables::Recordset* table);
    void arrangeGrids();

    core::Context& m_ctx;
    QTableWidget* logAuflistung = nullptr;
    QTableWidget* logContact = nullptr;
    QTableWidget* GridEXTSRFehler = nullptr;
    QPushButton* closeButton = nullptr;
};

} // namespace tsr::ui
