// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/editors/vCardEntry.h"

#include "core/Context.h"
#include "ui/FormHelpers.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace tsr::ui {

vCardEntry::vCardEntry(core::Context& ctx, QWidget* parent, std::optional<int> rowPosition)
    : QDialog(parent), m_ctx(ctx), m_form(rowPosition ? main::ContactForm(ctx, *rowPosition) : main::ContactForm(ctx)) {
    setObjectName(QStringLiteral("vCardEntry"));
    const auto& s = ctx.strings;
    setWindowTitle(s.text(m_form.isNew() ? 563 : 559));
    setWindowIcon(programIcon());
    setFont(savedFont(ctx));

    auto* grid = new QGridLayout;
    grid->setColumnStretch(1, 1);
    const int counterWidth = fontMetrics().horizontalAdvance(QStringLiteral("000/00")) + 8;
    int line = 0;
    for (const main::ContactField& f : main::contactFields()) {
        auto* edit = new QLineEdit(m_form.values().text.value(f.field), this);
        edit->setObjectName(f.field);
        edit->setToolTip(s.text(f.tip));
        // Wide enough for the longest text the phone keeps.
        edit->setMinimumWidth(fontMetrics().horizontalAdvance(QLatin1Char('x')) * 42);
        auto* counter = new QLabel(this);
        counter->setObjectName(f.field + QStringLiteral("Counter"));
        counter->setMinimumWidth(counterWidth);
        counter->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        grid->addWidget(new QLabel(s.text(f.label), this), line, 0);
        grid->addWidget(edit, line, 1);
        grid->addWidget(counter, line, 2);
        m_edits.insert(f.field, edit);
        m_counters.insert(f.field, counter);
        connect(edit, &QLineEdit::textChanged, this, [this] {
            readControls();
            updateLimits();
        });
        ++line;
    }
    m_warning = new QLabel(this);
    m_warning->setObjectName(QStringLiteral("CutWarning"));
    m_warning->setWordWrap(true);
    m_warning->setStyleSheet(QStringLiteral("color: #c0392b;"));

    m_vip = new QCheckBox(s.text(579), this);
    m_vip->setObjectName(QStringLiteral("CheckVIP"));
    m_vip->setToolTip(s.text(582));
    m_vip->setChecked(m_form.values().vip);
    m_mobile = new QCheckBox(s.text(580), this);
    m_mobile->setObjectName(QStringLiteral("CheckMobile"));
    m_mobile->setToolTip(s.text(933));
    m_mobile->setChecked(m_form.values().mobile);
    m_pim = new QCheckBox(s.text(581), this);
    m_pim->setObjectName(QStringLiteral("CheckPIM"));
    m_pim->setToolTip(s.text(506));
    m_pim->setChecked(m_form.values().pim);
    m_pim->setEnabled(m_form.values().pim || (ctx.flags.GlobalOrganizerOK && ctx.pim.GlobalContactFolder));
    for (QCheckBox* box : {m_vip, m_mobile, m_pim})
        connect(box, &QCheckBox::toggled, this, [this] {
            readControls();
            updateLimits();
        });
    auto* boxes = new QHBoxLayout;
    boxes->addWidget(m_vip);
    boxes->addWidget(m_mobile);
    boxes->addWidget(m_pim);
    boxes->addStretch();

    auto* buttons = new QDialogButtonBox(this);
    auto* saveButton = buttons->addButton(s.text(593), QDialogButtonBox::AcceptRole);
    saveButton->setObjectName(QStringLiteral("ContactSaveButton"));
    auto* close = buttons->addButton(s.text(594), QDialogButtonBox::RejectRole);
    close->setObjectName(QStringLiteral("ContactCloseButton"));
    connect(saveButton, &QPushButton::clicked, this, &vCardEntry::save);
    connect(close, &QPushButton::clicked, this, &vCardEntry::reject);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(grid);
    layout->addWidget(m_warning);
    layout->addLayout(boxes);
    layout->addWidget(buttons);
    updateLimits();
}

void vCardEntry::readControls() {
    main::ContactValues& v = m_form.values();
    for (auto it = m_edits.cbegin(); it != m_edits.cend(); ++it)
        v.text.insert(it.key(), it.value()->text());
    v.vip = m_vip->isChecked();
    v.mobile = m_mobile->isChecked();
    v.pim = m_pim->isChecked();
}

// Every field counts what the phone keeps; past it the count turns red and the
// warning line names the field. Nothing is cut before the send.
void vCardEntry::updateLimits() {
    QStringList warnings;
    const bool toPhone = m_form.values().mobile;
    for (const main::ContactField& f : main::contactFields()) {
        const QString text = m_edits.value(f.field)->text();
        const int limit = main::contactFieldLimit(f, text);
        QLabel* counter = m_counters.value(f.field);
        counter->setText(m_ctx.strings.text(2105).arg(text.size()).arg(limit));
        const bool over = text.size() > limit;
        counter->setStyleSheet(over && toPhone ? QStringLiteral("color: #c0392b; font-weight: bold;") : QString());
        if (over && toPhone)
            warnings << m_ctx.strings.text(f.label) + u' ' + m_ctx.strings.text(2106).arg(limit);
    }
    m_warning->setText(warnings.join(u'\n'));
    m_warning->setVisible(!warnings.isEmpty());
}

void vCardEntry::save() {
    readControls();
    if (m_form.save())
        accept();
}

void vCardEntry::reject() {
    readControls();
    if (m_form.queryClose())
        QDialog::reject();
}

bool showContactEntry(core::Context& ctx, QWidget* parent, std::optional<int> rowPosition) {
    vCardEntry dialog(ctx, parent, rowPosition);
    return dialog.exec() == QDialog::Accepted;
}

} // namespace tsr::ui
