// SPDX-License-Identifier: GPL-3.0-or-later
// The dialog run's start as main() makes it: the real start-up with the window's
// user boundary, against the emulated phone and a fresh store. The deferred
// start finds the phone and finishes the start; then a click on the tool band
// reads the phone's entries into the grid.
#include "main/Main_Modul.h"
#include "phone/EmulatedPhone.h"
#include "roads/RoadsFixture.h"
#include "spine/RegistrySettings.h"
#include "ui/WindowFixture.h"

#include <QLabel>
#include <QTest>

using namespace tsr;

TEST(DialogStart, TheDeferredStartFindsThePhoneAndAClickReadsIt) {
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    // A socket of our own for the instance test, apart from any running program.
    qputenv("XDG_RUNTIME_DIR", dir.filePath(QStringLiteral("run")).toLocal8Bit());
    QDir().mkpath(dir.filePath(QStringLiteral("run")));
    test::EmulatedPhone phone("--first 1 --last 20");
    phone.seed(1, test::vcs("20260310T103000Z", "20260310T114500Z", "MISCELLANEOUS", "Dentist"));
    phone.seed(2, test::vcs("20260311T090000Z", "20260311T100000Z", "MEETING", "Budget meeting"));

    test::AnsweringQtUi ui;
    core::Context ctx(ui);
    ctx.options.home = dir.filePath(QStringLiteral("home"));
    ctx.options.config = dir.filePath(QStringLiteral("config"));
    ctx.options.pim = dir.filePath(QStringLiteral("pim"));
    ctx.options.port = phone.link();
    // The English table, whatever the machine's locale says.
    ASSERT_TRUE(spine::RegValCreate(ctx));
    spine::RegValGet(ctx);
    ctx.settings.Sprache = QStringLiteral("0809");
    ASSERT_TRUE(spine::RegValSet(ctx, true));
    ctx.settings = core::Settings();
    ui::Main_Form window(ctx);
    ui.setMainForm(&window, &ctx);
    main::StartUp start;
    const bool goesOn = main::Main(ctx, start, QString(), QString());
    for (const auto& box : ui.boxes)
        ADD_FAILURE() << "box: " << box.text.toStdString();
    ASSERT_TRUE(goesOn);
    window.show();
    EXPECT_FALSE(ctx.flags.GlobalStartDone) << "the phone is read only by the deferred start";

    QTRY_VERIFY_WITH_TIMEOUT(ctx.flags.GlobalStartDone, 15000);
    EXPECT_TRUE(ctx.flags.GlobalMobileOnline);
    EXPECT_TRUE(window.isVisible());
    EXPECT_EQ(window.findChild<QLabel*>(QStringLiteral("MobileStatus"))->text(), ctx.strings.text(890));
    QAction* read = window.action(QStringLiteral("TSRTools"), QStringLiteral("TSRReadMobile"));
    QTRY_VERIFY_WITH_TIMEOUT(read->isEnabled(), 2000);

    read->trigger();
    ui::EntryTableModel* model = window.grid(0)->model();
    QTRY_COMPARE_WITH_TIMEOUT(model->rowCount(), 2, 10000);
    const int text = model->columnOf(QStringLiteral("Text"));
    EXPECT_EQ(model->cellText(0, text), QStringLiteral("Dentist"));
    EXPECT_EQ(model->cellText(1, text), QStringLiteral("Budget meeting"));
    EXPECT_TRUE(window.action(QStringLiteral("TSRTools"), QStringLiteral("TSRFindEntry"))->isEnabled());
}
