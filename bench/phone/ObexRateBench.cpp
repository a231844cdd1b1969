// SPDX-License-Identifier: GPL-3.0-or-later
// How close the file-transfer road comes to the line rate over OBEX: a contact
// folder of 500 files of 150-400 bytes is listed and read, then 100 contacts
// are written as new ones, through the driver routines and the real serial code
// against the emulated phone at 115200 baud. The bound is every byte that
// crossed the line (the switch to OBEX, packet headers, names, listing, bodies
// and answers, counted by the server) at 11,520 bytes a second, plus the
// phone's thinking time per request.
#include "core/Context.h"
#include "phone/ComDrvCode.h"
#include "phone/EmulatedPhone.h"
#include "phone/GDX.h"
#include "phone/ObexServer.h"
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
constexpr int kContacts = 500;
constexpr int kWrites = 100;
const double kBytesPerSecond = kBaud > 0 ? kBaud / 10.0 : 1e300;
const QString kPb = QStringLiteral("\\telecom\\pb\\");

QByteArray contactOf(QRandomGenerator& random, int index) {
    const int length = 150 + int(random.bounded(251));
    QByteArray r = "BEGIN:VCARD\r\nVERSION:1.0\r\nN:Name" + QByteArray::number(index) + ";First\r\nNOTE:";
    const QByteArray tail = "\r\nEND:VCARD\r\n";
    while (r.size() + tail.size() < length)
        r += char(0x61 + random.bounded(26));
    return r + tail;
}

struct Bench {
    test::ScriptedUi ui;
    core::Context ctx{ui};
    test::EmulatedPhone phone{{QStringLiteral("--baud"), QString::number(kBaud), QStringLiteral("--latency"),
                               QString::number(kLatencyMs), QStringLiteral("--contacts"),
                               QString::number(kContacts + kWrites)}};
    QList<QByteArray> contacts;

    explicit Bench(bool seeded) {
        ctx.flags.GDX_Check = true;
        ctx.flags.GlobalTimeOut = 7500;
        ctx.options.port = phone.link();
        ctx.options.config = QDir::tempPath() + QStringLiteral("/tessarine-bench-obex");
        QRandomGenerator random(20261123);
        for (int i = 1; i <= kContacts; ++i) {
            contacts << contactOf(random, i);
            if (seeded)
                phone.seedFile(QStringLiteral("pb/%1.vcf").arg(i), contacts.last());
        }
        // Opening the device and asking for OBEX are not part of the measure; the session is.
        if (!phone::InitComm(ctx) || !ctx.servers.GDXServer)
            throw std::runtime_error("the emulated phone offers no file transfer");
    }
    phone::ObexServer& server() { return dynamic_cast<phone::ObexServer&>(*ctx.servers.GDXServer); }
};

void report(benchmark::State& state, double seconds, qint64 bytes, int requests) {
    const double bound = double(bytes) / kBytesPerSecond + requests * kLatencyMs / 1000.0;
    state.counters["measured_s"] = seconds;
    state.counters["bound_s"] = bound;
    state.counters["over_bound_pct"] = (seconds / bound - 1.0) * 100.0;
    state.counters["bytes"] = double(bytes);
    state.counters["requests"] = requests;
}

void BM_ObexListAndReadContacts(benchmark::State& state) {
    Bench b(true);
    for (auto _ : state) {
        QElapsedTimer clock;
        clock.start();
        QStringList names;
        if (phone::DirMobileEntryFiles(b.ctx, b.ctx.servers.GDXServer, kPb, QStringLiteral("*.vcf"), names) !=
            kContacts) {
            state.SkipWithError("the listing is not whole");
            return;
        }
        for (const QString& name : names) {
            QByteArray text;
            if (!phone::GetSingleMobileEntry(b.ctx, b.ctx.servers.GDXServer, kPb, text, name) ||
                text != b.contacts[name.section(u'.', 0, 0).toInt() - 1]) {
                state.SkipWithError("a contact did not read back");
                return;
            }
        }
        const double seconds = clock.nsecsElapsed() / 1e9;
        state.SetIterationTime(seconds);
        report(state, seconds, b.server().lineBytes(), b.server().requestCount());
    }
}

void BM_ObexWriteContacts(benchmark::State& state) {
    Bench b(false);
    for (auto _ : state) {
        QElapsedTimer clock;
        clock.start();
        for (int n = 0; n < kWrites; ++n) {
            if (!phone::GDXWriteStream(b.ctx, b.ctx.servers.GDXServer, b.contacts[n], kPb, QStringLiteral("new.vcf"))) {
                state.SkipWithError("a write failed");
                return;
            }
        }
        const double seconds = clock.nsecsElapsed() / 1e9;
        state.SetIterationTime(seconds);
        report(state, seconds, b.server().lineBytes(), b.server().requestCount());
    }
    if (b.phone.file(QStringLiteral("pb/%1.vcf").arg(kWrites)) != b.contacts[kWrites - 1])
        state.SkipWithError("the last contact did not land in its slot");
}

} // namespace

BENCHMARK(BM_ObexListAndReadContacts)->Iterations(1)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ObexWriteContacts)->Iterations(1)->UseManualTime()->Unit(benchmark::kMillisecond);

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
