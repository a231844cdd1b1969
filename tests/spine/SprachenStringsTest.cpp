// SPDX-License-Identifier: GPL-3.0-or-later
#include "spine/SprachenStrings.h"
#include "SpineFixture.h"

#include <QDir>
#include <QFile>
#include <algorithm>

using namespace tsr;
using tsr::test::SpineFixture;

namespace {

class SprachenStringsTest : public SpineFixture {
protected:
    void writeTable(const QString& code, const QByteArray& content) {
        QDir().mkpath(home.filePath(QStringLiteral("Lng")));
        QFile file(spine::languageFilePath(ctx, code));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    }
};

// An empty Sprache takes the user's language id, four hex digits with a leading zero.
TEST_F(SprachenStringsTest, EmptySpracheTakesTheUsersLanguage) {
    spine::setStartLanguage(ctx, QLocale(QLocale::German, QLocale::Germany));
    EXPECT_EQ(ctx.settings.Sprache, QStringLiteral("0407"));
    EXPECT_EQ(ctx.flags.LanguageLibrary, home.filePath(QStringLiteral("Lng/TSRRES0407.lng")));
    EXPECT_EQ(ctx.strings.text(453), QStringLiteral("Abbrechen"));
    EXPECT_EQ(ctx.strings.text(939), QStringLiteral("Wollen Sie wirklich abbrechen?"));
    EXPECT_TRUE(ui.boxes.isEmpty());
}

// A four-digit id needs no padding; a set Sprache is kept whatever the user's language.
TEST_F(SprachenStringsTest, FourDigitIdsAndSetSpracheStay) {
    // No Spanish table is shipped: the box names the file of the code as it was formed.
    spine::setStartLanguage(ctx, QLocale(QLocale::Spanish, QLocale::Spain));
    ASSERT_EQ(ui.boxes.size(), 1);
    EXPECT_TRUE(ui.boxes[0].text.contains(QStringLiteral("/Lng/TSRRES0C0A.lng")));
    EXPECT_EQ(spine::lcidOf(QLocale(QLocale::English, QLocale::UnitedKingdom)), 0x0809);
    EXPECT_EQ(spine::lcidOf(QLocale(QLocale::Chinese, QLocale::Taiwan)), 0x0404);

    ui.boxes.clear();
    ctx.settings.Sprache = QStringLiteral("0809");
    spine::setStartLanguage(ctx, QLocale(QLocale::German, QLocale::Germany));
    EXPECT_EQ(ctx.settings.Sprache, QStringLiteral("0809"));
    EXPECT_EQ(ctx.strings.text(453), QStringLiteral("Cancel"));
    EXPECT_TRUE(ui.boxes.isEmpty());
}

// A language without a table: the box, then English, and Sprache becomes 0809.
TEST_F(SprachenStringsTest, MissingTableFallsBackToEnglish) {
    ctx.settings.Sprache = QStringLiteral("0407");
    spine::setStartLanguage(ctx, QLocale::c());
    ASSERT_EQ(ctx.strings.text(453), QStringLiteral("Abbrechen"));

    ctx.settings.Sprache = QStringLiteral("9999");
    spine::setStartLanguage(ctx, QLocale::c());
    ASSERT_EQ(ui.boxes.size(), 1);
    EXPECT_TRUE(ui.boxes[0].text.contains(QStringLiteral("Sprachdatei kann nicht geladen werden: ") +
                                          home.filePath(QStringLiteral("Lng/TSRRES9999.lng"))));
    EXPECT_EQ(ctx.settings.Sprache, QStringLiteral("0809"));
    EXPECT_EQ(ctx.flags.LanguageLibrary, home.filePath(QStringLiteral("Lng/TSRRES0809.lng")));
    EXPECT_EQ(ctx.flags.HelpFile, home.filePath(QStringLiteral("Help/HELPFILE_HVX50.html")));
    EXPECT_EQ(ctx.strings.text(453), QStringLiteral("Cancel"));
}

// A number missing from a table takes its English text and is reported; every
// number around it, before and behind, is loaded from the table, also when
// another language was shown before.
TEST_F(SprachenStringsTest, MissingNumberTakesEnglishAndTheRestLoads) {
    ctx.settings.Sprache = QStringLiteral("0407");
    spine::setStartLanguage(ctx, QLocale::c());
    ASSERT_EQ(ctx.strings.text(451), QStringLiteral("auf"));
    writeTable(QStringLiteral("0413"), "# partial\n449\tTessarine NL\n450\tHet aantal\n453\tAnnuleren\n");
    ctx.settings.Sprache = QStringLiteral("0413");
    spine::setStartLanguage(ctx, QLocale::c());
    EXPECT_EQ(ctx.strings.text(449), QStringLiteral("Tessarine NL"));
    EXPECT_EQ(ctx.strings.text(450), QStringLiteral("Het aantal"));
    EXPECT_EQ(ctx.strings.text(451), QStringLiteral("to"));
    EXPECT_EQ(ctx.strings.text(453), QStringLiteral("Annuleren"));
    ASSERT_EQ(ui.boxes.size(), 1);
    EXPECT_TRUE(ui.boxes[0].text.contains(QStringLiteral("(451)")));
    EXPECT_EQ(ctx.settings.Sprache, QStringLiteral("0413"));
}

// A table that cannot be loaded is reported with the platform's number for the
// cause and the path, and the program goes on in English.
TEST_F(SprachenStringsTest, LoadErrorsCarryThePlatformsNumber) {
    QDir().mkpath(home.filePath(QStringLiteral("Lng/TSRRES0410.lng")));
    writeTable(QStringLiteral("040C"), "not a table\n");
    struct Case {
        const char* code;
        const char* number;
    };
    for (const Case& c : {Case{"9999", "Number:2\r\n"}, Case{"0410", "Number:5\r\n"}, Case{"040C", "Number:193\r\n"}}) {
        SCOPED_TRACE(c.code);
        ui.boxes.clear();
        ctx.settings.Sprache = QString::fromLatin1(c.code);
        spine::setStartLanguage(ctx, QLocale::c());
        ASSERT_EQ(ui.boxes.size(), 1);
        EXPECT_TRUE(ui.boxes[0].text.contains(QString::fromLatin1(c.number))) << ui.boxes[0].text.toStdString();
        EXPECT_TRUE(ui.boxes[0].text.contains(QStringLiteral("Cannot load Resource DLL: ") +
                                              spine::languageFilePath(ctx, QString::fromLatin1(c.code))));
        EXPECT_EQ(ctx.settings.Sprache, QStringLiteral("0809"));
        EXPECT_EQ(ctx.strings.text(453), QStringLiteral("Cancel"));
    }
}

// A line that is neither a comment nor number-tab-text makes the table unloadable.
TEST_F(SprachenStringsTest, MalformedTableIsRefused) {
    EXPECT_FALSE(spine::parseLanguageFile("449\tA\nnot a line\n").has_value());
    EXPECT_FALSE(spine::parseLanguageFile("x449\tA\n").has_value());
    const auto table = spine::parseLanguageFile("\xEF\xBB\xBF# c\r\n449\tTwo\\nlines\\\\\r\n\r\n554\tTrailing \n");
    ASSERT_TRUE(table.has_value());
    EXPECT_EQ(table->value(449), QStringLiteral("Two\nlines\\"));
    EXPECT_EQ(table->value(554), QStringLiteral("Trailing "));
}

// The first start installs the shipped tables; a table the user changed stays.
TEST_F(SprachenStringsTest, ShippedTablesAreInstalledOnce) {
    writeTable(QStringLiteral("0407"), "449\tMein Tessarine\n");
    spine::installLanguageFiles(ctx);
    EXPECT_TRUE(QFile::exists(spine::languageFilePath(ctx, QStringLiteral("0809"))));
    QFile mine(spine::languageFilePath(ctx, QStringLiteral("0407")));
    ASSERT_TRUE(mine.open(QIODevice::ReadOnly));
    EXPECT_EQ(mine.readAll(), QByteArray("449\tMein Tessarine\n"));
}

// Every shipped table has every number of the English one, no empty text and no
// number the program does not know; the English file matches the built-in table.
TEST_F(SprachenStringsTest, EveryTableHasEveryNumber) {
    const QHash<int, QString>& english = core::ResStrings::english();
    const QStringList codes = spine::shippedLanguageCodes();
    ASSERT_TRUE(codes.contains(QStringLiteral("0809")));
    ASSERT_TRUE(codes.contains(QStringLiteral("0407")));
    for (const QString& code : codes) {
        const auto table = spine::parseLanguageFile(spine::shippedLanguageFile(code));
        ASSERT_TRUE(table.has_value()) << code.toStdString();
        for (auto it = english.begin(); it != english.end(); ++it) {
            ASSERT_TRUE(table->contains(it.key())) << code.toStdString() << " lacks " << it.key();
            EXPECT_FALSE(table->value(it.key()).isEmpty()) << code.toStdString() << " " << it.key();
        }
        for (int number : table->keys())
            EXPECT_TRUE(english.contains(number)) << code.toStdString() << " has unknown " << number;
    }
    EXPECT_EQ(*spine::parseLanguageFile(spine::shippedLanguageFile(QStringLiteral("0809"))), english);
}

// The built-in table holds the texts the program composes and quotes elsewhere.
TEST_F(SprachenStringsTest, BuiltInEnglishTable) {
    // The system's table has 478 texts; numbers from 1000 on are the program's own additions.
    const QList<int> numbers = core::ResStrings::english().keys();
    EXPECT_EQ(std::count_if(numbers.begin(), numbers.end(), [](int n) { return n < 1000; }), 478);
    EXPECT_EQ(spine::closingWhileBusyText(ctx),
              QStringLiteral("There are active processes or there are active windows.\r\nClose anyway?"));
    EXPECT_EQ(ctx.strings.text(949), QStringLiteral("Cannot load Resource DLL: "));
    EXPECT_EQ(ctx.strings.text(717),
              QStringLiteral("Process communication between Tessraine and the mobile has failed."));
}

} // namespace
