// SPDX-License-Identifier: GPL-3.0-or-later
// The options dialog: four pages (general, AutoSync, autodelete, language) whose
// controls stand for the settings. It only copies values between its controls
// and main::OptionValues; loading, the OK rule and storing live in main/.
#pragma once

#include "main/Einstellungen.h"

#include <QDialog>
#include <QList>

class QButtonGroup;
class QCheckBox;
class QComboBox;
class QDateEdit;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;
class QTabWidget;

namespace tsr::core {
struct Context;
}

namespace tsr::ui {

class Einstellungen : public QDialog {
    Q_OBJECT
public:
    explicit Einstellungen(core::Context& ctx, QWidget* parent = nullptr);

    // What the last OK changed; nothing saved after Cancel.
    const main::OkOutcome& outcome() const { return m_outcome; }
    // The values the controls hold now.
    main::OptionValues values() const;

private:
    QWidget* buildGeneralPage();
    QWidget* buildSyncPage();
    QWidget* buildDeletePage();
    QWidget* buildLanguagePage();
    void Form_Load();
    void LoadPropertySettings();
    void cmdOkCheck();
    void cmdOK_Click();
    void cmdCancel_Click();
    void naechstenAnzahlChanged();
    void limitField(QLineEdit* field);

    core::Context& m_ctx;
    main::OptionValues m_loaded;
    main::OkOutcome m_outcome;
    bool m_fontTouched = false;

    QTabWidget* m_tabs = nullptr;
    // General page.
    QComboBox* cboPort = nullptr;
    QCheckBox* GDX_Check = nullptr;
    QCheckBox* FileTransfer_check = nullptr;
    QLineEdit* GlobalTimeOut = nullptr;
    QLineEdit* IrDADelay = nullptr;
    QRadioButton* saveNow = nullptr;
    QRadioButton* saveLater = nullptr;
    QLineEdit* Puffer_Anzahl = nullptr;
    QComboBox* FolderComboBox = nullptr;
    QCheckBox* ReadOnStart = nullptr;
    QCheckBox* ReadonStartvCard = nullptr;
    QComboBox* Font_auswahl = nullptr;
    QComboBox* FontSize_Auswahl = nullptr;
    // AutoSync page.
    QCheckBox* sync_check = nullptr;
    QButtonGroup* syncTyp = nullptr;      // ids 1..4
    QList<QCheckBox*> syncTypes;          // bits 1, 2, 4, 8, 32
    QButtonGroup* syncZeitraum = nullptr; // ids 1..4
    QLineEdit* Alarm_Anzahl = nullptr;
    QDateEdit* ab_kalender_auswahl = nullptr;
    QDateEdit* von_date = nullptr;
    QDateEdit* bis_date = nullptr;
    QLineEdit* naechsten_anzahl = nullptr;
    QComboBox* auswahl = nullptr;
    // Autodelete page.
    QCheckBox* autodel_check = nullptr;
    QButtonGroup* delOption = nullptr; // ids 1..3
    QDateEdit* DTPicker1 = nullptr;
    QLineEdit* loeschen_letzten_anzahl = nullptr;
    QList<QCheckBox*> deleteTypes; // bits 1, 2, 4, 8, 32
    QCheckBox* delete_serie_check = nullptr;
    // Language page.
    QButtonGroup* language = nullptr; // ids: index into LanguageOptions

    QPushButton* cmdOK = nullptr;
    QPushButton* cmdCancel = nullptr;
};

// Shows the options dialog modally; true when OK stored the settings.
bool showOptions(core::Context& ctx, QWidget* parent);

} // namespace tsr::ui
