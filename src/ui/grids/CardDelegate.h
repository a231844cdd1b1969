// SPDX-License-Identifier: GPL-3.0-or-later
// The card layout of a grid ("Karten"): each row drawn as a card with its title
// line (the subject, or the name) and the other shown columns as "caption: value".
#pragma once

#include <QStyledItemDelegate>

namespace tsr::ui {

class EntryTableModel;

class CardDelegate : public QStyledItemDelegate {
    Q_OBJECT
public:
    explicit CardDelegate(const EntryTableModel& model, QObject* parent = nullptr);
    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    // The card's size in the given font, the same for every row.
    QSize cardSize(const QFont& font) const;

private:
    // The columns the card shows under its title, and the title's column.
    std::vector<int> bodyColumns() const;
    int titleColumn() const;

    const EntryTableModel& m_model;
};

} // namespace tsr::ui
