// SPDX-License-Identifier: GPL-3.0-or-later
#include "phone/ATC.h"

#include "core/ErrorReport.h"
#include "core/Numbers.h"
#include "phone/ATCServer.h"
#include "phone/ComDrvCode.h"
#include "tables/Recordset.h"

namespace tsr::phone {

namespace {

const QString kATC = QStringLiteral("ATC");

// Every driver step: the server in its slot, then its port.
ATCServer& guard(core::Context& ctx) {
    ATCServer& server = atcServer(ctx);
    SetATCPort(ctx);
    return server;
}

// The calendar table's current row is an entry the phone already holds.
bool currentRowOnMobile(core::Context& ctx) {
    const tables::Recordset* rs = ctx.tables.RSCalendar.get();
    return rs && rs->recordCount() > 0 && rs->value(QStringLiteral("Mobile")).toBool();
}

} // namespace

int16_t storeCapacity(int16_t first, int16_t last) {
    return first != 0 ? last : core::toInt16(qint64(last) + 1);
}

bool ATCTest(core::Context& ctx) {
    try {
        atcServer(ctx);
    } catch (const std::exception& e) {
        core::raise(-1990, QStringLiteral("ATCTEST"),
                    QString::fromLocal8Bit(e.what()) +
                        QStringLiteral("\r\nGDX server software could not be found.\r\nPlease make sure, that the GDX "
                                       "software is installed correctly on your system!"));
    }
    if (!ctx.servers.ATCServer)
        core::raise(-1990, QStringLiteral("ATCTEST"),
                    QStringLiteral("\r\nGDX server software could not be found.\r\nPlease make sure, that the GDX "
                                   "software is installed correctly on your system!"));
    return true;
}

bool ATCInfo(core::Context& ctx) {
    return core::guarded(ctx, kATC, QStringLiteral("ATCInfo"), false, [&] {
        ATCServer& server = guard(ctx);
        ctx.phone.MobileManufacturer = server.Manufacturer();
        ctx.phone.MobileModel = server.Model();
        int16_t first = 0;
        int16_t last = 0;
        server.GetStoreRange(atc::CalendarStore, first, last);
        const int16_t capacity = storeCapacity(first, last);
        ctx.phone.MobileCapacity = capacity;
        ctx.phone.MaxEntries = capacity;
        ctx.read.MobileCalendarCapacity = capacity;
        ctx.phone.FirstIndex = first;
        ctx.phone.LastIndex = last;
        ctx.phone.MobileCalCount = 0;
        return true;
    });
}

bool ATCGetSingleMobileEntry(core::Context& ctx, QByteArray& text, int index) {
    return core::guarded(ctx, kATC, QStringLiteral("ATCGetSingleMobileEntry"), false, [&] {
        ATCServer& server = guard(ctx);
        ctx.read.MobileConnected = true;
        server.ReadEntry(index, text);
        dumpItem(QString(), QString::number(index), text, QStringLiteral("Read:"));
        return true;
    });
}

bool ATCWriteAppointment(core::Context& ctx, const QByteArray& text, const QString& file) {
    return core::guarded(ctx, kATC, QStringLiteral("ATCWriteAppointment"), false, [&] {
        ATCServer& server = guard(ctx);
        ctx.read.MobileConnected = true;
        const int index = int(core::Val(file.section(u'.', 0, 0)));
        // An entry the phone holds is replaced by delete then write; a new one is only written.
        bool deleteFirst = false;
        if (file.contains(QLatin1String("vcs")))
            deleteFirst = currentRowOnMobile(ctx);
        else
            deleteFirst = file.toUpper() != QLatin1String("NEW.VCF");
        if (deleteFirst)
            server.DeleteEntry(index);
        server.WriteEntry(index, text);
        return true;
    });
}

} // namespace tsr::phone
