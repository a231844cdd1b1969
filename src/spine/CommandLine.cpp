// SPDX-License-Identifier: GPL-3.0-or-later
#include "spine/CommandLine.h"

#include "core/ErrorReport.h"
#include "core/Numbers.h"
#include "formats/Globals.h"
#include "spine/DebugTrace.h"

namespace tsr::spine {

namespace {

void timerWarning(core::Context& ctx, const QString& value, int reasonNumber) {
    const QString text = ctx.strings.text(880) + value + QStringLiteral("\r\n") + ctx.strings.text(reasonNumber) +
                         QStringLiteral("\r\nz.B. TIMER=1000 fuer 1000 ms.\r\nDas Intervall wird auf 0 gesetzt!");
    ctx.ui->msgBox(text, core::MsgButtons::OK, core::MsgIcon::Exclamation, ctx.title());
}

// The value of TIMER=: it is checked and reported on, and used by nothing else.
void readTimer(core::Context& ctx, const QString& value) {
    ctx.flags.GlobalCommandTimer = 0;
    if (!core::IsNumeric(value)) {
        timerWarning(ctx, value, 879);
        return;
    }
    // Above 32767 this raises the overflow, although the texts speak of 65000.
    const int16_t timer = core::CInt(core::Val(value));
    if (timer < 0) {
        timerWarning(ctx, value, 881);
        return;
    }
    ctx.flags.GlobalCommandTimer = timer;
}

} // namespace

SplitCommandLine takePlatformOptions(core::PlatformOptions& options, const QStringList& arguments) {
    SplitCommandLine out;
    QStringList classic;
    for (const QString& arg : arguments) {
        if (!arg.startsWith(QStringLiteral("--"))) {
            classic << arg;
            continue;
        }
        const qsizetype eq = arg.indexOf(u'=');
        const QString name = arg.left(eq < 0 ? arg.size() : eq);
        const QString value = eq < 0 ? QString() : arg.mid(eq + 1);
        if (name == u"--home" && eq > 0)
            options.home = value;
        else if (name == u"--config" && eq > 0)
            options.config = value;
        else if (name == u"--pim" && eq > 0)
            options.pim = value;
        else if (name == u"--port" && eq > 0)
            options.port = value;
        else if (arg == u"--headless")
            options.headless = true;
        else if (arg == u"--verbose")
            options.verbose = true;
        else if (arg == u"--help")
            out.help = true;
        else if (arg == u"--version")
            out.version = true;
        else
            out.unknown << arg;
    }
    out.classic = classic.join(u' ');
    return out;
}

QString usageText() {
    return QStringLiteral("Usage: tessarine [OPTIONS] [SWITCHES]\n"
                          "Keeps the phone's calendar entries and contacts in step with the PIM.\n"
                          "\n"
                          "Options:\n"
                          "  --home=DIR       the data folder for this run (log, state and debug files, languages)\n"
                          "  --config=DIR     the folder of machine.ini and user.ini\n"
                          "  --pim=DIR        the local PIM store\n"
                          "  --port=DEVICE    the phone's serial device\n"
                          "  --headless       a silent run without any window; prints the log summary;\n"
                          "                   questions get the answer that loses no data, shown on stderr;\n"
                          "                   exit status 0 without error rows, 1 with, 2 for a usage error\n"
                          "  --verbose        with --headless, print the rows of the three log tables too\n"
                          "  --help           this text\n"
                          "  --version        the program's version\n"
                          "\n"
                          "Switches (any case):\n"
                          "  BOTH | VCAL | VCARD   one AutoSync of both lists, calendar entries or contacts, then end\n"
                          "  OPTIONS               show only the options dialog\n"
                          "  KILL                  ask the running program to close\n"
                          "  NOORG                 run without the PIM\n"
                          "  DEBUG                 trace the start into TSRDebug.txt\n"
                          "  D                     show each phone entry as it passes\n"
                          "  CALLER=NAME           the calling program\n"
                          "  TIMER=MS              accepted and checked, without effect\n");
}

void TSRCommandLine(core::Context& ctx, const QString& commandLine, const QString& programFolder) {
    core::guarded(ctx, QStringLiteral("Main_Modul"), QStringLiteral("TSRCommandLine"), [&] {
        core::StartFlags& f = ctx.flags;
        QString rest = commandLine.toUpper() + u' ';
        while (!rest.isEmpty()) {
            const QString token = formats::HolTeilstring(rest, QStringLiteral(" "));
            if (token == u"D") {
                f.GlobalCommandShowData = true;
            } else if (token == u"KILL") {
                f.GlobalCommandKill = true;
            } else if (token == u"DEBUG") {
                f.GlobalCommandDebug = true;
            } else if (token == u"NOORG") {
                f.GlobalOrganizerOK = false;
                f.GlobalCommandNoOrg = true;
            } else if (token == u"BOTH") {
                f.GlobalSilent = true;
                f.GlobalCommandBoth = true;
            } else if (token == u"VCAL") {
                f.GlobalSilent = true;
                f.GlobalCommandVCal = true;
            } else if (token == u"VCARD") {
                f.GlobalSilent = true;
                f.GlobalCommandVCard = true;
            } else if (token == u"OPTIONS") {
                f.GlobalSilent = true;
                f.GlobalCommandOptions = true;
            } else if (token.contains(QStringLiteral("CALLER="))) {
                f.GlobalCaller = token.mid(token.indexOf(u'=') + 1);
            } else if (token.contains(QStringLiteral("TIMER="))) {
                readTimer(ctx, token.mid(token.indexOf(u'=') + 1));
            }
        }
        if (f.GlobalCommandDebug) {
            openDebugFile(ctx);
            tracePoint(ctx, QStringLiteral("Debug: Aufrufstring = ") + programFolder + u' ' + commandLine);
        }
    });
}

} // namespace tsr::spine
