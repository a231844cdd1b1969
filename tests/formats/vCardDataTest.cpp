// SPDX-License-Identifier: GPL-3.0-or-later
// Each contact text under tests/data/vcard is read into a new row and compared,
// field by field, with the .ref file beside it (one test per file).
#include "ContactFixture.h"
#include "core/Error.h"
#include "formats/Globals.h"
#include "formats/vCard.h"

#include <QDir>
#include <QFile>

using namespace tsr;

namespace {

QString dataDir() {
    return QStringLiteral(TESSARINE_TEST_DATA "/vcard");
}

std::vector<std::string> dataFiles() {
    std::vector<std::string> names;
    const QStringList files = QDir(dataDir()).entryList({QStringLiteral("*.vcf")}, QDir::Files, QDir::Name);
    for (const QString& f : files)
        names.push_back(f.chopped(4).toStdString());
    return names;
}

QByteArray readAll(const QString& path) {
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly))
        ADD_FAILURE() << "cannot read " << path.toStdString();
    return f.readAll();
}

class vCardData : public test::ContactFixture, public ::testing::WithParamInterface<std::string> {};

} // namespace

// The reader gives exactly the fields, boxes or error the reference names; all other fields keep a new row's value.
TEST_P(vCardData, ReadsAsReferenceSays) {
    const QString base = dataDir() + u'/' + QString::fromStdString(GetParam());
    QString text = formats::textFromCodePage(readAll(base + QStringLiteral(".vcf")));
    const QStringList refLines =
        QString::fromUtf8(readAll(base + QStringLiteral(".ref"))).split(u'\n', Qt::SkipEmptyParts);
    ASSERT_FALSE(refLines.isEmpty());

    std::map<QString, QString> expected;
    QStringList boxes;
    int32_t error = 0;
    for (const QString& line : refLines) {
        const qsizetype eq = line.indexOf(u'=');
        ASSERT_GT(eq, 0) << line.toStdString();
        const QString key = line.left(eq);
        const QString value = line.mid(eq + 1);
        if (key == u"error")
            error = value.toInt();
        else if (key == u"box")
            boxes << value;
        else
            expected[key.toLower()] = value;
    }

    tables::Recordset fresh;
    tables::vCardInitRS(fresh);
    tables::vCardCreateNewRecord(fresh);

    if (error != 0) {
        try {
            formats::vCardParsEntryFromMobile(ctx, *table, text);
            FAIL() << "no error raised";
        } catch (const core::TsrError& e) {
            EXPECT_EQ(e.number(), error);
        }
        return;
    }
    ASSERT_TRUE(formats::vCardParsEntryFromMobile(ctx, *table, text));
    for (int i = 0; i < table->fieldCount(); ++i) {
        const QString name = table->fieldName(i);
        const auto it = expected.find(name.toLower());
        const QString want = it != expected.end() ? it->second : fresh.value(i).toText();
        EXPECT_EQ(table->value(i).toText(), want) << name.toStdString();
        if (it != expected.end())
            expected.erase(it);
    }
    for (const auto& [name, value] : expected)
        ADD_FAILURE() << "the reference names an unknown field " << name.toStdString();
    QStringList shown;
    for (const auto& box : ui.boxes)
        shown << box.text;
    EXPECT_EQ(shown, boxes);
}

INSTANTIATE_TEST_SUITE_P(Files, vCardData, ::testing::ValuesIn(dataFiles()),
                         [](const ::testing::TestParamInfo<std::string>& info) {
                             std::string name = info.param;
                             for (char& c : name) {
                                 if (!isalnum(static_cast<unsigned char>(c)))
                                     c = '_';
                             }
                             return name;
                         });

// The data folder is not empty: a lost folder would otherwise pass silently.
TEST(vCardDataFolder, HoldsContactTexts) {
    EXPECT_GE(dataFiles().size(), 8u);
}
