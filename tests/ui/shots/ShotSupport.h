// SPDX-License-Identifier: GPL-3.0-or-later
// What every screenshot program shares: the two arguments (output folder and
// language code), a context in a temporary home with the shipped language
// tables installed and the chosen one loaded, and saving a widget as a PNG.
#pragma once

#include "core/Context.h"
#include "spine/SprachenStrings.h"

#include <QApplication>
#include <QDir>
#include <QTemporaryDir>
#include <QTextStream>
#include <QWidget>

namespace tsr::shots {

struct ShotArgs {
    QString outDir;
    QString lang;
};

inline bool readArgs(int argc, char** argv, ShotArgs& args) {
    if (argc != 3) {
        QTextStream(stderr) << "usage: " << argv[0] << " OUTPUT-FOLDER LANGUAGE-CODE (0809, 0407)\n";
        return false;
    }
    args.outDir = QString::fromLocal8Bit(argv[1]);
    args.lang = QString::fromLocal8Bit(argv[2]);
    return QDir().mkpath(args.outDir);
}

// The language `code` loaded the way a start loads it, from HomeDir/Lng; the
// user's formats as a user of that language has them.
inline void useLanguage(core::Context& ctx, const QTemporaryDir& home, const QString& code) {
    ctx.settings.HomeDir = home.path();
    spine::installLanguageFiles(ctx);
    ctx.settings.Sprache = code;
    ctx.flags.LanguageLibrary = spine::languageFilePath(ctx, code);
    spine::loadLanguageTable(ctx);
    auto& f = ctx.formats;
    const bool german = code == u"0407";
    f.DateFormat = german ? QStringLiteral("dd.mm.yyyy") : QStringLiteral("dd/mm/yyyy");
    f.TimeFormat = QStringLiteral("hh:mm:ss");
    f.TimeFormatNoSec = QStringLiteral("hh:mm");
    f.GridTimeStyle = QStringLiteral("hh:mm");
}

// Saves the widget (or the window it stands in) as <area>-<what>-<lang>.png.
inline bool save(QWidget* w, const ShotArgs& args, const QString& area, const QString& what) {
    QApplication::processEvents();
    const QString path = args.outDir + u'/' + area + u'-' + what + u'-' + args.lang + QStringLiteral(".png");
    const bool ok = w->grab().save(path);
    QTextStream(ok ? stdout : stderr) << (ok ? "wrote " : "could not write ") << path << '\n';
    return ok;
}

} // namespace tsr::shots
