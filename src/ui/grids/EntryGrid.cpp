// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/grids/EntryGrid.h"

#include "core/Context.h"
#include "tables/Recordset.h"
#include "ui/grids/CardDelegate.h"
#include "ui/grids/EntryTableModel.h"

#include <QHeaderView>
#include <QItemSelectionModel>
#include <QListView>
#include <QTableView>
#include <QTimer>

namespace tsr::ui {

namespace {
const QString kTabelle = QStringLiteral("Tabelle");
const QString kKarten = QStringLiteral("Karten");
} // namespace

EntryGrid::EntryGrid(core::Context& ctx, int list, QWidget* parent)
    : QStackedWidget(parent), m_ctx(ctx), m_list(list), m_model(new EntryTableModel(ctx, list, this)),
      m_table(new QTableView(this)), m_cards(new QListView(this)) {
    const QString name = list == 1 ? QStringLiteral("GridEXCard") : QStringLiteral("GridEXCal");
    setObjectName(name);
    m_table->setObjectName(name + u'_' + kTabelle);
    m_cards->setObjectName(name + u'_' + kKarten);

    m_table->setModel(m_model);
    m_table->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_table->setSelectionMode(QAbstractItemView::SingleSelection);
    m_table->setEditTriggers(QAbstractItemView::EditKeyPressed | QAbstractItemView::SelectedClicked |
                             QAbstractItemView::AnyKeyPressed);
    m_table->setAlternatingRowColors(false);
    m_table->setWordWrap(false);
    m_table->verticalHeader()->hide();
    m_table->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    m_table->verticalHeader()->setDefaultSectionSize(m_table->fontMetrics().height() + 6);
    m_table->horizontalHeader()->setHighlightSections(false);
    m_table->horizontalHeader()->setSectionsClickable(true);
    m_table->horizontalHeader()->setSortIndicatorShown(false);
    // A click on a column's head sorts on it; a second click turns the order round.
    connect(m_table->horizontalHeader(), &QHeaderView::sectionClicked, this, [this](int section) {
        // Once the indicator shows, the header itself turns it round on each click.
        QHeaderView* h = m_table->horizontalHeader();
        if (!h->isSortIndicatorShown() || h->sortIndicatorSection() != section) {
            h->setSortIndicatorShown(true);
            h->setSortIndicator(section, Qt::AscendingOrder);
        }
        m_model->sort(section, h->sortIndicatorOrder());
        if (currentRow() >= 0)
            m_table->scrollTo(m_model->index(currentRow(), 0));
    });

    m_cardDelegate = new CardDelegate(*m_model, this);
    m_cards->setModel(m_model);
    m_cards->setModelColumn(0);
    m_cards->setItemDelegate(m_cardDelegate);
    m_cards->setViewMode(QListView::IconMode);
    m_cards->setFlow(QListView::LeftToRight);
    m_cards->setWrapping(true);
    m_cards->setResizeMode(QListView::Adjust);
    m_cards->setMovement(QListView::Static);
    m_cards->setUniformItemSizes(true);
    m_cards->setSpacing(2);
    m_cards->setSelectionMode(QAbstractItemView::SingleSelection);
    m_cards->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_cards->setGridSize(m_cardDelegate->cardSize(m_cards->font()) + QSize(4, 4));

    // One selection for both layouts: the current row is the same in each.
    m_selection = m_table->selectionModel();
    m_cards->setSelectionModel(m_selection);
    connect(m_selection, &QItemSelectionModel::currentRowChanged, this,
            [this](const QModelIndex& current) { m_model->setCurrentRow(current.row()); });
    connect(m_table, &QAbstractItemView::doubleClicked, this, &EntryGrid::openRequested);
    connect(m_cards, &QAbstractItemView::doubleClicked, this, &EntryGrid::openRequested);

    addWidget(m_table);
    addWidget(m_cards);
    setCurrentWidget(m_table);
    fitColumns();
}

QString EntryGrid::layoutName() const {
    return showsCards() ? kKarten : kTabelle;
}

bool EntryGrid::showsCards() const {
    return currentWidget() == m_cards;
}

void EntryGrid::setLayoutName(const QString& name) {
    const int row = currentRow();
    setCurrentWidget(name == kKarten ? static_cast<QWidget*>(m_cards) : m_table);
    if (row >= 0) {
        setCurrentRow(row);
        if (showsCards())
            m_cards->scrollTo(m_model->index(row, 0));
        else
            m_table->scrollTo(m_model->index(row, 0));
    }
}

int EntryGrid::currentRow() const {
    const QModelIndex i = m_selection->currentIndex();
    return i.isValid() ? i.row() : -1;
}

void EntryGrid::setCurrentRow(int row) {
    if (row < 0 || row >= m_model->rowCount()) {
        m_selection->clearCurrentIndex();
        return;
    }
    const QModelIndex i = m_model->index(row, 0);
    m_selection->setCurrentIndex(i, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
}

void EntryGrid::reload() {
    tables::Recordset* before = m_model->table();
    tables::Recordset::Bookmark mark = nullptr;
    const int row = currentRow();
    if (before && row >= 0 && row < before->recordCount())
        mark = before->bookmarkAt(row);
    m_model->reload();
    tables::Recordset* t = m_model->table();
    m_table->horizontalHeader()->setSortIndicatorShown(false);
    int again = -1;
    if (t && t == before && mark)
        again = t->viewIndexOf(mark);
    if (again < 0 && t && t->recordCount() > 0) {
        const int pos = t->absolutePosition();
        again = pos >= 1 ? pos - 1 : 0;
    }
    setCurrentRow(again);
    m_cards->setGridSize(m_cardDelegate->cardSize(m_cards->font()) + QSize(4, 4));
    fitColumns();
}

void EntryGrid::fitColumns() {
    const QFontMetrics fm(m_table->font());
    // Column rules are in twips, 15 to a pixel at 96 dots an inch.
    const double pxPerTwip = logicalDpiX() / 1440.0;
    const int rows = std::min(m_model->rowCount(), 200);
    int used = 0;
    int rest = -1;
    int widestText = -1;
    int widestTextWidth = 0;
    for (int c = 0; c < m_model->columnCount(); ++c) {
        const auto& col = m_model->column(c);
        const bool hidden = col.onlyWithPim && !m_ctx.flags.GlobalOrganizerOK;
        m_table->setColumnHidden(c, hidden);
        if (hidden)
            continue;
        if (col.fillsRest) {
            rest = c;
            continue;
        }
        int w = 0;
        if (col.fixedWidth > 0) {
            w = std::max(int(col.fixedWidth * pxPerTwip), 26);
        } else if (!col.widthSample.isEmpty()) {
            w = fm.horizontalAdvance(col.widthSample) + int(col.widthExtra * pxPerTwip) + 12;
        } else {
            // Without a rule the column takes its longest text among the first rows,
            // up to what a 24-character name needs.
            for (int r = 0; r < rows; ++r)
                w = std::max(w, fm.horizontalAdvance(m_model->cellText(r, c)));
            w = std::min(w, fm.averageCharWidth() * 24) + 12;
            if (col.kind == tables::GridColumn::Kind::Text && w > widestTextWidth) {
                widestText = c;
                widestTextWidth = w;
            }
        }
        w = std::max(w, fm.horizontalAdvance(col.caption) + 16 + (col.image ? 20 : 0));
        if (col.kind == tables::GridColumn::Kind::ValueList)
            w += fm.height() + 4; // room for the value's picture
        m_table->setColumnWidth(c, w);
        used += w;
    }
    const int room = m_table->viewport()->width() - used;
    if (rest >= 0) {
        m_table->setColumnWidth(rest, std::max(room, fm.averageCharWidth() * 20));
    } else if (widestText >= 0 && room > 0) {
        // The space left goes to the column with the longest texts.
        m_table->setColumnWidth(widestText, m_table->columnWidth(widestText) + room);
    }
}

void EntryGrid::leaveEditMode() {
    // Moving the focus off an open editor commits it, as leaving the cell would.
    if (m_table->isPersistentEditorOpen(m_table->currentIndex()) || m_table->focusWidget() != m_table)
        m_table->setFocus();
}

void EntryGrid::resizeEvent(QResizeEvent* event) {
    QStackedWidget::resizeEvent(event);
    // The table's viewport takes its new size only after this event: fit then.
    QTimer::singleShot(0, this, &EntryGrid::fitColumns);
}

void EntryGrid::showEvent(QShowEvent* event) {
    QStackedWidget::showEvent(event);
    QTimer::singleShot(0, this, &EntryGrid::fitColumns);
}

} // namespace tsr::ui
