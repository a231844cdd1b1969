// SPDX-License-Identifier: GPL-3.0-or-later
// The read road of the phone against a full calendar table: each fresh phone
// entry is offered to vCalFindCompare and merged into its partner or appended,
// as the reader does. Half of the entries have a partner (a third of those in a
// weekly series, some as identical twins), half are new. After each run a plain
// scan of the table checks every pair against the pairing built into the data.
#include "core/Context.h"
#include "support/ScriptedUi.h"
#include "sync/vCalMatch.h"
#include "tables/TSRADODB.h"

#include <benchmark/benchmark.h>

#include <QHash>
#include <algorithm>

using namespace tsr;
using core::VbDate;
using tables::Recordset;

namespace {

const VbDate kBase = core::DateSerial(2026, 1, 1);

struct Appointment {
    VbDate start;
    QString text;
    bool series = false;
    VbDate patternStart;
};

// PIM row i: four rows a day; every tenth a weekly series; rows 4k and 4k+1 of
// every 50th day are twins (same start, same subject).
Appointment pimAppointment(int i) {
    Appointment a;
    const int day = i / 4;
    int slot = i % 4;
    if (day % 50 == 0 && slot == 1)
        slot = 0;
    a.start = VbDate(kBase.value + day + (8 + slot * 2) / 24.0);
    a.text = (day % 50 == 0 && i % 4 < 2) ? QStringLiteral("Twin meeting %1").arg(day)
                                          : QStringLiteral("Appointment number %1 with a rather long subject").arg(i);
    if (i % 10 == 3) {
        a.series = true;
        a.patternStart = VbDate(kBase.value + day - 7 * (1 + i % 5));
    }
    return a;
}

void fill(Recordset& t, core::Context& ctx, const Appointment& a, bool mobile, const QString& id) {
    tables::vCalCreateNewRecord(t);
    t.setValue(QStringLiteral(u"PIM"), !mobile);
    t.setValue(QStringLiteral(u"Mobile"), mobile);
    t.setValue(QStringLiteral(u"EntryType"), int32_t(mobile ? 2 : 1));
    t.setValue(QStringLiteral(u"Typ"), QString());
    t.setValue(QStringLiteral(u"Start"), a.start);
    t.setValue(QStringLiteral(u"StartDate"), core::DateValue(a.start));
    t.setValue(QStringLiteral(u"StartasText"), a.start);
    t.setValue(QStringLiteral(u"StartTime"), core::Format(core::TimeValue(a.start), ctx.formats.TimeFormat));
    // The phone keeps 32 characters of a subject, in its own case.
    t.setValue(QStringLiteral(u"Text"), mobile ? a.text.left(32).toUpper() : a.text);
    t.setValue(mobile ? QStringLiteral(u"EntryID") : QStringLiteral(u"UID"), id);
    if (a.series) {
        t.setValue(QStringLiteral(u"ISRecurring"), true);
        t.setValue(QStringLiteral(u"RecurrenceType"), QStringLiteral(u"W"));
        t.setValue(QStringLiteral(u"Weekdaymask"), int64_t(1) << core::Weekday(a.start) >> 1);
        if (mobile)
            t.setValue(QStringLiteral(u"StartDate"), a.patternStart);
        else
            t.setValue(QStringLiteral(u"PimRecPattString"), t.dateAsText(a.patternStart));
    }
    t.update();
}

struct Run {
    test::ScriptedUi ui;
    core::Context ctx{ui};
    Recordset table{QStringLiteral("RSCalendar")};
    Recordset scratch{QStringLiteral("scratch")};
    QHash<QString, QString> expected; // phone EntryID -> PIM UID
    int pimRows = 0;
    int fresh = 0;

    Run(int pimCount, int phoneCount) : pimRows(pimCount), fresh(phoneCount) {
        tables::InitCalendarRS(table);
        tables::InitCalendarRS(scratch);
        tables::applyDateTextForm(ctx, table);
        tables::applyDateTextForm(ctx, scratch);
        for (int i = 0; i < pimCount; ++i)
            fill(table, ctx, pimAppointment(i), false, QStringLiteral("uid-%1").arg(i));
        ctx.read.vCalPIMRead = true;
        ctx.read.vCalPIMCount = pimCount;
    }

    // Phone entry j: even ones are copies of PIM rows spread over the table, odd
    // ones new appointments at half past the hour.
    Appointment phoneAppointment(int j) {
        if (j % 2 == 0) {
            // The offset walks through the kinds of row: series, twins, plain.
            const int i = std::min(pimRows - 1, int(qint64(j) * pimRows / fresh) + (j / 2) % 8);
            expected.insert(QString::number(j + 1), QStringLiteral("uid-%1").arg(i));
            return pimAppointment(i);
        }
        Appointment a;
        a.start = VbDate(kBase.value + (j % (pimRows / 4)) + 9.5 / 24.0);
        a.text = QStringLiteral("New on the phone %1").arg(j);
        return a;
    }

    void readPhone() {
        for (int j = 0; j < fresh; ++j) {
            tables::ClearRecordSet(scratch);
            fill(scratch, ctx, phoneAppointment(j), true, QString::number(j + 1));
            sync::admitCalendarEntry(ctx, table, scratch, sync::ReadSide::Mobile);
        }
    }

    // A plain walk over every row: each phone entry stands where the data says.
    bool verify() {
        int paired = 0;
        int phoneOnly = 0;
        for (table.moveFirst(); !table.eof(); table.moveNext()) {
            const int type = table.value(QStringLiteral(u"EntryType")).toInt32();
            const QString id = table.value(QStringLiteral(u"EntryID")).toText();
            if (type == 3) {
                ++paired;
                if (expected.value(id) != table.value(QStringLiteral(u"UID")).toText())
                    return false;
            } else if (type == 2) {
                ++phoneOnly;
                if (expected.contains(id))
                    return false;
            }
        }
        return paired == expected.size() && phoneOnly == fresh - expected.size() &&
               table.recordCount() == pimRows + phoneOnly;
    }
};

void BM_ReadPhoneIntoTable(benchmark::State& state) {
    const int pimCount = int(state.range(0));
    const int phoneCount = int(state.range(1));
    for (auto _ : state) {
        state.PauseTiming();
        auto run = std::make_unique<Run>(pimCount, phoneCount);
        state.ResumeTiming();
        run->readPhone();
        state.PauseTiming();
        if (!run->verify()) {
            state.SkipWithError("the pairs differ from a plain scan");
            break;
        }
        run.reset();
        state.ResumeTiming();
    }
    state.SetComplexityN(pimCount);
}

} // namespace

BENCHMARK(BM_ReadPhoneIntoTable)
    ->Args({10000, 1000})
    ->Args({20000, 2000})
    ->Unit(benchmark::kMillisecond)
    ->Iterations(3);

BENCHMARK_MAIN();
