// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/dialogs/Einstellungen.h"

#include "core/Context.h"
#include "spine/DateRange.h"
#include "spine/SprachenStrings.h"

#include <QApplication>
#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QDialogButtonBox>
#include <QFile>
#include <QFontDatabase>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QIntValidator>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTabBar>
#include <QTabWidget>
#include <QVBoxLayout>

namespace tsr::ui {

namespace {

constexpr int kTypeBits[] = {1, 2, 4, 8, 32};

template <typename W> W* named(W* widget, const char* name) {
    widget->setObjectName(QString::fromLatin1(name));
    return widget;
}

QDateEdit* dateEdit(const char* name) {
    auto* edit = named(new QDateEdit, name);
    edit->setCalendarPopup(true);
    edit->setDisplayFormat(QLocale().dateFormat(QLocale::ShortFormat));
    return edit;
}

QLineEdit* numberEdit(const char* name) {
    auto* edit = named(new QLineEdit, name);
    edit->setMaximumWidth(70);
    return edit;
}

void setDate(QDateEdit* edit, core::VbDate d) {
    edit->setDate(core::toQDate(d));
}

core::VbDate dateOf(const QDateEdit* edit) {
    return core::fromQDate(edit->date());
}

int16_t maskOf(const QList<QCheckBox*>& boxes) {
    int mask = 0;
    for (qsizetype i = 0; i < boxes.size(); ++i)
        if (boxes[i]->isChecked())
            mask |= kTypeBits[i];
    return int16_t(mask);
}

void setTypeMask(const QList<QCheckBox*>& boxes, int mask) {
    for (qsizetype i = 0; i < boxes.size(); ++i)
        boxes[i]->setChecked(mask & kTypeBits[i]);
}

void checkId(QButtonGroup* group, int id) {
    if (QAbstractButton* button = group->button(id)) {
        button->setChecked(true);
        return;
    }
    // No option of the group stands for the value: none is set.
    group->setExclusive(false);
    for (QAbstractButton* b : group->buttons())
        b->setChecked(false);
    group->setExclusive(true);
}

} // namespace

Einstellungen::Einstellungen(core::Context& ctx, QWidget* parent) : QDialog(parent), m_ctx(ctx) {
    setObjectName(QStringLiteral("Einstellungen"));
    setWindowTitle(ctx.title() + QStringLiteral(" - ") + ctx.strings.text(631));
    m_tabs = named(new QTabWidget, "tabs");
    m_tabs->addTab(buildGeneralPage(), ctx.strings.text(603));
    m_tabs->addTab(buildSyncPage(), ctx.strings.text(606));
    m_tabs->addTab(buildDeletePage(), ctx.strings.text(604));
    m_tabs->addTab(buildLanguagePage(), ctx.strings.text(605));

    auto* buttons = new QDialogButtonBox;
    cmdOK = named(buttons->addButton(ctx.strings.text(691), QDialogButtonBox::AcceptRole), "cmdOK");
    cmdCancel = named(buttons->addButton(ctx.strings.text(453), QDialogButtonBox::RejectRole), "cmdCancel");
    cmdOK->setDefault(true);
    connect(cmdOK, &QPushButton::clicked, this, &Einstellungen::cmdOK_Click);
    connect(cmdCancel, &QPushButton::clicked, this, &Einstellungen::cmdCancel_Click);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_tabs);
    layout->addWidget(buttons);
    // Every tab caption in full, whatever the language.
    m_tabs->setMinimumWidth(m_tabs->tabBar()->sizeHint().width() + 24);
    Form_Load();
}

QWidget* Einstellungen::buildGeneralPage() {
    const core::ResStrings& t = m_ctx.strings;
    auto* page = named(new QWidget, "generalPage");
    auto* layout = new QVBoxLayout(page);

    auto* link = new QGroupBox(t.text(557));
    auto* linkForm = new QFormLayout(link);
    cboPort = named(new QComboBox, "cboPort");
    cboPort->setEditable(true);
    cboPort->setToolTip(t.text(655));
    cboPort->setMinimumContentsLength(16);
    linkForm->addRow(t.text(704), cboPort);
    GlobalTimeOut = numberEdit("GlobalTimeOut");
    linkForm->addRow(t.text(624), GlobalTimeOut);
    IrDADelay = numberEdit("IrDADelay");
    linkForm->addRow(t.text(626), IrDADelay);
    for (QLineEdit* field : {GlobalTimeOut, IrDADelay})
        connect(field, &QLineEdit::editingFinished, this,
                [field] { field->setText(QString::number(main::numericField(field->text(), 0))); });
    FileTransfer_check = named(new QCheckBox(t.text(1001)), "FileTransfer_check");
    linkForm->addRow(FileTransfer_check);
    GDX_Check = named(new QCheckBox(t.text(1002)), "GDX_Check");
    linkForm->addRow(GDX_Check);
    layout->addWidget(link);

    auto* mode = new QGroupBox(t.text(707));
    auto* modeLayout = new QGridLayout(mode);
    saveNow = named(new QRadioButton(t.text(656)), "saveNow");
    saveNow->setToolTip(t.text(695));
    saveLater = named(new QRadioButton(t.text(657)), "saveLater");
    saveLater->setToolTip(t.text(696));
    modeLayout->addWidget(saveNow, 0, 0);
    modeLayout->addWidget(saveLater, 0, 1);
    Puffer_Anzahl = numberEdit("Puffer_Anzahl");
    Puffer_Anzahl->setToolTip(t.text(690));
    modeLayout->addWidget(new QLabel(t.text(703)), 1, 0);
    modeLayout->addWidget(Puffer_Anzahl, 1, 1);
    connect(Puffer_Anzahl, &QLineEdit::editingFinished, this, [this] { limitField(Puffer_Anzahl); });
    layout->addWidget(mode);

    auto* start = new QGroupBox(t.text(549));
    auto* startForm = new QFormLayout(start);
    FolderComboBox = named(new QComboBox, "FolderComboBox");
    FolderComboBox->setToolTip(t.text(701));
    startForm->addRow(t.text(702), FolderComboBox);
    ReadOnStart = named(new QCheckBox(t.text(705)), "ReadOnStart");
    ReadOnStart->setToolTip(t.text(692));
    ReadonStartvCard = named(new QCheckBox(t.text(706)), "ReadonStartvCard");
    ReadonStartvCard->setToolTip(t.text(693));
    startForm->addRow(ReadOnStart);
    startForm->addRow(ReadonStartvCard);
    Font_auswahl = named(new QComboBox, "Font_auswahl");
    Font_auswahl->setToolTip(t.text(653));
    FontSize_Auswahl = named(new QComboBox, "FontSize_Auswahl");
    FontSize_Auswahl->setToolTip(t.text(654));
    auto* fonts = new QHBoxLayout;
    fonts->addWidget(Font_auswahl, 1);
    fonts->addWidget(new QLabel(t.text(649)));
    fonts->addWidget(FontSize_Auswahl);
    startForm->addRow(t.text(648), fonts);
    connect(Font_auswahl, &QComboBox::activated, this, [this] { m_fontTouched = true; });
    connect(FontSize_Auswahl, &QComboBox::activated, this, [this] { m_fontTouched = true; });
    layout->addWidget(start);
    layout->addStretch();
    return page;
}

QWidget* Einstellungen::buildSyncPage() {
    const core::ResStrings& t = m_ctx.strings;
    auto* page = named(new QWidget, "syncPage");
    auto* layout = new QVBoxLayout(page);
    sync_check = named(new QCheckBox(t.text(652)), "sync_check");
    layout->addWidget(sync_check);

    auto* typeBox = new QGroupBox(t.text(611));
    auto* typeLayout = new QGridLayout(typeBox);
    syncTyp = new QButtonGroup(this);
    const char* typNames[] = {"ueberschreibt_Option", "fuellt_Option", "uebernimmt_Option", "abgleich_Option"};
    const QString typTexts[] = {t.text(632), t.text(633), t.text(634), t.text(635)};
    for (int i = 0; i < 4; ++i) {
        auto* option = named(new QRadioButton(typTexts[i]), typNames[i]);
        syncTyp->addButton(option, i + 1);
        typeLayout->addWidget(option, i / 2, i % 2);
    }
    layout->addWidget(typeBox);

    auto* entryBox = new QGroupBox(t.text(613));
    auto* entryLayout = new QGridLayout(entryBox);
    const char* checkNames[] = {"notiz_check", "treffen_check", "geburtstage_check", "nummer_check", "all_check"};
    const QString checkTexts[] = {t.text(608), t.text(629), t.text(609), t.text(630), t.text(607)};
    const QString checkTips[] = {t.text(683), t.text(684), t.text(685), t.text(686), t.text(682)};
    for (int i = 0; i < 5; ++i) {
        auto* check = named(new QCheckBox(checkTexts[i]), checkNames[i]);
        check->setToolTip(checkTips[i]);
        syncTypes << check;
        entryLayout->addWidget(check, i / 3, i % 3);
        connect(check, &QCheckBox::toggled, this, &Einstellungen::cmdOkCheck);
    }
    layout->addWidget(entryBox);

    auto* rangeBox = new QGroupBox(t.text(612));
    auto* range = new QGridLayout(rangeBox);
    syncZeitraum = new QButtonGroup(this);
    auto* alarm = named(new QRadioButton(t.text(636)), "Alarm_Option");
    alarm->setToolTip(t.text(700));
    Alarm_Anzahl = numberEdit("Alarm_Anzahl");
    Alarm_Anzahl->setToolTip(t.text(698));
    connect(Alarm_Anzahl, &QLineEdit::editingFinished, this, [this] { limitField(Alarm_Anzahl); });
    range->addWidget(alarm, 0, 0);
    range->addWidget(Alarm_Anzahl, 0, 1);
    range->addWidget(new QLabel(t.text(697)), 0, 2);

    auto* from = named(new QRadioButton(t.text(637)), "ab_heute_Option");
    from->setToolTip(t.text(687));
    ab_kalender_auswahl = dateEdit("ab_kalender_auswahl");
    range->addWidget(from, 1, 0);
    range->addWidget(ab_kalender_auswahl, 1, 1, 1, 2);

    auto* fromTo = named(new QRadioButton(t.text(638)), "Eintraege_von_bis_Option");
    fromTo->setToolTip(t.text(688));
    von_date = dateEdit("von_date");
    bis_date = dateEdit("bis_date");
    range->addWidget(fromTo, 2, 0);
    range->addWidget(von_date, 2, 1, 1, 2);
    range->addWidget(new QLabel(t.text(610)), 2, 3);
    range->addWidget(bis_date, 2, 4);
    // The start never lies after the end: the other date follows.
    connect(von_date, &QDateEdit::dateChanged, this, [this](QDate d) {
        if (d > bis_date->date())
            bis_date->setDate(d);
    });
    connect(bis_date, &QDateEdit::dateChanged, this, [this](QDate d) {
        if (d < von_date->date())
            von_date->setDate(d);
    });

    auto* next = named(new QRadioButton(t.text(639)), "naechsten_Option");
    next->setToolTip(t.text(689));
    naechsten_anzahl = numberEdit("naechsten_anzahl");
    naechsten_anzahl->setToolTip(t.text(520));
    auswahl = named(new QComboBox, "auswahl");
    auswahl->setToolTip(t.text(699));
    connect(naechsten_anzahl, &QLineEdit::textChanged, this, &Einstellungen::naechstenAnzahlChanged);
    range->addWidget(next, 3, 0);
    range->addWidget(naechsten_anzahl, 3, 1);
    range->addWidget(auswahl, 3, 2, 1, 2);
    range->setColumnStretch(5, 1);

    const QList<QRadioButton*> options{alarm, from, fromTo, next};
    for (int i = 0; i < 4; ++i)
        syncZeitraum->addButton(options[i], i + 1);
    layout->addWidget(rangeBox);
    layout->addStretch();
    connect(sync_check, &QCheckBox::toggled, this, &Einstellungen::cmdOkCheck);
    return page;
}

QWidget* Einstellungen::buildDeletePage() {
    const core::ResStrings& t = m_ctx.strings;
    auto* page = named(new QWidget, "deletePage");
    auto* layout = new QVBoxLayout(page);
    autodel_check = named(new QCheckBox(t.text(628)), "autodel_check");
    autodel_check->setToolTip(t.text(651));
    layout->addWidget(autodel_check);
    connect(autodel_check, &QCheckBox::toggled, this, &Einstellungen::cmdOkCheck);

    auto* modeBox = new QGroupBox(t.text(651));
    auto* mode = new QGridLayout(modeBox);
    delOption = new QButtonGroup(this);
    auto* before = named(new QRadioButton(t.text(641)), "loeschen_vor_option");
    before->setToolTip(t.text(658));
    DTPicker1 = dateEdit("DTPicker1");
    DTPicker1->setToolTip(t.text(666));
    auto* oldest = named(new QRadioButton(t.text(640)), "loeschen_letzten_option");
    oldest->setToolTip(t.text(659));
    loeschen_letzten_anzahl = numberEdit("loeschen_letzten_anzahl");
    loeschen_letzten_anzahl->setToolTip(t.text(667));
    connect(loeschen_letzten_anzahl, &QLineEdit::editingFinished, this,
            [this] { limitField(loeschen_letzten_anzahl); });
    auto* passed = named(new QRadioButton(t.text(642)), "vergangene_option");
    passed->setToolTip(t.text(660));
    delOption->addButton(before, 1);
    delOption->addButton(oldest, 2);
    delOption->addButton(passed, 3);
    mode->addWidget(before, 0, 0);
    mode->addWidget(DTPicker1, 0, 1);
    mode->addWidget(oldest, 1, 0);
    mode->addWidget(loeschen_letzten_anzahl, 1, 1);
    mode->addWidget(passed, 2, 0, 1, 2);
    mode->setColumnStretch(2, 1);
    layout->addWidget(modeBox);

    auto* typeBox = new QGroupBox(t.text(614));
    auto* types = new QGridLayout(typeBox);
    const char* names[] = {"delete_notiz_option", "delete_treffen_option", "delete_geburtstage_option",
                           "delete_nummer_option", "delete_all_option"};
    const QString texts[] = {t.text(608), t.text(629), t.text(609), t.text(630), t.text(607)};
    const QString tips[] = {t.text(662), t.text(663), t.text(664), t.text(665), t.text(661)};
    for (int i = 0; i < 5; ++i) {
        auto* check = named(new QCheckBox(texts[i]), names[i]);
        check->setToolTip(tips[i]);
        deleteTypes << check;
        types->addWidget(check, i / 3, i % 3);
        connect(check, &QCheckBox::toggled, this, &Einstellungen::cmdOkCheck);
    }
    layout->addWidget(typeBox);
    delete_serie_check = named(new QCheckBox(t.text(643)), "delete_serie_check");
    delete_serie_check->setToolTip(t.text(668));
    layout->addWidget(delete_serie_check);
    layout->addStretch();
    return page;
}

QWidget* Einstellungen::buildLanguagePage() {
    const core::ResStrings& t = m_ctx.strings;
    auto* page = named(new QWidget, "languagePage");
    auto* grid = new QGridLayout(page);
    language = new QButtonGroup(this);
    const QStringList installed = spine::shippedLanguageCodes();
    for (size_t i = 0; i < main::LanguageOptions.size(); ++i) {
        const main::LanguageOption& l = main::LanguageOptions[i];
        const QString code = QString::fromLatin1(l.code);
        auto* option = named(new QRadioButton(t.text(l.caption)), l.control);
        if (l.toolTip)
            option->setToolTip(t.text(l.toolTip));
        // Only a language with a table can be chosen: the others would fall back to English.
        option->setEnabled(installed.contains(code, Qt::CaseInsensitive) ||
                           QFile::exists(spine::languageFilePath(m_ctx, code)));
        language->addButton(option, int(i));
        grid->addWidget(option, int(i) % 8, int(i) / 8);
    }
    grid->setRowStretch(8, 1);
    grid->setColumnStretch(2, 1);
    return page;
}

void Einstellungen::Form_Load() {
    m_fontTouched = false;
    Font_auswahl->addItem(main::DefaultFontEntry);
    Font_auswahl->addItems(QFontDatabase::families());
    FontSize_Auswahl->addItems(main::fontSizeEntries());
    // The dialog checks and sorts its units by the number typed.
    naechstenAnzahlChanged();
    LoadPropertySettings();
    if (m_ctx.flags.GlobalSilent)
        sync_check->hide();
}

void Einstellungen::LoadPropertySettings() {
    m_loaded = main::loadOptionValues(m_ctx);
    const main::OptionValues& v = m_loaded;
    cboPort->addItems(v.ports);
    cboPort->setCurrentIndex(v.ports.indexOf(v.PORT));
    GDX_Check->setChecked(v.GDX_Check);
    FileTransfer_check->setChecked(v.FileTransfer == 1);
    GlobalTimeOut->setText(v.GlobalTimeOut);
    IrDADelay->setText(v.IrDADelay);
    (v.SaveTyp == 2 ? saveLater : saveNow)->setChecked(true);
    Puffer_Anzahl->setText(v.freeMobileEntries);
    FolderComboBox->addItems(v.folders);
    FolderComboBox->setCurrentIndex(v.folderIndex);
    ReadOnStart->setChecked(v.ReadOnStart == 1);
    ReadonStartvCard->setChecked(v.ReadOnStartvCard == 1);
    const int font = Font_auswahl->findText(v.FormFont, Qt::MatchFixedString);
    Font_auswahl->setCurrentIndex(font >= 0 ? font : 0);
    const int size = FontSize_Auswahl->findText(QString::number(qRound(v.FormFontSize)));
    FontSize_Auswahl->setCurrentIndex(size >= 0 ? size : v.FormFontSizeIndex);

    sync_check->setChecked(v.Sync == 1);
    checkId(syncTyp, v.SyncTyp);
    setTypeMask(syncTypes, v.SyncTermine);
    checkId(syncZeitraum, v.SyncZeitraum);
    Alarm_Anzahl->setText(v.SyncAlarmAnzahl);
    setDate(ab_kalender_auswahl, v.SyncEintraegeab);
    setDate(bis_date, v.bis_date);
    setDate(von_date, v.von_date);
    naechsten_anzahl->setText(v.SyncnaechstenAnzahl);
    auswahl->setCurrentIndex(qBound(0, int(v.SyncTageWochenMonate), 3));

    autodel_check->setChecked(v.Autodel == 1);
    setDate(DTPicker1, v.DelDate);
    checkId(delOption, v.DelOption);
    setTypeMask(deleteTypes, v.DelTermine);
    loeschen_letzten_anzahl->setText(v.DelAnzahl);
    delete_serie_check->setChecked(v.DelSerie != 0);

    checkId(language, main::languageIndex(v.Sprache));
    cmdOkCheck();
}

main::OptionValues Einstellungen::values() const {
    main::OptionValues v = m_loaded;
    v.PORT = cboPort->currentText().trimmed();
    v.GDX_Check = GDX_Check->isChecked();
    v.FileTransfer = FileTransfer_check->isChecked() ? 1 : 0;
    v.GlobalTimeOut = GlobalTimeOut->text();
    v.IrDADelay = IrDADelay->text();
    v.SaveTyp = saveLater->isChecked() ? 2 : 1;
    v.freeMobileEntries = Puffer_Anzahl->text();
    v.folderIndex = FolderComboBox->currentIndex();
    v.ReadOnStart = ReadOnStart->isChecked() ? 1 : 0;
    v.ReadOnStartvCard = ReadonStartvCard->isChecked() ? 1 : 0;
    v.fontTouched = m_fontTouched;
    v.FormFont = Font_auswahl->currentText();
    v.FormFontIndex = int16_t(Font_auswahl->currentIndex());
    v.FormFontSize = FontSize_Auswahl->currentText().toDouble();
    v.FormFontSizeIndex = int16_t(FontSize_Auswahl->currentIndex());

    v.Sync = sync_check->isChecked() ? 1 : 0;
    v.SyncTyp = int16_t(qMax(syncTyp->checkedId(), 0));
    v.SyncTermine = maskOf(syncTypes);
    v.SyncZeitraum = int16_t(qMax(syncZeitraum->checkedId(), 0));
    v.SyncAlarmAnzahl = Alarm_Anzahl->text();
    v.SyncEintraegeab = dateOf(ab_kalender_auswahl);
    v.von_date = dateOf(von_date);
    v.bis_date = dateOf(bis_date);
    v.SyncnaechstenAnzahl = naechsten_anzahl->text();
    v.SyncTageWochenMonate = int16_t(auswahl->currentIndex());

    v.Autodel = autodel_check->isChecked() ? 1 : 0;
    v.DelDate = dateOf(DTPicker1);
    v.DelOption = int16_t(qMax(delOption->checkedId(), 0));
    v.DelTermine = maskOf(deleteTypes);
    v.DelAnzahl = loeschen_letzten_anzahl->text();
    v.DelSerie = delete_serie_check->isChecked() ? 1 : 0;
    const int lang = language->checkedId();
    v.Sprache = lang >= 0 ? QString::fromLatin1(main::LanguageOptions[size_t(lang)].code) : m_loaded.Sprache;
    return v;
}

void Einstellungen::cmdOkCheck() {
    cmdOK->setEnabled(main::cmdOkCheck(values()));
}

void Einstellungen::naechstenAnzahlChanged() {
    const int index = qMax(auswahl->currentIndex(), 0);
    const int number = main::numericField(naechsten_anzahl->text(), 0);
    const std::array<QString, 4> units = spine::PeriodUnits(m_ctx, number);
    auswahl->clear();
    for (const QString& unit : units)
        auswahl->addItem(unit);
    auswahl->setCurrentIndex(index);
}

void Einstellungen::limitField(QLineEdit* field) {
    field->setText(QString::number(main::numericField(field->text(), main::phoneEntryLimit(m_ctx))));
}

void Einstellungen::cmdOK_Click() {
    m_outcome = main::cmdOK_Click(m_ctx, values());
    if (m_ctx.flags.GlobalSilent)
        hide();
    accept();
}

void Einstellungen::cmdCancel_Click() {
    reject();
}

bool showOptions(core::Context& ctx, QWidget* parent) {
    Einstellungen dialog(ctx, parent);
    if (dialog.exec() != QDialog::Accepted)
        return false;
    const main::OkOutcome& outcome = dialog.outcome();
    if (outcome.fontChanged) {
        const core::Settings& s = ctx.settings;
        QApplication::setFont(s.FormFont.isEmpty() ? QFont() : QFont(s.FormFont, qRound(s.FormFontSize)));
    }
    return outcome.saved;
}

} // namespace tsr::ui
