// SPDX-License-Identifier: GPL-3.0-or-later
// Module Main_Form, its command layer.
#include "main/MainCommands.h"

#include "core/Context.h"
#include "core/ErrorReport.h"
#include "core/StatusBar.h"
#include "log/LogFile.h"
#include "phone/ComDrvCode.h"
#include "phone/GDX.h"
#include "roads/AutoSyncRun.h"
#include "roads/DOROutlookCalendar.h"
#include "roads/DOROutlookContacts.h"
#include "roads/LiveRoads.h"
#include "roads/Mobile.h"
#include "roads/MobileClear.h"
#include "roads/Rereads.h"
#include "roads/Transfer.h"
#include "spine/DebugTrace.h"
#include "spine/RegistrySettings.h"
#include "spine/SprachenStrings.h"
#include "sync/Verwaltung.h"
#include "tables/TSRADODB.h"

#include <QHash>
#include <functional>

namespace tsr::main {

using core::MsgButtons;
using core::MsgIcon;
using core::MsgResult;
using Form = core::UserInterface::Form;

namespace {

const QString kModul = QStringLiteral("Main_Form");
const QString kTools = QStringLiteral("TSRTools");
const QString kOrganizer = QStringLiteral("TSROrganizerMenu");

bool contactsActive(const core::Context& ctx) {
    return ctx.settings.ActiveAPP == 1;
}

bool wantsCalendar(const core::Context& ctx, List list) {
    return list == List::Both || list == List::Calendar || (list == List::Active && !contactsActive(ctx));
}
bool wantsContacts(const core::Context& ctx, List list) {
    return list == List::Both || list == List::Contacts || (list == List::Active && contactsActive(ctx));
}

bool activeListHasRows(const core::Context& ctx) {
    const auto& t = contactsActive(ctx) ? ctx.tables.RSContacts : ctx.tables.RSCalendar;
    return t && t->recordCount() > 0;
}

void setBoth(core::Context& ctx, const QString& tool, bool on) {
    ctx.tools.setEnabled(kOrganizer, tool, on);
    ctx.tools.setEnabled(kTools, tool, on);
}

// "Changes not yet transferred. Transfer now?" while TSRSave shows pending changes.
enum class Pending { None, Yes, No };
Pending askPending(core::Context& ctx) {
    if (!ctx.tools.isEnabled(kTools, QStringLiteral("TSRSave")))
        return Pending::None;
    return ctx.ui->msgBox(ctx.strings.text(708), MsgButtons::YesNo, MsgIcon::Exclamation, ctx.title()) == MsgResult::Yes
               ? Pending::Yes
               : Pending::No;
}

bool transferActive(core::Context& ctx) {
    return roads::TransfertoMobile(ctx, *ctx.tables.RSContactsPending, *ctx.tables.RSCalendarPending);
}

// The command of each tool; a tool without one does nothing.
using Command = std::function<void(core::Context&)>;
const QHash<QString, Command>& dispatchTable() {
    static const QHash<QString, Command> table{
        {QStringLiteral("TSRReadOrganizer"), [](core::Context& c) { ReadOrganizer(c, List::Active); }},
        {QStringLiteral("TSRReadOrganizerBoth"), [](core::Context& c) { ReadOrganizer(c, List::Both); }},
        {QStringLiteral("TSRReadOrganizerCal"), [](core::Context& c) { ReadOrganizer(c, List::Calendar); }},
        {QStringLiteral("TSRReadOrganizerCard"), [](core::Context& c) { ReadOrganizer(c, List::Contacts); }},
        {QStringLiteral("TSRReadMobile"), [](core::Context& c) { ReadMobile(c, List::Active); }},
        {QStringLiteral("TSRReadMobileBoth"), [](core::Context& c) { ReadMobile(c, List::Both); }},
        {QStringLiteral("TSRReadMobileCal"), [](core::Context& c) { ReadMobile(c, List::Calendar); }},
        {QStringLiteral("TSRReadMobileCard"), [](core::Context& c) { ReadMobile(c, List::Contacts); }},
        {QStringLiteral("TSRTransferBoth"), [](core::Context& c) { Transfer(c, List::Both); }},
        {QStringLiteral("TSRTransferCal"), [](core::Context& c) { Transfer(c, List::Calendar); }},
        {QStringLiteral("TSRTransferCard"), [](core::Context& c) { Transfer(c, List::Contacts); }},
        {QStringLiteral("TSRClear"), [](core::Context& c) { ClearGrid(c, List::Active); }},
        {QStringLiteral("TSRClearWindowBoth"), [](core::Context& c) { ClearGrid(c, List::Both); }},
        {QStringLiteral("TSRClearWindowCal"), [](core::Context& c) { ClearGrid(c, List::Calendar); }},
        {QStringLiteral("TSRClearWindowCard"), [](core::Context& c) { ClearGrid(c, List::Contacts); }},
        {QStringLiteral("TSRSwitchView"), [](core::Context& c) { c.ui->showForm(Form::SwitchView); }},
        {QStringLiteral("TSRClearOrgCol"), [](core::Context&) {}},
        {QStringLiteral("TSRClearMobile"), [](core::Context& c) { ClearMobile(c, List::Active); }},
        {QStringLiteral("TSRClearMobileBoth"), [](core::Context& c) { ClearMobile(c, List::Both); }},
        {QStringLiteral("TSRClearMobileCal"), [](core::Context& c) { ClearMobile(c, List::Calendar); }},
        {QStringLiteral("TSRClearMobileCard"), [](core::Context& c) { ClearMobile(c, List::Contacts); }},
        {QStringLiteral("TSRFindEntry"), [](core::Context& c) { c.ui->showForm(Form::Find); }},
        {QStringLiteral("TSRSearch"), [](core::Context& c) { c.ui->showForm(Form::Search); }},
        {QStringLiteral("TSRSort"), [](core::Context& c) { c.ui->showForm(Form::Sort); }},
        {QStringLiteral("TSRCalendar"), [](core::Context& c) { c.ui->showForm(Form::DateFrame); }},
        {QStringLiteral("TSRHelp"), [](core::Context& c) { c.ui->showForm(Form::Help); }},
        {QStringLiteral("TSRAbout"), [](core::Context& c) { c.ui->showForm(Form::About); }},
        {QStringLiteral("TSRComSettings"), [](core::Context& c) { c.ui->showForm(Form::Options); }},
        {QStringLiteral("TSRTestMobile"), [](core::Context& c) { TestMobile_Click(c); }},
        {QStringLiteral("TSRNewEntry"), [](core::Context& c) { c.ui->showForm(Form::NewEntry); }},
        {QStringLiteral("TSROpenEntry"), [](core::Context& c) { c.ui->showForm(Form::OpenEntry); }},
        {QStringLiteral("TSRDeleteEntry"), [](core::Context& c) { c.ui->showForm(Form::DeleteEntry); }},
        {QStringLiteral("TSREnd"), [](core::Context& c) { c.ui->unloadMainForm(); }},
        {QStringLiteral("TSRLog"), [](core::Context& c) { c.ui->showLogSummary(); }},
        {QStringLiteral("TSRSave"),
         [](core::Context& c) {
             roads::TransfervCal(c, *c.tables.RSCalendarPending);
             roads::TransfervCard(c, *c.tables.RSContactsPending);
         }},
        {QStringLiteral("TSRAutoSync"), [](core::Context& c) { roads::SyncMain(c); }},
        {QStringLiteral("vCalView"),
         [](core::Context& c) {
             c.settings.ActiveAPP = 0;
             c.ui->refreshGrid(0);
             OnOffActiveBarButton(c);
             core::SetStatusBarMobile(c);
         }},
        {QStringLiteral("vCardView"),
         [](core::Context& c) {
             c.settings.ActiveAPP = 1;
             c.ui->refreshGrid(1);
             OnOffActiveBarButton(c);
             core::SetStatusBarMobile(c);
         }},
    };
    return table;
}

} // namespace

void ActiveBar21_ToolClick(core::Context& ctx, const QString& tool) {
    core::guarded(ctx, kModul, QStringLiteral("ActiveBar21_ToolClick"), [&] {
        ctx.status.Quit();
        auto& f = ctx.flags;
        if (!f.GlobalBusy) {
            f.GlobalBusy = true;
            OnOffActiveBar(ctx);
            const auto& table = dispatchTable();
            const auto it = table.constFind(tool);
            try {
                if (it != table.constEnd())
                    it.value()(ctx);
            } catch (...) {
                f.GlobalBusy = false;
                throw;
            }
            f.GlobalBusy = false;
            OnOffActiveBar(ctx);
            // The tool band's entry tools follow the rows the command left, as the menus do.
            OnOffActiveBarButton(ctx);
            f.GlobalEditorOpen = false;
            ctx.ui->setBusyCursor(false);
            ctx.read.vCalPIMRead = ctx.read.vCalPIMCount > 0;
        }
        SetMenus_Click(ctx);
        if (ctx.ui->mainFormVisibleAndEnabled() && tool != u"TSRHelp")
            ctx.ui->focusMainForm();
        if (f.GlobalClosing)
            ctx.ui->unloadMainForm();
    });
}

void OnOffActiveBar(core::Context& ctx) {
    const bool idle = !ctx.flags.GlobalBusy;
    for (const char* tool : {"TSROrganizer", "mnuEntry", "TSRExtra", "mnuHelp"})
        ctx.tools.setEnabled(QStringLiteral("MainMenu"), QString::fromLatin1(tool), idle);
    const bool rows = activeListHasRows(ctx);
    for (const char* tool : {"TSROpenEntry", "TSRDeleteEntry", "TSRFindEntry"})
        ctx.tools.setEnabled(QStringLiteral("TSREntryMenu"), QString::fromLatin1(tool), rows);
    ctx.tools.setEnabled(QStringLiteral("TSRExtraMenu"), QStringLiteral("TSRSort"), rows);
}

void OnOffActiveBarButton(core::Context& ctx) {
    const bool rows = activeListHasRows(ctx);
    for (const char* tool : {"TSROpenEntry", "TSRDeleteEntry", "TSRFindEntry", "TSRSort"})
        ctx.tools.setEnabled(kTools, QString::fromLatin1(tool), rows);
    const bool calendar = !contactsActive(ctx);
    ctx.tools.setEnabled(kTools, QStringLiteral("TSRCalendar"), calendar);
    ctx.tools.setVisible(kTools, QStringLiteral("TSRCalendar"), calendar);
    if (ctx.settings.SaveTyp == 2) {
        setBoth(ctx, QStringLiteral("TSRAutoSync"), false);
        return;
    }
    if (ctx.flags.GlobalMobileOnline)
        setBoth(ctx, QStringLiteral("TSRAutoSync"), true);
}

void SetMenus_Click(core::Context& ctx) {
    spine::tracePoint(ctx, QStringLiteral("Debug: SetMenus_Click"));
    for (const char* tool : {"TSRClearBothCol", "TSRClearMobileCol", "TSRClearOrgCol"})
        ctx.tools.setEnabled(QStringLiteral("TSRClearGridMenu"), QString::fromLatin1(tool), false);
    ctx.tools.setEnabled(kTools, QStringLiteral("TSRClear"), activeListHasRows(ctx));
    ctx.tools.setEnabled(kTools, QStringLiteral("TSRCalendar"), !contactsActive(ctx));
    ctx.tools.setEnabled(kOrganizer, QStringLiteral("TSRReadOrganizer"), ctx.flags.GlobalOrganizerOK);
    ctx.tools.setEnabled(kOrganizer, QStringLiteral("TSRAutoSync"),
                         ctx.settings.Sync == 1 && ctx.flags.GlobalOrganizerOK);
    const int32_t onPhone = contactsActive(ctx) ? ctx.read.vCardMobileCount : ctx.read.vCalMobileCount;
    ctx.tools.setEnabled(kTools, QStringLiteral("TSRClearMobileCal"), onPhone > 0);
}

void setStartTools(core::Context& ctx) {
    const bool now = ctx.settings.SaveTyp == 1;
    ctx.tools.setVisible(kTools, QStringLiteral("TSRSave"), !now);
    setBoth(ctx, QStringLiteral("TSRAutoSync"), now);
    const bool autoSync = ctx.settings.Sync == 1 && ctx.flags.GlobalOrganizerOK;
    ctx.tools.setVisible(kTools, QStringLiteral("TSRAutoSync"), autoSync);
    ctx.tools.setVisible(kOrganizer, QStringLiteral("TSRAutoSync"), autoSync);
}

void TSRInitForm(core::Context& ctx) {
    spine::tracePoint(ctx, QStringLiteral("Debug: TSRInitForm"));
    ctx.tools.setEnabled(kTools, QStringLiteral("TSRSave"), false);
    core::SetStatusBarMobile(ctx);
}

void ReadOrganizer(core::Context& ctx, List list) {
    core::guarded(ctx, kModul, QStringLiteral("ReadOrganizer"), [&] {
        const Pending pending = askPending(ctx);
        if (pending == Pending::Yes && !transferActive(ctx))
            return;
        roads::LiveRoads roads;
        ctx.ui->setBusyCursor(true);
        if (wantsCalendar(ctx, list)) {
            roads::vCalReadOutlook(ctx, *ctx.tables.RSCalendar, false);
            if (pending == Pending::No)
                roads::reReadMobile(ctx, *ctx.tables.RSCalendarPending, roads);
        }
        if (wantsContacts(ctx, list)) {
            roads::vCardReadOutlook(ctx, *ctx.tables.RSContacts, false);
            if (pending == Pending::No)
                roads::reReadMobile(ctx, *ctx.tables.RSContactsPending, roads);
        }
        ctx.ui->setBusyCursor(false);
        ctx.ui->refreshGrid(contactsActive(ctx) ? 1 : 0);
    });
}

void ReadMobile(core::Context& ctx, List list) {
    core::guarded(ctx, kModul, QStringLiteral("ReadMobile"), [&] {
        const Pending pending = askPending(ctx);
        if (pending == Pending::Yes && !transferActive(ctx))
            return;
        roads::LiveRoads roads;
        if (wantsCalendar(ctx, list)) {
            roads::vCalReadMobile(ctx);
            if (pending == Pending::No)
                roads::reReadPIM(ctx, *ctx.tables.RSCalendarPending, roads);
        }
        if (wantsContacts(ctx, list)) {
            roads::vCardReadMobile(ctx);
            if (pending == Pending::No)
                roads::reReadPIM(ctx, *ctx.tables.RSContactsPending, roads);
        }
    });
}

void ClearGrid(core::Context& ctx, List list) {
    core::guarded(ctx, kModul, QStringLiteral("ClearGrid"), [&] {
        if (askPending(ctx) == Pending::Yes && !transferActive(ctx))
            return;
        if (wantsCalendar(ctx, list)) {
            tables::ClearRecordSet(*ctx.tables.RSCalendarPending);
            sync::vCalReset(ctx, ctx.tables.RSCalendar);
            ctx.read.vCalPIMCount = 0;
        }
        if (wantsContacts(ctx, list)) {
            tables::ClearRecordSet(*ctx.tables.RSContactsPending);
            sync::vCardReset(ctx, ctx.tables.RSContacts);
            ctx.read.vCardPIMCount = 0;
        }
        core::SetStatusBarMobile(ctx);
    });
}

void ClearMobile(core::Context& ctx, List list) {
    core::guarded(ctx, kModul, QStringLiteral("ClearMobile"), [&] {
        if (!ctx.flags.GlobalMobileOnline)
            return;
        const bool calendar = wantsCalendar(ctx, list) && ctx.read.vCalMobileCount >= 1;
        const bool contacts = wantsContacts(ctx, list) && ctx.read.vCardMobileCount >= 1;
        if (!calendar && !contacts)
            return; // an empty phone: nothing to do, nothing shown
        ctx.ui->setBusyCursor(true);
        if (phone::InitComm(ctx)) {
            if (contacts)
                roads::vCardClearMobile(ctx);
            if (calendar)
                roads::vCalClearMobile(ctx);
            phone::DeinitComm(ctx);
        }
        ctx.ui->setBusyCursor(false);
    });
}

void Transfer(core::Context& ctx, List list) {
    core::guarded(ctx, kModul, QStringLiteral("Transfer"), [&] {
        if (wantsCalendar(ctx, list))
            roads::TransfervCal(ctx, *ctx.tables.RSCalendarPending);
        if (wantsContacts(ctx, list))
            roads::TransfervCard(ctx, *ctx.tables.RSContactsPending);
        if (!ctx.flags.GlobalSilent && ctx.log.LogHasError)
            ctx.ui->showLogSummary();
    });
}

void TestMobile_Click(core::Context& ctx) {
    core::guarded(ctx, kModul, QStringLiteral("TestMobile_Click"), [&] {
        ctx.ui->setBusyCursor(true);
        ctx.status.Start(ctx.title(), false);
        ctx.status.SetText(ctx.strings.text(471));
        const bool there = ctx.flags.GDX_Check && phone::GDXInfoAll(ctx, ctx.servers.GDXServer, ctx.phone.CalPath);
        ctx.ui->setBusyCursor(false);
        if (there) {
            // The dialog stays open with the phone's name and "Mobile OK".
            ctx.status.SetText(ctx.phone.MobileManufacturer + u' ' + ctx.phone.MobileModel + u'\r' +
                               ctx.strings.text(816));
        } else {
            ctx.status.Quit();
            ctx.flags.GlobalMobileOnline = false;
        }
        core::SetStatusBarMobile(ctx);
    });
}

bool Form_QueryUnload(core::Context& ctx, bool fromControlMenu) {
    return core::guarded(ctx, kModul, QStringLiteral("Form_QueryUnload"), true, [&] {
        auto& f = ctx.flags;
        f.GlobalClosing = true;
        if (f.SecondInstance)
            return false;
        if (f.GlobalBusy) {
            if (!f.GlobalStartDone)
                return true;
            if (!fromControlMenu)
                return true;
            const QString question = spine::closingWhileBusyText(ctx);
            if (ctx.ui->msgBox(question, MsgButtons::YesNo, MsgIcon::Exclamation, ctx.title()) == MsgResult::Yes) {
                // The command in flight sees GlobalClosing and ends; then the window goes.
                f.GlobalClosing = true;
                return true;
            }
            f.GlobalClosing = false;
            return true;
        }
        if (!f.GlobalStartDone) {
            f.GlobalClosing = false;
            return true;
        }
        if (ctx.tables.RSCalendarPending->recordCount() > 0 || ctx.tables.RSContactsPending->recordCount() > 0) {
            switch (ctx.ui->msgBox(ctx.strings.text(708), MsgButtons::YesNoCancel, MsgIcon::Exclamation, ctx.title())) {
            case MsgResult::Cancel:
                f.GlobalClosing = false;
                return true;
            case MsgResult::Yes:
                roads::TransfervCal(ctx, *ctx.tables.RSCalendarPending);
                roads::TransfervCard(ctx, *ctx.tables.RSContactsPending);
                contactsActive(ctx) ? roads::vCardReadMobile(ctx) : roads::vCalReadMobile(ctx);
                break;
            default:
                break;
            }
        }
        log::logWriteFile(ctx);
        return false;
    });
}

void Form_Unload(core::Context& ctx) {
    core::guarded(ctx, kModul, QStringLiteral("Form_Unload"), [&] {
        spine::tracePoint(ctx, QStringLiteral("Debug: Main_Unload"));
        if (ctx.flags.SecondInstance)
            return;
        if (!ctx.flags.GlobalCommandKill && !ctx.flags.GlobalSilent)
            spine::RegValSet(ctx, false);
        spine::tracePoint(ctx, QStringLiteral("Debug: Main_Unload Close #DebugFile"));
        spine::closeDebugFile(ctx);
    });
}

} // namespace tsr::main
