// SPDX-License-Identifier: GPL-3.0-or-later
// A context with a scripted user and a calendar table holding one new row, for
// the calendar format's tests, with helpers to set dates and to read fields.
#pragma once

#include "FieldHelpers.h"
#include "core/Context.h"
#include "core/Error.h"
#include "support/ScriptedUi.h"
#include "tables/Recordset.h"
#include "tables/TSRADODB.h"

#include <functional>
#include <gtest/gtest.h>

namespace tsr::test {

class vCalFixture : public ::testing::Test {
protected:
    vCalFixture() { newRow(); }

    void newRow() {
        table = std::make_unique<tables::Recordset>(QStringLiteral("RSCalendar"));
        tables::InitCalendarRS(*table);
        tables::vCalCreateNewRecord(*table);
    }
    void set(const QString& name, const core::Value& v) { table->setValue(name, v); }
    void setFields(FieldValues values) { test::setFields(*table, values); }
    void expectFields(FieldTexts texts) const { expectTexts(*table, texts); }
    void expectFlags(std::initializer_list<const char16_t*> names, bool want = true) const {
        test::expectFlags(*table, names, want);
    }
    core::Value get(const QString& name) const { return table->value(name); }
    QString text(const QString& name) const { return table->value(name).toText(); }
    bool flag(const QString& name) const {
        const core::Value v = table->value(name);
        return !v.isEmpty() && v.toBool();
    }
    QDateTime when(const QString& name) const { return core::toQDateTime(table->value(name).toDate()); }

    static core::VbDate at(int y, int mo, int d, int h = 0, int mi = 0, int s = 0) {
        return core::VbDate(core::DateSerial(y, mo, d).value + core::TimeSerial(h, mi, s).value);
    }
    static core::VbDate clock(int h, int mi, int s = 0) { return core::TimeSerial(h, mi, s); }

    // Lines joined with CR LF, with the closing CR LF.
    static QString crlf(std::initializer_list<const char*> lines) {
        QString out;
        for (const char* l : lines)
            out += QString::fromUtf8(l) + QStringLiteral("\r\n");
        return out;
    }
    // An event with the given lines between BEGIN:VEVENT and END:VEVENT.
    static QString event(std::initializer_list<const char*> lines) {
        QString out = crlf({"BEGIN:VCALENDAR", "VERSION:1.0", "BEGIN:VEVENT"});
        for (const char* l : lines)
            out += QString::fromUtf8(l) + QStringLiteral("\r\n");
        return out + crlf({"END:VEVENT", "END:VCALENDAR"});
    }

    // Runs `body` and returns the error it raised; fails the test when it raised none.
    static core::TsrError errorOf(const std::function<void()>& body) {
        try {
            body();
        } catch (const core::TsrError& e) {
            return e;
        }
        ADD_FAILURE() << "no error raised";
        return {};
    }

    ScriptedUi ui;
    core::Context ctx{ui};
    std::unique_ptr<tables::Recordset> table;
};

} // namespace tsr::test
