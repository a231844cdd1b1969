// SPDX-License-Identifier: GPL-3.0-or-later
// The grids' model: the calendar or contact table as the grid shows it, read in
// place (the table is never copied), with check boxes, value lists with their
// pictures, row colours and sorting on the table itself. An edit goes through
// the command layer's checks and saves; the model only passes it on.
#pragma once

#include "tables/GridColumns.h"

#include <QAbstractTableModel>
#include <vector>

namespace tsr::core {
struct Context;
}
namespace tsr::tables {
class Recordset;
}

namespace tsr::ui {

class EntryTableModel : public QAbstractTableModel {
    Q_OBJECT
public:
    // `list`: 0 the calendar (RSCalendar), 1 the contacts (RSContacts).
    EntryTableModel(core::Context& ctx, int list, QObject* parent = nullptr);

    int list() const { return m_list; }
    // The table as it stands now: a reset replaces the table object.
    tables::Recordset* table() const;
    const tables::GridColumn& column(int c) const { return m_columns.at(size_t(c)); }
    // The column showing `field`, or -1.
    int columnOf(const QString& field) const;

    // The table changed under the grid (read, reset, language): columns and rows anew.
    void reload();

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;
    void sort(int column, Qt::SortOrder order = Qt::AscendingOrder) override;

    // Sorts on up to three columns at once; an empty list restores the list's own order.
    void sortBy(const std::vector<std::pair<int, Qt::SortOrder>>& keys);

    // Makes view row `row` the table's current row.
    void setCurrentRow(int row) const;

    // The first row from `from` on (backwards with !forward, wrapping round once)
    // whose shown text in `column` (-1: any shown column) holds `text`, or equals it
    // with `wholeField`; -1 when none does. Case does not matter.
    int findRow(const QString& text, int from, bool forward, int column, bool wholeField) const;

    // The text a cell shows.
    QString cellText(int row, int column) const;

private:
    core::Context& m_ctx;
    int m_list;
    std::vector<tables::GridColumn> m_columns;
    std::vector<int> m_fieldIndex; // table field of each column
};

} // namespace tsr::ui
