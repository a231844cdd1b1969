// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/dialogs/StartCalendarFrame.h"

#include "core/Context.h"
#include "ui/FormHelpers.h"

#include <QComboBox>
#include <QDateEdit>
#include <QGridLayout>
#include <QIntValidator>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QPushButton>
#include <QToolBar>

namespace tsr::ui {

namespace {

QDateEdit* picker(const QString& name, QWidget* parent) {
    auto* p = new QDateEdit(parent);
    p->setObjectName(name);
    p->setCalendarPopup(true);
    // The earliest date stands for "no date", as an empty picker does.
    p->setMinimumDate(QDate(1900, 1, 1));
    p->setSpecialValueText(QStringLiteral(" "));
    return p;
}

QLineEdit* textBox(const QString& name, QWidget* parent) {
    auto* t = new QLineEdit(parent);
    t->setObjectName(name);
    return t;
}

} // namespace

StartCalendarFrame::StartCalendarFrame(core::Context& ctx, QWidget* parent) : QFrame(parent), m_ctx(ctx), m_frame(ctx) {
    setObjectName(QStringLiteral("StartCalendarFrame"));
    setFrameShape(QFrame::StyledPanel);
    setAutoFillBackground(true);
    setFont(savedFont(ctx));
    const auto& s = ctx.strings;

    m_startPicker = picker(QStringLiteral("StartDatePicker"), this);
    m_endPicker = picker(QStringLiteral("EndDatePicker"), this);
    m_startText = textBox(QStringLiteral("StartDateText"), this);
    m_endText = textBox(QStringLiteral("EndDateText"), this);
    m_periodText = textBox(QStringLiteral("PeriodeText"), this);
    m_periodText->setValidator(new QIntValidator(0, 32767, m_periodText));
    m_periodCombo = new QComboBox(this);
    m_periodCombo->setObjectName(QStringLiteral("PeriodeCombo"));
    m_ok = new QPushButton(s.text(691), this);
    m_ok->setObjectName(QStringLiteral("CalCommandOK"));
    m_cancel = new QPushButton(s.text(453), this);
    m_cancel->setObjectName(QStringLiteral("CalCommandCancel"));

    m_startPicker->setToolTip(s.text(521));
    m_startText->setToolTip(s.text(521));
    m_endPicker->setToolTip(s.text(518));
    m_endText->setToolTip(s.text(518));
    m_periodText->setToolTip(s.text(520));
    m_periodCombo->setToolTip(s.text(914));

    const QString format = qtDateFormat(ctx.formats.DateFormat);
    m_startPicker->setDisplayFormat(format);
    m_endPicker->setDisplayFormat(format);
    // Room for a whole date in the user's format, as the frame is sized from it.
    const int dateWidth = fontMetrics().horizontalAdvance(QDate(2000, 12, 28).toString(format)) + 24;
    for (QLineEdit* t : {m_startText, m_endText})
        t->setMinimumWidth(dateWidth);
    m_periodText->setMaximumWidth(fontMetrics().horizontalAdvance(QStringLiteral("00000")) + 16);

    auto* grid = new QGridLayout(this);
    grid->addWidget(new QLabel(s.text(523), this), 0, 0);
    grid->addWidget(m_startText, 0, 1);
    grid->addWidget(m_startPicker, 0, 2);
    grid->addWidget(new QLabel(s.text(522), this), 1, 0);
    grid->addWidget(m_endText, 1, 1);
    grid->addWidget(m_endPicker, 1, 2);
    grid->addWidget(new QLabel(s.text(524), this), 2, 0);
    auto* period = new QHBoxLayout;
    period->addWidget(m_periodText);
    period->addWidget(m_periodCombo, 1);
    grid->addLayout(period, 2, 1, 1, 2);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(m_ok);
    buttons->addWidget(m_cancel);
    grid->addLayout(buttons, 3, 0, 1, 3);

    auto pickerDate = [](const QDateEdit* p) -> std::optional<core::VbDate> {
        if (p->date() == p->minimumDate())
            return std::nullopt;
        return fromDate(p->date());
    };
    connect(m_startPicker, &QDateEdit::dateChanged, this, [this, pickerDate] {
        if (m_showing)
            return;
        m_frame.StartDatePicker_Change(pickerDate(m_startPicker));
        showValues();
    });
    connect(m_endPicker, &QDateEdit::dateChanged, this, [this, pickerDate] {
        if (m_showing)
            return;
        m_frame.EndDatePicker_Change(pickerDate(m_endPicker));
        showValues();
    });
    connect(m_periodText, &QLineEdit::textEdited, this, [this](const QString& text) {
        m_frame.PeriodeText_Change(text);
        showValues();
    });
    connect(m_periodCombo, &QComboBox::activated, this, [this](int index) {
        m_frame.PeriodeCombo_Click(index);
        showValues();
    });
    connect(m_ok, &QPushButton::clicked, this, [this] {
        if (m_periodText->isEnabled())
            m_periodText->setFocus();
        CalendarFrameClear();
        m_frame.CalCommandOK_Click();
    });
    connect(m_cancel, &QPushButton::clicked, this, [this] {
        m_frame.CalCommandCancel_Click();
        showValues();
        CalendarFrameClear();
    });
    for (QLineEdit* t : {m_startText, m_endText, m_periodText})
        t->installEventFilter(this);
    hide();
}

bool StartCalendarFrame::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::KeyPress)
        return QFrame::eventFilter(watched, event);
    const int key = static_cast<QKeyEvent*>(event)->key();
    const bool enter = key == Qt::Key_Return || key == Qt::Key_Enter;
    const bool escape = key == Qt::Key_Escape;
    if (!enter && !escape)
        return QFrame::eventFilter(watched, event);
    if (watched == m_periodText) {
        if (escape)
            m_frame.PeriodeText_Escape();
        else
            focusNextChild();
    } else if (watched == m_startText) {
        enter ? m_frame.StartDateText_Enter(m_startText->text()) : m_frame.StartDateText_Escape();
    } else if (watched == m_endText) {
        enter ? m_frame.EndDateText_Enter(m_endText->text()) : m_frame.EndDateText_Escape();
    }
    showValues();
    return true;
}

void StartCalendarFrame::showValues() {
    const main::CalendarFrameValues& v = m_frame.values();
    m_showing = true;
    m_startPicker->setDate(v.start ? toDate(*v.start) : m_startPicker->minimumDate());
    m_endPicker->setDate(v.end ? toDate(*v.end) : m_endPicker->minimumDate());
    if (m_startText->text() != v.startText)
        m_startText->setText(v.startText);
    if (m_endText->text() != v.endText)
        m_endText->setText(v.endText);
    if (m_periodText->text() != v.periodText)
        m_periodText->setText(v.periodText);
    for (int i = 0; i < int(v.units.size()); ++i) {
        if (m_periodCombo->count() <= i)
            m_periodCombo->addItem(v.units[size_t(i)]);
        else
            m_periodCombo->setItemText(i, v.units[size_t(i)]);
    }
    m_periodCombo->setCurrentIndex(v.unit);
    m_ok->setEnabled(v.okEnabled);
    m_showing = false;
}

void StartCalendarFrame::toggle() {
    if (!isHidden()) {
        CalendarFrameClear();
        return;
    }
    m_frame.fill();
    showValues();
    CalendarFrameSetMainForm();
}

void StartCalendarFrame::CalendarFrameSetMainForm() {
    // Under the tool band, at the left edge of the window.
    int top = 0;
    if (auto* window = qobject_cast<QMainWindow*>(parentWidget())) {
        for (QToolBar* bar : window->findChildren<QToolBar*>())
            if (bar->isVisible())
                top = std::max(top, bar->geometry().bottom() + 1);
        if (QWidget* menu = window->menuWidget(); menu && menu->isVisible())
            top = std::max(top, menu->geometry().bottom() + 1);
    }
    adjustSize();
    move(4, top + 4);
    show();
    raise();
    m_periodText->setFocus();
}

void StartCalendarFrame::CalendarFrameClear() {
    hide();
    if (m_ctx.ui->mainFormVisibleAndEnabled())
        m_ctx.ui->focusMainForm();
}

StartCalendarFrame* showDateFrame(core::Context& ctx, QWidget* mainWindow) {
    auto* frame =
        mainWindow->findChild<StartCalendarFrame*>(QStringLiteral("StartCalendarFrame"), Qt::FindDirectChildrenOnly);
    if (!frame)
        frame = new StartCalendarFrame(ctx, mainWindow);
    frame->toggle();
    return frame;
}

} // namespace tsr::ui
