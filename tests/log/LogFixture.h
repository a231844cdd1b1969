// SPDX-License-Identifier: GPL-3.0-or-later
// A context with all tables made as at start-up and a fixed clock, and helpers
// that add entries and log their transfers.
#pragma once

#include "core/Context.h"
#include "log/LogWrite.h"
#include "support/ScriptedUi.h"
#include "tables/TSRADODB.h"

#include <gtest/gtest.h>
#include <stdexcept>

namespace tsr::test {

// The table a test needs; the tables are made by the program's own start-up step.
inline tables::Recordset& madeTable(const std::unique_ptr<tables::Recordset>& table) {
    if (!table)
        throw std::runtime_error("the tables were not created");
    return *table;
}

class LogFixture : public ::testing::Test {
protected:
    LogFixture() { ctx.clock.setFixed(QDateTime(QDate(2026, 3, 14), QTime(9, 26, 53))); }

    void addCalendarEntry(core::VbDate start, const QString& time, const QString& typ, const QString& text) {
        tables::vCalCreateNewRecord(calendar);
        calendar.setValue(QStringLiteral("StartDate"), start);
        calendar.setValue(QStringLiteral("StartTime"), time);
        calendar.setValue(QStringLiteral("Typ"), typ);
        calendar.setValue(QStringLiteral("Text"), text);
        calendar.update();
    }
    void addContact(const QString& last, const QString& company, const QString& phone, const QString& work) {
        tables::vCardCreateNewRecord(contacts);
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

    // Each named field of the current log row reads as the given text.
    static void expectRow(const tables::Recordset& row,
                          std::initializer_list<std::pair<const char16_t*, const char16_t*>> texts) {
        for (const auto& [name, text] : texts)
            EXPECT_EQ(row.value(QString::fromUtf16(name)).toText().toStdString(),
                      QString::fromUtf16(text).toStdString())
                << QString::fromUtf16(name).toStdString();
    }

    ScriptedUi ui;
    core::Context ctx{ui};
    // All nine tables, the log tables among them, as the start makes them.
    bool created = tables::CreateInitAndSetAllRS(ctx);
    tables::Recordset& calendar = madeTable(ctx.tables.RSCalendar);
    tables::Recordset& contacts = madeTable(ctx.tables.RSContacts);
};

} // namespace tsr::test
