// SPDX-License-Identifier: GPL-3.0-or-later
// The language tables: which language a start takes, loading its table from
// HomeDir/Lng/TSRRES<code>.lng (UTF-8, one "number<TAB>text" a line, "\n" for a
// line break, "#" for a comment), and the fall-back to the built-in English.
#pragma once

#include "core/Context.h"

#include <QHash>
#include <QLocale>
#include <optional>

namespace tsr::spine {

using LanguageTable = QHash<int, QString>;

// The Windows language id of a locale, from its language and territory.
uint16_t lcidOf(const QLocale& locale);
// The path of a language's table file in HomeDir.
QString languageFilePath(const core::Context& ctx, const QString& code);
// Reads a table file's text; nothing when a line is neither a comment nor "number<TAB>text".
std::optional<LanguageTable> parseLanguageFile(const QByteArray& bytes);
// The shipped tables, code by code, as they are built into the program.
QStringList shippedLanguageCodes();
QByteArray shippedLanguageFile(const QString& code);
// Puts the shipped tables into HomeDir/Lng where they are missing; a table the
// user has there already stays.
void installLanguageFiles(const core::Context& ctx);

// Takes the user's language when Sprache is empty, then loads its table.
void setStartLanguage(core::Context& ctx, const QLocale& locale = QLocale::system());
// Loads the table of LanguageLibrary, or the English one when it cannot be loaded.
void loadLanguageTable(core::Context& ctx);
// The table file as a module; nothing (after the error box) when it cannot be loaded.
std::optional<LanguageTable> LoadLibraryC(core::Context& ctx, const QString& path);
// One string of a loaded table; a number the table lacks raises an error.
QString LoadResString(const LanguageTable& module, int number);
// Fills the string table from a loaded table, number by number, up to the first one missing.
void set_str_variable_Res(core::Context& ctx, const LanguageTable& module);
// The program's help file; the same for every language.
void SetHelp(core::Context& ctx, const QString& code);

// The question on closing while busy, joined from two numbers.
QString closingWhileBusyText(const core::Context& ctx);

} // namespace tsr::spine
