// SPDX-License-Identifier: GPL-3.0-or-later
// Screenshots of the editors and their dialogs: `shots_editors OUTDIR LANG`
// writes editors-<what>-<LANG>.png for each window, in the language of the
// shipped table LANG (0809 English, 0407 German). Run it under Xvfb.
#include "core/Context.h"
#include "core/SilentUserInterface.h"
#include "main/EntryShowGrid.h"
#include "spine/SprachenStrings.h"
#include "tables/TSRADODB.h"
#include "ui/dialogs/EntryShow.h"
#include "ui/dialogs/StartCalendarFrame.h"
#include "ui/dialogs/Status_Anzeige.h"
#include "ui/dialogs/frmSplash.h"
#include "ui/editors/MobileEntry.h"
#include "ui/editors/vCardEntry.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QProgressBar>
#include <QTableView>
#include <QToolBar>
#include <cstdio>

using namespace tsr;
using core::VbDate;

namespace {

VbDate at(int y, int mo, int d, int h = 0, int mi = 0) {
    return VbDate(core::DateSerial(y, mo, d).value + core::TimeSerial(h, mi, 0).value);
}

void settle() {
    for (int i = 0; i < 5; ++i)
        QApplication::processEvents();
}

bool shoot(QWidget& w, const QString& dir, const QString& what, const QString& lang) {
    w.show();
    settle();
    const QString path = QDir(dir).filePath(QStringLiteral("editors-%1-%2.png").arg(what, lang));
    const bool ok = w.grab().save(path);
    std::printf("%s %s\n", ok ? "wrote" : "FAILED", qPrintable(path));
    return ok;
}

// A weekly choir rehearsal on the phone and in the PIM, as a read leaves it.
void addSeriesRow(core::Context& ctx) {
    tables::Recordset& t = *ctx.tables.RSCalendar;
    tables::vCalCreateNewRecord(t);
    auto set = [&](const char* f, const core::Value& v) { t.setValue(QString::fromLatin1(f), v); };
    const VbDate start = at(2026, 3, 2, 18, 0);
    const VbDate end = at(2026, 3, 2, 19, 30);
    set("Mobile", true);
    set("PIM", true);
    set("EntryType", int32_t(3));
    set("EntryID", QStringLiteral("3"));
    set("SubType", int32_t(3));
    set("Start", start);
    set("StartDate", core::DateValue(start));
    set("DTEnd", end);
    set("EndDate", core::DateValue(end));
    set("EndTime", core::TimeValue(end));
    set("EndDateFlag", true);
    set("Text", QStringLiteral("Chorprobe / choir rehearsal"));
    set("Summary", QStringLiteral("St. Marien, Gemeindesaal"));
    set("Typ", QString());
    set("Alarm", true);
    set("ISRecurring", true);
    set("RecurrenceType", QStringLiteral("W"));
    set("Weekdaymask", int64_t(2 | 16));
    t.update();
}

void addContacts(tables::Recordset& phone, tables::Recordset& pim) {
    auto fill = [](tables::Recordset& t, const char* phoneNo, const char* city, const char* mail) {
        tables::vCardCreateNewRecord(t);
        t.setValue(QStringLiteral("LastName"), QStringLiteral("Roth"));
        t.setValue(QStringLiteral("FirstName"), QStringLiteral("Ida"));
        t.setValue(QStringLiteral("Company"), QStringLiteral("Rheinwerk GmbH"));
        t.setValue(QStringLiteral("Phone"), QString::fromLatin1(phoneNo));
        t.setValue(QStringLiteral("PhoneMobile"), QStringLiteral("+49 170 5550123"));
        t.setValue(QStringLiteral("Street"), QStringLiteral("Poppelsdorfer Allee 12"));
        t.setValue(QStringLiteral("ZipCode"), QStringLiteral("53115"));
        t.setValue(QStringLiteral("City"), QString::fromUtf8(city));
        t.setValue(QStringLiteral("Country"), QStringLiteral("Deutschland"));
        t.setValue(QStringLiteral("eMail"), QString::fromLatin1(mail));
        t.update();
    };
    fill(phone, "+49 228 555 0199", "Bonn", "ida.roth@rheinwerk.example");
    fill(pim, "+49 221 555 0142", "Köln", "ida.roth@rheinwerk.example");
}

} // namespace

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    if (argc != 3) {
        std::fprintf(stderr, "usage: shots_editors OUTDIR LANG (0809 or 0407)\n");
        return 2;
    }
    const QString dir = QString::fromLocal8Bit(argv[1]);
    const QString lang = QString::fromLocal8Bit(argv[2]);
    QDir().mkpath(dir);

    core::SilentUserInterface silent;
    core::Context ctx(silent);
    const auto table = spine::parseLanguageFile(spine::shippedLanguageFile(lang));
    if (!table) {
        std::fprintf(stderr, "no language table %s\n", qPrintable(lang));
        return 2;
    }
    spine::set_str_variable_Res(ctx, *table);
    const bool german = lang == u"0407";
    ctx.formats.DateFormat = german ? QStringLiteral("dd.mm.yyyy") : QStringLiteral("dd/mm/yyyy");
    ctx.formats.TimeFormat = QStringLiteral("hh:mm:ss");
    ctx.formats.TimeFormatNoSec = QStringLiteral("hh:mm");
    ctx.clock.setFixed(QDateTime(QDate(2026, 3, 2), QTime(9, 15)));
    ctx.flags.GlobalOrganizerOK = true;
    ctx.flags.GlobalStartDate = at(2026, 3, 2);
    ctx.flags.GlobalEndDate = VbDate(at(2026, 3, 15).value + 86399.0 / 86400.0);
    ctx.settings.DateRange = 14;
    if (!tables::CreateInitAndSetAllRS(ctx))
        return 1;
    bool ok = true;

    {
        ui::MobileEntry entry(ctx, nullptr);
        auto& v = entry.form().values();
        v.kind = main::EntryKind::Meeting;
        v.description = german ? QStringLiteral("Budgetbesprechung mit der Geschäftsführung")
                               : QStringLiteral("Budget meeting with the management board");
        v.summary =
            german ? QStringLiteral("Raum 4.12, Unterlagen mitbringen") : QStringLiteral("Room 4.12, bring the papers");
        v.startDate = at(2026, 3, 16);
        v.startTime = QStringLiteral("09:30");
        v.endDate = at(2026, 3, 16);
        v.endTime = QStringLiteral("11:00");
        v.alarm = true;
        entry.setValues(v);
        ok &= shoot(entry, dir, QStringLiteral("entry-new"), lang);
    }
    {
        addSeriesRow(ctx);
        ui::MobileEntry entry(ctx, nullptr, 1);
        ok &= shoot(entry, dir, QStringLiteral("entry-series"), lang);
    }
    {
        QMainWindow window;
        window.setWindowTitle(ctx.title());
        window.resize(760, 420);
        auto* bar = window.addToolBar(QStringLiteral("TSRTools"));
        bar->addAction(ctx.strings.text(850).remove(u'&'));
        bar->addAction(ctx.strings.text(851).remove(u'&'));
        bar->addAction(ctx.strings.text(820));
        auto* grid = new QTableView(&window);
        window.setCentralWidget(grid);
        window.show();
        settle();
        ui::StartCalendarFrame* frame = ui::showDateFrame(ctx, &window);
        frame->logic().PeriodeCombo_Click(1);
        frame->logic().PeriodeText_Change(QStringLiteral("2"));
        frame->toggle();
        frame->toggle();
        ok &= shoot(window, dir, QStringLiteral("dateframe"), lang);
    }
    {
        QWidget owner;
        owner.resize(600, 400);
        ui::StatusWindow status(ctx, &owner);
        status.statusShow(ctx.title());
        status.statusSetText(ctx.strings.text(458));
        status.dialog()->progressBar()->setRange(0, 40);
        status.dialog()->progressBar()->setValue(17);
        ok &= shoot(*status.dialog(), dir, QStringLiteral("status"), lang);
    }
    {
        ui::frmSplash splash(ctx);
        ok &= shoot(splash, dir, QStringLiteral("splash"), lang);
    }
    {
        auto phone = std::make_unique<tables::Recordset>(QStringLiteral("RSContacts"));
        auto pim = std::make_unique<tables::Recordset>(QStringLiteral("scratch"));
        tables::vCardInitRS(*phone);
        tables::vCardInitRS(*pim);
        addContacts(*phone, *pim);
        ui::EntryShow compare(ctx, *pim, *phone, nullptr);
        compare.findChild<QCheckBox*>(QStringLiteral("ch_PIMoverMobile"))->setChecked(true);
        ok &= shoot(compare, dir, QStringLiteral("compare"), lang);
    }
    {
        ui::vCardEntry contact(ctx, nullptr);
        const std::pair<const char*, QString> fields[] = {
            {"LastName", QStringLiteral("Oberhausen-Wittgenstein-Lenz")},
            {"FirstName", QStringLiteral("Eva")},
            {"Company", QStringLiteral("Rheinwerk GmbH")},
            {"Street", QStringLiteral("Poppelsdorfer Allee 12")},
            {"ZipCode", QStringLiteral("53115")},
            {"City", QStringLiteral("Bonn")},
            {"Country", QStringLiteral("Deutschland")},
            {"PhoneWork", QStringLiteral("+49 228 555 0199")},
            {"PhoneMobile", QStringLiteral("+49 170 5550123")},
            {"eMail", QStringLiteral("eva.lenz@rheinwerk.example")},
            {"URL", QStringLiteral("www.rheinwerk.example")},
        };
        for (const auto& [name, text] : fields)
            contact.findChild<QLineEdit*>(QString::fromLatin1(name))->setText(text);
        ok &= shoot(contact, dir, QStringLiteral("contact"), lang);
    }
    return ok ? 0 : 1;
}
