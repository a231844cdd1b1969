// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/grids/EntryTableModel.h"

#include "core/Context.h"
#include "main/GridEdit.h"
#include "tables/Recordset.h"
#include "ui/Icons.h"

#include <QBrush>
#include <QColor>
#include <QFont>
#include <QIcon>

namespace tsr::ui {

using Kind = tables::GridColumn::Kind;

EntryTableModel::EntryTableModel(core::Context& ctx, int list, QObject* parent)
    : QAbstractTableModel(parent), m_ctx(ctx), m_list(list) {
    reload();
}

tables::Recordset* EntryTableModel::table() const {
    return m_list == 1 ? m_ctx.tables.RSContacts.get() : m_ctx.tables.RSCalendar.get();
}

int EntryTableModel::columnOf(const QString& field) const {
    for (size_t c = 0; c < m_columns.size(); ++c)
        if (m_columns[c].field.compare(field, Qt::CaseInsensitive) == 0)
            return int(c);
    return -1;
}

void EntryTableModel::reload() {
    beginResetModel();
    m_columns = m_list == 1 ? tables::vCardSetColCaption(m_ctx) : tables::SetvCalColCaption(m_ctx);
    m_fieldIndex.clear();
    tables::Recordset* t = table();
    for (const auto& c : m_columns)
        m_fieldIndex.push_back(t ? t->fieldIndex(c.field) : -1);
    // The calendar shows by date, then time, until the user sorts otherwise.
    if (t && m_list == 0 && t->sort().isEmpty() && t->recordCount() > 0)
        t->setSort(tables::kCalendarSort.join(QStringLiteral(", ")));
    endResetModel();
}

int EntryTableModel::rowCount(const QModelIndex& parent) const {
    const tables::Recordset* t = table();
    return parent.isValid() || !t || !t->isOpen() ? 0 : t->recordCount();
}

int EntryTableModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : int(m_columns.size());
}

QString EntryTableModel::cellText(int row, int column) const {
    const tables::Recordset* t = table();
    const int field = m_fieldIndex.at(size_t(column));
    if (!t || field < 0)
        return {};
    const core::Value v = t->valueAt(row, field);
    const auto& col = m_columns[size_t(column)];
    switch (col.kind) {
    case Kind::CheckBox:
        return {};
    case Kind::Date: {
        const core::VbDate d = v.toDate();
        return d.value == 0 ? QString() : core::Format(d, m_ctx.formats.DateFormat);
    }
    case Kind::Time:
        return v.type() == core::FieldType::Date ? core::Format(v.toDate(), m_ctx.formats.TimeFormatNoSec) : v.toText();
    case Kind::ValueList: {
        const QString key = v.toText();
        for (const auto& item : col.values)
            if (item.value == key)
                return item.text;
        return key;
    }
    case Kind::Text:
        break;
    }
    return v.toText();
}

QVariant EntryTableModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    const tables::Recordset* t = table();
    const int field = m_fieldIndex.at(size_t(index.column()));
    if (!t || field < 0)
        return {};
    const auto& col = m_columns[size_t(index.column())];
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
        if (col.kind == Kind::CheckBox)
            return {};
        return cellText(index.row(), index.column());
    case Qt::ToolTipRole:
        if (col.kind == Kind::Text)
            return cellText(index.row(), index.column());
        return col.tooltip;
    case Qt::CheckStateRole:
        if (col.kind != Kind::CheckBox)
            return {};
        return t->valueAt(index.row(), field).toBool() ? Qt::Checked : Qt::Unchecked;
    case Qt::DecorationRole:
        if (col.kind == Kind::ValueList) {
            const QString key = t->valueAt(index.row(), field).toText();
            for (const auto& item : col.values)
                if (item.value == key)
                    return gridImage(item.image);
        }
        return {};
    case Qt::BackgroundRole:
        switch (main::EntryBackround(m_ctx, m_list, *t, index.row())) {
        case main::RowLook::MobileOnly:
            return QBrush(QColor(0xe8, 0xf1, 0xfb));
        case main::RowLook::PimOnly:
            return QBrush(QColor(0xfb, 0xf6, 0xe0));
        default:
            return {};
        }
    case Qt::ForegroundRole:
        if (main::EntryBackround(m_ctx, m_list, *t, index.row()) == main::RowLook::OutsideRange)
            return QBrush(QColor(0x80, 0x80, 0x80));
        return {};
    default:
        return {};
    }
}

QVariant EntryTableModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || section < 0 || section >= int(m_columns.size()))
        return QAbstractTableModel::headerData(section, orientation, role);
    const auto& col = m_columns[size_t(section)];
    switch (role) {
    case Qt::DisplayRole:
        return col.caption;
    case Qt::DecorationRole:
        return col.image ? QVariant(gridImage(col.image)) : QVariant();
    case Qt::ToolTipRole:
        return col.tooltip;
    default:
        return {};
    }
}

Qt::ItemFlags EntryTableModel::flags(const QModelIndex& index) const {
    if (!index.isValid())
        return Qt::NoItemFlags;
    Qt::ItemFlags f = Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
    const auto& col = m_columns[size_t(index.column())];
    if (main::gridEditable(m_list, col.field))
        f |= col.kind == Kind::CheckBox ? Qt::ItemIsUserCheckable : Qt::ItemIsEditable;
    return f;
}

bool EntryTableModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return false;
    const auto& col = m_columns[size_t(index.column())];
    if (!main::gridEditable(m_list, col.field))
        return false;
    setCurrentRow(index.row());
    bool ok = false;
    if (col.kind == Kind::CheckBox && role == Qt::CheckStateRole)
        ok = main::GridEditFlag(m_ctx, m_list, col.field, value.toInt() == Qt::Checked);
    else if (col.kind != Kind::CheckBox && role == Qt::EditRole)
        ok = main::GridEditCell(m_ctx, m_list, col.field, value.toString());
    // The whole row may have changed (flags, the other side's copy).
    emit dataChanged(this->index(index.row(), 0), this->index(index.row(), columnCount() - 1));
    return ok;
}

void EntryTableModel::setCurrentRow(int row) const {
    tables::Recordset* t = table();
    if (t && row >= 0 && row < t->recordCount())
        t->setAbsolutePosition(row + 1);
}

void EntryTableModel::sort(int column, Qt::SortOrder order) {
    if (column < 0 || column >= int(m_columns.size()))
        return;
    sortBy({{column, order}});
}

void EntryTableModel::sortBy(const std::vector<std::pair<int, Qt::SortOrder>>& keys) {
    tables::Recordset* t = table();
    if (!t)
        return;
    QStringList parts;
    for (const auto& [column, order] : keys) {
        if (column < 0 || column >= int(m_columns.size()))
            continue;
        const QString dir = order == Qt::DescendingOrder ? QStringLiteral(" DESC") : QStringLiteral(" ASC");
        parts << m_columns[size_t(column)].field + dir;
        // A day holds several entries: within it they keep their times.
        if (m_list == 0 && m_columns[size_t(column)].field == u"StartDate" && keys.size() == 1)
            parts << QStringLiteral("StartTime") + dir;
    }
    if (parts.isEmpty() && m_list == 0)
        parts = tables::kCalendarSort;
    emit layoutAboutToBeChanged({}, QAbstractItemModel::VerticalSortHint);
    // The view's rows (current, selected) follow their entries to the new places.
    const QModelIndexList before = persistentIndexList();
    std::vector<tables::Recordset::Bookmark> marks;
    marks.reserve(size_t(before.size()));
    for (const QModelIndex& i : before)
        marks.push_back(t->bookmarkAt(i.row()));
    t->setSort(parts.join(QStringLiteral(", ")));
    QModelIndexList after;
    after.reserve(before.size());
    for (qsizetype i = 0; i < before.size(); ++i) {
        const int row = t->viewIndexOf(marks[size_t(i)]);
        after << (row < 0 ? QModelIndex() : index(row, before[i].column()));
    }
    changePersistentIndexList(before, after);
    emit layoutChanged({}, QAbstractItemModel::VerticalSortHint);
}

int EntryTableModel::findRow(const QString& text, int from, bool forward, int column, bool wholeField) const {
    const int rows = rowCount();
    if (rows == 0 || text.isEmpty())
        return -1;
    const int step = forward ? 1 : -1;
    int row = ((from % rows) + rows) % rows;
    for (int n = 0; n < rows; ++n, row = (row + step + rows) % rows) {
        for (int c = 0; c < columnCount(); ++c) {
            if (column >= 0 && c != column)
                continue;
            if (m_columns[size_t(c)].kind == Kind::CheckBox)
                continue;
            const QString cell = cellText(row, c);
            if (wholeField ? cell.compare(text, Qt::CaseInsensitive) == 0 : cell.contains(text, Qt::CaseInsensitive))
                return row;
        }
    }
    return -1;
}

} // namespace tsr::ui
