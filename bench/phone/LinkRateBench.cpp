// SPDX-License-Identifier: GPL-3.0-or-later
// How close the link comes to the line rate: a store of 500 records of 150-400
// bytes is read, then 100 records are written, through the driver routines and
// the real serial code against the emulated phone at 115200 baud.
// A read is measured against the line-rate bound: the records' own blocks
// (header, bytes, CR LF) at 11,520 bytes a second, with no thinking time at all.
// It is timed on the benchmark's link (2 ms a command) and on a slow one (30 ms
// a command, as over Bluetooth) twice in the same run: reading ahead in ranges,
// and record by record on a phone without range reads (the link's behaviour
// before ranges). The bound of a write is every byte of its dialogue (command,
// prompt, record, result) plus the phone's thinking time per command.
#include "core/Context.h"
#include "phone/ATC.h"
#include "phone/EmulatedPhone.h"
#include "support/ScriptedUi.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QRandomGenerator>
#include <benchmark/benchmark.h>

using namespace tsr;

namespace {

// TESSARINE_BENCH_BAUD and TESSARINE_BENCH_LATENCY change the line for experiments (baud 0: unpaced).
const int kBaud =
    qEnvironmentVariableIsSet("TESSARINE_BENCH_BAUD") ? qEnvironmentVariableIntValue("TESSARINE_BENCH_BAUD") : 115200;
const int kLatencyMs =
    qEnvironmentVariableIsSet("TESSARINE_BENCH_LATENCY") ? qEnvironmentVariableIntValue("TESSARINE_BENCH_LATENCY") : 2;
constexpr int kRecords = 500;
constexpr int kWrites = 100;
const double kBytesPerSecond = kBaud > 0 ? kBaud / 10.0 : 1e300;

QByteArray recordOf(QRandomGenerator& random, int index) {
    const int length = 150 + int(random.bounded(251));
    QByteArray r =
        "BEGIN:VCALENDAR\r\nVERSION:1.0\r\nBEGIN:VEVENT\r\nSUMMARY:Entry " + QByteArray::number(index) + "\r\n";
    const QByteArray tail = "END:VEVENT\r\nEND:VCALENDAR\r\n";
    while (r.size() + tail.size() < length)
        r += char(0x61 + random.bounded(26));
    return r + tail;
}

// The bytes of one write: the command, the prompt, the record and the final result.
qint64 writeBytes(int index, qsizetype length) {
    return ("AT$ORGW=4," + QByteArray::number(index) + "," + QByteArray::number(length) + "\r").size() + 4 + length + 6;
}

void report(benchmark::State& state, double seconds, qint64 bytes, int commands) {
    const double bound = double(bytes) / kBytesPerSecond + commands * kLatencyMs / 1000.0;
    state.counters["measured_s"] = seconds;
    state.counters["bound_s"] = bound;
    state.counters["over_bound_pct"] = (seconds / bound - 1.0) * 100.0;
    state.counters["bytes"] = double(bytes);
}

// The bytes a record's block takes in any read: its header, its bytes and the CR LF after them.
qint64 blockBytes(int index, qsizetype length) {
    return ("$ORGR: " + QByteArray::number(index) + "," + QByteArray::number(length) + "\r\n").size() + length + 2;
}

QStringList phoneOptions(int latencyMs, const QStringList& extra) {
    return QStringList{QStringLiteral("--baud"),    QString::number(kBaud),
                       QStringLiteral("--latency"), QString::number(latencyMs),
                       QStringLiteral("--first"),   QStringLiteral("1"),
                       QStringLiteral("--last"),    QString::number(kRecords + kWrites)} +
           extra;
}

struct Bench {
    test::ScriptedUi ui;
    core::Context ctx{ui};
    test::EmulatedPhone phone;
    QList<QByteArray> records;

    explicit Bench(int latencyMs = kLatencyMs, const QStringList& extra = {}) : phone(phoneOptions(latencyMs, extra)) {
        ctx.flags.GDX_Check = true;
        ctx.flags.GlobalTimeOut = 7500;
        ctx.options.port = phone.link();
        ctx.options.config = QDir::tempPath() + QStringLiteral("/tessarine-bench-phone");
        QRandomGenerator random(20261122);
        for (int i = 1; i <= kRecords; ++i) {
            records << recordOf(random, i);
            phone.seed(i, records.last());
        }
        // Opening the device and the status read are not part of the measure.
        if (!phone::ATCInfo(ctx))
            throw std::runtime_error("the emulated phone does not answer");
    }
};

// Times `commands` steps of `step(n)`, which gives the bytes its step moved or -1 when it failed.
template <class Step> void timeSteps(benchmark::State& state, int commands, Step&& step) {
    for (auto _ : state) {
        qint64 bytes = 0;
        QElapsedTimer clock;
        clock.start();
        for (int n = 0; n < commands; ++n) {
            const qint64 moved = step(n);
            if (moved < 0) {
                state.SkipWithError("a step of the link failed");
                return;
            }
            bytes += moved;
        }
        const double seconds = clock.nsecsElapsed() / 1e9;
        state.SetIterationTime(seconds);
        report(state, seconds, bytes, commands);
    }
}

void BM_WriteRecords(benchmark::State& state) {
    Bench b;
    timeSteps(state, kWrites, [&](int n) -> qint64 {
        const int index = kRecords + 1 + n;
        const QByteArray& record = b.records[n];
        if (!phone::ATCWriteAppointment(b.ctx, record, QString::number(index) + QStringLiteral(".vcs")))
            return -1;
        return writeBytes(index, record.size());
    });
    if (b.phone.record(kRecords + kWrites) != b.records[kWrites - 1])
        state.SkipWithError("the last record did not land");
}

// The store read on a link that pays `latencyMs` a command, against the line-rate bound.
void readStore(benchmark::State& state, int latencyMs, const QStringList& extra) {
    Bench b(latencyMs, extra);
    qint64 lineBytes = 0;
    for (int n = 0; n < kRecords; ++n)
        lineBytes += blockBytes(n + 1, b.records[n].size());
    b.phone.clearJournal();
    for (auto _ : state) {
        QElapsedTimer clock;
        clock.start();
        for (int n = 0; n < kRecords; ++n) {
            QByteArray text;
            if (!phone::ATCGetSingleMobileEntry(b.ctx, text, n + 1) || text != b.records[n]) {
                state.SkipWithError("a read failed");
                return;
            }
        }
        const double seconds = clock.nsecsElapsed() / 1e9;
        state.SetIterationTime(seconds);
        const double bound = double(lineBytes) / kBytesPerSecond;
        state.counters["measured_s"] = seconds;
        state.counters["line_bound_s"] = bound;
        state.counters["over_line_bound_pct"] = (seconds / bound - 1.0) * 100.0;
        state.counters["commands"] = double(b.phone.journal().size());
    }
}

constexpr int kSlowLatencyMs = 30;

void BM_ReadStore(benchmark::State& state) {
    readStore(state, kLatencyMs, {});
}

void BM_ReadStoreSlowLinkAhead(benchmark::State& state) {
    readStore(state, kSlowLatencyMs, {});
}

void BM_ReadStoreSlowLinkSingle(benchmark::State& state) {
    readStore(state, kSlowLatencyMs, {QStringLiteral("--no-range")});
}

} // namespace

BENCHMARK(BM_ReadStoreSlowLinkSingle)->Iterations(1)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ReadStoreSlowLinkAhead)->Iterations(1)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ReadStore)->Iterations(1)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_WriteRecords)->Iterations(1)->UseManualTime()->Unit(benchmark::kMillisecond);

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
