// SPDX-License-Identifier: GPL-3.0-or-later
// Screenshots of the options dialog (every page), the log windows with rows
// and the about box, in one language: shots_dialogs OUTDIR LANG (0809, 0407).
// Each window is shown, laid out, and grabbed as dialogs-<what>-<lang>.png.
#include "core/Context.h"
#include "pim/DOROutlookSession.h"
#include "spine/SprachenStrings.h"
#include "ui/SampleLog.h"
#include "ui/dialogs/Einstellungen.h"
#include "ui/dialogs/frmAbout.h"
#include "ui/log/LogPrinting.h"
#include "ui/log/logSummaryForm.h"
#include "ui/log/log_Form.h"

#include <QApplication>
#include <QDir>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTextStream>
#include <QTimer>

using namespace tsr;

namespace {

// Answers every box with its first button and prints what it said.
class ShotUi : public core::UserInterface {
public:
    core::MsgResult msgBox(const QString& text, core::MsgButtons buttons, core::MsgIcon, const QString&) override {
        QTextStream(stderr) << "box: " << text << '\n';
        return buttons == core::MsgButtons::YesNo || buttons == core::MsgButtons::YesNoCancel ? core::MsgResult::Yes
                                                                                              : core::MsgResult::OK;
    }
    void statusShow(const QString&) override {}
    void statusSetText(const QString&) override {}
    void statusHide() override {}
    void processEvents() override { QCoreApplication::processEvents(); }
    void refreshGrid(int) override {}
    bool mainFormVisibleAndEnabled() const override { return false; }
    void focusMainForm() override {}
    bool printText(const core::RichText&, const QString&, int) override { return false; }
};

bool save(QWidget* w, const QString& dir, const QString& what, const QString& lang) {
    w->show();
    w->adjustSize();
    for (int i = 0; i < 5; ++i)
        QCoreApplication::processEvents();
    const QString path = dir + QStringLiteral("/dialogs-") + what + u'-' + lang + QStringLiteral(".png");
    const bool ok = w->grab().save(path);
    QTextStream(stdout) << (ok ? "wrote " : "FAILED ") << path << '\n';
    return ok;
}

} // namespace

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    if (argc != 3) {
        QTextStream(stderr) << "usage: shots_dialogs OUTDIR LANG\n";
        return 2;
    }
    const QString out = QString::fromLocal8Bit(argv[1]);
    const QString lang = QString::fromLocal8Bit(argv[2]).toUpper();
    QDir().mkpath(out);
    QTemporaryDir home;

    ShotUi ui;
    core::Context ctx(ui);
    ctx.options.home = home.path();
    ctx.options.config = home.path() + QStringLiteral("/config");
    ctx.settings.HomeDir = home.path();
    ctx.settings.Sprache = lang;
    ctx.clock.setFixed(QDateTime(QDate(2026, 3, 14), QTime(9, 26, 53)));
    if (lang != u"0809") {
        const auto table = spine::parseLanguageFile(spine::shippedLanguageFile(lang));
        if (!table) {
            QTextStream(stderr) << "no language table " << lang << '\n';
            return 2;
        }
        spine::set_str_variable_Res(ctx, *table);
    }
    // A real local store with a second contact folder fills the folder list.
    ctx.options.pim = home.path() + QStringLiteral("/pim");
    QDir().mkpath(ctx.options.pim + QStringLiteral("/contacts/family"));
    pim::Check4Outlook(ctx);
    pim::OutlookContactFolder(ctx, true);
    ctx.settings.Sync = 1;
    ctx.settings.Autodel = 1;
    ctx.settings.DelOption = 2;
    ctx.settings.DelTermine = 1 | 4;
    ctx.settings.DelAnzahl = 20;
    test::fillSampleLog(ctx);

    bool ok = true;
    {
        ui::Einstellungen options(ctx);
        auto* tabs = options.findChild<QTabWidget*>(QStringLiteral("tabs"));
        const char* pages[] = {"options-general", "options-autosync", "options-autodelete", "options-language"};
        for (int i = 0; i < tabs->count(); ++i) {
            tabs->setCurrentIndex(i);
            ok = save(&options, out, QString::fromLatin1(pages[i]), lang) && ok;
        }
    }
    {
        ui::LogPrinter printer;
        ui::logSummaryForm summary(ctx, printer);
        ok = save(&summary, out, QStringLiteral("log-summary"), lang) && ok;
        ui::log_Form* details = summary.details();
        details->LogInitlogForm();
        ok = save(details, out, QStringLiteral("log-details"), lang) && ok;
    }
    {
        ui::frmAbout about(ctx);
        ok = save(&about, out, QStringLiteral("about"), lang) && ok;
    }
    return ok ? 0 : 1;
}
