// SPDX-License-Identifier: GPL-3.0-or-later
// The PIM's read road under load: 10,000 events of a year (1,000 of them weekly
// series) read with IncludeRecurrences into a calendar table that already holds
// 500 phone rows, each event paired or appended, each repeat of a series passed
// over. Beside it, the same files parsed and expanded with plain libical calls,
// and the peak resident memory of the process.
#include "core/Context.h"
#include "core/SilentUserInterface.h"
#include "formats/Globals.h"
#include "formats/vCal.h"
#include "pim/DOROutlookSession.h"
#include "pim/Pim.h"
#include "roads/DOROutlookCalendar.h"
#include "tables/TSRADODB.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <libical/ical.h>
#include <sys/resource.h>

#include <algorithm>
#include <cstdio>

using namespace tsr;

namespace {

constexpr int kEvents = 10000;
constexpr int kPhoneRows = 500;

struct Setup {
    QTemporaryDir dir;
    core::SilentUserInterface ui;
    core::Context ctx{ui};

    Setup() {
        ctx.options.pim = dir.path() + QStringLiteral("/pim");
        ctx.formats.DateFormat = QStringLiteral("dd.mm.yyyy");
        ctx.formats.TimeFormat = QStringLiteral("hh:mm:ss");
        ctx.formats.GridTimeStyle = QStringLiteral("hh:mm");
        ctx.formats.DateTimeFormat = QStringLiteral("hh:mm dd.mm.yyyy");
        ctx.flags.GlobalStartDate = core::DateSerial(2026, 1, 1);
        ctx.flags.GlobalEndDate = core::VbDate(core::DateSerial(2026, 12, 31).value + 86399.0 / 86400.0);
        tables::CreateInitAndSetAllRS(ctx);
        pim::Check4Outlook(ctx);
        auto items =
            ctx.servers.MOL->GetNamespace(QStringLiteral("MAPI"))->GetDefaultFolder(pim::olFolderCalendar)->Items();
        const core::VbDate first = core::DateSerial(2026, 1, 1);
        for (int i = 0; i < kEvents; ++i) {
            auto a = pim::asAppointment(items->Add());
            const core::VbDate start(first.value + (i % 365) + (8 + i % 10) / 24.0);
            a->setStart(start);
            a->setEnd(core::VbDate(start.value + 1.0 / 24.0));
            a->setSubject(QStringLiteral("Event %1 of the benchmark year").arg(i));
            if (i % 10 == 0) {
                auto p = a->GetRecurrencePattern();
                p->setRecurrenceType(pim::olRecursWeekly);
                p->setDayOfWeekMask(1 << (i % 7));
            }
            a->Save();
        }
    }

    // The phone's rows as a read of the phone leaves them; every fifth pairs with an event.
    void phoneRows() {
        tables::Recordset& t = *ctx.tables.RSCalendar;
        tables::ClearRecordSet(t);
        for (int i = 0; i < kPhoneRows; ++i) {
            const int event = i % 5 == 0 ? i * 7 + 1 : 20000 + i;
            const QDate day = QDate(2026, 1, 1).addDays(event % 365);
            const QByteArray stamp = day.toString(QStringLiteral("yyyyMMdd")).toLatin1() + 'T' +
                                     QByteArray::number(8 + event % 10).rightJustified(2, '0') + "0000Z";
            QString text = QString::fromLatin1("BEGIN:VCALENDAR\r\nVERSION:1.0\r\nBEGIN:VEVENT\r\nCATEGORIES:"
                                               "MISCELLANEOUS\r\nDTSTART:" +
                                               stamp + "\r\nDTEND:" + stamp + "\r\nDESCRIPTION:Event " +
                                               QByteArray::number(event) +
                                               " of the benchmark year\r\nEND:VEVENT\r\nEND:VCALENDAR\r\n");
            tables::vCalCreateNewRecord(t);
            formats::ParsEntryFromMobile(ctx, t, text);
            t.setValue(QStringLiteral("EntryID"), QString::number(i + 1));
            t.setValue(QStringLiteral("SubType"), int32_t(i + 1));
        }
        ctx.read = {};
        ctx.read.vCalMobileRead = true;
        ctx.read.vCalMobileCount = kPhoneRows;
    }
};

int64_t plainLibical(const QString& dir) {
    int64_t items = 0;
    const icaltimetype from = icaltime_from_string("20260101T000000");
    const icaltimetype to = icaltime_from_string("20261231T235959");
    for (const QString& name : QDir(dir).entryList({QStringLiteral("*.ics")}, QDir::Files, QDir::Name)) {
        QFile file(dir + u'/' + name);
        if (!file.open(QIODevice::ReadOnly))
            continue;
        const QByteArray text = file.readAll();
        icalcomponent* cal = icalparser_parse_string(text.constData());
        icalcomponent* ev = icalcomponent_get_first_component(cal, ICAL_VEVENT_COMPONENT);
        const icaltimetype start = icalcomponent_get_dtstart(ev);
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
    return items;
}

double peakMegabytes() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss / 1024.0;
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    const int rounds = argc > 1 ? std::max(1, atoi(argv[1])) : 5;
    Setup s;
    std::printf("%d events (%d weekly series), %d phone rows, %d rounds\n", kEvents, kEvents / 10, kPhoneRows, rounds);
    QList<double> ratios;
    for (int round = 0; round < rounds; ++round) {
        s.phoneRows();
        // A fresh session each round, so no round reads from the previous one's cache.
        s.ctx.servers.MOL.reset();
        pim::Check4Outlook(s.ctx);
        QElapsedTimer clock;
        clock.start();
        roads::vCalReadOutlook(s.ctx, *s.ctx.tables.RSCalendar, true);
        const double road = clock.nsecsElapsed() / 1e9;
        clock.restart();
        const int64_t occurrences = plainLibical(s.ctx.options.pim + QStringLiteral("/calendar"));
        const double floor = clock.nsecsElapsed() / 1e9;
        ratios << road / floor;
        std::printf("round %d: road %.3f s (%d rows, %d paired), plain libical %.3f s (%lld occurrences), "
                    "ratio %.2f\n",
                    round + 1, road, s.ctx.tables.RSCalendar->recordCount(), int(s.ctx.read.vCalPIMCount), floor,
                    static_cast<long long>(occurrences), road / floor);
    }
    std::sort(ratios.begin(), ratios.end());
    std::printf("median ratio road / plain libical: %.2f (goal: at most 1.5)\n", ratios[ratios.size() / 2]);
    std::printf("peak resident memory: %.1f MB (goal: under 150)\n", peakMegabytes());
    return 0;
}
