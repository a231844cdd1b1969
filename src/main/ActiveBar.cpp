// SPDX-License-Identifier: GPL-3.0-or-later
#include "main/ActiveBar.h"

#include "core/Context.h"
#include "core/StatusBar.h"
#include "spine/SprachenStrings.h"

namespace tsr::main {

namespace {

ToolDef t(const char* tool, int caption, int description, const char* icon, const char* shortcut = "") {
    return {QString::fromLatin1(tool), caption, description, QString::fromLatin1(icon), QString::fromLatin1(shortcut)};
}
ToolDef separator() {
    return {};
}

} // namespace

const std::vector<ToolDef>& mainMenuTools() {
    static const std::vector<ToolDef> tools{t("TSROrganizer", 848, 0, ""), t("mnuEntry", 849, 0, ""),
                                            t("TSRExtra", 817, 0, ""), t("mnuHelp", 464, 0, "")};
    return tools;
}

QString menuBandOf(const QString& mainMenuTool) {
    if (mainMenuTool == u"TSROrganizer")
        return QStringLiteral("TSROrganizerMenu");
    if (mainMenuTool == u"mnuEntry")
        return QStringLiteral("TSREntryMenu");
    if (mainMenuTool == u"TSRExtra")
        return QStringLiteral("TSRExtraMenu");
    return QStringLiteral("mnuHelpMenu");
}

const std::vector<BandDef>& activeBarBands() {
    static const std::vector<BandDef> bands{
        {QStringLiteral("TSROrganizerMenu"),
         848,
         {t("TSRReadOrganizer", 850, 828, "x-office-calendar", "F5"), t("TSRReadMobile", 851, 827, "phone", "Ctrl+R"),
          separator(), t("TSRTransferBoth", 857, 839, "mail-send-receive", "Ctrl+T"),
          t("TSRTransferCal", 858, 839, "mail-send"), t("TSRTransferCard", 859, 839, "mail-send"),
          t("TSRSave", 852, 839, "document-save", "Ctrl+S"), separator(),
          t("TSRAutoSync", 853, 833, "view-refresh", "Ctrl+Shift+S"), separator(),
          t("TSREnd", 818, 818, "application-exit", "Ctrl+Q")}},
        {QStringLiteral("TSREntryMenu"),
         849,
         {t("TSRNewEntry", 861, 822, "document-new", "Ctrl+N"), t("TSROpenEntry", 819, 821, "document-open", "Ctrl+O"),
          t("TSRDeleteEntry", 862, 461, "edit-delete", "Del"), separator(),
          t("TSRFindEntry", 863, 846, "edit-find", "Ctrl+F"), t("TSRSearch", 845, 889, "go-next", "F3")}},
        {QStringLiteral("TSRExtraMenu"),
         817,
         {t("vCalView", 515, 515, "x-office-calendar", "Ctrl+1"),
          t("vCardView", 516, 516, "x-office-address-book", "Ctrl+2"), separator(),
          t("TSRSort", 869, 847, "view-sort-ascending"), t("TSRSwitchView", 870, 830, "view-grid"),
          t("TSRCalendar", 914, 820, "appointment-new"), separator(), t("TSRClearWindowCal", 871, 829, "edit-clear"),
          t("TSRClearWindowCard", 875, 829, "edit-clear"), t("TSRClearWindowBoth", 874, 829, "edit-clear"), separator(),
          t("TSRClearMobileCal", 860, 955, "edit-delete"), t("TSRClearMobileCard", 873, 955, "edit-delete"),
          t("TSRClearMobileBoth", 872, 955, "edit-delete"), separator(), t("TSRTestMobile", 866, 823, "network-wired"),
          t("TSRLog", 868, 832, "text-x-generic", "Ctrl+L"), t("TSRComSettings", 865, 557, "preferences-system")}},
        {QStringLiteral("mnuHelpMenu"),
         464,
         {t("TSRHelp", 454, 958, "help-contents", "F1"), t("TSRAbout", 455, 954, "help-about")}},
        {QStringLiteral("TSRTools"),
         0,
         {t("TSRReadOrganizer", 828, 828, "x-office-calendar"),
          t("TSRReadMobile", 827, 827, "phone"),
          t("TSRSave", 839, 839, "document-save"),
          t("TSRAutoSync", 886, 833, "view-refresh"),
          separator(),
          t("vCalView", 515, 515, "x-office-calendar"),
          t("vCardView", 840, 516, "x-office-address-book"),
          separator(),
          t("TSRNewEntry", 864, 822, "document-new"),
          t("TSROpenEntry", 821, 821, "document-open"),
          t("TSRDeleteEntry", 461, 461, "edit-delete"),
          t("TSRFindEntry", 846, 846, "edit-find"),
          t("TSRSort", 847, 847, "view-sort-ascending"),
          t("TSRSwitchView", 830, 830, "view-grid"),
          t("TSRCalendar", 914, 820, "appointment-new"),
          separator(),
          t("TSRClear", 829, 829, "edit-clear"),
          t("TSRClearMobileCal", 955, 955, "edit-delete"),
          t("TSRLog", 815, 832, "text-x-generic"),
          t("TSRComSettings", 865, 557, "preferences-system"),
          t("TSRHelp", 958, 958, "help-contents")}},
    };
    return bands;
}

SwitchViewLook switchViewLook(bool cardsShowing) {
    // The tool offers the other layout: cards while the table shows, and back.
    return cardsShowing ? SwitchViewLook{831, QStringLiteral("view-list-details")}
                        : SwitchViewLook{830, QStringLiteral("view-grid")};
}

void StringZuweisung(core::Context& ctx) {
    const auto& s = ctx.strings;
    for (const ToolDef& d : mainMenuTools())
        ctx.tools.tool(QStringLiteral("MainMenu"), d.tool).caption = s.text(d.caption);
    for (const BandDef& band : activeBarBands()) {
        for (const ToolDef& d : band.tools) {
            if (d.tool.isEmpty())
                continue;
            core::ToolState& state = ctx.tools.tool(band.band, d.tool);
            state.caption = s.text(d.caption);
            state.description = s.text(d.description ? d.description : d.caption);
        }
    }
}

void InitActiveBar(core::Context& ctx) {
    ctx.tools.setBandVisible(QStringLiteral("Shortcuts"), false);
    ctx.tools.setBandVisible(QStringLiteral("TSRTools"), true);
    StringZuweisung(ctx);
}

void SetLanguage(core::Context& ctx) {
    spine::loadLanguageTable(ctx);
    InitActiveBar(ctx);
    core::SetStatusBarMobile(ctx, false);
    core::SetStatusBarMobile(ctx, true);
    core::SetStatusBarMobile(ctx);
    ctx.ui->refreshGrid(0);
    ctx.ui->refreshGrid(1);
}

} // namespace tsr::main
