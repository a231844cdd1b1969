// SPDX-License-Identifier: GPL-3.0-or-later
#include "spine/RegistrySettings.h"
#include "SpineFixture.h"
#include "core/Numbers.h"
#include "spine/RegistryStore.h"

#include <QDir>
#include <QFile>
#include <QSettings>

using namespace tsr;
using spine::HKEY_CURRENT_USER;
using spine::HKEY_LOCAL_MACHINE;
using tsr::test::SpineFixture;

namespace {

class RegistrySettingsTest : public SpineFixture {
protected:
    void put(const QString& name, const core::Value& value, const QString& key = spine::KeySettings,
             int32_t root = HKEY_LOCAL_MACHINE) {
        spine::RegKeyCreate(ctx, root, key, QString());
        ASSERT_TRUE(spine::RegValWrite(ctx, root, key, name, value));
    }
    core::Value get(const QString& name, const QString& key = spine::KeySettings) {
        core::Value v;
        EXPECT_TRUE(spine::RegValueGet(ctx, HKEY_LOCAL_MACHINE, key, name, v)) << name.toStdString();
        return v;
    }
    core::VbDate endOfDay(int days) const {
        return core::VbDate(today().value + days + core::TimeSerial(23, 59, 59).value);
    }
};

// Every setting but the two dates as "name=value|...", so one comparison names each field that differs.
std::string describe(const core::Settings& s) {
    QStringList out;
    const auto add = [&out](const char* names, const QStringList& values) {
        const QStringList keys = QString::fromLatin1(names).split(u' ');
        EXPECT_EQ(keys.size(), values.size()) << names;
        for (qsizetype i = 0; i < qMin(keys.size(), values.size()); ++i)
            out << keys[i] + u'=' + values[i];
    };
    const auto numbers = [](std::initializer_list<int> values) {
        QStringList texts;
        for (int v : values)
            texts << QString::number(v);
        return texts;
    };
    add("ActiveAPP WindowState Width Height Top Left Button_Width Autodel Sync",
        numbers({s.ActiveAPP, s.WindowState, s.Width, s.Height, s.Top, s.Left, s.Button_Width, s.Autodel, s.Sync}));
    add("ReadOnStart ReadOnStartvCard DelOption DelTermine DelAnzahl DelSerie",
        numbers({s.ReadOnStart, s.ReadOnStartvCard, s.DelOption, s.DelTermine, s.DelAnzahl, s.DelSerie}));
    add("SyncTyp SyncTermine SyncZeitraum SyncAlarmAnzahl SyncTageWochenMonate SyncnaechstenAnzahl SaveTyp",
        numbers({s.SyncTyp, s.SyncTermine, s.SyncZeitraum, s.SyncAlarmAnzahl, s.SyncTageWochenMonate,
                 s.SyncnaechstenAnzahl, s.SaveTyp}));
    add("FormFontIndex FormFontSizeIndex freeMobileEntries DateRange",
        numbers({s.FormFontIndex, s.FormFontSizeIndex, s.freeMobileEntries, s.DateRange}));
    add("FormFontSize", {QString::number(s.FormFontSize)});
    add("Sprache SyncEintraegevonbis FormFont FolderParent FolderName FolderEntryID FolderStoreID HomeDir PORT Port",
        {s.Sprache, s.SyncEintraegevonbis, s.FormFont, s.FolderParent, s.FolderName, s.FolderEntryID, s.FolderStoreID,
         s.HomeDir, s.PORT, s.Port});
    return out.join(u'|').toStdString();
}

// A first run creates the keys but no setting, so every setting takes its missing value.
TEST_F(RegistrySettingsTest, FirstRunGivesEveryDefault) {
    ui.screen = QSize(1920 * 15, 1080 * 15);
    ctx.settings = {};
    ctx.settings.SyncTageWochenMonate = 1;
    ASSERT_TRUE(spine::RegValCreate(ctx));
    EXPECT_TRUE(spine::RegKeyExists(ctx, HKEY_LOCAL_MACHINE, spine::KeySettings));
    EXPECT_TRUE(spine::RegKeyExists(ctx, HKEY_CURRENT_USER, spine::KeySuite));
    EXPECT_EQ(get(QStringLiteral("TSR"), spine::KeyTSR).toText(), spine::MakerText);
    // HomeDir is the one value a first run writes.
    EXPECT_EQ(get(QStringLiteral("HomeDir")).toText(), spine::defaultHomeDir());
    spine::RegValGet(ctx);
    // Window: 0.6 and 0.5 of the screen, placed a quarter in; the buttons take 0.15 of the width.
    // SyncEintraegevonbis stays empty: the kept defect, its default lands nowhere.
    const QString defaults = QStringLiteral(
        "ActiveAPP=0|WindowState=0|Width=17280|Height=8100|Top=4050|Left=7200|Button_Width=2592|Autodel=0|Sync=0|"
        "ReadOnStart=0|ReadOnStartvCard=0|DelOption=0|DelTermine=0|DelAnzahl=0|DelSerie=0|SyncTyp=2|SyncTermine=32|"
        "SyncZeitraum=3|SyncAlarmAnzahl=0|SyncTageWochenMonate=1|SyncnaechstenAnzahl=1|SaveTyp=1|"
        "FormFontIndex=-1|FormFontSizeIndex=0|freeMobileEntries=0|DateRange=6|FormFontSize=8|Sprache=|"
        "SyncEintraegevonbis=|FormFont=|FolderParent=|FolderName=|FolderEntryID=|FolderStoreID=|HomeDir=");
    EXPECT_EQ(describe(ctx.settings),
              (defaults + spine::defaultHomeDir() + QStringLiteral("|PORT=COM1|Port=COM1")).toStdString());
    EXPECT_EQ(ctx.settings.DelDate, today());
    EXPECT_EQ(ctx.settings.SyncEintraegeab, today());
    EXPECT_EQ(ctx.flags.GlobalEndDate, endOfDay(6));
    EXPECT_TRUE(ui.boxes.isEmpty());
}

// Without a HomeDir value the data folder reads "c:"; --home and --port stand in for this run.
TEST_F(RegistrySettingsTest, HomeAndPortMissingAndOverridden) {
    spine::RegValGet(ctx);
    EXPECT_EQ(ctx.settings.HomeDir, QStringLiteral("c:"));
    ctx.options.home = QStringLiteral("/srv/tsr");
    // A run with --home= writes no home of its own into the settings it was pointed at.
    ASSERT_TRUE(spine::RegValCreate(ctx));
    core::Value written;
    EXPECT_FALSE(spine::RegValueGet(ctx, HKEY_LOCAL_MACHINE, spine::KeySettings, QStringLiteral("HomeDir"), written));
    ctx.options.port = QStringLiteral("/dev/pts/7");
    put(QStringLiteral("Port"), core::Value(QStringLiteral("COM4")), spine::KeyTSR);
    spine::RegValGet(ctx);
    EXPECT_EQ(ctx.settings.HomeDir, QStringLiteral("/srv/tsr"));
    EXPECT_EQ(ctx.settings.Port, QStringLiteral("/dev/pts/7"));
}

// Every setting written is read back as it was, dates as whole days and the font size rounded.
TEST_F(RegistrySettingsTest, WriteReadRoundTrip) {
    ASSERT_TRUE(spine::RegValCreate(ctx));
    core::Settings written;
    written.ActiveAPP = 1;
    written.WindowState = 0;
    written.Width = 9000;
    written.Height = 7000;
    written.Top = 300;
    written.Left = 400;
    written.Button_Width = 1200;
    written.Autodel = 1;
    written.Sync = 1;
    written.ReadOnStart = 1;
    written.ReadOnStartvCard = 1;
    written.DelOption = 2;
    written.DelTermine = 6;
    written.DelAnzahl = 12;
    written.DelSerie = 1;
    written.SyncTyp = 4;
    written.SyncTermine = 9;
    written.SyncZeitraum = 4;
    written.SyncAlarmAnzahl = 25;
    written.SaveTyp = 2;
    written.SyncTageWochenMonate = 3;
    written.SyncnaechstenAnzahl = 5;
    written.FormFontIndex = 3;
    written.FormFontSizeIndex = 2;
    written.freeMobileEntries = 4;
    written.DateRange = 30;
    written.Sprache = QStringLiteral("0407");
    written.DelDate = core::VbDate(core::DateSerial(2026, 3, 4).value + 0.75);
    written.SyncEintraegeab = core::DateSerial(2027, 1, 2);
    written.SyncEintraegevonbis = QStringLiteral("01.12.26\t24.12.26 23:59:59");
    written.FormFont = QStringLiteral("DejaVu Sans");
    written.FormFontSize = 8.25;
    written.FolderParent = QStringLiteral("Personal");
    written.FolderName = QStringLiteral("Kontakte");
    written.FolderEntryID = QStringLiteral("entry-123");
    written.FolderStoreID = QString(120, u'S');
    written.PORT = QStringLiteral("/dev/ttyACM0");
    written.HomeDir = written.Port = QStringLiteral("/not/written");
    ctx.settings = written;
    ASSERT_TRUE(spine::RegValSet(ctx, false));

    ctx.settings = {};
    spine::RegValGet(ctx);
    core::Settings expected = written;
    expected.ActiveAPP = 0;      // saved as 1, and still the program opens on the calendar
    expected.FormFontSize = 8.0; // stored as a whole number
    expected.HomeDir = spine::defaultHomeDir();
    expected.Port = QStringLiteral("COM1");
    EXPECT_EQ(describe(ctx.settings), describe(expected));
    EXPECT_EQ(ctx.settings.DelDate, core::DateSerial(2026, 3, 5)); // 0.75 of a day rounds up to the next day number
    EXPECT_EQ(ctx.settings.SyncEintraegeab, written.SyncEintraegeab);
    EXPECT_EQ(ctx.flags.GlobalEndDate, endOfDay(30));
    EXPECT_EQ(get(QStringLiteral("ActiveAPP")).toInt32(), 1);
    // Numbers are DWORDs, texts stay texts; HomeDir and Port are never written.
    EXPECT_EQ(get(QStringLiteral("DelAnzahl")).type(), core::FieldType::Int32);
    EXPECT_EQ(get(QStringLiteral("FormFontSize")).type(), core::FieldType::Int32);
    EXPECT_EQ(get(QStringLiteral("Sprache")).type(), core::FieldType::Text);
    core::Value port;
    EXPECT_FALSE(spine::RegValueGet(ctx, HKEY_LOCAL_MACHINE, spine::KeyTSR, QStringLiteral("Port"), port));
    EXPECT_EQ(get(QStringLiteral("HomeDir")).toText(), spine::defaultHomeDir());
}

// Negative 16-bit numbers survive the DWORD, and empty text comes back as one blank.
TEST_F(RegistrySettingsTest, DwordSignAndEmptyText) {
    put(QStringLiteral("FormFontIndex"), core::Value(int32_t(-1)));
    put(QStringLiteral("FormFont"), core::Value(QString()));
    put(QStringLiteral("Odd"), core::Value(QStringLiteral("dword:00000005")));
    EXPECT_EQ(get(QStringLiteral("FormFontIndex")).toInt32(), -1);
    EXPECT_EQ(get(QStringLiteral("FormFont")).toText(), QStringLiteral(" "));
    EXPECT_EQ(get(QStringLiteral("Odd")).toText(), QStringLiteral("dword:00000005"));
    spine::RegValGet(ctx);
    EXPECT_EQ(ctx.settings.FormFontIndex, -1);
    EXPECT_EQ(ctx.settings.FormFont, QStringLiteral(" "));
}

// The read rules of present values.
TEST_F(RegistrySettingsTest, ReadRules) {
    put(QStringLiteral("SyncnaechstenAnzahl"), core::Value(int32_t(0)));
    put(QStringLiteral("DateRange"), core::Value(int32_t(-3)));
    put(QStringLiteral("FolderStoreID"), core::Value(QString(99, u'x')));
    put(QStringLiteral("Sprache"), core::Value(QStringLiteral("0407XYZ")));
    put(QStringLiteral("DelDate"), core::Value(int32_t(0)));
    put(QStringLiteral("SyncEintraegeab"), core::Value(QStringLiteral("24.12.26")));
    put(QStringLiteral("SyncTyp"), core::Value(int32_t(0)));
    put(QStringLiteral("SyncTermine"), core::Value(QStringLiteral("0")));
    put(QStringLiteral("SyncZeitraum"), core::Value(QStringLiteral("x7")));
    put(QStringLiteral("DelAnzahl"), core::Value(QStringLiteral("12abc")));
    put(QStringLiteral("SyncEintraegevonbis"), core::Value(QStringLiteral("ab")));
    put(QStringLiteral("SyncTageWochenMonate"), core::Value(int32_t(2)));
    spine::RegValGet(ctx);
    const core::Settings& s = ctx.settings;
    EXPECT_EQ(s.SyncnaechstenAnzahl, 7);
    EXPECT_EQ(s.DateRange, 6);
    EXPECT_EQ(ctx.flags.GlobalEndDate, endOfDay(6));
    EXPECT_TRUE(s.FolderStoreID.isEmpty());
    EXPECT_EQ(s.Sprache, QStringLiteral("0407"));
    EXPECT_EQ(s.DelDate, today());
    EXPECT_EQ(s.SyncEintraegeab, core::DateSerial(2026, 12, 24));
    EXPECT_EQ(s.SyncTyp, 2);
    EXPECT_EQ(s.SyncTermine, 32);
    EXPECT_EQ(s.SyncZeitraum, 3); // no leading number reads 0, and 0 becomes 3
    EXPECT_EQ(s.DelAnzahl, 12);
    EXPECT_EQ(s.SyncEintraegevonbis, QStringLiteral("22.11.26\t29.11.26 23:59:59"));
    EXPECT_EQ(s.SyncTageWochenMonate, 2);
}

// A value beyond 16 bits keeps its missing value, and every setting after it is still read.
TEST_F(RegistrySettingsTest, OversizedNumberKeepsItsDefaultAndReadingGoesOn) {
    put(QStringLiteral("WindowState"), core::Value(int32_t(40000)));
    put(QStringLiteral("Width"), core::Value(QStringLiteral("99999")));
    put(QStringLiteral("Autodel"), core::Value(int32_t(1)));
    put(QStringLiteral("DelAnzahl"), core::Value(int32_t(-70000)));
    put(QStringLiteral("SyncTermine"), core::Value(int32_t(70000)));
    put(QStringLiteral("SyncnaechstenAnzahl"), core::Value(QStringLiteral("1e9")));
    put(QStringLiteral("FormFontIndex"), core::Value(int32_t(32768)));
    put(QStringLiteral("FolderName"), core::Value(QStringLiteral("Privat")));
    put(QStringLiteral("DateRange"), core::Value(int32_t(4)));
    ASSERT_NO_THROW(spine::RegValGet(ctx));
    const core::Settings& s = ctx.settings;
    const QSize screen = ui.screenTwips();
    EXPECT_EQ(s.WindowState, 0);
    EXPECT_EQ(s.Width, core::CInt(screen.width() * 0.6));
    EXPECT_EQ(s.Autodel, 1);
    EXPECT_EQ(s.DelAnzahl, 0);
    EXPECT_EQ(s.SyncTermine, 32);
    EXPECT_EQ(s.SyncnaechstenAnzahl, 1);
    EXPECT_EQ(s.FormFontIndex, -1);
    EXPECT_EQ(s.FolderName, QStringLiteral("Privat"));
    EXPECT_EQ(s.DateRange, 4);
    EXPECT_TRUE(ui.boxes.isEmpty());
}

// Value names compare without regard to case in reading and writing; a value keeps the
// spelling it was first written with, and spellings a hand edit doubled collapse into it.
TEST_F(RegistrySettingsTest, ValueNamesIgnoreCase) {
    struct Case {
        const char* written;
        const char* asked;
    };
    for (const Case& c : {Case{"PORT", "Port"}, Case{"Port", "PORT"}, Case{"port", "pOrT"}}) {
        SCOPED_TRACE(c.written);
        const QString written = QString::fromLatin1(c.written), asked = QString::fromLatin1(c.asked);
        put(written, core::Value(QStringLiteral("first")), spine::KeySuite);
        core::Value v;
        ASSERT_TRUE(spine::RegValueGet(ctx, HKEY_LOCAL_MACHINE, spine::KeySuite, asked, v));
        EXPECT_EQ(v.toText(), QStringLiteral("first"));
        ASSERT_TRUE(spine::RegValuePut(ctx, HKEY_LOCAL_MACHINE, spine::KeySuite, asked, core::Value(int32_t(7))));
        ASSERT_TRUE(spine::RegValQuery(ctx, HKEY_LOCAL_MACHINE, spine::KeySuite, written, v));
        EXPECT_EQ(v.toInt32(), 7);
        QSettings file(configFile(QStringLiteral("machine.ini")), QSettings::IniFormat);
        file.beginGroup(QStringLiteral("Software/Orvane/Halvorix 5.0"));
        EXPECT_EQ(file.childKeys(), QStringList({QStringLiteral("(class)"), written}));
        file.remove(written);
    }

    // The batch write of RegValSet also keeps the first spelling.
    put(QStringLiteral("delanzahl"), core::Value(int32_t(3)));
    ASSERT_TRUE(spine::RegValCreate(ctx));
    ctx.settings.DelAnzahl = 9;
    ASSERT_TRUE(spine::RegValSet(ctx, true));
    spine::RegValGet(ctx);
    EXPECT_EQ(ctx.settings.DelAnzahl, 9);
    QSettings file(configFile(QStringLiteral("machine.ini")), QSettings::IniFormat);
    file.beginGroup(QStringLiteral("Software/Orvane/Halvorix 5.0/TSR/Settings"));
    EXPECT_TRUE(file.childKeys().contains(QStringLiteral("delanzahl")));
    EXPECT_FALSE(file.childKeys().contains(QStringLiteral("DelAnzahl")));

    // Two spellings left by a hand edit: reading prefers the exact one, writing leaves one.
    file.setValue(QStringLiteral("Sync"), QStringLiteral("dword:00000001"));
    file.setValue(QStringLiteral("SYNC"), QStringLiteral("dword:00000002"));
    file.sync();
    core::Value v;
    ASSERT_TRUE(spine::RegValQuery(ctx, HKEY_LOCAL_MACHINE, spine::KeySettings, QStringLiteral("SYNC"), v));
    EXPECT_EQ(v.toInt32(), 2);
    ASSERT_TRUE(spine::RegValWrite(ctx, HKEY_LOCAL_MACHINE, spine::KeySettings, QStringLiteral("sync"),
                                   core::Value(int32_t(5))));
    QSettings reread(configFile(QStringLiteral("machine.ini")), QSettings::IniFormat);
    reread.beginGroup(QStringLiteral("Software/Orvane/Halvorix 5.0/TSR/Settings"));
    int spellings = 0;
    for (const QString& k : reread.childKeys())
        spellings += k.compare(QStringLiteral("sync"), Qt::CaseInsensitive) == 0;
    EXPECT_EQ(spellings, 1);
    ASSERT_TRUE(spine::RegValQuery(ctx, HKEY_LOCAL_MACHINE, spine::KeySettings, QStringLiteral("Sync"), v));
    EXPECT_EQ(v.toInt32(), 5);
}

// PORT is looked for in the user's file first and then in the machine's, and written to both.
TEST_F(RegistrySettingsTest, PortHasTwoTiers) {
    put(QStringLiteral("PORT"), core::Value(QStringLiteral("/dev/ttyS1")), spine::KeySuite, HKEY_LOCAL_MACHINE);
    spine::RegValGet(ctx);
    EXPECT_EQ(ctx.settings.PORT, QStringLiteral("/dev/ttyS1"));

    put(QStringLiteral("PORT"), core::Value(QStringLiteral("/dev/ttyUSB2")), spine::KeySuite, HKEY_CURRENT_USER);
    spine::RegValGet(ctx);
    EXPECT_EQ(ctx.settings.PORT, QStringLiteral("/dev/ttyUSB2"));

    ASSERT_TRUE(spine::RegValCreate(ctx));
    ctx.settings.PORT = QStringLiteral("/dev/rfcomm0");
    ASSERT_TRUE(spine::RegValSet(ctx, false));
    core::Value user, machine;
    ASSERT_TRUE(spine::RegValueGet(ctx, HKEY_CURRENT_USER, spine::KeySuite, QStringLiteral("PORT"), user));
    ASSERT_TRUE(spine::RegValueGet(ctx, HKEY_LOCAL_MACHINE, spine::KeySuite, QStringLiteral("PORT"), machine));
    EXPECT_EQ(user.toText(), QStringLiteral("/dev/rfcomm0"));
    EXPECT_EQ(machine.toText(), QStringLiteral("/dev/rfcomm0"));

    // With SkipPort the run ends before PORT.
    ctx.settings.PORT = QStringLiteral("/dev/ttyS9");
    ASSERT_TRUE(spine::RegValSet(ctx, true));
    ASSERT_TRUE(spine::RegValueGet(ctx, HKEY_CURRENT_USER, spine::KeySuite, QStringLiteral("PORT"), user));
    EXPECT_EQ(user.toText(), QStringLiteral("/dev/rfcomm0"));
}

// A user file that cannot be written does not keep PORT from the machine's file,
// and it is no error: only the machine's write decides.
TEST_F(RegistrySettingsTest, PortReachesTheMachineFileWhenTheUserFileFails) {
    ASSERT_TRUE(spine::RegValCreate(ctx));
    ASSERT_TRUE(QFile::remove(configFile(QStringLiteral("user.ini"))));
    ASSERT_TRUE(QDir(config.path()).mkdir(QStringLiteral("user.ini")));
    ctx.settings.PORT = QStringLiteral("/dev/ttyACM1");
    EXPECT_TRUE(spine::RegValSet(ctx, false));
    EXPECT_TRUE(ui.boxes.isEmpty());
    EXPECT_EQ(get(QStringLiteral("PORT"), spine::KeySuite).toText(), QStringLiteral("/dev/ttyACM1"));
}

// A maximised window keeps the last normal size and saves its state as 2; a normal one saves its frame.
TEST_F(RegistrySettingsTest, WindowSizeOnlyFromNormalState) {
    ASSERT_TRUE(spine::RegValCreate(ctx));
    ctx.settings.Width = 9000;
    ctx.settings.Height = 6000;
    ui.mainGeometry = core::WindowGeometry{2, 28800, 16000, 0, 0};
    ASSERT_TRUE(spine::RegValSet(ctx, true));
    EXPECT_EQ(get(QStringLiteral("WindowState")).toInt32(), 2);
    EXPECT_EQ(get(QStringLiteral("Width")).toInt32(), 9000);
    EXPECT_EQ(get(QStringLiteral("Height")).toInt32(), 6000);

    ui.mainGeometry = core::WindowGeometry{0, 10000, 8000, 150, 250};
    ASSERT_TRUE(spine::RegValSet(ctx, true));
    EXPECT_EQ(get(QStringLiteral("WindowState")).toInt32(), 0);
    EXPECT_EQ(get(QStringLiteral("Width")).toInt32(), 10000);
    EXPECT_EQ(get(QStringLiteral("Top")).toInt32(), 150);
    EXPECT_EQ(get(QStringLiteral("Left")).toInt32(), 250);
}

// A second instance and a silent run save nothing on unloading.
TEST_F(RegistrySettingsTest, SecondInstanceAndSilentSaveNothing) {
    ASSERT_TRUE(spine::RegValCreate(ctx));
    ctx.settings.DelAnzahl = 17;
    ctx.flags.SecondInstance = true;
    EXPECT_FALSE(spine::saveSettingsOnUnload(ctx));
    ctx.flags.SecondInstance = false;
    ctx.flags.GlobalSilent = true;
    EXPECT_FALSE(spine::saveSettingsOnUnload(ctx));
    core::Value v;
    EXPECT_FALSE(spine::RegValueGet(ctx, HKEY_LOCAL_MACHINE, spine::KeySettings, QStringLiteral("DelAnzahl"), v));
    ctx.flags.GlobalSilent = false;
    EXPECT_TRUE(spine::saveSettingsOnUnload(ctx));
    EXPECT_EQ(get(QStringLiteral("DelAnzahl")).toInt32(), 17);
}

// Writing into a missing key stops RegValSet at its first value with the error box.
TEST_F(RegistrySettingsTest, SetWithoutKeysShowsTheBox) {
    EXPECT_FALSE(spine::RegValSet(ctx, false));
    ASSERT_EQ(ui.boxes.size(), 1);
    EXPECT_EQ(ui.boxes[0].title, QStringLiteral("An error in:Tessarine:RegValSet"));
    EXPECT_EQ(ui.boxes[0].icon, core::MsgIcon::Exclamation);
    EXPECT_EQ(ui.boxes[0].text, QStringLiteral("Number:2\r\nDescription:The system cannot find the file specified."
                                               "\r\nLocation:RegValuePut:RegValSet\r\nReadOnStart"));
}

// A store that cannot be written: RegKeyEnsure shows "Registry Error" and RegValCreate stops.
TEST_F(RegistrySettingsTest, UnwritableStoreShowsRegistryError) {
    ASSERT_TRUE(QDir(config.path()).mkdir(QStringLiteral("machine.ini")));
    EXPECT_FALSE(spine::RegValCreate(ctx));
    ASSERT_EQ(ui.boxes.size(), 1);
    EXPECT_EQ(ui.boxes[0].text, QStringLiteral("Registry Error 5:   Access is denied."));
    EXPECT_EQ(ui.boxes[0].icon, core::MsgIcon::None);
}

} // namespace

// FileTransfer lives in the Linux build's own group: missing it is 1, a stored 0 turns the
// file-transfer road off, and the program's Settings key does not count.
TEST_F(RegistrySettingsTest, FileTransferIsReadFromTheLinuxGroup) {
    spine::RegValGet(ctx);
    EXPECT_EQ(ctx.settings.FileTransfer, 1);
    put(QStringLiteral("FileTransfer"), core::Value(int32_t(0)));
    spine::RegValGet(ctx);
    EXPECT_EQ(ctx.settings.FileTransfer, 1);
    put(QStringLiteral("FileTransfer"), core::Value(int32_t(0)), spine::KeyLinux);
    spine::RegValGet(ctx);
    EXPECT_EQ(ctx.settings.FileTransfer, 0);
}
