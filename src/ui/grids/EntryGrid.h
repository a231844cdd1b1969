// SPDX-License-Identifier: GPL-3.0-or-later
// One of the main window's grids (GridEXCal, GridEXCard): the table layout
// ("Tabelle") and the card layout ("Karten") over one model and one selection,
// so switching keeps the current row. The current row is the table's cursor.
#pragma once

#include <QStackedWidget>

class QListView;
class QTableView;
class QItemSelectionModel;

namespace tsr::core {
struct Context;
}

namespace tsr::ui {

class CardDelegate;
class EntryTableModel;

class EntryGrid : public QStackedWidget {
    Q_OBJECT
public:
    // `list`: 0 the calendar (GridEXCal), 1 the contacts (GridEXCard).
    EntryGrid(core::Context& ctx, int list, QWidget* parent = nullptr);

    EntryTableModel* model() const { return m_model; }
    QTableView* tableView() const { return m_table; }
    QListView* cardView() const { return m_cards; }

    // "Tabelle" or "Karten".
    QString layoutName() const;
    void setLayoutName(const QString& name);
    bool showsCards() const;

    // The current row (0-based), -1 for none.
    int currentRow() const;
    void setCurrentRow(int row);

    // The table changed: rows and columns anew, the current entry kept where it still is.
    void reload();
    // Column widths from the columns' rules and the grid's width.
    void fitColumns();
    // Ends an edit in progress (the command layer's "leave edit mode").
    void leaveEditMode();

signals:
    void openRequested();

protected:
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    core::Context& m_ctx;
    int m_list;
    EntryTableModel* m_model;
    QTableView* m_table;
    QListView* m_cards;
    CardDelegate* m_cardDelegate;
    QItemSelectionModel* m_selection;
};

} // namespace tsr::ui
