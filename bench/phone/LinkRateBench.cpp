// SPDX-License-Identifier: GPL-3.0-or-later
// How close the link comes to the line rate: a store of 500 records of 150-400
// bytes is read, then 100 records are written, through the driver routines and
// the real serial code against the emulated phone at 115200 baud. The lower
// bound is every byte of the dialogue (commands, headers, records, results) at
// 11,520 bytes a second plus the phone's thinking time per command.
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

// The bytes of one read: the command, the header, the record and the final result.
qint64 readBytes(int index, qsizetype length) {
    const QByteArray n = QByteArray::number(index);
    return ("AT$ORGR=4," + n + "\r").size() + ("\r\n$ORGR: " + n + "," + QByteArray::number(length) + "\r\n").size() +
           length + 2 + 6;
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

struct Bench {
    test::ScriptedUi ui;
    core::Context ctx{ui};
    test::EmulatedPhone phone{{QStringLiteral("--baud"), QString::number(kBaud), QStringLiteral("--latency"),
                               QString::number(kLatencyMs), QStringLiteral("--first"), QStringLiteral("1"),
                               QStringLiteral("--last"), QString::number(kRecords + kWrites)}};
    QList<QByteArray> records;

    Bench() {
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

void BM_ReadStore(benchmark::State& state) {
    Bench b;
    timeSteps(state, kRecords, [&](int n) -> qint64 {
        QByteArray text;
        if (!phone::ATCGetSingleMobileEntry(b.ctx, text, n + 1) || text != b.records[n])
            return -1;
        return readBytes(n + 1, text.size());
    });
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

} // namespace

BENCHMARK(BM_ReadStore)->Iterations(1)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_WriteRecords)->Iterations(1)->UseManualTime()->Unit(benchmark::kMillisecond);

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
