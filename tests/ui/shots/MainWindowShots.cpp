// SPDX-License-Identifier: GPL-3.0-or-later
// Screenshots of the main window: both lists in the table and the card layout,
// an open menu, and the find and sort dialogs, with rows in the grids.
#include "core/StatusBar.h"
#include "main/ActiveBar.h"
#include "main/MainCommands.h"
#include "tables/TSRADODB.h"
#include "ui/QtUserInterface.h"
#include "ui/SampleRows.h"
#include "ui/dialogs/frmFind.h"
#include "ui/dialogs/frmSort.h"
#include "ui/grids/EntryGrid.h"
#include "ui/mainwindow/Main_Form.h"
#include "ui/shots/ShotSupport.h"

#include <QAction>
#include <QMenu>
#include <QMenuBar>
#include <QTimer>

using namespace tsr;

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    shots::ShotArgs args;
    if (!shots::readArgs(argc, argv, args))
        return 2;
    QTemporaryDir home;
    ui::QtUserInterface qtUi;
    core::Context ctx(qtUi);
    ctx.options.config = home.path();
    shots::useLanguage(ctx, home, args.lang);
    if (!tables::CreateInitAndSetAllRS(ctx))
        return 1;
    ctx.flags.GlobalOrganizerOK = true;
    ctx.flags.GlobalStartDone = true;
    ctx.flags.GlobalStartDate = core::DateSerial(2026, 3, 1);
    ctx.flags.GlobalEndDate = core::VbDate(core::DateSerial(2026, 3, 31).value + 86399.0 / 86400.0);
    ctx.settings.SaveTyp = 2;
    ctx.settings.Sync = 1;
    test::fillCalendar(ctx);
    test::fillContacts(ctx);
    ctx.read.MobileConnected = true;
    ctx.read.vCalMobileRead = true;
    ctx.read.vCalMobileCount = 9;
    ctx.read.vCardMobileRead = true;
    ctx.read.vCardMobileCount = 6;
    ctx.phone.MobileManufacturer = QStringLiteral("Orvane");
    ctx.phone.MobileModel = QStringLiteral("HV-71");
    ctx.phone.MobileCapacity = 100;
    ctx.phone.MobileCardCapacity = 250;
    ctx.flags.GlobalMobileOnline = true;

    ui::Main_Form window(ctx);
    qtUi.setMainForm(&window, &ctx);
    main::SetLanguage(ctx);
    main::TSRInitForm(ctx);
    main::setStartTools(ctx);
    main::OnOffActiveBar(ctx);
    main::OnOffActiveBarButton(ctx);
    main::SetMenus_Click(ctx);
    ctx.tools.setEnabled(QStringLiteral("TSRTools"), QStringLiteral("TSRSave"), true);
    window.resize(1000, 620);
    window.show();
    window.refreshGrid(0);
    window.refreshGrid(1);
    window.grid(0)->setCurrentRow(5);
    window.grid(1)->setCurrentRow(1);
    bool ok = shots::save(&window, args, QStringLiteral("mainwindow"), QStringLiteral("calendar-table"));

    window.action(QStringLiteral("TSRTools"), QStringLiteral("TSRSwitchView"))->trigger();
    ok &= shots::save(&window, args, QStringLiteral("mainwindow"), QStringLiteral("calendar-cards"));
    window.action(QStringLiteral("TSRTools"), QStringLiteral("TSRSwitchView"))->trigger();

    window.action(QStringLiteral("TSRTools"), QStringLiteral("vCardView"))->trigger();
    ok &= shots::save(&window, args, QStringLiteral("mainwindow"), QStringLiteral("contacts-table"));
    window.action(QStringLiteral("TSRTools"), QStringLiteral("TSRSwitchView"))->trigger();
    ok &= shots::save(&window, args, QStringLiteral("mainwindow"), QStringLiteral("contacts-cards"));
    window.action(QStringLiteral("TSRTools"), QStringLiteral("TSRSwitchView"))->trigger();
    window.action(QStringLiteral("TSRTools"), QStringLiteral("vCalView"))->trigger();

    // The menus, each opened under its title.
    for (const char* name : {"TSROrganizer", "mnuEntry", "TSRExtra"}) {
        auto* menu = window.findChild<QMenu*>(QString::fromLatin1(name));
        const QRect title = window.menuBar()->actionGeometry(menu->menuAction());
        menu->popup(window.menuBar()->mapToGlobal(title.bottomLeft()));
        QApplication::processEvents();
        ok &=
            shots::save(menu, args, QStringLiteral("mainwindow"), QStringLiteral("menu-") + QString::fromLatin1(name));
        menu->hide();
    }

    ui::frmFind find(ctx, *window.grid(0)->model(), ui::FindRequest{QStringLiteral("meeting"), true, true, false, -1},
                     &window);
    find.show();
    ok &= shots::save(&find, args, QStringLiteral("mainwindow"), QStringLiteral("find-dialog"));
    find.hide();
    ui::frmSort sort(ctx, *window.grid(0)->model(), &window);
    sort.show();
    ok &= shots::save(&sort, args, QStringLiteral("mainwindow"), QStringLiteral("sort-dialog"));
    sort.hide();
    return ok ? 0 : 1;
}
