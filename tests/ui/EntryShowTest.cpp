// SPDX-License-Identifier: GPL-3.0-or-later
// The compare dialog: both versions line by line with the differing lines
// marked, the answer its boxes give (in their order when several are checked),
// and what each answer writes when the state file finds a contact changed on
// both sides.
#include "ui/dialogs/EntryShow.h"
#include "sync/MobFile.h"
#include "sync/SyncTestSupport.h"

#include <QAbstractItemModelTester>
#include <QApplication>
#include <QCheckBox>
#include <QFile>
#include <QPushButton>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

using namespace tsr;
using test::textOf;

namespace {

// Ticks the named boxes of the next compare dialog and presses its OK.
void answerNextDialog(const QStringList& boxes) {
    QTimer::singleShot(0, [boxes] {
        auto* dialog = qobject_cast<ui::EntryShow*>(QApplication::activeModalWidget());
        ASSERT_NE(dialog, nullptr);
        for (const QString& name : boxes)
            dialog->findChild<QCheckBox*>(name)->setChecked(true);
        QTest::mouseClick(dialog->findChild<QPushButton*>(QStringLiteral("Bu_OK")), Qt::LeftButton);
    });
}

// The boundary whose compare question is the real dialog.
class DialogUi : public test::ScriptedUi {
public:
    int compareContacts(const tables::Recordset& pimRow, const tables::Recordset& mobileRow) override {
        ++compareCount;
        return ui::compareContacts(*ctx, nullptr, pimRow, mobileRow);
    }
    core::Context* ctx = nullptr;
};

class EntryShowTest : public ::testing::Test {
protected:
    EntryShowTest() {
        ui.ctx = &ctx;
        ctx.settings.HomeDir = home.path();
        ctx.tables.RSContacts = contactTable(QStringLiteral("RSContacts"));
        pimTable = contactTable(QStringLiteral("scratch"));
        addRow(*ctx.tables.RSContacts, {{u"Mobile", true},
                                        {u"EntryType", int32_t(2)},
                                        {u"MobileID", u"4"},
                                        {u"LastName", u"Roth"},
                                        {u"FirstName", u"Ida"},
                                        {u"Phone", u"333"},
                                        {u"City", u"Bonn"},
                                        {u"EntryFile", u"4.vcf"}});
        addRow(*pimTable, {{u"PIM", true},
                           {u"EntryType", int32_t(1)},
                           {u"UID", u"uid-4"},
                           {u"LastName", u"Roth"},
                           {u"FirstName", u"Ida"},
                           {u"Phone", u"222"},
                           {u"City", u"Köln"}});
    }
    static std::unique_ptr<tables::Recordset> contactTable(const QString& name) {
        auto t = std::make_unique<tables::Recordset>(name);
        tables::vCardInitRS(*t);
        return t;
    }
    static void addRow(tables::Recordset& t, test::Fields fields) {
        tables::vCardCreateNewRecord(t);
        test::setFields(t, fields);
    }
    // The state file saw the pair with the number 111 in Bonn: both sides changed since.
    void snapshot() {
        QFile f(sync::mobFilePath(ctx));
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write("\"4\tuid-4\t1\t1\tRoth\tIda\t\t111\t\t\tBonn\t0\t\t\t\t\t\t\r\n\"\r\n");
        f.close();
        ASSERT_TRUE(sync::ReadMobFile(ctx));
    }
    tables::Recordset& phoneRows() { return *ctx.tables.RSContacts; }

    DialogUi ui;
    core::Context ctx{ui};
    QTemporaryDir home;
    std::unique_ptr<tables::Recordset> pimTable;
    test::RecordingRoads roads;
};

} // namespace

// Every property is a line with the phone's and the PIM's value; the lines that
// differ, and only those, are marked.
TEST_F(EntryShowTest, MarksTheLinesThatDiffer) {
    ui::EntryShow dialog(ctx, *pimTable, phoneRows(), nullptr);
    auto* grid = dialog.findChild<QTableView*>(QStringLiteral("ShowGrid"));
    ASSERT_NE(grid, nullptr);
    QAbstractItemModel* model = grid->model();
    QAbstractItemModelTester tester(model, QAbstractItemModelTester::FailureReportingMode::Fatal);
    QStringList marked;
    for (int line : dialog.foundLines())
        marked << model->index(line, 0).data().toString();
    EXPECT_EQ(marked, (QStringList{QStringLiteral("Privat"), QStringLiteral("Location")}));
    for (int row = 0; row < model->rowCount(); ++row) {
        const bool differs = model->index(row, 1).data() != model->index(row, 2).data();
        EXPECT_EQ(model->index(row, 1).data(Qt::BackgroundRole).isValid(), differs) << row;
    }
    const int phoneLine = dialog.foundLines().value(0);
    EXPECT_EQ(model->index(phoneLine, 1).data().toString(), QStringLiteral("333"));
    EXPECT_EQ(model->index(phoneLine, 2).data().toString(), QStringLiteral("222"));
    EXPECT_EQ(model->headerData(1, Qt::Horizontal).toString(), QStringLiteral("Mobile"));
}

// The boxes in the order of the dialog: both kept before the phone's, before the PIM's.
TEST_F(EntryShowTest, AnswerFollowsTheBoxesInOrder) {
    const std::pair<QStringList, int> cases[] = {
        {{}, 0},
        {{QStringLiteral("ch_MobileoverPIM")}, 1},
        {{QStringLiteral("ch_PIMoverMobile")}, 2},
        {{QStringLiteral("ch_MobandPIM")}, 3},
        {{QStringLiteral("ch_MobileoverPIM"), QStringLiteral("ch_PIMoverMobile")}, 1},
        {{QStringLiteral("ch_PIMoverMobile"), QStringLiteral("ch_MobandPIM")}, 3},
    };
    for (const auto& [boxes, expected] : cases) {
        answerNextDialog(boxes);
        EXPECT_EQ(ui::compareContacts(ctx, nullptr, *pimTable, phoneRows()), expected)
            << boxes.join(u'+').toStdString();
    }
}

// What each answer writes through the state file's comparison: the phone's version
// to the PIM, the PIM's to the phone, or nothing.
TEST_F(EntryShowTest, EachAnswerWritesItsSide) {
    snapshot();
    answerNextDialog({QStringLiteral("ch_MobileoverPIM")});
    sync::MobFileAuswertung(ctx, *pimTable, phoneRows(), roads);
    EXPECT_EQ(roads.calls, QStringList{QStringLiteral("vCardWriteOutookEntry:Roth")});
    EXPECT_EQ(textOf(*pimTable, u"Phone"), QStringLiteral("333"));
    EXPECT_EQ(textOf(*pimTable, u"City"), QStringLiteral("Bonn"));
    EXPECT_EQ(textOf(*pimTable, u"UID"), QStringLiteral("uid-4"));

    test::setFields(*pimTable, {{u"Phone", u"222"}, {u"City", u"Köln"}});
    roads.calls.clear();
    answerNextDialog({QStringLiteral("ch_PIMoverMobile")});
    sync::MobFileAuswertung(ctx, *pimTable, phoneRows(), roads);
    EXPECT_EQ(roads.calls, QStringList{QStringLiteral("SendSinglevCardEntry:Roth")});
    EXPECT_EQ(textOf(phoneRows(), u"Phone"), QStringLiteral("222"));
    EXPECT_EQ(textOf(phoneRows(), u"MobileID"), QStringLiteral("4"));

    test::setFields(phoneRows(), {{u"Phone", u"333"}});
    roads.calls.clear();
    answerNextDialog({QStringLiteral("ch_MobandPIM")});
    sync::MobFileAuswertung(ctx, *pimTable, phoneRows(), roads);
    EXPECT_TRUE(roads.calls.isEmpty());
    EXPECT_EQ(textOf(phoneRows(), u"Phone"), QStringLiteral("333"));
    EXPECT_EQ(textOf(*pimTable, u"Phone"), QStringLiteral("222"));
    EXPECT_EQ(ui.compareCount, 3);
}
