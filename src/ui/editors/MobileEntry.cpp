// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/editors/MobileEntry.h"

#include "core/Context.h"
#include "ui/FormHelpers.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTimer>
#include <QToolBar>
#include <QVBoxLayout>

namespace tsr::ui {

using main::EntryKind;
using main::EntrySaveResult;
using sync::SerieKind;

namespace {

// Without the mnemonic's ampersand, for tool tips and plain labels.
QString plain(QString text) {
    return text.remove(u'&');
}

// The weekday boxes' names come from the string table, Sunday first, so they follow
// the user's language rather than the system's.
constexpr std::array<int, 7> kDayNames = {910, 904, 905, 906, 907, 908, 909};
const std::array<const char*, 7> kDayBoxes = {"CheckSo", "CheckMo", "CheckDi", "CheckMi",
                                              "CheckDo", "CheckFr", "CheckSa"};

} // namespace

MobileEntry::MobileEntry(core::Context& ctx, QWidget* parent, std::optional<int> rowPosition)
    : QDialog(parent), m_ctx(ctx),
      m_form(rowPosition ? main::MobileEntryForm(ctx, *rowPosition) : main::MobileEntryForm(ctx)) {
    setObjectName(QStringLiteral("MobileEntry"));
    ctx.flags.GlobalEditorOpen = true;
    InitFrame();
    InitEntryActiveBar();
    // Every tool of the band stays in sight, whatever the language's texts.
    setMinimumWidth(std::max(560, m_tools->sizeHint().width() + 2 * layout()->contentsMargins().left()));
    showValues();
    m_timer = new QTimer(this);
    m_timer->setObjectName(QStringLiteral("EntryFormTimer"));
    m_timer->setSingleShot(true);
    connect(m_timer, &QTimer::timeout, this, [this] {
        m_description->setFocus();
        m_description->selectAll();
    });
    m_timer->start(0);
}

MobileEntry::~MobileEntry() {
    m_ctx.flags.GlobalEditorOpen = false;
}

void MobileEntry::InitFrame() {
    const auto& s = m_ctx.strings;
    setWindowTitle(s.text(m_form.isNew() ? 822 : 923));
    setWindowIcon(programIcon());
    setFont(savedFont(m_ctx));

    auto* typeBox = new QGroupBox(plain(s.text(2111)), this);
    typeBox->setObjectName(QStringLiteral("EntryOptions"));
    auto* typeLayout = new QHBoxLayout(typeBox);
    const std::array<int, 4> typeTexts = {899, 900, 901, 902};
    const std::array<const char*, 4> typeNames = {"OptMemo", "OptMeeting", "OptBirthday", "OptCall"};
    for (size_t i = 0; i < m_options.size(); ++i) {
        m_options[i] = new QRadioButton(s.text(typeTexts[i]), typeBox);
        m_options[i]->setObjectName(QString::fromLatin1(typeNames[i]));
        typeLayout->addWidget(m_options[i]);
        connect(m_options[i], &QRadioButton::toggled, this, [this](bool on) {
            if (on && !m_showing) {
                readControls();
                OnOffActiveBarEntry();
                updateCounter();
            }
        });
    }
    typeLayout->addStretch();

    m_description = new QLineEdit(this);
    m_description->setObjectName(QStringLiteral("EntryDescriptionText"));
    m_description->setToolTip(s.text(917));
    m_counter = new QLabel(this);
    m_counter->setObjectName(QStringLiteral("TextCounter"));
    m_counter->setMinimumWidth(fontMetrics().horizontalAdvance(QStringLiteral("000/00")) + 8);
    m_counter->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    connect(m_description, &QLineEdit::textChanged, this, [this] {
        if (!m_showing)
            m_form.values().description = m_description->text();
        updateCounter();
    });
    auto* subjectRow = new QHBoxLayout;
    subjectRow->addWidget(m_description, 1);
    subjectRow->addWidget(m_counter);

    m_summary = new QLineEdit(this);
    m_summary->setObjectName(QStringLiteral("EntrySummaryText"));

    const QString dateFormat = qtDateFormat(m_ctx.formats.DateFormat);
    auto makeDate = [&](const char* name, int tip) {
        auto* d = new QDateEdit(this);
        d->setObjectName(QString::fromLatin1(name));
        d->setCalendarPopup(true);
        d->setDisplayFormat(dateFormat);
        d->setToolTip(s.text(tip));
        return d;
    };
    auto makeTime = [&](const char* name) {
        auto* t = new QLineEdit(this);
        t->setObjectName(QString::fromLatin1(name));
        t->setToolTip(s.text(877) + m_ctx.formats.TimeFormatNoSec + s.text(878));
        t->setMaximumWidth(fontMetrics().horizontalAdvance(QStringLiteral("00:00 MMM")) + 16);
        return t;
    };
    m_startDate = makeDate("DTPickerDatum", 911);
    m_startTime = makeTime("StartTime");
    m_endDate = makeDate("EndDatePicker", 924);
    m_endTime = makeTime("EndTime");
    connect(m_startTime, &QLineEdit::editingFinished, this, [this] {
        readControls();
        m_form.StartTime_LostFocus();
        showValues();
    });
    connect(m_endTime, &QLineEdit::editingFinished, this, [this] {
        readControls();
        m_form.EndTime_LostFocus();
        showValues();
    });
    auto* startRow = new QHBoxLayout;
    startRow->addWidget(m_startDate);
    startRow->addWidget(m_startTime);
    startRow->addStretch();
    auto* endRow = new QHBoxLayout;
    endRow->addWidget(m_endDate);
    endRow->addWidget(m_endTime);
    endRow->addStretch();

    m_alarm = new QCheckBox(s.text(927), this);
    m_alarm->setObjectName(QStringLiteral("EntryAlarm"));
    m_alarm->setToolTip(s.text(903));
    m_mobile = new QCheckBox(s.text(580), this);
    m_mobile->setObjectName(QStringLiteral("CheckMobile"));
    m_mobile->setToolTip(s.text(916));
    m_pim = new QCheckBox(s.text(581), this);
    m_pim->setObjectName(QStringLiteral("CheckPIM"));
    m_pim->setToolTip(s.text(915));
    m_pim->setEnabled(m_ctx.flags.GlobalOrganizerOK || m_form.values().pim);
    auto* flagsRow = new QHBoxLayout;
    flagsRow->addWidget(m_alarm);
    flagsRow->addWidget(m_mobile);
    flagsRow->addWidget(m_pim);
    flagsRow->addStretch();

    m_periode = new QComboBox(this);
    m_periode->setObjectName(QStringLiteral("EntryPeriode"));
    m_periode->setToolTip(s.text(914));
    for (int n : {527, 528, 759, 841, 842})
        m_periode->addItem(s.text(n));
    connect(m_periode, &QComboBox::activated, this, [this] {
        readControls();
        OnOffActiveBarEntry();
    });
    auto* daysRow = new QHBoxLayout;
    for (size_t i = 0; i < m_days.size(); ++i) {
        const QString name = s.text(kDayNames[i]);
        m_days[i] = new QCheckBox(name.left(2), this);
        m_days[i]->setObjectName(QString::fromLatin1(kDayBoxes[i]));
        m_days[i]->setToolTip(name);
    }
    // Monday first on screen, as the user's week reads; the mask stays Sunday first.
    for (size_t i = 1; i <= m_days.size(); ++i)
        daysRow->addWidget(m_days[i % 7]);
    daysRow->addStretch();

    auto* form = new QFormLayout;
    form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    form->addRow(s.text(932), subjectRow);
    form->addRow(s.text(2107), m_summary);
    form->addRow(s.text(2110), startRow);
    form->addRow(s.text(2108), endRow);
    form->addRow(QString(), flagsRow);
    form->addRow(s.text(2112), m_periode);
    form->addRow(s.text(2109), daysRow);

    auto* buttons = new QDialogButtonBox(this);
    auto* save = buttons->addButton(s.text(593), QDialogButtonBox::AcceptRole);
    save->setObjectName(QStringLiteral("EntrySaveButton"));
    auto* close = buttons->addButton(s.text(594), QDialogButtonBox::RejectRole);
    close->setObjectName(QStringLiteral("EntryCloseButton"));
    connect(save, &QPushButton::clicked, this, &MobileEntry::EntrySave_Click);
    connect(close, &QPushButton::clicked, this, &MobileEntry::reject);

    m_tools = new QToolBar(this);
    m_tools->setObjectName(QStringLiteral("EntryTools"));
    m_tools->setToolButtonStyle(Qt::ToolButtonTextOnly);

    auto* layout = new QVBoxLayout(this);
    layout->setMenuBar(m_tools);
    layout->addWidget(typeBox);
    layout->addLayout(form);
    layout->addWidget(buttons);
}

void MobileEntry::InitEntryActiveBar() {
    const auto& s = m_ctx.strings;
    auto add = [&](const char* name, int text, int tip) {
        QAction* a = m_tools->addAction(plain(s.text(text)));
        a->setObjectName(QString::fromLatin1(name));
        a->setToolTip(plain(s.text(tip)));
        return a;
    };
    m_save = add("EntrySave", 922, 912);
    connect(m_save, &QAction::triggered, this, &MobileEntry::EntrySave_Click);
    m_delete = add("EntryDelete", 461, 461);
    connect(m_delete, &QAction::triggered, this, [this] {
        m_mobile->setChecked(false);
        m_pim->setChecked(false);
        EntrySave_Click();
    });
    m_tools->addSeparator();
    m_serie = add("EntrySerie", 921, 920);
    m_serie->setCheckable(true);
    connect(m_serie, &QAction::toggled, this, [this](bool on) {
        if (m_showing)
            return;
        // ActiveBarEntrySerie_Click: switching the series on offers weekly first.
        readControls();
        m_form.values().serie = on ? SerieKind::Weekly : SerieKind::Single;
        if (on && sync::CheckBoxToBinär(m_form.values().weekdays) == 0)
            m_form.values().weekdays[size_t(core::Weekday(m_form.values().startDate) - 1)] = true;
        showValues();
    });
    m_tools->addSeparator();
    m_time = add("EntryTime", 918, 918);
    connect(m_time, &QAction::triggered, this, [this] {
        readControls();
        m_form.EntryTime_Click();
        showValues();
    });
    m_timeEnd = add("EntryTimeEnd", 919, 919);
    connect(m_timeEnd, &QAction::triggered, this, [this] {
        readControls();
        m_form.EntryTimeEnd_Click();
        showValues();
    });
    m_tools->addSeparator();
    QAction* help = add("EntryHelp", 958, 958);
    connect(help, &QAction::triggered, this, [this] { m_ctx.ui->showForm(core::UserInterface::Form::Help); });
    QAction* about = add("EntryAbout", 954, 954);
    connect(about, &QAction::triggered, this, [this] { m_ctx.ui->showForm(core::UserInterface::Form::About); });
    m_delete->setEnabled(!m_form.isNew());
}

// Which controls a type and a series choice leave open.
void MobileEntry::OnOffActiveBarEntry() {
    const auto& v = m_form.values();
    const bool call = v.kind == EntryKind::Call;
    const bool birthday = v.kind == EntryKind::Birthday;
    m_serie->setEnabled(!call);
    m_periode->setEnabled(!call);
    for (QWidget* w : {static_cast<QWidget*>(m_startTime), static_cast<QWidget*>(m_endTime)})
        w->setEnabled(!birthday);
    m_time->setEnabled(!birthday);
    m_timeEnd->setEnabled(!birthday);
    const bool weekly = v.serie == SerieKind::Weekly;
    for (QCheckBox* box : m_days)
        box->setEnabled(weekly);
}

void MobileEntry::readControls() {
    if (m_showing)
        return;
    main::MobileEntryValues& v = m_form.values();
    for (size_t i = 0; i < m_options.size(); ++i)
        if (m_options[i]->isChecked())
            v.kind = EntryKind(i);
    v.description = m_description->text();
    v.summary = m_summary->text();
    v.startDate = fromDate(m_startDate->date());
    v.startTime = m_startTime->text();
    v.endDate = fromDate(m_endDate->date());
    v.endTime = m_endTime->text();
    v.alarm = m_alarm->isChecked();
    v.mobile = m_mobile->isChecked();
    v.pim = m_pim->isChecked();
    v.serie = SerieKind(m_periode->currentIndex());
    for (size_t i = 0; i < m_days.size(); ++i)
        v.weekdays[i] = m_days[i]->isChecked();
}

void MobileEntry::showValues() {
    const main::MobileEntryValues& v = m_form.values();
    m_showing = true;
    m_options[size_t(v.kind)]->setChecked(true);
    if (m_description->text() != v.description)
        m_description->setText(v.description);
    m_summary->setText(v.summary);
    m_startDate->setDate(toDate(v.startDate));
    m_startTime->setText(v.startTime);
    m_endDate->setDate(toDate(v.endDate));
    m_endTime->setText(v.endTime);
    m_alarm->setChecked(v.alarm);
    m_mobile->setChecked(v.mobile);
    m_pim->setChecked(v.pim);
    m_periode->setCurrentIndex(int(v.serie));
    m_serie->setChecked(v.serie != SerieKind::Single);
    for (size_t i = 0; i < m_days.size(); ++i)
        m_days[i]->setChecked(v.weekdays[i]);
    m_showing = false;
    OnOffActiveBarEntry();
    updateCounter();
}

// The phone keeps so many characters: the counter turns red past them, and the
// save asks before it cuts.
void MobileEntry::updateCounter() {
    const int limit = m_form.textLimit();
    const int length = int(m_description->text().size());
    m_counter->setText(m_ctx.strings.text(2105).arg(length).arg(limit));
    m_counter->setStyleSheet(length > limit ? QStringLiteral("color: #c0392b; font-weight: bold;") : QString());
    m_counter->setToolTip(m_ctx.strings.text(2104).arg(limit));
}

void MobileEntry::setValues(const main::MobileEntryValues& values) {
    m_form.values() = values;
    showValues();
}

void MobileEntry::EntrySave_Click() {
    readControls();
    const EntrySaveResult result = m_form.EntrySave();
    if (result == EntrySaveResult::Stay) {
        showValues();
        return;
    }
    accept();
}

void MobileEntry::reject() {
    readControls();
    if (m_form.queryClose())
        QDialog::reject();
    else
        showValues();
}

bool MobileEntryFormShow(core::Context& ctx, QWidget* parent, std::optional<int> rowPosition) {
    MobileEntry dialog(ctx, parent, rowPosition);
    return dialog.exec() == QDialog::Accepted;
}

} // namespace tsr::ui
