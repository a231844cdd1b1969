// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/grids/CardDelegate.h"

#include "ui/grids/EntryTableModel.h"

#include <QApplication>
#include <QPainter>
#include <QPainterPath>

namespace tsr::ui {

using Kind = tables::GridColumn::Kind;

CardDelegate::CardDelegate(const EntryTableModel& model, QObject* parent)
    : QStyledItemDelegate(parent), m_model(model) {}

int CardDelegate::titleColumn() const {
    const int c = m_model.columnOf(m_model.list() == 1 ? QStringLiteral("LastName") : QStringLiteral("Text"));
    return c < 0 ? 0 : c;
}

std::vector<int> CardDelegate::bodyColumns() const {
    std::vector<int> cols;
    for (int c = 0; c < m_model.columnCount(); ++c)
        if (c != titleColumn() && !m_model.column(c).caption.isEmpty() &&
            m_model.column(c).field != u"FirstName") // the title holds the first name
            cols.push_back(c);
    return cols;
}

QSize CardDelegate::cardSize(const QFont& font) const {
    const QFontMetrics fm(font);
    const int lines = 1 + int(bodyColumns().size());
    return {fm.averageCharWidth() * (m_model.list() == 1 ? 42 : 34) + 16, lines * (fm.height() + 2) + 18};
}

QSize CardDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex&) const {
    return cardSize(option.font);
}

void CardDelegate::paint(QPainter* p, const QStyleOptionViewItem& option, const QModelIndex& index) const {
    p->save();
    const QRect card = option.rect.adjusted(4, 4, -4, -4);
    const bool selected = option.state & QStyle::State_Selected;
    const QPalette& pal = option.palette;
    QColor ground = pal.color(QPalette::Base);
    if (const QVariant bg = m_model.data(m_model.index(index.row(), 0), Qt::BackgroundRole); bg.isValid())
        ground = bg.value<QBrush>().color();
    p->setRenderHint(QPainter::Antialiasing);
    p->setPen(selected ? pal.color(QPalette::Highlight) : pal.color(QPalette::Mid));
    p->setBrush(ground);
    p->drawRoundedRect(QRectF(card).adjusted(0.5, 0.5, -0.5, -0.5), 4, 4);

    const QFontMetrics fm(option.font);
    const int lineHeight = fm.height() + 2;
    QRect line(card.left() + 6, card.top() + 5, card.width() - 12, lineHeight);

    // Title: the subject or the name, with the type's picture on the calendar.
    QFont bold = option.font;
    bold.setBold(true);
    p->setFont(bold);
    QColor text = pal.color(QPalette::Text);
    if (const QVariant fg = m_model.data(m_model.index(index.row(), 0), Qt::ForegroundRole); fg.isValid())
        text = fg.value<QBrush>().color();
    QString title = m_model.cellText(index.row(), titleColumn());
    if (m_model.list() == 1) {
        const int first = m_model.columnOf(QStringLiteral("FirstName"));
        if (first >= 0 && !m_model.cellText(index.row(), first).isEmpty())
            title += QStringLiteral(", ") + m_model.cellText(index.row(), first);
    }
    if (selected) {
        QPainterPath head;
        head.addRoundedRect(QRectF(card.left() + 1, card.top() + 1, card.width() - 2, lineHeight + 6), 3, 3);
        p->fillPath(head, pal.color(QPalette::Highlight));
        p->setPen(pal.color(QPalette::HighlightedText));
    } else {
        p->setPen(text);
    }
    p->drawText(line, Qt::AlignLeft | Qt::AlignVCenter,
                QFontMetrics(bold).elidedText(title, Qt::ElideRight, line.width()));
    line.translate(0, 4);
    p->setFont(option.font);

    int captionWidth = 0;
    const std::vector<int> body = bodyColumns();
    for (int c : body)
        captionWidth = std::max(captionWidth, fm.horizontalAdvance(m_model.column(c).caption + u':'));
    captionWidth = std::min(captionWidth + 6, line.width() / 2);
    for (int c : body) {
        line.translate(0, lineHeight);
        const auto& col = m_model.column(c);
        p->setPen(pal.color(QPalette::PlaceholderText));
        p->drawText(QRect(line.left(), line.top(), captionWidth, line.height()), Qt::AlignLeft | Qt::AlignVCenter,
                    col.caption + u':');
        p->setPen(text);
        QRect value(line.left() + captionWidth, line.top(), line.width() - captionWidth, line.height());
        const QModelIndex cell = m_model.index(index.row(), c);
        if (col.kind == Kind::CheckBox) {
            const bool on = m_model.data(cell, Qt::CheckStateRole).toInt() == Qt::Checked;
            p->drawText(value, Qt::AlignLeft | Qt::AlignVCenter,
                        on ? QStringLiteral("\u2714") : QStringLiteral("\u2013"));
            continue;
        }
        const QVariant icon = m_model.data(cell, Qt::DecorationRole);
        if (icon.isValid()) {
            const int s = fm.height() - 2;
            icon.value<QIcon>().paint(p, QRect(value.left(), value.top() + (value.height() - s) / 2, s, s));
            value.setLeft(value.left() + s + 4);
        }
        p->drawText(value, Qt::AlignLeft | Qt::AlignVCenter,
                    fm.elidedText(m_model.cellText(index.row(), c), Qt::ElideRight, value.width()));
    }
    p->restore();
}

} // namespace tsr::ui
