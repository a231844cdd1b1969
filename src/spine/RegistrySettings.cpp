// SPDX-License-Identifier: GPL-3.0-or-later
#include "spine/RegistrySettings.h"

#include "core/Numbers.h"
#include "spine/DateRange.h"
#include "spine/RegistryStore.h"

#include <QStandardPaths>

namespace tsr::spine {

using core::Value;
using core::VbDate;

namespace {

// The names RegValCreate passes as the class of the Settings key, one call each.
const QStringList CreateOrder = {QStringLiteral("ReadOnStart"),
                                 QStringLiteral("ReadOnStartvCard"),
                                 QStringLiteral("Autodel"),
                                 QStringLiteral("Sync"),
                                 QStringLiteral("Sprache"),
                                 QStringLiteral("DelDate"),
                                 QStringLiteral("DelOption"),
                                 QStringLiteral("DelTermine"),
                                 QStringLiteral("DelAnzahl"),
                                 QStringLiteral("DelSerie"),
                                 QStringLiteral("SyncTyp"),
                                 QStringLiteral("SyncTermine"),
                                 QStringLiteral("SyncZeitraum"),
                                 QStringLiteral("SyncAlarmAnzahl"),
                                 QStringLiteral("SyncnaechstenAnzahl"),
                                 QStringLiteral("SyncEintraegeab"),
                                 QStringLiteral("SyncTageWochenMonate"),
                                 QStringLiteral("SyncEintraegevonbis"),
                                 QStringLiteral("SaveTyp"),
                                 QStringLiteral("FormFont"),
                                 QStringLiteral("FormFontSize"),
                                 QStringLiteral("FormFontIndex"),
                                 QStringLiteral("FormFontSizeIndex"),
                                 QStringLiteral("FolderParent"),
                                 QStringLiteral("FolderName"),
                                 QStringLiteral("FolderEntryID"),
                                 QStringLiteral("FolderStoreID"),
                                 QStringLiteral("freeMobileEntries"),
                                 QStringLiteral("DateRange"),
                                 QStringLiteral("ActiveAPP"),
                                 QStringLiteral("WindowState"),
                                 QStringLiteral("Width"),
                                 QStringLiteral("Top"),
                                 QStringLiteral("Left")};

// Reads one value of the Settings key; nothing when it is absent.
std::optional<Value> setting(const core::Context& ctx, const QString& name) {
    Value v;
    if (RegValueGet(ctx, HKEY_LOCAL_MACHINE, KeySettings, name, v))
        return v;
    return std::nullopt;
}

// A 16-bit setting; one that is absent or does not fit 16 bits (a hand-edited
// file, a window wider than 32767) keeps its missing value, so one bad value
// never costs the settings read after it.
int16_t readInt16(const core::Context& ctx, const QString& name, int16_t missing) {
    const auto v = setting(ctx, name);
    if (!v)
        return missing;
    try {
        return core::CInt(core::Val(v->toText()));
    } catch (const core::TsrError&) {
        return missing;
    }
}

QString readText(const core::Context& ctx, int32_t root, const QString& key, const QString& name,
                 const QString& missing) {
    Value v;
    return RegValueGet(ctx, root, key, name, v) ? v.toText() : missing;
}

// A date setting: a number is a day number; other text is read as a date; a zero
// date, or none, is today.
VbDate readDate(const core::Context& ctx, const QString& name) {
    const VbDate today = ctx.clock.Date();
    const auto v = setting(ctx, name);
    if (!v)
        return today;
    VbDate d;
    const QString text = v->toText().trimmed();
    if (core::IsNumeric(text))
        d = VbDate(core::Val(text));
    else if (auto parsed = core::parseDate(text, ctx.formats.DateFormat, ctx.formats.TimeFormat))
        d = *parsed;
    return d.value == 0 ? today : d;
}

QString rangeDefault(const core::Context& ctx) {
    const VbDate today = ctx.clock.Date();
    return core::Format(today, ctx.formats.DateFormat) + u'\t' +
           core::Format(VbDate(today.value + 7), ctx.formats.DateFormat) + QStringLiteral(" 23:59:59");
}

} // namespace

QString defaultHomeDir() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + QStringLiteral("/Tessarine");
}

void showSettingsError(core::Context& ctx, const core::TsrError& error, const QString& proc, const QString& name) {
    const core::ResStrings& s = ctx.strings;
    QString text = s.text(482) + QString::number(error.number()) + QStringLiteral("\r\n") + s.text(480) +
                   error.description() + QStringLiteral("\r\n") + s.text(483) + error.source() + u':' + proc;
    if (!name.isEmpty())
        text += QStringLiteral("\r\n") + name;
    ctx.ui->msgBox(text, core::MsgButtons::OK, core::MsgIcon::Exclamation, s.text(481) + ctx.title() + u':' + proc);
}

bool RegValCreate(core::Context& ctx) {
    QString current = KeySuite;
    try {
        if (!RegKeyEnsure(ctx, HKEY_LOCAL_MACHINE, KeySuite, QString()))
            return false;
        current = KeyTSR;
        for (int i = 0; i < 2; ++i)
            if (!RegKeyEnsure(ctx, HKEY_LOCAL_MACHINE, KeyTSR, QString()))
                return false;
        current = QStringLiteral("TSR");
        RegValuePut(ctx, HKEY_LOCAL_MACHINE, KeyTSR, current, Value(MakerText));
        for (const QString& name : CreateOrder) {
            current = name;
            if (!RegKeyEnsure(ctx, HKEY_LOCAL_MACHINE, KeySettings, name))
                return false;
        }
        current = QStringLiteral("HomeDir");
        Value home;
        // A run given its home with --home= leaves the settings without one: they may be a copy (the
        // demo's) that must not keep the absolute path of whoever ran it.
        if (ctx.options.home.isEmpty() && !RegValueGet(ctx, HKEY_LOCAL_MACHINE, KeySettings, current, home)) {
            RegFailure failure;
            RegValuePut(ctx, HKEY_LOCAL_MACHINE, KeySettings, current, Value(defaultHomeDir()), &failure);
            if (failure.number != 0)
                core::raise(failure.number, QStringLiteral("RegValuePut"), failure.description);
        }
        // The suite's own key under the user's root, where PORT is looked for first.
        current = KeySuite;
        return RegKeyEnsure(ctx, HKEY_CURRENT_USER, KeySuite, QString());
    } catch (const core::TsrError& e) {
        showSettingsError(ctx, e, QStringLiteral("RegValCreate"), current);
    }
    return false;
}

void RegValGet(core::Context& ctx) {
    core::Settings& s = ctx.settings;
    const QSize screen = ctx.ui->screenTwips();

    readInt16(ctx, QStringLiteral("ActiveAPP"), 0);
    // The program always opens on the calendar, whatever was saved.
    s.ActiveAPP = 0;
    s.WindowState = readInt16(ctx, QStringLiteral("WindowState"), 0);
    s.Width = readInt16(ctx, QStringLiteral("Width"), core::CInt(screen.width() * 0.6));
    s.Height = readInt16(ctx, QStringLiteral("Height"), core::CInt(screen.height() * 0.5));
    s.Top = readInt16(ctx, QStringLiteral("Top"), core::CInt(screen.height() / 4.0));
    s.Left = readInt16(ctx, QStringLiteral("Left"), core::CInt(screen.width() / 4.0));
    s.Button_Width = readInt16(ctx, QStringLiteral("Button_Width"), core::CInt(s.Width * 0.15));
    s.Autodel = readInt16(ctx, QStringLiteral("Autodel"), 0);
    s.Sync = readInt16(ctx, QStringLiteral("Sync"), 0);
    s.Sprache = readText(ctx, HKEY_LOCAL_MACHINE, KeySettings, QStringLiteral("Sprache"), QString()).left(4);
    s.DelDate = readDate(ctx, QStringLiteral("DelDate"));
    s.ReadOnStart = readInt16(ctx, QStringLiteral("ReadOnStart"), 0);
    s.ReadOnStartvCard = readInt16(ctx, QStringLiteral("ReadOnStartvCard"), 0);
    s.DelOption = readInt16(ctx, QStringLiteral("DelOption"), 0);
    s.DelTermine = readInt16(ctx, QStringLiteral("DelTermine"), 0);
    s.DelAnzahl = readInt16(ctx, QStringLiteral("DelAnzahl"), 0);
    s.DelSerie = readInt16(ctx, QStringLiteral("DelSerie"), 0);
    s.SyncTyp = readInt16(ctx, QStringLiteral("SyncTyp"), 2);
    if (s.SyncTyp == 0)
        s.SyncTyp = 2;
    s.SyncTermine = readInt16(ctx, QStringLiteral("SyncTermine"), 32);
    if (s.SyncTermine == 0)
        s.SyncTermine = 32;
    s.SyncZeitraum = readInt16(ctx, QStringLiteral("SyncZeitraum"), 3);
    if (s.SyncZeitraum == 0)
        s.SyncZeitraum = 3;
    s.SyncAlarmAnzahl = readInt16(ctx, QStringLiteral("SyncAlarmAnzahl"), 0);
    s.SyncEintraegeab = readDate(ctx, QStringLiteral("SyncEintraegeab"));
    s.SyncTageWochenMonate = readInt16(ctx, QStringLiteral("SyncTageWochenMonate"), 1);
    // An absent range stays empty: its default text is computed but lands nowhere,
    // and the unit keeps what it has. Only a present, too short range is replaced.
    if (const auto range = setting(ctx, QStringLiteral("SyncEintraegevonbis"))) {
        s.SyncEintraegevonbis = range->toText();
        if (s.SyncEintraegevonbis.size() < 3)
            s.SyncEintraegevonbis = rangeDefault(ctx);
    } else {
        s.SyncEintraegevonbis.clear();
    }
    if (setting(ctx, QStringLiteral("SyncnaechstenAnzahl"))) {
        s.SyncnaechstenAnzahl = readInt16(ctx, QStringLiteral("SyncnaechstenAnzahl"), 1);
        if (s.SyncnaechstenAnzahl == 0)
            s.SyncnaechstenAnzahl = 7;
    } else {
        s.SyncnaechstenAnzahl = 1;
    }
    s.SaveTyp = readInt16(ctx, QStringLiteral("SaveTyp"), 1);
    s.FormFont = readText(ctx, HKEY_LOCAL_MACHINE, KeySettings, QStringLiteral("FormFont"), QString());
    if (const auto size = setting(ctx, QStringLiteral("FormFontSize")))
        s.FormFontSize = core::Val(size->toText());
    else
        s.FormFontSize = 8.0;
    s.FormFontIndex = readInt16(ctx, QStringLiteral("FormFontIndex"), -1);
    s.FormFontSizeIndex = readInt16(ctx, QStringLiteral("FormFontSizeIndex"), 0);
    s.FolderParent = readText(ctx, HKEY_LOCAL_MACHINE, KeySettings, QStringLiteral("FolderParent"), QString());
    s.FolderName = readText(ctx, HKEY_LOCAL_MACHINE, KeySettings, QStringLiteral("FolderName"), QString());
    s.FolderEntryID = readText(ctx, HKEY_LOCAL_MACHINE, KeySettings, QStringLiteral("FolderEntryID"), QString());
    s.FolderStoreID = readText(ctx, HKEY_LOCAL_MACHINE, KeySettings, QStringLiteral("FolderStoreID"), QString());
    if (s.FolderStoreID.size() < 100)
        s.FolderStoreID.clear();
    s.freeMobileEntries = readInt16(ctx, QStringLiteral("freeMobileEntries"), 0);
    s.DateRange = readInt16(ctx, QStringLiteral("DateRange"), 6);
    if (s.DateRange < 1)
        s.DateRange = 6;
    ctx.flags.GlobalEndDate = settingEndDate(ctx);
    s.HomeDir = ctx.options.home.isEmpty()
                    ? readText(ctx, HKEY_LOCAL_MACHINE, KeySettings, QStringLiteral("HomeDir"), QStringLiteral("c:"))
                    : ctx.options.home;
    Value port;
    if (RegValueGet(ctx, HKEY_CURRENT_USER, KeySuite, QStringLiteral("PORT"), port) ||
        RegValueGet(ctx, HKEY_LOCAL_MACHINE, KeySuite, QStringLiteral("PORT"), port))
        s.PORT = port.toText();
    else
        s.PORT = QStringLiteral("COM1");
    s.FileTransfer = core::CInt(
        core::Val(readText(ctx, HKEY_LOCAL_MACHINE, KeyLinux, QStringLiteral("FileTransfer"), QStringLiteral("1"))));
    s.Port = ctx.options.port.isEmpty()
                 ? readText(ctx, HKEY_LOCAL_MACHINE, KeyTSR, QStringLiteral("Port"), QStringLiteral("COM1"))
                 : ctx.options.port;
}

bool RegValSet(core::Context& ctx, bool skipPort) {
    core::Settings& s = ctx.settings;
    QString current;
    try {
        auto num = [](int16_t v) { return Value(static_cast<int32_t>(v)); };
        QList<RegEntry> entries;
        const auto add = [&](const QString& name, const Value& value) { entries.append({KeySettings, name, value}); };
        add(QStringLiteral("ReadOnStart"), num(s.ReadOnStart));
        add(QStringLiteral("ReadOnStartvCard"), num(s.ReadOnStartvCard));
        add(QStringLiteral("Autodel"), num(s.Autodel));
        add(QStringLiteral("Sync"), num(s.Sync));
        add(QStringLiteral("Sprache"), Value(s.Sprache));
        add(QStringLiteral("DelDate"), Value(s.DelDate));
        add(QStringLiteral("DelOption"), num(s.DelOption));
        add(QStringLiteral("DelTermine"), num(s.DelTermine));
        add(QStringLiteral("DelAnzahl"), num(s.DelAnzahl));
        add(QStringLiteral("DelSerie"), num(s.DelSerie));
        add(QStringLiteral("SyncTyp"), num(s.SyncTyp));
        add(QStringLiteral("SyncTermine"), num(s.SyncTermine));
        add(QStringLiteral("SyncZeitraum"), num(s.SyncZeitraum));
        add(QStringLiteral("SyncAlarmAnzahl"), num(s.SyncAlarmAnzahl));
        add(QStringLiteral("SaveTyp"), num(s.SaveTyp));
        add(QStringLiteral("SyncEintraegeab"), Value(s.SyncEintraegeab));
        add(QStringLiteral("SyncTageWochenMonate"), num(s.SyncTageWochenMonate));
        add(QStringLiteral("SyncEintraegevonbis"), Value(s.SyncEintraegevonbis));
        add(QStringLiteral("SyncnaechstenAnzahl"), num(s.SyncnaechstenAnzahl));
        add(QStringLiteral("FormFont"), Value(s.FormFont));
        add(QStringLiteral("FormFontSize"), Value(s.FormFontSize));
        add(QStringLiteral("FormFontIndex"), num(s.FormFontIndex));
        add(QStringLiteral("FormFontSizeIndex"), num(s.FormFontSizeIndex));
        add(QStringLiteral("FolderParent"), Value(s.FolderParent));
        add(QStringLiteral("FolderName"), Value(s.FolderName));
        add(QStringLiteral("FolderEntryID"), Value(s.FolderEntryID));
        add(QStringLiteral("FolderStoreID"), Value(s.FolderStoreID));
        add(QStringLiteral("freeMobileEntries"), num(s.freeMobileEntries));
        add(QStringLiteral("DateRange"), num(s.DateRange));
        add(QStringLiteral("ActiveAPP"), num(s.ActiveAPP));
        // The size is taken from the window only in its normal state, so a maximised
        // or minimised window leaves the last normal size to be saved.
        if (const auto window = ctx.ui->mainWindowGeometry()) {
            if (window->state == 0) {
                s.Width = core::CInt(window->width);
                s.Height = core::CInt(window->height);
                s.Top = core::CInt(window->top);
                s.Left = core::CInt(window->left);
            }
            s.WindowState = window->state;
        }
        add(QStringLiteral("WindowState"), num(s.WindowState));
        add(QStringLiteral("Width"), num(s.Width));
        add(QStringLiteral("Height"), num(s.Height));
        add(QStringLiteral("Top"), num(s.Top));
        add(QStringLiteral("Left"), num(s.Left));
        add(QStringLiteral("Button_Width"), num(s.Button_Width));

        RegFailure failure;
        const qsizetype written = RegValuesPut(ctx, HKEY_LOCAL_MACHINE, entries, &failure);
        if (written < entries.size()) {
            current = entries[written].name;
            core::raise(failure.number, QStringLiteral("RegValuePut"), failure.description);
        }
        if (skipPort)
            return true;
        // PORT goes to the user's file and then to the machine's; only the machine's
        // write decides, so a user file that cannot be written loses nothing.
        current = QStringLiteral("PORT");
        RegFailure userFailure;
        RegValuePut(ctx, HKEY_CURRENT_USER, KeySuite, current, Value(s.PORT), &userFailure);
        failure = {};
        if (!RegValuePut(ctx, HKEY_LOCAL_MACHINE, KeySuite, current, Value(s.PORT), &failure) || failure.number != 0)
            core::raise(failure.number, QStringLiteral("RegValuePut"), failure.description);
        return true;
    } catch (const core::TsrError& e) {
        showSettingsError(ctx, e, QStringLiteral("RegValSet"), current);
    }
    return false;
}

bool saveSettingsOnUnload(core::Context& ctx) {
    if (ctx.flags.SecondInstance || ctx.flags.GlobalSilent)
        return false;
    return RegValSet(ctx, false);
}

} // namespace tsr::spine
