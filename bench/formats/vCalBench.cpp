// SPDX-License-Identifier: GPL-3.0-or-later
// Throughput of the calendar entry format over 10,000 generated entries of
// 150-400 bytes (a third with quoted-printable UTF-8 text, a fifth series):
// writing rows to text, reading texts into rows, and, over the same bytes,
// libical's vCalendar 1.0 parser. The closing lines give our parse speed as a
// multiple of libical's: once from the runs above, which come seconds apart,
// and once as the median of rounds in which the two take turns.
#include "core/Context.h"
#include "core/SilentUserInterface.h"
#include "formats/Globals.h"
#include "formats/vCal.h"
#include "tables/TSRADODB.h"

#include <benchmark/benchmark.h>
#include <vcc.h>

#include <QCoreApplication>
#include <algorithm>
#include <cstdio>
#include <ctime>
#include <map>
#include <random>

using namespace tsr;

namespace {

constexpr int kEntries = 10000;

const char16_t* const kWords[] = {u"Meeting", u"Dentist", u"Call", u"Project", u"review", u"with", u"team",
                                  u"Lunch",   u"Berlin",  u"room", u"budget",  u"plan",   u"Anna", u"Bob"};
const char16_t* const kWide[] = {u"Müller", u"Grüße", u"€", u"Straße", u"会议", u"東京", u"ÄÖÜ", u"naïve", u"Zoë"};

struct Corpus {
    core::SilentUserInterface ui; // answers every box at once and keeps nothing
    core::Context ctx{ui};
    tables::Recordset rows{QStringLiteral("RSCalendar")};
    std::vector<QByteArray> bytes; // the text of each row, as the phone holds it
    std::vector<QString> texts;    // the same, read back through the code page
    qint64 totalBytes = 0;

    Corpus() {
        tables::InitCalendarRS(rows);
        ctx.phone.MobileModel = QStringLiteral("QX71");
        std::mt19937 rng(20261122);
        auto pick = [&rng](int n) { return int(rng() % unsigned(n)); };
        for (int i = 0; i < kEntries; ++i) {
            for (int attempt = 0;; ++attempt) {
                if (attempt > 0)
                    rows.deleteCurrent();
                fillRow(i, pick);
                const QString text = formats::calendarEntryText(rows);
                if ((text.size() >= 150 && text.size() <= 400) || attempt > 50) {
                    bytes.push_back(formats::calendarEntryBytes(text));
                    texts.push_back(formats::textFromCodePage(bytes.back()));
                    totalBytes += bytes.back().size();
                    break;
                }
            }
        }
    }

    template <class Pick> void fillRow(int i, Pick& pick) {
        tables::vCalCreateNewRecord(rows);
        const bool quoted = i % 3 == 0;
        QString description;
        const int words = 2 + pick(quoted ? 8 : 30);
        for (int w = 0; w < words; ++w) {
            if (w)
                description += u' ';
            description +=
                QString::fromUtf16(quoted && w % 2 ? kWide[pick(std::size(kWide))] : kWords[pick(std::size(kWords))]);
        }
        const core::VbDate start(core::DateSerial(2026, 1 + pick(12), 1 + pick(28)).value +
                                 core::TimeSerial(6 + pick(14), pick(4) * 15, 0).value);
        auto set = [this](const char16_t* f, const core::Value& v) { rows.setValue(QString::fromUtf16(f), v); };
        set(u"Start", start);
        set(u"StartDate", core::DateValue(start));
        set(u"EndTime", core::TimeValue(core::VbDate(start.value + 1.0 / 24)));
        set(u"StartEndDiff", int64_t(0));
        set(u"Description", description);
        if (pick(2))
            set(u"Summary", QStringLiteral("s"));
        static const char16_t* const status[] = {u"MemoStatus", u"MeetingStatus", u"AnniversaryStatus",
                                                 u"PhoneCallStatus"};
        set(status[pick(4)], true);
        if (pick(3) == 0) {
            set(u"AAlarmFlag", true);
            set(u"AAlarm", core::TimeValue(start));
        }
        if (i % 5 == 0) {
            static const char16_t* const kinds[] = {u"D", u"W", u"M", u"Y"};
            set(u"ISRecurring", true);
            set(u"RecurrenceType", QString::fromUtf16(kinds[(i / 5) % 4]));
            set(u"RecurrenceDuration", int64_t(0));
            set(u"PIMRecPatt", core::DateValue(start));
            formats::vCalSetSerieFields(ctx, rows, int16_t(2 | 16));
        }
    }
};

Corpus& corpus() {
    static Corpus c;
    return c;
}

void BM_vCalWrite(benchmark::State& state) {
    Corpus& c = corpus();
    for (auto _ : state) {
        qint64 written = 0;
        c.rows.moveFirst();
        while (!c.rows.eof()) {
            const QByteArray b = formats::calendarEntryBytes(formats::calendarEntryText(c.rows));
            written += b.size();
            c.rows.moveNext();
        }
        benchmark::DoNotOptimize(written);
    }
    state.SetBytesProcessed(state.iterations() * c.totalBytes);
}

// The reader makes each new row (vCalCreateNewRecord) just before it reads an
// entry into it. Making rows is the table's work, not the parser's, and stays
// out of the timing; rows are made a small batch at a time so that, as in the
// reader, the parser writes into a row still in the cache. Making all 10,000
// first would have every row cold, which no real read does.
constexpr size_t kBatch = 64;

// Reads the corpus from its first entry on into `table`, timing only the
// reading; `timed(work)` runs and times one batch.
template <class Timed> void readCorpus(Corpus& c, tables::Recordset& table, Timed&& timed) {
    for (size_t first = 0; first < c.bytes.size(); first += kBatch) {
        const size_t end = std::min(first + kBatch, c.bytes.size());
        for (size_t i = first; i < end; ++i)
            tables::vCalCreateNewRecord(table);
        table.setAbsolutePosition(int(first) + 1);
        timed([&] {
            // Bytes from the phone become text, then a row.
            for (size_t i = first; i < end; ++i) {
                QString text = formats::textFromCodePage(c.bytes[i]);
                formats::ParsEntryFromMobile(c.ctx, table, text);
                table.moveNext();
            }
        });
    }
}

void BM_vCalParse(benchmark::State& state) {
    Corpus& c = corpus();
    for (auto _ : state) {
        state.PauseTiming();
        tables::Recordset table(QStringLiteral("RSCalendar"));
        tables::InitCalendarRS(table);
        readCorpus(c, table, [&state](auto&& work) {
            state.ResumeTiming();
            work();
            state.PauseTiming();
        });
        state.ResumeTiming();
    }
    state.SetBytesProcessed(state.iterations() * c.totalBytes);
}

// Making a row and reading the entry into it, both timed.
void BM_vCalMakeRowAndParse(benchmark::State& state) {
    Corpus& c = corpus();
    for (auto _ : state) {
        state.PauseTiming();
        tables::Recordset table(QStringLiteral("RSCalendar"));
        tables::InitCalendarRS(table);
        state.ResumeTiming();
        for (const QByteArray& b : c.bytes) {
            tables::vCalCreateNewRecord(table);
            QString text = formats::textFromCodePage(b);
            formats::ParsEntryFromMobile(c.ctx, table, text);
        }
        state.PauseTiming(); // the table's end is not the reader's
        table.close();
        state.ResumeTiming();
    }
    state.SetBytesProcessed(state.iterations() * c.totalBytes);
}

void BM_libicalVcalParse(benchmark::State& state) {
    Corpus& c = corpus();
    registerMimeErrorHandler([](char*) {});
    int64_t failed = 0;
    for (auto _ : state) {
        for (const QByteArray& b : c.bytes) {
            VObject* o = Parse_MIME(b.constData(), static_cast<unsigned long>(b.size()));
            if (!o)
                ++failed;
            else
                cleanVObjects(o);
        }
    }
    state.counters["failed"] = double(failed);
    state.SetBytesProcessed(state.iterations() * c.totalBytes);
}

// This thread's CPU time in seconds.
double cpuSeconds() {
    timespec t{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &t);
    return double(t.tv_sec) + double(t.tv_nsec) * 1e-9;
}

// A shared machine's speed drifts from second to second, and the two parsers
// above run some seconds apart. Here they take turns over the whole corpus, and
// each round gives one ratio; the median of the rounds is the figure to trust.
struct PairedRatio {
    double median = 0, lowest = 0, highest = 0;

    explicit PairedRatio(std::vector<double> ratios) {
        std::sort(ratios.begin(), ratios.end());
        median = ratios[ratios.size() / 2];
        lowest = ratios.front();
        highest = ratios.back();
    }
};

// libical's parser over the corpus, in CPU seconds.
double libicalSeconds(const Corpus& c) {
    const double start = cpuSeconds();
    for (const QByteArray& b : c.bytes) {
        if (VObject* o = Parse_MIME(b.constData(), static_cast<unsigned long>(b.size())))
            cleanVObjects(o);
    }
    return cpuSeconds() - start;
}

// Each round gives libical's time over ours twice: ours reading only, and ours
// making each row as well.
std::pair<PairedRatio, PairedRatio> pairedRounds(int rounds) {
    Corpus& c = corpus();
    std::vector<double> reading, makingAndReading;
    for (int r = 0; r < rounds; ++r) {
        tables::Recordset table(QStringLiteral("RSCalendar"));
        tables::InitCalendarRS(table);
        double ours = 0;
        readCorpus(c, table, [&ours](auto&& work) {
            const double start = cpuSeconds();
            work();
            ours += cpuSeconds() - start;
        });
        reading.push_back(libicalSeconds(c) / ours);

        tables::Recordset second(QStringLiteral("RSCalendar"));
        tables::InitCalendarRS(second);
        const double start = cpuSeconds();
        for (const QByteArray& b : c.bytes) {
            tables::vCalCreateNewRecord(second);
            QString text = formats::textFromCodePage(b);
            formats::ParsEntryFromMobile(c.ctx, second, text);
        }
        const double oursWithRows = cpuSeconds() - start;
        makingAndReading.push_back(libicalSeconds(c) / oursWithRows);
    }
    return {PairedRatio(std::move(reading)), PairedRatio(std::move(makingAndReading))};
}

BENCHMARK(BM_vCalWrite)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_vCalParse)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_vCalMakeRowAndParse)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_libicalVcalParse)->Unit(benchmark::kMillisecond);

// Keeps every run's bytes per second, to print the ratio at the end.
class RatioReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& r : runs) {
            auto it = r.counters.find("bytes_per_second");
            if (it != r.counters.end())
                rates[r.benchmark_name()] = it->second.value;
        }
    }
    std::map<std::string, double> rates;
};

} // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    const Corpus& c = corpus();
    qint64 smallest = 1 << 30, largest = 0;
    for (const QByteArray& b : c.bytes) {
        smallest = std::min<qint64>(smallest, b.size());
        largest = std::max<qint64>(largest, b.size());
    }
    std::printf("corpus: %d entries, %lld bytes (%lld to %lld per entry)\n", kEntries,
                static_cast<long long>(c.totalBytes), static_cast<long long>(smallest),
                static_cast<long long>(largest));
    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    const double ours = reporter.rates["BM_vCalParse"], theirs = reporter.rates["BM_libicalVcalParse"];
    if (ours > 0 && theirs > 0)
        std::printf("parse, runs above: ours %.1f MB/s, libical vcal %.1f MB/s, ratio %.2f\n", ours / 1e6, theirs / 1e6,
                    ours / theirs);
    const auto [reading, makingAndReading] = pairedRounds(15);
    std::printf("parse, 15 paired rounds: ratio median %.2f (lowest %.2f, highest %.2f)\n", reading.median,
                reading.lowest, reading.highest);
    std::printf("make row and parse, 15 paired rounds: ratio median %.2f (lowest %.2f, highest %.2f)\n",
                makingAndReading.median, makingAndReading.lowest, makingAndReading.highest);
    cleanStrTbl();
    return 0;
}
