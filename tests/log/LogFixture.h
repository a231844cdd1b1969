// SPDX-License-Identifier: GPL-3.0-or-later
// A context with the log tables made and a fixed clock, and small entry tables
// whose leading fields follow the calendar and contact rows.
#pragma once

#include "core/Context.h"
#include "log/LogInit.h"
#include "log/LogWrite.h"
#include "support/ScriptedUi.h"

#include <gtest/gtest.h>

namespace tsr::test {

class LogFixture : public ::testing::Test {
protected:
    LogFixture() {
        ctx.clock.setFixed(QDateTime(QDate(2026, 3, 14), QTime(9, 26, 53)));
        log::LogInit(ctx);
        ctx.flags.GlobalLogReady = true;

        using core::FieldType;
        // The calendar row begins PIM, Mobile, Alarm, StartDate, StartTime, Typ, Text.
        for (auto [name, type] : {std::pair{u"PIM", FieldType::Bool},
                                  {u"Mobile", FieldType::Bool},
                                  {u"Alarm", FieldType::Bool},
                                  {u"StartDate", FieldType::Date},
                                  {u"StartTime", FieldType::Text},
                                  {u"Typ", FieldType::Text},
                                  {u"Text", FieldType::Text}})
            calendar.appendField(QString::fromUtf16(name), type);
        calendar.open();
        // The contact row begins PIM, Mobile, LastName, FirstName, Company, Phone, ..., PhoneWork.
        for (auto name : {u"PIM", u"Mobile", u"LastName", u"FirstName", u"Company", u"Phone", u"Street", u"ZipCode",
                          u"City", u"Categories", u"PhoneWork"})
            contacts.appendField(QString::fromUtf16(name), FieldType::Text);
        contacts.open();
    }

    void addCalendarEntry(core::VbDate start, const QString& time, const QString& typ, const QString& text) {
        calendar.addNew();
        calendar.setValue(QStringLiteral("StartDate"), start);
        calendar.setValue(QStringLiteral("StartTime"), time);
        calendar.setValue(QStringLiteral("Typ"), typ);
        calendar.setValue(QStringLiteral("Text"), text);
        calendar.update();
    }
    void addContact(const QString& last, const QString& company, const QString& phone, const QString& work) {
        contacts.addNew();
        contacts.setValue(QStringLiteral("LastName"), last);
        contacts.setValue(QStringLiteral("Company"), company);
        contacts.setValue(QStringLiteral("Phone"), phone);
        contacts.setValue(QStringLiteral("PhoneWork"), work);
        contacts.update();
    }
    // A transfer row for the current entry, as a writer logs it.
    void logEntry(const tables::Recordset& entry, const QString& transfer, const QString& action,
                  const core::TsrError& error = {}) {
        ctx.log.LogTransfer = transfer;
        ctx.log.LogAction = action;
        log::logWriteEntry(ctx, entry, error, QStringLiteral("Mobile"), QStringLiteral("SendSingleEntry"));
    }

    ScriptedUi ui;
    core::Context ctx{ui};
    tables::Recordset calendar{QStringLiteral("RSCalendar")};
    tables::Recordset contacts{QStringLiteral("RSContacts")};
};

} // namespace tsr::test
