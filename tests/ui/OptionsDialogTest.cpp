// SPDX-License-Identifier: GPL-3.0-or-later
// The options dialog as a real window on the offscreen platform: every page
// changed and confirmed lands in the settings files and comes back on the next
// opening; Cancel stores nothing; the OK rule, the numeric fields, the pending
// transfers question, the language switch, and the run that shows the dialog alone.
#include "DialogFixture.h"
#include "core/Numbers.h"
#include "main/Einstellungen.h"
#include "main/Main_Modul.h"
#include "phone/GDX.h"
#include "spine/RegistryStore.h"
#include "tables/TSRADODB.h"
#include "ui/dialogs/Einstellungen.h"
#include "ui/dialogs/Forms.h"

#include <QApplication>
#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSettings>
#include <QTimer>

using namespace tsr;

namespace {

class OptionsDialogTest : public test::DialogFixture {
protected:
    void click(ui::Einstellungen& d, const char* button) { child<QPushButton>(&d, button)->click(); }
    void check(ui::Einstellungen& d, const char* name, bool on) { child<QAbstractButton>(&d, name)->setChecked(on); }
    bool checked(ui::Einstellungen& d, const char* name) { return child<QAbstractButton>(&d, name)->isChecked(); }
    void type(ui::Einstellungen& d, const char* name, const QString& text) {
        QLineEdit* e = child<QLineEdit>(&d, name);
        e->setText(text);
        emit e->editingFinished();
    }
    QString text(ui::Einstellungen& d, const char* name) { return child<QLineEdit>(&d, name)->text(); }
    void setDate(ui::Einstellungen& d, const char* name, QDate date) { child<QDateEdit>(&d, name)->setDate(date); }
    QDate date(ui::Einstellungen& d, const char* name) { return child<QDateEdit>(&d, name)->date(); }
    void choose(ui::Einstellungen& d, const char* combo, int index) {
        QComboBox* c = child<QComboBox>(&d, combo);
        c->setCurrentIndex(index);
        emit c->activated(index);
    }
    // The settings as the next start reads them from the files.
    core::Settings reread() {
        test::ScriptedUi otherUi;
        core::Context other(otherUi);
        other.clock.setFixed(QDateTime(QDate(2026, 3, 14), QTime(9, 26, 53)));
        configure(other);
        return other.settings;
    }
    QString machineIni() const { return spine::rootFile(ctx, spine::HKEY_LOCAL_MACHINE); }
};

// Every page changed, OK: the files hold the values, a new start reads them, and the
// dialog opened again shows them.
TEST_F(OptionsDialogTest, RoundTripOfEveryPage) {
    openPim();
    {
        ui::Einstellungen d(ctx);
        // General page.
        child<QComboBox>(&d, "cboPort")->setEditText(QStringLiteral("/dev/rfcomm0"));
        check(d, "FileTransfer_check", false);
        check(d, "saveLater", true);
        type(d, "Puffer_Anzahl", QStringLiteral("12"));
        choose(d, "FolderComboBox", 1);
        check(d, "ReadOnStart", true);
        check(d, "ReadonStartvCard", true);
        choose(d, "Font_auswahl", 1);
        choose(d, "FontSize_Auswahl", 2);
        // AutoSync page.
        check(d, "sync_check", true);
        check(d, "abgleich_Option", true);
        check(d, "all_check", false);
        check(d, "notiz_check", true);
        check(d, "geburtstage_check", true);
        check(d, "naechsten_Option", true);
        type(d, "naechsten_anzahl", QStringLiteral("3"));
        choose(d, "auswahl", 2);
        type(d, "Alarm_Anzahl", QStringLiteral("25"));
        setDate(d, "ab_kalender_auswahl", QDate(2026, 4, 1));
        setDate(d, "bis_date", QDate(2026, 5, 31));
        setDate(d, "von_date", QDate(2026, 5, 1));
        // Autodelete page.
        check(d, "autodel_check", true);
        check(d, "loeschen_letzten_option", true);
        type(d, "loeschen_letzten_anzahl", QStringLiteral("40"));
        check(d, "delete_treffen_option", true);
        check(d, "delete_nummer_option", true);
        check(d, "delete_serie_check", true);
        setDate(d, "DTPicker1", QDate(2026, 1, 31));
        // Language page.
        check(d, "deutsch_option", true);
        ASSERT_TRUE(child<QPushButton>(&d, "cmdOK")->isEnabled());
        click(d, "cmdOK");
        EXPECT_EQ(d.result(), QDialog::Accepted);
        EXPECT_TRUE(d.outcome().saved);
        EXPECT_TRUE(d.outcome().languageChanged);
        EXPECT_TRUE(d.outcome().fontChanged);
    }

    // The files themselves: numbers as eight-digit DWORDs, text as it is, the port in both roots.
    const auto ini = [](const QString& file, const QString& key, const char* name) {
        QSettings store(file, QSettings::IniFormat);
        store.beginGroup(QString(key).replace(u'\\', u'/'));
        return store.value(QString::fromLatin1(name)).toString();
    };
    const QString machine = machineIni();
    const QString user = spine::rootFile(ctx, spine::HKEY_CURRENT_USER);
    EXPECT_EQ(ini(machine, spine::KeySettings, "SyncTyp"), QStringLiteral("dword:00000004"));
    EXPECT_EQ(ini(machine, spine::KeySettings, "SyncTermine"), QStringLiteral("dword:00000005"));
    EXPECT_EQ(ini(machine, spine::KeySettings, "DelTermine"), QStringLiteral("dword:0000000a"));
    EXPECT_EQ(ini(machine, spine::KeySettings, "Sprache"), QStringLiteral("0407"));
    EXPECT_EQ(ini(machine, spine::KeyLinux, "FileTransfer"), QStringLiteral("dword:00000000"));
    EXPECT_EQ(ini(machine, spine::KeySuite, "PORT"), QStringLiteral("/dev/rfcomm0"));
    EXPECT_EQ(ini(user, spine::KeySuite, "PORT"), QStringLiteral("/dev/rfcomm0"));

    const core::Settings s = reread();
    EXPECT_EQ(s.PORT, QStringLiteral("/dev/rfcomm0"));
    EXPECT_EQ(s.FileTransfer, 0);
    EXPECT_EQ(s.SaveTyp, 2);
    EXPECT_EQ(s.freeMobileEntries, 12);
    EXPECT_EQ(s.FolderName, QStringLiteral("family"));
    EXPECT_EQ(s.ReadOnStart, 1);
    EXPECT_EQ(s.ReadOnStartvCard, 1);
    EXPECT_EQ(s.FormFontIndex, 1);
    EXPECT_EQ(s.FormFontSizeIndex, 2);
    EXPECT_EQ(s.FormFontSize, 10.0);
    EXPECT_FALSE(s.FormFont.isEmpty());
    EXPECT_EQ(s.Sync, 1);
    EXPECT_EQ(s.SyncTyp, 4);
    EXPECT_EQ(s.SyncTermine, 1 | 4);
    EXPECT_EQ(s.SyncZeitraum, 4);
    EXPECT_EQ(s.SyncnaechstenAnzahl, 3);
    EXPECT_EQ(s.SyncTageWochenMonate, 2);
    EXPECT_EQ(s.SyncAlarmAnzahl, 25);
    EXPECT_EQ(core::toQDate(s.SyncEintraegeab), QDate(2026, 4, 1));
    EXPECT_EQ(s.SyncEintraegevonbis, QStringLiteral("01.05.26\t31.05.26 23:59:59"));
    EXPECT_EQ(s.Autodel, 1);
    EXPECT_EQ(s.DelOption, 2);
    EXPECT_EQ(s.DelAnzahl, 40);
    EXPECT_EQ(s.DelTermine, 2 | 8);
    EXPECT_EQ(s.DelSerie, 1);
    EXPECT_EQ(core::toQDate(s.DelDate), QDate(2026, 1, 31));
    EXPECT_EQ(s.Sprache, QStringLiteral("0407"));

    // The autodelete pass reads the boxes as the dialog left them.
    EXPECT_TRUE(ctx.optionBoxes.loeschen_letzten_option);
    EXPECT_FALSE(ctx.optionBoxes.loeschen_vor_option);
    EXPECT_TRUE(ctx.optionBoxes.delete_treffen_option && ctx.optionBoxes.delete_nummer_option);
    EXPECT_FALSE(ctx.optionBoxes.delete_notiz_option);
    EXPECT_TRUE(ctx.optionBoxes.delete_serie_check);

    // Opened again (now in German), the dialog shows what was stored.
    ui::Einstellungen again(ctx);
    EXPECT_EQ(again.windowTitle(), ctx.title() + QStringLiteral(" - Einstellungen"));
    EXPECT_EQ(child<QComboBox>(&again, "cboPort")->currentText(), QStringLiteral("/dev/rfcomm0"));
    EXPECT_EQ(child<QComboBox>(&again, "FolderComboBox")->currentIndex(), 1);
    EXPECT_TRUE(checked(again, "saveLater"));
    EXPECT_FALSE(checked(again, "FileTransfer_check"));
    EXPECT_TRUE(checked(again, "abgleich_Option"));
    EXPECT_TRUE(checked(again, "notiz_check") && checked(again, "geburtstage_check"));
    EXPECT_FALSE(checked(again, "all_check") || checked(again, "treffen_check"));
    EXPECT_TRUE(checked(again, "naechsten_Option"));
    EXPECT_EQ(text(again, "naechsten_anzahl"), QStringLiteral("3"));
    EXPECT_EQ(child<QComboBox>(&again, "auswahl")->currentText(), QStringLiteral("Monate"));
    EXPECT_EQ(date(again, "von_date"), QDate(2026, 5, 1));
    EXPECT_EQ(date(again, "bis_date"), QDate(2026, 5, 31));
    EXPECT_EQ(date(again, "DTPicker1"), QDate(2026, 1, 31));
    EXPECT_TRUE(checked(again, "loeschen_letzten_option"));
    EXPECT_EQ(text(again, "loeschen_letzten_anzahl"), QStringLiteral("40"));
    EXPECT_TRUE(checked(again, "delete_serie_check"));
    EXPECT_TRUE(checked(again, "deutsch_option"));
    EXPECT_EQ(child<QComboBox>(&again, "Font_auswahl")->currentIndex(), 1);
}

// Cancel after changing every kind of control: no file is written, nothing in memory changes.
TEST_F(OptionsDialogTest, CancelStoresNothing) {
    const QByteArray before = [&] {
        QFile f(machineIni());
        return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
    }();
    const core::Settings kept = ctx.settings;
    {
        ui::Einstellungen d(ctx);
        check(d, "deutsch_option", true);
        check(d, "saveLater", true);
        check(d, "autodel_check", true);
        check(d, "delete_all_option", true);
        type(d, "Puffer_Anzahl", QStringLiteral("9"));
        click(d, "cmdCancel");
        EXPECT_EQ(d.result(), QDialog::Rejected);
        EXPECT_FALSE(d.outcome().saved);
    }
    QFile f(machineIni());
    EXPECT_EQ(f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray(), before);
    EXPECT_EQ(ctx.settings.Sprache, kept.Sprache);
    EXPECT_EQ(ctx.settings.SaveTyp, kept.SaveTyp);
    EXPECT_EQ(ctx.settings.Autodel, kept.Autodel);
    EXPECT_EQ(ctx.settings.freeMobileEntries, kept.freeMobileEntries);
    EXPECT_EQ(ctx.strings.text(603), QStringLiteral("General"));
    EXPECT_FALSE(ctx.optionBoxes.delete_all_option);
}

// OK is enabled only when each switched-on group has a type: the dialog follows the rule.
TEST_F(OptionsDialogTest, OkNeedsATypeInEachGroupThatIsOn) {
    struct Case {
        bool sync, autodel, syncType, deleteType, ok;
    };
    const Case cases[] = {
        {false, false, false, false, true}, {true, false, false, false, false}, {true, false, true, false, true},
        {false, true, false, false, false}, {false, true, false, true, true},   {true, true, true, false, false},
        {true, true, false, true, false},   {true, true, true, true, true},
    };
    ui::Einstellungen d(ctx);
    for (const char* name :
         {"notiz_check", "treffen_check", "geburtstage_check", "nummer_check", "all_check", "delete_notiz_option",
          "delete_treffen_option", "delete_geburtstage_option", "delete_nummer_option", "delete_all_option"})
        check(d, name, false);
    for (const Case& c : cases) {
        check(d, "sync_check", c.sync);
        check(d, "autodel_check", c.autodel);
        check(d, "treffen_check", c.syncType);
        check(d, "delete_geburtstage_option", c.deleteType);
        EXPECT_EQ(child<QPushButton>(&d, "cmdOK")->isEnabled(), c.ok)
            << c.sync << c.autodel << c.syncType << c.deleteType;
        main::OptionValues v = d.values();
        EXPECT_EQ(main::cmdOkCheck(v), c.ok);
    }
}

// The counts are numbers within what the phone holds; text for the next units stores 1.
TEST_F(OptionsDialogTest, NumericFieldsAreCutToThePhone) {
    struct Case {
        const char* typed;
        int max;
        int16_t number;
    };
    const Case cases[] = {{"12", 0, 12},     {"12abc", 0, 12},  {"abc", 0, 0},      {"-4", 0, 0},
                          {"500", 300, 300}, {"300", 300, 300}, {"99999", 0, 32767}};
    for (const Case& c : cases)
        EXPECT_EQ(main::numericField(QString::fromLatin1(c.typed), c.max), c.number) << c.typed;

    ctx.phone.MaxEntries = 50;
    ui::Einstellungen d(ctx);
    type(d, "Puffer_Anzahl", QStringLiteral("80"));
    type(d, "Alarm_Anzahl", QStringLiteral("7x"));
    EXPECT_EQ(text(d, "Puffer_Anzahl"), QStringLiteral("50"));
    EXPECT_EQ(text(d, "Alarm_Anzahl"), QStringLiteral("7"));
    type(d, "naechsten_anzahl", QStringLiteral("1"));
    EXPECT_EQ(child<QComboBox>(&d, "auswahl")->itemText(1), QStringLiteral("Week"));
    type(d, "naechsten_anzahl", QStringLiteral("two"));
    EXPECT_EQ(child<QComboBox>(&d, "auswahl")->itemText(1), QStringLiteral("Weeks"));
    click(d, "cmdOK");
    EXPECT_EQ(ctx.settings.SyncnaechstenAnzahl, 1);
    EXPECT_EQ(ctx.settings.freeMobileEntries, 50);
    EXPECT_EQ(reread().SyncnaechstenAnzahl, 1);
}

// From "later" to "immediately" with rows waiting: No drops them, and the question comes once.
TEST_F(OptionsDialogTest, SwitchingToImmediateTransferWithPendingRows) {
    ASSERT_TRUE(tables::CreateInitAndSetAllRS(ctx));
    ctx.settings.SaveTyp = 2;
    tables::vCalCreateNewRecord(*ctx.tables.RSCalendarPending);
    tables::vCardCreateNewRecord(*ctx.tables.RSContactsPending);
    ctx.tools.setEnabled(QStringLiteral("TSRTools"), QStringLiteral("TSRSave"), true);
    ui.answer(core::MsgResult::No);
    ui::Einstellungen d(ctx);
    EXPECT_TRUE(checked(d, "saveLater"));
    check(d, "saveNow", true);
    click(d, "cmdOK");
    ASSERT_EQ(ui.boxes.size(), 1);
    EXPECT_EQ(ui.boxes[0].text, QStringLiteral("Changes not yet transferred. Transfer now?"));
    EXPECT_EQ(ui.boxes[0].buttons, core::MsgButtons::YesNo);
    EXPECT_EQ(ctx.tables.RSCalendarPending->recordCount(), 0);
    EXPECT_EQ(ctx.tables.RSContactsPending->recordCount(), 0);
    EXPECT_EQ(ctx.settings.SaveTyp, 1);
    EXPECT_FALSE(ctx.tools.isEnabled(QStringLiteral("TSRTools"), QStringLiteral("TSRSave")));
    EXPECT_FALSE(ctx.tools.isVisible(QStringLiteral("TSRTools"), QStringLiteral("TSRSave")));
    EXPECT_GE(ui.statusBarCount, 1);

    // Without rows waiting there is nothing to ask.
    ctx.settings.SaveTyp = 2;
    ui::Einstellungen quiet(ctx);
    check(quiet, "saveNow", true);
    click(quiet, "cmdOK");
    EXPECT_EQ(ui.boxes.size(), 1);
}

// A new port drops the file-transfer server so that the next link makes a new one;
// the same port keeps it.
TEST_F(OptionsDialogTest, PortChangeDropsTheFileTransferServer) {
    // A file-transfer server that never gets to talk: only its slot matters here.
    struct IdleServer : phone::GDXServerInterface {
        void DeleteFile(const QString&) override {}
        QList<QStringList> ListFiles(const QString&, int) override { return {}; }
        QByteArray ReadFile(const QString&) override { return {}; }
        void WriteFile(const QString&, const QByteArray&, int) override {}
    };
    const auto server = std::make_shared<IdleServer>();
    ctx.servers.GDXServer = server;
    main::OptionValues v = main::loadOptionValues(ctx);
    v.PORT = ctx.settings.PORT;
    main::cmdOK_Click(ctx, v);
    EXPECT_EQ(ctx.servers.GDXServer, server);
    v.PORT = QStringLiteral("/dev/ttyUSB3");
    main::cmdOK_Click(ctx, v);
    EXPECT_EQ(ctx.settings.PORT, QStringLiteral("/dev/ttyUSB3"));
    EXPECT_FALSE(ctx.servers.GDXServer);
    EXPECT_EQ(reread().PORT, QStringLiteral("/dev/ttyUSB3"));
}

// A language is chosen among those with a table; the table is loaded at once.
TEST_F(OptionsDialogTest, LanguageSwitchLoadsTheTable) {
    ui::Einstellungen d(ctx);
    EXPECT_TRUE(child<QRadioButton>(&d, "deutsch_option")->isEnabled());
    EXPECT_TRUE(child<QRadioButton>(&d, "englisch_option")->isEnabled());
    EXPECT_FALSE(child<QRadioButton>(&d, "tuerkisch_option")->isEnabled());
    check(d, "deutsch_option", true);
    click(d, "cmdOK");
    EXPECT_EQ(ctx.settings.Sprache, QStringLiteral("0407"));
    EXPECT_EQ(ctx.strings.text(603), QStringLiteral("Allgemein"));
    EXPECT_TRUE(ctx.flags.LanguageLibrary.endsWith(QStringLiteral("/Lng/TSRRES0407.lng")));
}

// In a silent run the AutoSync switch is hidden and the autodelete boxes keep what they hold.
TEST_F(OptionsDialogTest, SilentRunKeepsTheAutodeleteBoxes) {
    ctx.flags.GlobalSilent = true;
    ctx.settings.DelOption = 1;
    ctx.optionBoxes.vergangene_option = true;
    ctx.optionBoxes.delete_all_option = true;
    ui::Einstellungen d(ctx);
    EXPECT_TRUE(child<QCheckBox>(&d, "sync_check")->isHidden());
    EXPECT_TRUE(checked(d, "vergangene_option"));
    EXPECT_FALSE(checked(d, "loeschen_vor_option"));
    EXPECT_TRUE(checked(d, "delete_all_option"));
}

// The user boundary of a run with OPTIONS: its showForm goes to the dialogs.
class OptionsRunUi : public test::ScriptedUi {
public:
    explicit OptionsRunUi(core::Context*& ctx) : m_ctx(ctx) {}
    void showForm(Form form) override { shown = ui::showForm(*m_ctx, form, nullptr); }
    bool shown = false;

private:
    core::Context*& m_ctx;
};

// The run that shows the options alone: the dialog comes up, OK stores the settings.
TEST_F(OptionsDialogTest, OptionsRunShowsTheDialogAlone) {
    core::Context* self = nullptr;
    OptionsRunUi runUi(self);
    core::Context run(runUi);
    self = &run;
    configure(run);
    run.flags.GlobalSilent = true;
    run.flags.GlobalCommandOptions = true;
    bool seen = false;
    QTimer::singleShot(0, [&] {
        auto* d = qobject_cast<ui::Einstellungen*>(QApplication::activeModalWidget());
        seen = d != nullptr;
        if (!d)
            return;
        d->findChild<QRadioButton*>(QStringLiteral("saveLater"))->setChecked(true);
        d->findChild<QPushButton*>(QStringLiteral("cmdOK"))->click();
    });
    main::SilentOptionForm(run);
    EXPECT_TRUE(seen);
    EXPECT_TRUE(runUi.shown);
    EXPECT_EQ(reread().SaveTyp, 2);
}

} // namespace
