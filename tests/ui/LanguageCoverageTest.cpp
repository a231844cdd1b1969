// SPDX-License-Identifier: GPL-3.0-or-later
// Every string number the program asks the table for exists in the built-in
// English table and in each shipped language file, with a text. The numbers are
// read from the sources, so a new text without its translation fails here.
#include "core/ResStrings.h"
#include "main/Einstellungen.h"
#include "spine/SprachenStrings.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>
#include <gtest/gtest.h>
#include <set>

using namespace tsr;

namespace {

const QString kSource = QStringLiteral(TESSARINE_SOURCE_DIR);

// Numbers passed to the string table as literals (strings.text(603), t.text(603)) and
// the column tables of the log, which pair a field with its head and tool tip numbers.
std::set<int> numbersAskedFor() {
    std::set<int> numbers;
    const QRegularExpression call(
        QStringLiteral("\\btext\\((\\d{3,4})\\)|\\{u?\"\\w+\",\\s*(\\d{3,4})(?:,\\s*(\\d{3,4}))?\\}"));
    QDirIterator it(kSource + QStringLiteral("/src"), {QStringLiteral("*.cpp"), QStringLiteral("*.h")}, QDir::Files,
                    QDirIterator::Subdirectories);
    while (it.hasNext()) {
        QFile f(it.next());
        if (!f.open(QIODevice::ReadOnly))
            continue;
        const QString text = QString::fromUtf8(f.readAll());
        for (auto m = call.globalMatch(text); m.hasNext();) {
            const QRegularExpressionMatch match = m.next();
            for (int group = 1; group <= 3; ++group)
                if (match.captured(group).toInt() > 0)
                    numbers.insert(match.captured(group).toInt());
        }
    }
    // The options dialog's languages keep their numbers in a table of their own.
    for (const main::LanguageOption& l : main::LanguageOptions) {
        numbers.insert(l.caption);
        if (l.toolTip)
            numbers.insert(l.toolTip);
    }
    return numbers;
}

TEST(LanguageCoverage, EveryNumberAskedForIsInEveryShippedTable) {
    const std::set<int> asked = numbersAskedFor();
    ASSERT_GT(asked.size(), 200u);
    // The options, the log's print-out and column heads, a text of the Linux build.
    for (int n : {603, 782, 813, 814, 1001})
        EXPECT_TRUE(asked.count(n)) << n;

    const QHash<int, QString>& english = core::ResStrings::english();
    for (int n : asked)
        EXPECT_FALSE(english.value(n).isEmpty()) << "the built-in table lacks " << n;

    const QStringList files = QDir(kSource + QStringLiteral("/lang")).entryList({QStringLiteral("TSRRES*.lng")});
    ASSERT_GE(files.size(), 2);
    for (const QString& name : files) {
        QFile f(kSource + QStringLiteral("/lang/") + name);
        ASSERT_TRUE(f.open(QIODevice::ReadOnly)) << name.toStdString();
        const auto table = spine::parseLanguageFile(f.readAll());
        ASSERT_TRUE(table) << name.toStdString() << " does not parse";
        for (int n : asked)
            EXPECT_FALSE(table->value(n).isEmpty()) << name.toStdString() << " lacks " << n;
    }
}

// The German table speaks German on the windows of the options and the log.
TEST(LanguageCoverage, GermanTableTranslatesTheDialogs) {
    QFile f(kSource + QStringLiteral("/lang/TSRRES0407.lng"));
    ASSERT_TRUE(f.open(QIODevice::ReadOnly));
    const auto german = spine::parseLanguageFile(f.readAll());
    ASSERT_TRUE(german);
    const QHash<int, QString>& english = core::ResStrings::english();
    int same = 0;
    const int numbers[] = {603, 604, 605, 606, 611, 628, 652, 656,  657,  770,
                           772, 773, 776, 780, 782, 783, 785, 1001, 1003, 1004};
    for (int n : numbers)
        same += german->value(n) == english.value(n);
    EXPECT_EQ(same, 0);
}

} // namespace
