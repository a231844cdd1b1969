// SPDX-License-Identifier: GPL-3.0-or-later
// The real main window on the offscreen platform, over a context with sample
// rows. Message boxes are answered from a queue and recorded, as the scripted
// user boundary does; the find and sort dialogs are filled by the test.
#pragma once

#include "core/StatusBar.h"
#include "main/ActiveBar.h"
#include "main/MainCommands.h"
#include "support/ScriptedUi.h"
#include "tables/TSRADODB.h"
#include "ui/QtUserInterface.h"
#include "ui/SampleRows.h"
#include "ui/grids/EntryGrid.h"
#include "ui/grids/EntryTableModel.h"
#include "ui/mainwindow/Main_Form.h"

#include <QAction>
#include <QApplication>
#include <QQueue>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <memory>

namespace tsr::test {

// The window's user boundary with the questions answered by the test.
class AnsweringQtUi : public ui::QtUserInterface {
public:
    core::MsgResult msgBox(const QString& text, core::MsgButtons buttons, core::MsgIcon icon,
                           const QString& title) override {
        boxes.append({text, buttons, icon, title});
        if (!answers.isEmpty())
            return answers.dequeue();
        return buttons == core::MsgButtons::YesNo || buttons == core::MsgButtons::YesNoCancel ? core::MsgResult::Yes
                                                                                              : core::MsgResult::OK;
    }
    QList<ShownBox> boxes;
    QQueue<core::MsgResult> answers;
};

class WindowFixture : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(home.isValid());
        ctx.options.config = home.path();
        ctx.settings.HomeDir = home.path();
        auto& f = ctx.formats;
        f.DateFormat = QStringLiteral("dd.mm.yyyy");
        f.TimeFormat = QStringLiteral("hh:mm:ss");
        f.TimeFormatNoSec = QStringLiteral("hh:mm");
        ASSERT_TRUE(tables::CreateInitAndSetAllRS(ctx));
        ctx.flags.GlobalOrganizerOK = true;
        ctx.flags.GlobalStartDate = core::DateSerial(2026, 3, 1);
        ctx.flags.GlobalEndDate = core::VbDate(core::DateSerial(2026, 3, 31).value + 86399.0 / 86400.0);
    }

    // The window over the tables as they stand, set up as a dialog run sets it up.
    ui::Main_Form& openWindow() {
        window = std::make_unique<ui::Main_Form>(ctx);
        ui.setMainForm(window.get(), &ctx);
        main::TSRInitForm(ctx);
        main::setStartTools(ctx);
        main::OnOffActiveBar(ctx);
        main::OnOffActiveBarButton(ctx);
        main::SetMenus_Click(ctx);
        window->resize(900, 600);
        window->show();
        window->refreshGrid(0);
        window->refreshGrid(1);
        QApplication::processEvents();
        return *window;
    }

    QAction* tool(const char* name, const char* band = "TSRTools") {
        QAction* a = window->action(QString::fromLatin1(band), QString::fromLatin1(name));
        EXPECT_NE(a, nullptr) << band << '.' << name;
        return a;
    }

    ui::EntryGrid* grid(int list) { return window->grid(list); }

    // The Text (calendar) or LastName (contacts) of each row as the grid shows it.
    QStringList shownTitles(int list) {
        ui::EntryTableModel* m = grid(list)->model();
        const int c = m->columnOf(list == 1 ? QStringLiteral("LastName") : QStringLiteral("Text"));
        QStringList out;
        for (int r = 0; r < m->rowCount(); ++r)
            out << m->cellText(r, c);
        return out;
    }

    QTemporaryDir home;
    AnsweringQtUi ui;
    core::Context ctx{ui};
    std::unique_ptr<ui::Main_Form> window;
};

} // namespace tsr::test
