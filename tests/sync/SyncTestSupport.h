// SPDX-License-Identifier: GPL-3.0-or-later
// What the sync tests share: a context with the calendar and contact tables,
// rows written field by field, and a double of the roads that records calls.
#pragma once

#include "core/Context.h"
#include "support/ScriptedUi.h"
#include "sync/Roads.h"
#include "tables/TSRADODB.h"

#include <gtest/gtest.h>

#include <QStringList>
#include <initializer_list>
#include <memory>
#include <utility>

namespace tsr::test {

using Fields = std::initializer_list<std::pair<const char16_t*, core::Value>>;

inline void setFields(tables::Recordset& t, Fields fields) {
    for (const auto& [name, value] : fields)
        t.setValue(QString::fromUtf16(name), value);
    t.update();
}

inline QString textOf(const tables::Recordset& t, const char16_t* field) {
    return t.value(QString::fromUtf16(field)).toText();
}

// Records each call of a road; the write roads answer with `writeResult`.
class RecordingRoads : public sync::Roads {
public:
    bool vCardWriteOutookEntry(core::Context&, tables::Recordset& row) override {
        calls << QStringLiteral("vCardWriteOutookEntry:") + textOf(row, u"LastName");
        return writeResult;
    }
    bool SendSinglevCardEntry(core::Context&, tables::Recordset& row) override {
        calls << QStringLiteral("SendSinglevCardEntry:") + textOf(row, u"LastName");
        return writeResult;
    }
    void vCalReadMobile(core::Context&) override { calls << QStringLiteral("vCalReadMobile"); }
    void vCardReadMobile(core::Context&) override { calls << QStringLiteral("vCardReadMobile"); }
    void vCalReadOutlook(core::Context&) override { calls << QStringLiteral("vCalReadOutlook"); }
    void vCardReadOutlook(core::Context&) override { calls << QStringLiteral("vCardReadOutlook"); }

    QStringList calls;
    bool writeResult = true;
};

class SyncTest : public ::testing::Test {
protected:
    SyncTest() {
        ctx.tables.RSCalendar = makeCalendar(QStringLiteral("RSCalendar"));
        ctx.tables.RSContacts = makeContacts(QStringLiteral("RSContacts"));
    }

    std::unique_ptr<tables::Recordset> makeCalendar(const QString& name) {
        auto t = std::make_unique<tables::Recordset>(name);
        tables::InitCalendarRS(*t);
        tables::applyDateTextForm(ctx, *t);
        return t;
    }
    std::unique_ptr<tables::Recordset> makeContacts(const QString& name) {
        auto t = std::make_unique<tables::Recordset>(name);
        tables::vCardInitRS(*t);
        return t;
    }
    void addCalendarRow(tables::Recordset& t, Fields fields) {
        tables::vCalCreateNewRecord(t);
        setFields(t, fields);
    }
    void addContactRow(tables::Recordset& t, Fields fields) {
        tables::vCardCreateNewRecord(t);
        setFields(t, fields);
    }

    ScriptedUi ui;
    core::Context ctx{ui};
    tables::Recordset& cal() { return *ctx.tables.RSCalendar; }
    tables::Recordset& contacts() { return *ctx.tables.RSContacts; }
};

} // namespace tsr::test
