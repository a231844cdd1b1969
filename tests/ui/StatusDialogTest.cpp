// SPDX-License-Identifier: GPL-3.0-or-later
// The progress dialog as a real window behind the status logic: its caption and
// text, the cancel gestures and the question they lead to at the next GetState,
// a long loop that a click ends, and the quiet runs that show nothing.
#include "core/Context.h"
#include "support/ScriptedUi.h"
#include "ui/dialogs/Status_Anzeige.h"
#include "ui/dialogs/frmSplash.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QTest>
#include <QThread>
#include <QTimer>
#include <gtest/gtest.h>

using namespace tsr;

namespace {

// The scripted boundary with the real status window: questions still come from the queue.
class WindowedUi : public test::ScriptedUi {
public:
    void attach(core::Context& ctx) { window = std::make_unique<ui::StatusWindow>(ctx, nullptr); }
    void statusShow(const QString& title) override { window->statusShow(title); }
    void statusSetText(const QString& text) override { window->statusSetText(text); }
    void statusHide() override { window->statusHide(); }
    void processEvents() override { window->processEvents(); }

    std::unique_ptr<ui::StatusWindow> window;
};

class StatusDialog : public ::testing::Test {
public:
    StatusDialog() { ui.attach(ctx); }
    ui::Status_Anzeige* dialog() { return ui.window->dialog(); }
    QPushButton* cancelButton() { return dialog()->findChild<QPushButton*>(QStringLiteral("Abbrechen")); }

    WindowedUi ui;
    core::Context ctx{ui};
};

} // namespace

// Start shows the caption and an empty text; SetText reaches the label; Quit hides it.
TEST_F(StatusDialog, ShowsCaptionAndText) {
    ctx.status.Start(QStringLiteral("Tessarine"), false);
    ASSERT_NE(dialog(), nullptr);
    EXPECT_TRUE(dialog()->isVisible());
    EXPECT_EQ(dialog()->windowTitle(), QStringLiteral("Tessarine"));
    auto* text = dialog()->findChild<QLabel*>(QStringLiteral("Text"));
    ASSERT_NE(text, nullptr);
    EXPECT_TRUE(text->text().isEmpty());
    ctx.status.SetText(QStringLiteral("Please wait reading mobile status!"));
    EXPECT_EQ(text->text(), QStringLiteral("Please wait reading mobile status!"));
    EXPECT_EQ(cancelButton()->text(), QStringLiteral("Cancel"));
    EXPECT_TRUE(ctx.status.GetState());
    EXPECT_TRUE(ui.boxes.isEmpty());
    ctx.status.Quit();
    EXPECT_FALSE(dialog()->isVisible());
    ctx.status.SetText(QStringLiteral("after Quit"));
    EXPECT_EQ(text->text(), QStringLiteral("Please wait reading mobile status!"));
}

// Each gesture cancels; the question comes at the next GetState: No goes on, Yes stops.
TEST_F(StatusDialog, EveryCancelGestureLeadsToTheQuestion) {
    const std::pair<const char*, std::function<void(StatusDialog&)>> gestures[] = {
        {"Escape on the dialog", [](StatusDialog& t) { QTest::keyClick(t.dialog(), Qt::Key_Escape); }},
        {"Enter on the dialog", [](StatusDialog& t) { QTest::keyClick(t.dialog(), Qt::Key_Return); }},
        {"Escape on the button", [](StatusDialog& t) { QTest::keyClick(t.cancelButton(), Qt::Key_Escape); }},
        {"left press on the button", [](StatusDialog& t) { QTest::mousePress(t.cancelButton(), Qt::LeftButton); }},
        {"closing the window", [](StatusDialog& t) { t.dialog()->close(); }},
    };
    for (const auto& [what, gesture] : gestures) {
        ui.boxes.clear();
        ctx.status.Start(QStringLiteral("Tessarine"), false);
        gesture(*this);
        EXPECT_FALSE(ctx.status.isContinue()) << what;
        ui.answer(core::MsgResult::No);
        EXPECT_TRUE(ctx.status.GetState()) << what;
        EXPECT_TRUE(ctx.status.isContinue()) << what;
        ASSERT_EQ(ui.boxes.size(), 1) << what;
        EXPECT_EQ(ui.boxes[0].text, QStringLiteral("Do you really want to cancel?"));
        EXPECT_EQ(ui.boxes[0].buttons, core::MsgButtons::YesNo);
        EXPECT_TRUE(ctx.status.GetState()) << what << ": no second question without a new gesture";
        EXPECT_EQ(ui.boxes.size(), 1) << what;
        gesture(*this);
        ui.answer(core::MsgResult::Yes);
        EXPECT_FALSE(ctx.status.GetState()) << what;
        ctx.status.Quit();
    }
    // A right press is no gesture.
    ctx.status.Start(QStringLiteral("Tessarine"), false);
    QTest::mousePress(cancelButton(), Qt::RightButton);
    EXPECT_TRUE(ctx.status.isContinue());
}

// A long loop asking GetState between its steps stays responsive: a press on
// Abbrechen that arrives mid-loop ends it at once after the Yes.
TEST_F(StatusDialog, LongLoopEndsOnCancel) {
    ctx.status.Start(QStringLiteral("Tessarine"), false);
    QTimer::singleShot(100, dialog(), [this] { QTest::mousePress(cancelButton(), Qt::LeftButton); });
    ui.answer(core::MsgResult::Yes);
    QElapsedTimer clock;
    clock.start();
    int steps = 0;
    while (steps < 5000 && ctx.status.GetState()) {
        QThread::msleep(2); // one row of a read
        ++steps;
    }
    EXPECT_LT(steps, 5000);
    EXPECT_GT(steps, 10);
    EXPECT_LT(clock.elapsed(), 3000);
    EXPECT_EQ(ui.boxes.size(), 1);
}

// A quiet status shows no window and asks nothing, whatever happens.
TEST_F(StatusDialog, QuietShowsAndAsksNothing) {
    ctx.status.Start(QStringLiteral("Tessarine"), true);
    EXPECT_EQ(dialog(), nullptr);
    ctx.status.cancelRequested();
    EXPECT_TRUE(ctx.status.GetState());
    EXPECT_TRUE(ui.boxes.isEmpty());
    ctx.flags.GlobalClosing = true;
    EXPECT_FALSE(ctx.status.GetState());
}

// The splash is its picture's size, centred on the screen, and keys do not end it.
TEST(Splash, SizedCentredAndDeafToKeys) {
    test::ScriptedUi ui;
    core::Context ctx{ui};
    std::unique_ptr<ui::frmSplash> splash(ui::showSplash(ctx));
    EXPECT_TRUE(splash->isVisible());
    EXPECT_EQ(splash->size(), ui::frmSplash::picture(ctx).size());
    const QRect screen = QApplication::primaryScreen()->availableGeometry();
    EXPECT_LE((splash->geometry().center() - screen.center()).manhattanLength(), 2);
    QTest::keyClick(splash.get(), Qt::Key_Escape);
    QTest::keyClick(splash.get(), Qt::Key_Return);
    EXPECT_TRUE(splash->isVisible());
}
