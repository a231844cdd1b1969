// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/dialogs/frmFind.h"

#include "core/Context.h"
#include "ui/grids/EntryTableModel.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

namespace tsr::ui {

frmFind::frmFind(core::Context& ctx, const EntryTableModel& model, const std::optional<FindRequest>& last,
                 QWidget* parent)
    : QDialog(parent) {
    setObjectName(QStringLiteral("frmFind"));
    const auto& s = ctx.strings;
    setWindowTitle(s.text(727));
    auto* layout = new QVBoxLayout(this);

    auto* form = new QFormLayout;
    m_text = new QLineEdit(this);
    m_text->setObjectName(QStringLiteral("SearchText"));
    m_text->setPlaceholderText(s.text(742));
    m_text->setMinimumWidth(fontMetrics().averageCharWidth() * 36);
    form->addRow(s.text(737), m_text);
    layout->addLayout(form);

    auto* direction = new QGroupBox(s.text(740), this);
    auto* dirLayout = new QVBoxLayout(direction);
    m_forward = new QRadioButton(s.text(728), direction);
    m_forward->setObjectName(QStringLiteral("SearchForward"));
    m_backward = new QRadioButton(s.text(729), direction);
    m_backward->setObjectName(QStringLiteral("SearchBackward"));
    dirLayout->addWidget(m_forward);
    dirLayout->addWidget(m_backward);
    layout->addWidget(direction);

    m_fromCurrent = new QCheckBox(s.text(730), this);
    m_fromCurrent->setObjectName(QStringLiteral("StartInCurrentLine"));
    m_wholeField = new QCheckBox(s.text(731), this);
    m_wholeField->setObjectName(QStringLiteral("WholeField"));
    m_inColumn = new QCheckBox(s.text(732), this);
    m_inColumn->setObjectName(QStringLiteral("InColumn"));
    m_column = new QComboBox(this);
    m_column->setObjectName(QStringLiteral("SearchColumn"));
    m_column->setToolTip(s.text(741));
    for (int c = 0; c < model.columnCount(); ++c) {
        if (model.column(c).caption.isEmpty())
            continue;
        m_column->addItem(model.column(c).caption);
        m_columns.push_back(c);
    }
    layout->addWidget(m_fromCurrent);
    layout->addWidget(m_wholeField);
    auto* columnRow = new QHBoxLayout;
    columnRow->addWidget(m_inColumn);
    columnRow->addWidget(m_column, 1);
    layout->addLayout(columnRow);
    connect(m_inColumn, &QCheckBox::toggled, m_column, &QWidget::setEnabled);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    buttons->button(QDialogButtonBox::Ok)->setText(s.text(845));
    buttons->button(QDialogButtonBox::Ok)->setObjectName(QStringLiteral("SearchStart"));
    buttons->button(QDialogButtonBox::Cancel)->setText(s.text(453));
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout->addWidget(buttons);

    const FindRequest r = last.value_or(FindRequest{});
    m_text->setText(r.text);
    m_text->selectAll();
    (r.forward ? m_forward : m_backward)->setChecked(true);
    m_fromCurrent->setChecked(r.fromCurrent);
    m_wholeField->setChecked(r.wholeField);
    m_inColumn->setChecked(r.column >= 0);
    m_column->setEnabled(r.column >= 0);
    for (size_t i = 0; i < m_columns.size(); ++i)
        if (m_columns[i] == r.column)
            m_column->setCurrentIndex(int(i));
    buttons->button(QDialogButtonBox::Ok)->setEnabled(!r.text.isEmpty());
    connect(m_text, &QLineEdit::textChanged, this,
            [buttons](const QString& t) { buttons->button(QDialogButtonBox::Ok)->setEnabled(!t.trimmed().isEmpty()); });
}

FindRequest frmFind::request() const {
    FindRequest r;
    r.text = m_text->text().trimmed();
    r.forward = m_forward->isChecked();
    r.fromCurrent = m_fromCurrent->isChecked();
    r.wholeField = m_wholeField->isChecked();
    const int pick = m_column->currentIndex();
    r.column = m_inColumn->isChecked() && pick >= 0 ? m_columns[size_t(pick)] : -1;
    return r;
}

} // namespace tsr::ui
