// SPDX-License-Identifier: GPL-3.0-or-later
// Fuzzes the readers of the local PIM store: an .ics file, a vCard file and a
// Find filter. A numbered error is their normal answer to bad input; anything
// else is a fault. A vCard that was read must be written and read back.
#include "core/Error.h"
#include "core/Settings.h"
#include "pim/Filter.h"
#include "pim/local/IcsEvent.h"
#include "pim/local/VCardFile.h"

#include <cstdlib>

using namespace tsr;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const core::DateFormats formats;
    static pim::local::ZoneCache zones;
    const QByteArray bytes(reinterpret_cast<const char*>(data), qsizetype(size));
    const QString path = QStringLiteral("fuzz");

    try {
        auto ev = pim::local::parseEvent(bytes, path, zones);
        pim::local::occurrences(*ev, ev->start, core::VbDate(ev->start.value + 400.0), 100);
        ev->timesChanged = ev->recurrenceChanged = ev->reminderChanged = true;
        pim::local::writeEvent(*ev, core::VbDate(46000.0));
    } catch (const core::TsrError&) {
    }

    try {
        auto contact = pim::local::parseVCard(bytes, path);
        const QByteArray written = pim::local::writeVCard(*contact, core::VbDate(46000.0));
        auto again = pim::local::parseVCard(written, path);
        if (again->text(QStringLiteral("UID")) != contact->text(QStringLiteral("UID")))
            std::abort();
    } catch (const core::TsrError&) {
    }

    try {
        pim::parseFilter(QString::fromUtf8(bytes), formats);
    } catch (const core::TsrError&) {
    }
    return 0;
}
