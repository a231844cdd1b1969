// SPDX-License-Identifier: GPL-3.0-or-later
#include "spine/SprachenStrings.h"

#include "core/ErrorReport.h"

#include <QDir>
#include <QFile>
#include <algorithm>

namespace tsr::spine {

namespace {

constexpr int32_t ResourceNotFound = 1814;

struct LcidEntry {
    QLocale::Language language;
    QLocale::Territory territory; // AnyTerritory: the language's main id
    uint16_t lcid;
};

const LcidEntry LcidTable[] = {
    {QLocale::German, QLocale::Austria, 0x0C07},
    {QLocale::German, QLocale::Switzerland, 0x0807},
    {QLocale::German, QLocale::AnyTerritory, 0x0407},
    {QLocale::English, QLocale::UnitedKingdom, 0x0809},
    {QLocale::English, QLocale::Ireland, 0x1809},
    {QLocale::English, QLocale::Australia, 0x0C09},
    {QLocale::English, QLocale::Canada, 0x1009},
    {QLocale::English, QLocale::AnyTerritory, 0x0409},
    {QLocale::Danish, QLocale::AnyTerritory, 0x0406},
    {QLocale::Finnish, QLocale::AnyTerritory, 0x040B},
    {QLocale::French, QLocale::Belgium, 0x080C},
    {QLocale::French, QLocale::Switzerland, 0x100C},
    {QLocale::French, QLocale::AnyTerritory, 0x040C},
    {QLocale::Italian, QLocale::AnyTerritory, 0x0410},
    {QLocale::Catalan, QLocale::AnyTerritory, 0x0403},
    {QLocale::Dutch, QLocale::Belgium, 0x0813},
    {QLocale::Dutch, QLocale::AnyTerritory, 0x0413},
    {QLocale::NorwegianNynorsk, QLocale::AnyTerritory, 0x0814},
    {QLocale::NorwegianBokmal, QLocale::AnyTerritory, 0x0414},
    {QLocale::Portuguese, QLocale::Brazil, 0x0416},
    {QLocale::Portuguese, QLocale::AnyTerritory, 0x0816},
    {QLocale::Swedish, QLocale::AnyTerritory, 0x041D},
    {QLocale::Spanish, QLocale::Mexico, 0x080A},
    {QLocale::Spanish, QLocale::AnyTerritory, 0x0C0A},
    {QLocale::Turkish, QLocale::AnyTerritory, 0x041F},
    {QLocale::Chinese, QLocale::Taiwan, 0x0404},
    {QLocale::Chinese, QLocale::HongKong, 0x0C04},
    {QLocale::Chinese, QLocale::AnyTerritory, 0x0804},
    {QLocale::Polish, QLocale::AnyTerritory, 0x0415},
    {QLocale::Czech, QLocale::AnyTerritory, 0x0405},
    {QLocale::Hungarian, QLocale::AnyTerritory, 0x040E},
    {QLocale::Russian, QLocale::AnyTerritory, 0x0419},
    {QLocale::Greek, QLocale::AnyTerritory, 0x0408},
    {QLocale::Japanese, QLocale::AnyTerritory, 0x0411},
    {QLocale::Korean, QLocale::AnyTerritory, 0x0412},
};

QString unescape(QStringView text) {
    QString out;
    out.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i] == u'\\' && i + 1 < text.size()) {
            const QChar next = text[++i];
            out += next == u'n' ? QChar(u'\n') : next == u't' ? QChar(u'\t') : next;
        } else {
            out += text[i];
        }
    }
    return out;
}

QString resourcePath(const QString& code) {
    return QStringLiteral(":/tessarine/lang/TSRRES") + code + QStringLiteral(".lng");
}

} // namespace

uint16_t lcidOf(const QLocale& locale) {
    for (const LcidEntry& e : LcidTable)
        if (e.language == locale.language() &&
            (e.territory == QLocale::AnyTerritory || e.territory == locale.territory()))
            return e.lcid;
    // The C locale and languages without a table of ours read as US English.
    return 0x0409;
}

QString languageFilePath(const core::Context& ctx, const QString& code) {
    return ctx.settings.HomeDir + QStringLiteral("/Lng/TSRRES") + code + QStringLiteral(".lng");
}

std::optional<LanguageTable> parseLanguageFile(const QByteArray& bytes) {
    LanguageTable table;
    const QString text = QString::fromUtf8(bytes);
    for (QStringView line : QStringView(text).split(u'\n')) {
        if (line.endsWith(u'\r'))
            line.chop(1);
        if (line.trimmed().isEmpty() || line.startsWith(u'#'))
            continue;
        const qsizetype tab = line.indexOf(u'\t');
        bool ok = false;
        const int number = tab > 0 ? line.left(tab).toInt(&ok) : 0;
        if (!ok)
            return std::nullopt;
        table.insert(number, unescape(line.mid(tab + 1)));
    }
    return table;
}

QStringList shippedLanguageCodes() {
    QStringList codes;
    const QDir dir(QStringLiteral(":/tessarine/lang"));
    for (const QString& name : dir.entryList({QStringLiteral("TSRRES*.lng")}, QDir::Files, QDir::Name))
        codes << name.mid(6, name.size() - 10);
    return codes;
}

QByteArray shippedLanguageFile(const QString& code) {
    QFile file(resourcePath(code));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void installLanguageFiles(const core::Context& ctx) {
    QDir().mkpath(ctx.settings.HomeDir + QStringLiteral("/Lng"));
    for (const QString& code : shippedLanguageCodes()) {
        const QString target = languageFilePath(ctx, code);
        // A copy out of the resources is read-only; the user may want to edit it.
        if (!QFile::exists(target) && QFile::copy(resourcePath(code), target))
            QFile::setPermissions(target, QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup | QFile::ReadOther);
    }
}

void setStartLanguage(core::Context& ctx, const QLocale& locale) {
    core::guarded(ctx, QStringLiteral("SprachenStrings"), QStringLiteral("setStartLanguage"), [&] {
        if (ctx.settings.Sprache.size() < 2) {
            QString code = QString::number(lcidOf(locale), 16).toUpper();
            if (code.size() < 4)
                code.prepend(u'0');
            ctx.settings.Sprache = code;
        }
        installLanguageFiles(ctx);
        ctx.flags.LanguageLibrary = languageFilePath(ctx, ctx.settings.Sprache);
        loadLanguageTable(ctx);
    });
}

void loadLanguageTable(core::Context& ctx) {
    const std::optional<LanguageTable> module = LoadLibraryC(ctx, ctx.flags.LanguageLibrary);
    if (module) {
        set_str_variable_Res(ctx, *module);
        return;
    }
    ctx.strings.resetToEnglish();
    ctx.settings.Sprache = QStringLiteral("0809");
    ctx.flags.LanguageLibrary = languageFilePath(ctx, ctx.settings.Sprache);
    SetHelp(ctx, ctx.settings.Sprache);
}

std::optional<LanguageTable> LoadLibraryC(core::Context& ctx, const QString& path) {
    return core::guarded(ctx, QStringLiteral("SprachenStrings"), QStringLiteral("LoadLibraryC"),
                         std::optional<LanguageTable>(), [&]() -> std::optional<LanguageTable> {
                             // The platform's numbers for a load that fails: no such file (2),
                             // no access (5), a file that is no table (193).
                             QFile file(path);
                             std::optional<LanguageTable> table;
                             int32_t number = 0;
                             if (!file.exists())
                                 number = 2;
                             else if (!file.open(QIODevice::ReadOnly))
                                 number = 5;
                             else if (!(table = parseLanguageFile(file.readAll())))
                                 number = 193;
                             if (number != 0)
                                 core::raise(number, QStringLiteral("LoadLibraryC"), ctx.strings.text(949) + path);
                             return table;
                         });
}

QString LoadResString(const LanguageTable& module, int number) {
    const auto it = module.constFind(number);
    if (it == module.constEnd())
        core::raise(ResourceNotFound, QStringLiteral("LoadResString"),
                    QStringLiteral("The specified resource name cannot be found in the image file. (%1)").arg(number));
    const qsizetype nul = it->indexOf(QChar(u'\0'));
    return nul < 0 ? *it : it->left(nul);
}

void set_str_variable_Res(core::Context& ctx, const LanguageTable& module) {
    const QHash<int, QString>& english = core::ResStrings::english();
    QList<int> numbers = english.keys();
    std::sort(numbers.begin(), numbers.end());
    core::guarded(ctx, QStringLiteral("SprachenStrings"), QStringLiteral("set_str_variable_Res"), [&] {
        // A number the table lacks takes its English text and the loading goes on,
        // so one gap does not leave every later text in English or in the language
        // shown before; the first gap is reported once the table is loaded.
        std::optional<core::TsrError> firstGap;
        for (int number : numbers) {
            try {
                ctx.strings.set(number, LoadResString(module, number));
            } catch (const core::TsrError& e) {
                ctx.strings.set(number, english.value(number));
                if (!firstGap)
                    firstGap = e;
            }
        }
        if (firstGap)
            throw *firstGap;
    });
}

void SetHelp(core::Context& ctx, const QString& code) {
    Q_UNUSED(code);
    ctx.flags.HelpFile = ctx.settings.HomeDir + QStringLiteral("/Help/HELPFILE_HVX50.html");
}

QString closingWhileBusyText(const core::Context& ctx) {
    return ctx.strings.text(956) + QStringLiteral("\r\n") + ctx.strings.text(957);
}

} // namespace tsr::spine
