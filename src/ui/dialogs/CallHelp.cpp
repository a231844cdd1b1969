// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/dialogs/CallHelp.h"

#include "core/Context.h"
#include "spine/SprachenStrings.h"

#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QUrl>

namespace tsr::ui {

namespace {

const QString kGuide = QStringLiteral(":/tessarine/help/HELPFILE_HVX50.html");

QByteArray readFile(const QString& path) {
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

} // namespace

bool installHelpFile(core::Context& ctx) {
    if (ctx.flags.HelpFile.isEmpty())
        spine::SetHelp(ctx, ctx.settings.Sprache);
    const QString& target = ctx.flags.HelpFile;
    const QByteArray guide = readFile(kGuide);
    // A newer program brings a newer guide; an unchanged one is left alone.
    if (readFile(target) == guide)
        return true;
    QDir().mkpath(QFileInfo(target).absolutePath());
    QFile out(target);
    return out.open(QIODevice::WriteOnly | QIODevice::Truncate) && out.write(guide) == guide.size();
}

bool CallHelp(core::Context& ctx) {
    const bool installed = installHelpFile(ctx);
    QUrl url = QUrl::fromLocalFile(ctx.flags.HelpFile);
    url.setFragment(QStringLiteral("contents"));
    if (installed && QDesktopServices::openUrl(url))
        return true;
    ctx.ui->msgBox(ctx.strings.text(1004) + ctx.flags.HelpFile, core::MsgButtons::OK, core::MsgIcon::Exclamation,
                   ctx.title());
    return false;
}

} // namespace tsr::ui
