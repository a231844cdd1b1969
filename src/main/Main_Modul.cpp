// SPDX-License-Identifier: GPL-3.0-or-later
#include "main/Main_Modul.h"

#include "core/Context.h"
#include "core/ErrorReport.h"
#include "core/StatusBar.h"
#include "log/LogFile.h"
#include "log/LogText.h"
#include "main/ActiveBar.h"
#include "main/MainCommands.h"
#include "phone/ATC.h"
#include "phone/ComDrvCode.h"
#include "phone/GDX.h"
#include "pim/DOROutlookSession.h"
#include "roads/AutoSyncRun.h"
#include "roads/Mobile.h"
#include "spine/CommandLine.h"
#include "spine/DateTimeFormats.h"
#include "spine/DebugTrace.h"
#include "spine/Instance.h"
#include "spine/RegistrySettings.h"
#include "spine/SprachenStrings.h"
#include "sync/Verwaltung.h"
#include "tables/TSRADODB.h"

#include <QTimer>

namespace tsr::main {

namespace {

const QString kModul = QStringLiteral("Main_Modul");

// The silent run's first words in the status dialog.
void silentStatus(core::Context& ctx) {
    ctx.status.Start(ctx.title(), false);
    const QString wait = ctx.strings.text(556); // "Please wait."
    if (ctx.flags.GlobalCommandOptions)
        ctx.status.SetText(ctx.strings.text(887) + u'\n' + wait); // "AutoSync Options"
    else
        ctx.status.SetText(ctx.strings.text(555) + ctx.strings.text(549) + u'\n' + wait);
}

// A silent run goes on only while the user has not cancelled the status dialog.
bool stillWanted(core::Context& ctx) {
    return !ctx.flags.GlobalSilent || ctx.status.GetState();
}

} // namespace

StartUp::StartUp() = default;
StartUp::~StartUp() = default;

void setPhonePaths(core::Context& ctx) {
    core::PhoneState& p = ctx.phone;
    p.TelecomPath = QStringLiteral("\\telecom\\");
    p.DevInfoFile = QStringLiteral("devinfo.txt");
    p.CalPath = p.TelecomPath + QStringLiteral("cal\\");
    p.CalInfoFile = QStringLiteral("info.log");
    p.PbPath = p.TelecomPath + QStringLiteral("pb\\");
    p.PbInfoFile = QStringLiteral("info.log");
    p.FileNameLog = QStringLiteral("FileName.log");
    ctx.pim.TempCalID = 51;
}

bool TSRInitialize(core::Context& ctx, StartUp& start, const QString& commandLine, const QString& programFolder) {
    return core::guarded(ctx, kModul, QStringLiteral("TSRInitialize"), false, [&] {
        ctx.entryFormats.vCard.vCardVersion = QStringLiteral("1.0");
        ctx.read.MobFileLines.clear();
        spine::RegDateTimeFormatGet(ctx);
        spine::RegValCreate(ctx);
        spine::RegValGet(ctx);
        ctx.flags.GlobalLogReady = false;
        spine::TSRCommandLine(ctx, commandLine, programFolder);
        spine::setStartLanguage(ctx);

        const QString name = spine::instanceSocketName(ctx.title());
        if (!spine::Check4PrevInstance(ctx, name))
            return false;
        start.instance = std::make_unique<spine::InstanceServer>(ctx, name);
        start.instance->listen();

        if (ctx.flags.GlobalSilent)
            silentStatus(ctx);
        else {
            ctx.ui->showSplash();
            spine::tracePoint(ctx, QStringLiteral("Debug: frmSplash-Aufruf"));
        }
        if (!tables::CreateInitAndSetAllRS(ctx))
            return false;
        if (!stillWanted(ctx))
            return false;
        if (!phone::ATCTest(ctx))
            return false;
        if (!stillWanted(ctx))
            return false;
        if (!pim::Check4Outlook(ctx))
            return false;
        spine::tracePoint(ctx, QStringLiteral("Debug: Check4Outlook"));
        if (!stillWanted(ctx))
            return false;
        if (!ctx.flags.GlobalSilent) {
            spine::tracePoint(ctx, QStringLiteral("Debug: AppTimer.Interval"),
                              QStringLiteral("Debug:  AppTimer.Interval"));
            spine::tracePoint(ctx, QStringLiteral("Debug: AppTimer.Enabled"),
                              QStringLiteral("Debug:  AppTimer.Enabled"));
        }
        spine::tracePoint(ctx, QStringLiteral("Debug: RegDateCall finnished"),
                          QStringLiteral("Debug: SetGridCaptions"));
        ctx.flags.GlobalStartDate = ctx.clock.Date();
        if (ctx.flags.GlobalEndDate.value == 0)
            ctx.flags.GlobalEndDate = core::VbDate(
                core::DateAdd(QStringLiteral("d"), ctx.settings.DateRange, ctx.flags.GlobalStartDate).value +
                86399.0 / 86400.0);
        if (!stillWanted(ctx))
            return false;
        setPhonePaths(ctx);
        return true;
    });
}

bool Main(core::Context& ctx, StartUp& start, const QString& commandLine, const QString& programFolder) {
    auto& f = ctx.flags;
    f.GlobalStartDone = false;
    f.GlobalBusy = false;
    f.GlobalEditorOpen = false;
    f.GDX_Check = true;
    f.GlobalUnicodeAPI = true;
    bool dialogGoesOn = false;
    const bool ok = core::guarded(ctx, kModul, QStringLiteral("Main"), false, [&] {
        if (!TSRInitialize(ctx, start, commandLine, programFolder)) {
            if (f.GlobalLogReady)
                log::logWriteFile(ctx);
            ctx.ui->unloadMainForm();
            return true;
        }
        if (f.GlobalSilent) {
            f.GlobalStartDone = true;
            if (phone::GDXInfoAll(ctx, ctx.servers.GDXServer, ctx.phone.CalPath)) {
                TSRRunSilent(ctx);
            } else {
                ctx.status.Quit();
                log::LogInitlogSummaryText(ctx);
                ctx.ui->showLogSummary();
            }
            ctx.ui->unloadMainForm();
            return true;
        }
        dialogGoesOn = TSRRunDialog(ctx);
        return true;
    });
    if (!ok)
        ctx.ui->unloadMainForm();
    return dialogGoesOn;
}

bool TSRRunSilent(core::Context& ctx) {
    return core::guarded(ctx, kModul, QStringLiteral("TSRRunSilent"), false, [&] {
        const auto& f = ctx.flags;
        if (!pim::TestOLCalFolder(ctx) && (f.GlobalCommandBoth || f.GlobalCommandVCal))
            return false;
        std::shared_ptr<pim::Folder> folder;
        QString failure;
        try {
            if (ctx.servers.MOL)
                folder = ctx.servers.MOL->GetNamespace(QStringLiteral("MAPI"))
                             ->GetFolderFromID(ctx.settings.FolderEntryID, ctx.settings.FolderStoreID);
        } catch (const core::TsrError& e) {
            failure = e.description();
        }
        if (!failure.isEmpty() || (!folder && !f.GlobalCommandOptions && !f.GlobalCommandVCal))
            core::raise(core::err::PimFolder, QStringLiteral("Main_Module:TSRRunSilent"), failure);
        if (f.GlobalCommandOptions)
            SilentOptionForm(ctx);
        else if (f.GlobalCommandBoth || f.GlobalCommandVCal || f.GlobalCommandVCard)
            SilentAutoSync(ctx);
        return true;
    });
}

void SilentOptionForm(core::Context& ctx) {
    ctx.ui->showForm(core::UserInterface::Form::Options);
}

void SilentAutoSync(core::Context& ctx) {
    core::guarded(ctx, kModul, QStringLiteral("SilentAutoSync"), [&] {
        // Changes go over at once in a silent run; the setting is not saved.
        ctx.settings.SaveTyp = 1;
        ctx.ui->setBusyCursor(true);
        silentStatus(ctx);
        ctx.status.SetText(ctx.strings.text(885));
        const auto& f = ctx.flags;
        if (f.GlobalCommandBoth)
            roads::SilendAutoSyncBoth(ctx);
        else if (f.GlobalCommandVCal)
            roads::SilentAutoSyncvCal(ctx);
        else if (f.GlobalCommandVCard)
            roads::SilentAutoSyncvCard(ctx);
    });
    log::LogInitlogSummaryText(ctx);
    ctx.ui->setBusyCursor(false);
    ctx.status.Quit();
    ctx.ui->showLogSummary();
}

bool TSRRunDialog(core::Context& ctx) {
    core::guarded(ctx, kModul, QStringLiteral("TSRRunDialog"), [&] {
        spine::tracePoint(ctx, QStringLiteral("Debug: Main_Form.SetMenus_Click"));
        main::SetMenus_Click(ctx);
        spine::tracePoint(ctx, QStringLiteral("Debug: Main_Form.SetMenus_Click finnished"));
        ctx.tools.setVisible(QStringLiteral("TSRExtraMenu"), QStringLiteral("TSRComSettings"), true);
        main::TSRInitForm(ctx);
        main::setStartTools(ctx);
        main::SetLanguage(ctx);
    });
    // The deferred start: 1500 ms after the window stands.
    QTimer::singleShot(1500, [&ctx] { AppTimer_Timer(ctx); });
    return true;
}

void AppTimer_Timer(core::Context& ctx) {
    core::guarded(ctx, kModul, QStringLiteral("AppTimer_Timer"), [&] {
        main::OnOffActiveBarButton(ctx);
        for (const char* band : {"TSROrganizerMenu", "TSRTools"})
            ctx.tools.setEnabled(QString::fromLatin1(band), QStringLiteral("TSRReadMobile"), false);
        core::SetStatusBarMobile(ctx);
        ctx.settings.ActiveAPP = 0;
        ctx.ui->showMainWindow();
        ctx.ui->setBusyCursor(true);
        ctx.status.Start(ctx.title(), false);
        ctx.status.SetText(ctx.strings.text(471)); // "Please wait reading mobile status!"
        const bool phoneThere = ctx.flags.GDX_Check && phone::GDXInfoAll(ctx, ctx.servers.GDXServer, ctx.phone.CalPath);
        if (phoneThere) {
            if (ctx.settings.ReadOnStart == 1)
                roads::vCalReadMobile(ctx);
            if (ctx.flags.GDX_Check && ctx.settings.ReadOnStartvCard == 1)
                roads::vCardReadMobile(ctx);
        }
        ctx.flags.GlobalMobileOnline = phoneThere;
        main::OnOffActiveBar(ctx);
        sync::MobileEntriesPruefung(ctx);
        ctx.ui->setBusyCursor(false);
        ctx.status.Quit();
        core::SetStatusBarMobile(ctx);
        for (const char* band : {"TSROrganizerMenu", "TSRTools"})
            ctx.tools.setEnabled(QString::fromLatin1(band), QStringLiteral("TSRReadMobile"), true);
    });
    ctx.flags.GlobalStartDone = true;
}

} // namespace tsr::main
