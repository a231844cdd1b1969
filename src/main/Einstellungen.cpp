// SPDX-License-Identifier: GPL-3.0-or-later
#include "main/Einstellungen.h"

#include "core/Context.h"
#include "core/ErrorReport.h"
#include "core/Numbers.h"
#include "main/MainCommands.h"
#include "phone/ComDrvCode.h"
#include "pim/DOROutlookSession.h"
#include "roads/Transfer.h"
#include "spine/RegistrySettings.h"
#include "spine/RegistryStore.h"
#include "spine/SprachenStrings.h"

namespace tsr::main {

namespace {

const QString kModul = QStringLiteral("Einstellungen");

// Type masks: memos, meetings, birthdays, calls; 16 carries no type; 32 all.
constexpr int16_t kTypeBits = 1 | 2 | 4 | 8 | 32;

void clearTable(tables::Recordset* table) {
    if (!table)
        return;
    for (table->moveFirst(); !table->eof(); table->moveFirst())
        table->deleteCurrent();
}

int rows(const tables::Recordset* table) {
    return table ? table->recordCount() : 0;
}

// The ports the system lists; with none listed, the first 32 serial ports probed.
void fillPorts(core::Context& ctx, OptionValues& v) {
    phone::SerialPortEnumerator enumerator;
    phone::SerialCommProbe probe;
    const bool listed = !enumerator.ports().isEmpty();
    int selected = phone::LoadPortList(ctx, listed ? &enumerator : nullptr, probe, v.ports);
    // A device the user named by its path (a Bluetooth port not bound just now, a
    // pseudo-terminal) is kept in the list, so that OK does not silently replace it.
    if (ctx.settings.PORT.startsWith(u'/') && !v.ports.contains(ctx.settings.PORT)) {
        v.ports << ctx.settings.PORT;
        selected = int(v.ports.size()) - 1;
    }
    v.PORT = selected >= 0 ? v.ports.at(selected) : QString();
}

} // namespace

const std::array<LanguageOption, 15> LanguageOptions = {{
    {"d_nisch_option", "0406", 644, 669},
    {"deutsch_option", "0407", 615, 670},
    {"englisch_option", "0809", 616, 671},
    {"finnisch_option", "040B", 617, 672},
    {"franzoesisch_option", "040C", 645, 673},
    {"italienisch_option", "0410", 618, 674},
    {"katalanisch_option", "0403", 619, 675},
    {"niederl_ndisch_option", "0413", 646, 676},
    {"norwegisch_option", "0814", 620, 677},
    {"portugiesisch_option", "0816", 621, 678},
    {"schwedisch_option", "041D", 622, 679},
    {"spanisch_option", "0C0A", 623, 680},
    {"tuerkisch_option", "041F", 647, 681},
    {"chinsimp_option", "0804", 944, 0},
    {"chintra_option", "0404", 945, 0},
}};

int languageIndex(const QString& code) {
    for (size_t i = 0; i < LanguageOptions.size(); ++i)
        if (code.compare(QLatin1String(LanguageOptions[i].code), Qt::CaseInsensitive) == 0)
            return int(i);
    return -1;
}

const QStringList& fontSizeEntries() {
    static const QStringList sizes{QStringLiteral("8"),  QStringLiteral("9"),  QStringLiteral("10"),
                                   QStringLiteral("11"), QStringLiteral("12"), QStringLiteral("14")};
    return sizes;
}

OptionValues loadOptionValues(core::Context& ctx) {
    const core::Settings& s = ctx.settings;
    OptionValues v;
    fillPorts(ctx, v);
    v.Sync = s.Sync;
    v.SyncTyp = s.SyncTyp;
    v.SyncTermine = int16_t(s.SyncTermine & kTypeBits);
    v.SyncZeitraum = s.SyncZeitraum;
    v.SyncAlarmAnzahl = QString::number(s.SyncAlarmAnzahl);
    v.SyncnaechstenAnzahl = QString::number(s.SyncnaechstenAnzahl);
    v.SyncEintraegeab = s.SyncEintraegeab.value == 0 ? ctx.clock.Date() : s.SyncEintraegeab;
    v.SyncTageWochenMonate = s.SyncTageWochenMonate;
    std::tie(v.von_date, v.bis_date) = vonBisDates(ctx, s.SyncEintraegevonbis);
    v.SaveTyp = s.SaveTyp;
    v.freeMobileEntries = QString::number(s.freeMobileEntries);
    const pim::ContactFolderList folders = pim::BuildOutlookContactFolderList(ctx);
    v.folders = folders.entries;
    v.folderIndex = folders.selected;
    v.ReadOnStart = s.ReadOnStart;
    v.ReadOnStartvCard = s.ReadOnStartvCard;
    v.Autodel = s.Autodel;
    v.DelDate = s.DelDate.value == 0 ? ctx.clock.Date() : s.DelDate;
    v.DelOption = s.DelOption;
    v.DelTermine = int16_t(s.DelTermine & kTypeBits);
    v.DelAnzahl = QString::number(s.DelAnzahl);
    v.DelSerie = s.DelSerie;
    v.FormFont = s.FormFont.isEmpty() ? DefaultFontEntry : s.FormFont;
    v.FormFontSize = s.FormFontSize;
    v.FormFontIndex = s.FormFontIndex;
    v.FormFontSizeIndex = s.FormFontSizeIndex;
    v.Sprache = s.Sprache;
    v.GDX_Check = ctx.flags.GDX_Check;
    v.GlobalTimeOut = QString::number(ctx.flags.GlobalTimeOut);
    v.IrDADelay = QString::number(ctx.flags.IrDADelay);
    v.FileTransfer = s.FileTransfer;

    // The autodelete pass reads the option boxes; a silent run leaves them as they are.
    core::LoadPropertySettings(ctx);
    if (ctx.flags.GlobalSilent) {
        const core::OptionsModel& o = ctx.optionBoxes;
        v.DelOption = o.loeschen_vor_option ? 1 : o.loeschen_letzten_option ? 2 : o.vergangene_option ? 3 : 0;
        v.DelTermine = int16_t((o.delete_notiz_option ? 1 : 0) | (o.delete_treffen_option ? 2 : 0) |
                               (o.delete_geburtstage_option ? 4 : 0) | (o.delete_nummer_option ? 8 : 0) |
                               (o.delete_all_option ? 32 : 0));
        v.DelSerie = o.delete_serie_check ? 1 : 0;
    }
    return v;
}

bool cmdOkCheck(const OptionValues& v) {
    const bool deleteTypes = (v.DelTermine & kTypeBits) != 0;
    const bool syncTypes = (v.SyncTermine & kTypeBits) != 0;
    if (v.Autodel && !deleteTypes)
        return false;
    if (v.Sync && !syncTypes)
        return false;
    return true;
}

int16_t numericField(const QString& text, int max) {
    const double number = core::Val(text.trimmed());
    if (number < 0)
        return 0;
    if (max > 0 && number > max)
        return int16_t(max);
    return number > 32767 ? int16_t(32767) : core::CInt(number);
}

int phoneEntryLimit(const core::Context& ctx) {
    return ctx.phone.MaxEntries > 0 ? ctx.phone.MaxEntries : 0;
}

QString vonBisText(const core::Context& ctx, core::VbDate von, core::VbDate bis) {
    return core::Format(core::DateValue(von), ctx.formats.DateFormat) + u'\t' +
           core::Format(core::DateValue(bis), ctx.formats.DateFormat) + QStringLiteral(" 23:59:59");
}

std::pair<core::VbDate, core::VbDate> vonBisDates(const core::Context& ctx, const QString& text) {
    const core::VbDate today = ctx.clock.Date();
    std::pair<core::VbDate, core::VbDate> dates{today, core::VbDate(today.value + 7)};
    const QStringList parts = text.split(u'\t');
    const QString& dateMask = ctx.formats.DateFormat;
    const QString& timeMask = ctx.formats.TimeFormat;
    if (!parts.isEmpty())
        if (const auto von = core::parseDate(parts[0].trimmed(), dateMask, timeMask))
            dates.first = core::DateValue(*von);
    if (parts.size() > 1)
        if (const auto bis = core::parseDate(parts[1].trimmed(), dateMask, timeMask))
            dates.second = core::DateValue(*bis);
    return dates;
}

OkOutcome cmdOK_Click(core::Context& ctx, const OptionValues& v) {
    OkOutcome outcome;
    core::Settings& s = ctx.settings;
    core::guarded(ctx, kModul, QStringLiteral("cmdOK_Click"), [&] {
        // A new port needs a new file-transfer server, made at its next use.
        if (!v.PORT.isEmpty() && v.PORT != s.PORT) {
            s.PORT = v.PORT;
            ctx.servers.GDXServer.reset();
        }
        s.SyncTyp = v.SyncTyp;
        s.SyncTermine = int16_t(v.SyncTermine & kTypeBits);
        s.SyncZeitraum = v.SyncZeitraum;
        const int limit = phoneEntryLimit(ctx);
        s.SyncAlarmAnzahl = numericField(v.SyncAlarmAnzahl, limit);
        s.SyncnaechstenAnzahl =
            core::IsNumeric(v.SyncnaechstenAnzahl) ? numericField(v.SyncnaechstenAnzahl, 0) : int16_t(1);
        s.SyncEintraegeab = core::DateValue(v.SyncEintraegeab);
        s.SyncTageWochenMonate = v.SyncTageWochenMonate;
        s.SyncEintraegevonbis = vonBisText(ctx, v.von_date, v.bis_date);

        if (s.SaveTyp == 2 && v.SaveTyp == 1 &&
            rows(ctx.tables.RSCalendarPending.get()) + rows(ctx.tables.RSContactsPending.get()) > 0) {
            const auto answer =
                ctx.ui->msgBox(ctx.strings.text(708), core::MsgButtons::YesNo, core::MsgIcon::Exclamation, ctx.title());
            if (answer == core::MsgResult::Yes) {
                roads::TransfertoMobile(ctx, *ctx.tables.RSContactsPending, *ctx.tables.RSCalendarPending);
            } else {
                clearTable(ctx.tables.RSCalendarPending.get());
                clearTable(ctx.tables.RSContactsPending.get());
            }
            ctx.tools.setEnabled(QStringLiteral("TSRTools"), QStringLiteral("TSRSave"), false);
        }
        s.SaveTyp = v.SaveTyp;
        setStartTools(ctx);

        s.freeMobileEntries = numericField(v.freeMobileEntries, limit);
        core::SetStatusBarMobile(ctx);

        const auto& folders = ctx.pim.GlobalContactFolderArray;
        const pim::ContactFolderList before = pim::BuildOutlookContactFolderList(ctx);
        if (v.folderIndex >= 0 && v.folderIndex < folders.size() && v.folderIndex != before.selected) {
            const core::ContactFolderRecord& record = folders.at(v.folderIndex);
            s.FolderParent = record.Parent;
            s.FolderName = record.Name;
            s.FolderEntryID = record.EntryID;
            s.FolderStoreID = record.StoreID;
            // The folder itself has the last word on its names and ids.
            if (ctx.servers.MOL) {
                const auto folder = ctx.servers.MOL->GetNamespace(QStringLiteral("MAPI"))
                                        ->GetFolderFromID(record.EntryID, record.StoreID);
                if (folder) {
                    ctx.pim.GlobalContactFolder = folder;
                    s.FolderName = folder->Name();
                    s.FolderEntryID = folder->EntryID();
                    s.FolderStoreID = folder->StoreID();
                    if (const auto parent = folder->Parent())
                        s.FolderParent = parent->Name();
                }
            }
        }

        s.ReadOnStart = v.ReadOnStart;
        s.ReadOnStartvCard = v.ReadOnStartvCard;
        s.Autodel = v.Autodel;
        s.Sync = v.Sync;

        if (languageIndex(v.Sprache) >= 0 && v.Sprache.compare(s.Sprache, Qt::CaseInsensitive) != 0) {
            s.Sprache = v.Sprache.toUpper();
            spine::installLanguageFiles(ctx);
            ctx.flags.LanguageLibrary = spine::languageFilePath(ctx, s.Sprache);
            spine::loadLanguageTable(ctx);
            outcome.languageChanged = true;
        }

        s.DelDate = core::DateValue(v.DelDate);
        s.DelOption = v.DelOption;
        s.DelTermine = int16_t(v.DelTermine & kTypeBits);
        s.DelAnzahl = numericField(v.DelAnzahl, limit);
        s.DelSerie = v.DelSerie;
        // The boxes the autodelete pass reads now stand as the user left them.
        core::OptionsModel& o = ctx.optionBoxes;
        o.loeschen_vor_option = v.DelOption == 1;
        o.loeschen_letzten_option = v.DelOption == 2;
        o.vergangene_option = v.DelOption == 3;
        o.delete_notiz_option = v.DelTermine & 1;
        o.delete_treffen_option = v.DelTermine & 2;
        o.delete_geburtstage_option = v.DelTermine & 4;
        o.delete_nummer_option = v.DelTermine & 8;
        o.delete_all_option = v.DelTermine & 32;
        o.delete_serie_check = v.DelSerie != 0;
        s.FormFont = v.FormFont == DefaultFontEntry ? QString() : v.FormFont;
        s.FormFontSize = v.FormFontSize > 0 ? v.FormFontSize : s.FormFontSize;
        s.FormFontIndex = v.FormFontIndex;
        s.FormFontSizeIndex = v.FormFontSizeIndex;
        outcome.fontChanged = v.fontTouched;
        ctx.flags.GDX_Check = v.GDX_Check;
        ctx.flags.GlobalTimeOut = numericField(v.GlobalTimeOut, 0);
        ctx.flags.IrDADelay = numericField(v.IrDADelay, 0);

        outcome.saved = spine::RegValSet(ctx, false);
        s.FileTransfer = v.FileTransfer ? 1 : 0;
        spine::RegKeyEnsure(ctx, spine::HKEY_LOCAL_MACHINE, spine::KeyLinux, QString());
        spine::RegValuePut(ctx, spine::HKEY_LOCAL_MACHINE, spine::KeyLinux, QStringLiteral("FileTransfer"),
                           core::Value(int32_t(s.FileTransfer)));
    });
    return outcome;
}

} // namespace tsr::main
