// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/dialogs/frmSort.h"

#include "core/Context.h"
#include "main/GridEdit.h"
#include "ui/grids/EntryTableModel.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace tsr::ui {

frmSort::frmSort(core::Context& ctx, const EntryTableModel& model, QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("frmSort"));
    const auto& s = ctx.strings;
    setWindowTitle(s.text(930));
    auto* layout = new QVBoxLayout(this);
    auto* grid = new QGridLayout;
    for (int c = 0; c < model.columnCount(); ++c)
        if (!model.column(c).caption.isEmpty())
            m_columns.push_back(c);
    for (int k = 0; k < 3; ++k) {
        grid->addWidget(new QLabel(main::gridText(ctx, k == 0 ? main::GridText::SortBy : main::GridText::ThenBy), this),
                        k, 0);
        m_field[k] = new QComboBox(this);
        m_field[k]->setObjectName(QStringLiteral("SortField%1").arg(k + 1));
        m_field[k]->addItem(main::gridText(ctx, main::GridText::NoColumn));
        for (int c : m_columns)
            m_field[k]->addItem(model.column(c).caption);
        m_order[k] = new QComboBox(this);
        m_order[k]->setObjectName(QStringLiteral("SortOrder%1").arg(k + 1));
        m_order[k]->addItems(
            {main::gridText(ctx, main::GridText::Ascending), main::gridText(ctx, main::GridText::Descending)});
        grid->addWidget(m_field[k], k, 1);
        grid->addWidget(m_order[k], k, 2);
    }
    grid->setColumnStretch(1, 1);
    layout->addLayout(grid);
    // The list's own order comes first: date, then time; for contacts the name.
    const int first = model.columnOf(model.list() == 1 ? QStringLiteral("LastName") : QStringLiteral("StartDate"));
    const int second = model.columnOf(model.list() == 1 ? QStringLiteral("FirstName") : QStringLiteral("StartTime"));
    for (size_t i = 0; i < m_columns.size(); ++i) {
        if (m_columns[i] == first)
            m_field[0]->setCurrentIndex(int(i) + 1);
        if (m_columns[i] == second)
            m_field[1]->setCurrentIndex(int(i) + 1);
    }
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    buttons->button(QDialogButtonBox::Ok)->setObjectName(QStringLiteral("SortStart"));
    buttons->button(QDialogButtonBox::Cancel)->setText(s.text(453));
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout->addWidget(buttons);
    setMinimumWidth(fontMetrics().averageCharWidth() * 50);
}

std::vector<std::pair<int, Qt::SortOrder>> frmSort::keys() const {
    std::vector<std::pair<int, Qt::SortOrder>> out;
    for (int k = 0; k < 3; ++k) {
        const int pick = m_field[k]->currentIndex();
        if (pick <= 0)
            continue;
        out.emplace_back(m_columns[size_t(pick - 1)],
                         m_order[k]->currentIndex() == 1 ? Qt::DescendingOrder : Qt::AscendingOrder);
    }
    return out;
}

} // namespace tsr::ui
