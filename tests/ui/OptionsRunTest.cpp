// SPDX-License-Identifier: GPL-3.0-or-later
// A start with the switch OPTIONS, end to end: the program starts as it does
// from the command line (settings, language, tables, the emulated phone, the
// local PIM store), shows the options dialog as its only window, and OK saves
// the settings, which a silent run otherwise never does.
#include "DialogFixture.h"
#include "main/Main_Modul.h"
#include "phone/EmulatedPhone.h"
#include "spine/Instance.h"
#include "ui/dialogs/Einstellungen.h"
#include "ui/dialogs/Forms.h"

#include <QApplication>
#include <QPushButton>
#include <QRadioButton>
#include <QTimer>

using namespace tsr;

namespace {

// The user boundary of the run: its windows are the dialogs'.
class RunUi : public test::ScriptedUi {
public:
    core::Context* ctx = nullptr;
    QStringList forms;
    void showForm(Form form) override {
        forms << QString::number(int(form));
        ui::showForm(*ctx, form, nullptr);
    }
    void showLogSummary() override { forms << QStringLiteral("log"); }
};

class OptionsRunTest : public ::testing::Test {
protected:
    void SetUp() override {
        // Another Tessarine on this machine must not take the start over.
        qputenv("XDG_RUNTIME_DIR", runtime.path().toLocal8Bit());
        ctx.clock.setFixed(QDateTime(QDate(2026, 3, 14), QTime(9, 26, 53)));
        ctx.options.config = dir.path() + QStringLiteral("/config");
        ctx.options.home = dir.path() + QStringLiteral("/home");
        ctx.options.pim = dir.path() + QStringLiteral("/pim");
        ctx.options.port = phone.link();
        ctx.flags.GlobalSilent = true;
        runUi.ctx = &ctx;
    }
    void TearDown() override { qunsetenv("XDG_RUNTIME_DIR"); }

    QTemporaryDir dir;
    QTemporaryDir runtime;
    test::EmulatedPhone phone;
    RunUi runUi;
    core::Context ctx{runUi};
};

TEST_F(OptionsRunTest, OptionsAloneAndOkSaves) {
    bool dialogShown = false;
    bool mainHidden = true;
    QTimer::singleShot(0, [&] {
        auto* d = qobject_cast<ui::Einstellungen*>(QApplication::activeModalWidget());
        dialogShown = d != nullptr;
        if (!d)
            return;
        for (QWidget* w : QApplication::topLevelWidgets())
            mainHidden = mainHidden && (w == d || !w->isVisible() || w->inherits("QMenu"));
        d->findChild<QRadioButton*>(QStringLiteral("saveLater"))->setChecked(true);
        d->findChild<QRadioButton*>(QStringLiteral("deutsch_option"))->setChecked(true);
        d->findChild<QPushButton*>(QStringLiteral("cmdOK"))->click();
    });
    main::StartUp start;
    EXPECT_FALSE(main::Main(ctx, start, QStringLiteral("OPTIONS")));
    EXPECT_TRUE(dialogShown);
    EXPECT_TRUE(mainHidden);
    EXPECT_EQ(runUi.forms, QStringList{QString::number(int(core::UserInterface::Form::Options))});
    EXPECT_GE(runUi.unloadCount, 1);

    // The next start reads what the dialog stored.
    test::ScriptedUi nextUi;
    core::Context next(nextUi);
    next.options = ctx.options;
    spine::RegValGet(next);
    EXPECT_EQ(next.settings.SaveTyp, 2);
    EXPECT_EQ(next.settings.Sprache, QStringLiteral("0407"));
}

// Cancel ends the run with nothing stored.
TEST_F(OptionsRunTest, CancelEndsTheRunWithoutSaving) {
    QTimer::singleShot(0, [&] {
        if (auto* d = qobject_cast<ui::Einstellungen*>(QApplication::activeModalWidget())) {
            d->findChild<QRadioButton*>(QStringLiteral("saveLater"))->setChecked(true);
            d->findChild<QPushButton*>(QStringLiteral("cmdCancel"))->click();
        }
    });
    main::StartUp start;
    main::Main(ctx, start, QStringLiteral("OPTIONS"));
    test::ScriptedUi nextUi;
    core::Context next(nextUi);
    next.options = ctx.options;
    spine::RegValGet(next);
    EXPECT_EQ(next.settings.SaveTyp, 1);
    EXPECT_EQ(runUi.forms, QStringList{QString::number(int(core::UserInterface::Form::Options))});
}

} // namespace
