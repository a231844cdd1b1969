// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/dialogs/EntryShow.h"

#include "core/Context.h"
#include "ui/FormHelpers.h"

#include <QAbstractTableModel>
#include <QCheckBox>
#include <QFrame>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTableView>
#include <QVBoxLayout>

namespace tsr::ui {

namespace {

// The grid's table as a model: caption, phone, PIM; a differing line in the style "Found".
class ShowGridModel : public QAbstractTableModel {
public:
    ShowGridModel(const core::Context& ctx, tables::Recordset& grid, const QList<int>& found, QObject* parent)
        : QAbstractTableModel(parent), m_found(found) {
        m_headers = {ctx.strings.text(953), ctx.strings.text(943), ctx.strings.text(942)};
        if (grid.recordCount() > 0)
            for (grid.moveFirst(); !grid.eof(); grid.moveNext())
                m_lines.append({grid.value(0).toText(), grid.value(1).toText(), grid.value(2).toText()});
    }
    int rowCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : int(m_lines.size()); }
    int columnCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : 3; }
    QVariant data(const QModelIndex& index, int role) const override {
        if (!index.isValid())
            return {};
        const bool found = m_found.contains(index.row());
        switch (role) {
        case Qt::DisplayRole:
        case Qt::ToolTipRole:
            return m_lines.at(index.row()).at(index.column());
        case Qt::BackgroundRole:
            return found ? QVariant(QColor(0xff, 0xe0, 0x8a)) : QVariant();
        case Qt::FontRole:
            if (found) {
                QFont f;
                f.setBold(true);
                return f;
            }
            return {};
        default:
            return {};
        }
    }
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override {
        if (orientation == Qt::Horizontal && role == Qt::DisplayRole && section >= 0 && section < 3)
            return m_headers.at(section);
        return {};
    }

private:
    QList<QStringList> m_lines;
    QStringList m_headers;
    QList<int> m_found;
};

} // namespace

EntryShow::EntryShow(core::Context& ctx, const tables::Recordset& pimRow, const tables::Recordset& mobileRow,
                     QWidget* parent)
    : QDialog(parent) {
    setObjectName(QStringLiteral("EntryShow"));
    setWindowTitle(ctx.title());
    setWindowIcon(programIcon());
    setFont(savedFont(ctx));
    m_grid = main::InitShowGridRS();
    main::FillShowGridRS(ctx, *m_grid, pimRow, mobileRow);
    m_found = main::setGridBackColor(*m_grid);

    auto* intro = new QLabel(ctx.strings.text(2113) + u'\n' + ctx.strings.text(2114), this);
    intro->setObjectName(QStringLiteral("Intro"));
    intro->setWordWrap(true);

    auto* frame = new QFrame(this);
    frame->setObjectName(QStringLiteral("SelectFrame"));
    frame->setFrameShape(QFrame::StyledPanel);
    auto* grid = new QTableView(frame);
    grid->setObjectName(QStringLiteral("ShowGrid"));
    grid->setModel(new ShowGridModel(ctx, *m_grid, m_found, grid));
    grid->verticalHeader()->hide();
    grid->setSelectionMode(QAbstractItemView::NoSelection);
    grid->setEditTriggers(QAbstractItemView::NoEditTriggers);
    grid->horizontalHeader()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
    grid->horizontalHeader()->setSectionResizeMode(1, QHeaderView::Stretch);
    grid->horizontalHeader()->setSectionResizeMode(2, QHeaderView::Stretch);
    grid->setWordWrap(false);
    auto* frameLayout = new QVBoxLayout(frame);
    frameLayout->setContentsMargins(0, 0, 0, 0);
    frameLayout->addWidget(grid);

    m_mobileOverPim = new QCheckBox(ctx.strings.text(952), this);
    m_mobileOverPim->setObjectName(QStringLiteral("ch_MobileoverPIM"));
    m_pimOverMobile = new QCheckBox(ctx.strings.text(632), this);
    m_pimOverMobile->setObjectName(QStringLiteral("ch_PIMoverMobile"));
    m_both = new QCheckBox(ctx.strings.text(950), this);
    m_both->setObjectName(QStringLiteral("ch_MobandPIM"));
    auto* ok = new QPushButton(ctx.strings.text(691), this);
    ok->setObjectName(QStringLiteral("Bu_OK"));
    ok->setDefault(true);
    connect(ok, &QPushButton::clicked, this, &QDialog::accept);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(intro);
    layout->addWidget(frame, 1);
    layout->addWidget(m_mobileOverPim);
    layout->addWidget(m_pimOverMobile);
    layout->addWidget(m_both);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(ok);
    layout->addLayout(buttons);

    // Every line visible without scrolling.
    const int lines = int(m_grid->recordCount());
    grid->setMinimumHeight(grid->horizontalHeader()->sizeHint().height() +
                           lines * grid->verticalHeader()->defaultSectionSize() + 4);
    resize(std::max(560, sizeHint().width()), sizeHint().height());
}

void EntryShow::done(int result) {
    m_answer = main::EntryShowAnswer(m_mobileOverPim->isChecked(), m_pimOverMobile->isChecked(), m_both->isChecked());
    QDialog::done(result);
}

int compareContacts(core::Context& ctx, QWidget* parent, const tables::Recordset& pimRow,
                    const tables::Recordset& mobileRow) {
    EntryShow dialog(ctx, pimRow, mobileRow, parent);
    dialog.exec();
    return dialog.answer();
}

} // namespace tsr::ui
