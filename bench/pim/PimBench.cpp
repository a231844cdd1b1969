// SPDX-License-Identifier: GPL-3.0-or-later
// The local store under load: 10,000 events (1,000 of them weekly series) and
// 5,000 contacts. Measures opening the store and reading one year of the
// calendar with IncludeRecurrences through Find/FindNext, and reading all
// contacts; beside them, the same calendar files parsed and expanded with
// plain libical calls, and the ratio of the two.
#include "core/Context.h"
#include "core/SilentUserInterface.h"
#include "pim/Pim.h"
#include "pim/local/LocalStore.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>
#include <libical/ical.h>

#include <cstdio>
#include <map>

namespace {

using namespace tsr;

struct Fixture {
    QTemporaryDir dir;
    core::SilentUserInterface ui;
    core::Context ctx{ui};

    Fixture() {
        ctx.flags.GlobalSilent = true;
        ctx.formats.DateFormat = QStringLiteral("dd.mm.yyyy");
        ctx.formats.GridTimeStyle = QStringLiteral("hh:mm");
        auto app = pim::local::openLocalApplication(ctx, root());
        auto ns = app->GetNamespace(QStringLiteral("MAPI"));
        auto calendar = ns->GetDefaultFolder(pim::olFolderCalendar)->Items();
        const core::VbDate first = core::DateSerial(2025, 7, 1);
        for (int i = 0; i < 10000; ++i) {
            auto a = pim::asAppointment(calendar->Add());
            const core::VbDate start(first.value + (i % 730) + (8 + i % 10) / 24.0);
            a->setStart(start);
            a->setEnd(core::VbDate(start.value + 1.0 / 24.0));
            a->setSubject(QStringLiteral("Event %1").arg(i));
            a->setReminderSet(i % 3 == 0);
            if (i % 10 == 0) {
                auto p = a->GetRecurrencePattern();
                p->setRecurrenceType(pim::olRecursWeekly);
                p->setDayOfWeekMask(1 << (i % 7));
            }
            a->Save();
        }
        auto contacts = ns->GetDefaultFolder(pim::olFolderContacts)->Items();
        for (int i = 0; i < 5000; ++i) {
            auto c = pim::asContact(contacts->Add());
            c->setLastName(QStringLiteral("Last%1").arg(i * 7919 % 5000));
            c->setFirstName(QStringLiteral("First%1").arg(i));
            c->setCompanyName(i % 2 ? QStringLiteral("Company %1").arg(i) : QString());
            c->setHomeTelephoneNumber(QStringLiteral("+49 30 %1").arg(i));
            c->setMobileTelephoneNumber(QStringLiteral("+49 170 %1").arg(i));
            c->setEmail1Address(QStringLiteral("p%1@example.org").arg(i));
            c->setHomeAddressStreet(QStringLiteral("Street %1").arg(i));
            c->setHomeAddressCity(QStringLiteral("Berlin"));
            c->Save();
        }
    }
    QString root() const { return dir.path() + QStringLiteral("/pim"); }
};

Fixture& fixture() {
    static Fixture f;
    return f;
}

void BM_CalendarYearThroughFind(benchmark::State& state) {
    Fixture& f = fixture();
    int64_t items = 0;
    for (auto _ : state) {
        auto app = pim::local::openLocalApplication(f.ctx, f.root());
        auto list = app->GetNamespace(QStringLiteral("MAPI"))->GetDefaultFolder(pim::olFolderCalendar)->Items();
        list->setIncludeRecurrences(true);
        list->Sort(QStringLiteral("[Start]"));
        items = 0;
        for (auto item = list->Find(QStringLiteral("[Start]>=\"01.01.2026\" and [Start] <=\"31.12.2026 23:59\"")); item;
             item = list->FindNext()) {
            auto a = pim::asAppointment(item);
            benchmark::DoNotOptimize(a->Start());
            benchmark::DoNotOptimize(a->Subject());
            ++items;
        }
    }
    state.counters["items"] = double(items);
}

// The floor: the same files read, parsed and expanded over the year with libical alone.
void BM_CalendarYearPlainLibical(benchmark::State& state) {
    Fixture& f = fixture();
    const QString dir = f.root() + QStringLiteral("/calendar");
    int64_t items = 0;
    for (auto _ : state) {
        items = 0;
        const QStringList names = QDir(dir).entryList({QStringLiteral("*.ics")}, QDir::Files, QDir::Name);
        icaltimetype from = icaltime_from_string("20260101T000000");
        icaltimetype to = icaltime_from_string("20261231T235900");
        for (const QString& name : names) {
            QFile file(dir + u'/' + name);
            if (!file.open(QIODevice::ReadOnly))
                continue;
            const QByteArray text = file.readAll();
            icalcomponent* cal = icalparser_parse_string(text.constData());
            icalcomponent* ev = icalcomponent_get_first_component(cal, ICAL_VEVENT_COMPONENT);
            const icaltimetype start = icalcomponent_get_dtstart(ev);
            benchmark::DoNotOptimize(icalcomponent_get_summary(ev));
            if (icalproperty* rrule = icalcomponent_get_first_property(ev, ICAL_RRULE_PROPERTY)) {
                icalrecur_iterator* it = icalrecur_iterator_new(icalproperty_get_rrule(rrule), start);
                icalrecur_iterator_set_start(it, from);
                for (icaltimetype t = icalrecur_iterator_next(it);
                     !icaltime_is_null_time(t) && icaltime_compare(t, to) <= 0; t = icalrecur_iterator_next(it))
                    ++items;
                icalrecur_iterator_free(it);
            } else if (icaltime_compare(start, from) >= 0 && icaltime_compare(start, to) <= 0) {
                ++items;
            }
            icalcomponent_free(cal);
        }
    }
    state.counters["items"] = double(items);
}

void BM_AllContacts(benchmark::State& state) {
    Fixture& f = fixture();
    int64_t items = 0;
    for (auto _ : state) {
        auto app = pim::local::openLocalApplication(f.ctx, f.root());
        auto list = app->GetNamespace(QStringLiteral("MAPI"))->GetDefaultFolder(pim::olFolderContacts)->Items();
        list->Sort(QStringLiteral("[LastName]"));
        const int n = list->Count();
        items = 0;
        for (int i = 1; i <= n; ++i) {
            auto c = pim::asContact(list->ItemAt(i));
            benchmark::DoNotOptimize(c->LastName());
            benchmark::DoNotOptimize(c->FirstName());
            benchmark::DoNotOptimize(c->HomeTelephoneNumber());
            benchmark::DoNotOptimize(c->MobileTelephoneNumber());
            benchmark::DoNotOptimize(c->HomeAddressStreet());
            ++items;
        }
    }
    state.counters["items"] = double(items);
}

BENCHMARK(BM_CalendarYearThroughFind)->Unit(benchmark::kMillisecond)->MinTime(2.0);
BENCHMARK(BM_CalendarYearPlainLibical)->Unit(benchmark::kMillisecond)->MinTime(2.0);
BENCHMARK(BM_AllContacts)->Unit(benchmark::kMillisecond)->MinTime(2.0);

// Keeps each benchmark's time per iteration, to print the ratio at the end.
class RatioReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs)
            times[run.benchmark_name()] = run.GetAdjustedRealTime();
        ConsoleReporter::ReportRuns(runs);
    }
    std::map<std::string, double> times;
};

} // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    fixture();
    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    const double ours = reporter.times["BM_CalendarYearThroughFind/min_time:2.000"];
    const double floor = reporter.times["BM_CalendarYearPlainLibical/min_time:2.000"];
    if (ours > 0 && floor > 0)
        std::printf("calendar year read / plain libical: %.2f (goal: within 1.5)\n", ours / floor);
    benchmark::Shutdown();
    return 0;
}
