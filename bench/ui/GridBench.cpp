// SPDX-License-Identifier: GPL-3.0-or-later
// The calendar grid over 20,000 rows on the offscreen platform: building the
// model and painting the first screen, sorting on the start, scrolling from top
// to bottom a page at a time (each step painted), and the main window from
// nothing to its first paint. The peak resident memory is reported with each.
#include "core/Context.h"
#include "main/MainCommands.h"
#include "tables/TSRADODB.h"
#include "ui/QtUserInterface.h"
#include "ui/SampleRows.h"
#include "ui/grids/EntryGrid.h"
#include "ui/grids/EntryTableModel.h"
#include "ui/mainwindow/Main_Form.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QScrollBar>
#include <QTableView>
#include <benchmark/benchmark.h>
#include <memory>

using namespace tsr;

namespace {

constexpr int kRows = 20000;

// The process's peak resident memory in MB (VmHWM).
double peakMegabytes() {
    QFile f(QStringLiteral("/proc/self/status"));
    if (!f.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray& line : f.readAll().split('\n'))
        if (line.startsWith("VmHWM:"))
            return line.mid(6).trimmed().split(' ').value(0).toDouble() / 1024.0;
    return 0;
}

struct Calendar {
    Calendar() {
        ctx.formats.DateFormat = QStringLiteral("dd.mm.yyyy");
        ctx.formats.TimeFormatNoSec = QStringLiteral("hh:mm");
        tables::CreateInitAndSetAllRS(ctx);
        ctx.flags.GlobalOrganizerOK = true;
        test::fillManyCalendarRows(ctx, kRows);
    }
    ui::QtUserInterface ui;
    core::Context ctx{ui};
};

Calendar& calendar() {
    static Calendar c;
    return c;
}

void paint(QWidget* w) {
    w->repaint();
    QApplication::processEvents();
}

void BM_ModelAndFirstScreen(benchmark::State& state) {
    Calendar& c = calendar();
    for (auto _ : state) {
        // The table as a read leaves it: in reading order, so the grid sorts it by date first.
        state.PauseTiming();
        c.ctx.tables.RSCalendar->setSort(QString());
        state.ResumeTiming();
        ui::EntryGrid grid(c.ctx, 0);
        grid.resize(1000, 700);
        grid.show();
        paint(grid.tableView()->viewport());
        benchmark::DoNotOptimize(grid.model()->rowCount());
    }
    state.counters["peak_MB"] = peakMegabytes();
}
BENCHMARK(BM_ModelAndFirstScreen)->Unit(benchmark::kMillisecond);

void BM_SortOnStart(benchmark::State& state) {
    Calendar& c = calendar();
    ui::EntryGrid grid(c.ctx, 0);
    grid.resize(1000, 700);
    grid.show();
    QApplication::processEvents();
    const int date = grid.model()->columnOf(QStringLiteral("StartDate"));
    bool descending = false;
    for (auto _ : state) {
        descending = !descending;
        grid.model()->sort(date, descending ? Qt::DescendingOrder : Qt::AscendingOrder);
        paint(grid.tableView()->viewport());
    }
    state.counters["peak_MB"] = peakMegabytes();
}
BENCHMARK(BM_SortOnStart)->Unit(benchmark::kMillisecond);

// One step: a page down, painted. The slowest step of each run is reported too.
void BM_ScrollPageStep(benchmark::State& state) {
    Calendar& c = calendar();
    ui::EntryGrid grid(c.ctx, 0);
    grid.resize(1000, 700);
    grid.show();
    QApplication::processEvents();
    QScrollBar* bar = grid.tableView()->verticalScrollBar();
    double slowest = 0;
    int steps = 0;
    for (auto _ : state) {
        QElapsedTimer t;
        t.start();
        int next = bar->value() + bar->pageStep();
        if (next > bar->maximum())
            next = 0;
        bar->setValue(next);
        paint(grid.tableView()->viewport());
        slowest = std::max(slowest, t.nsecsElapsed() / 1e6);
        ++steps;
    }
    state.counters["slowest_ms"] = slowest;
    state.counters["pages"] = double(kRows) / std::max(1, bar->pageStep());
    state.counters["peak_MB"] = peakMegabytes();
}
BENCHMARK(BM_ScrollPageStep)->Unit(benchmark::kMillisecond)->Iterations(610);

// The window from nothing to its first paint, without the phone read: the tools
// model, the menus and the tool band, both grids over empty tables.
void BM_WindowToFirstPaint(benchmark::State& state) {
    for (auto _ : state) {
        ui::QtUserInterface qtUi;
        core::Context ctx(qtUi);
        tables::CreateInitAndSetAllRS(ctx);
        ui::Main_Form window(ctx);
        qtUi.setMainForm(&window, &ctx);
        main::TSRInitForm(ctx);
        main::setStartTools(ctx);
        window.show();
        window.repaint();
        QApplication::processEvents();
    }
}
BENCHMARK(BM_WindowToFirstPaint)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv) {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QElapsedTimer sinceStart;
    sinceStart.start();
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
