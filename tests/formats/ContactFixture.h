// SPDX-License-Identifier: GPL-3.0-or-later
// A context with a scripted user and a contact table holding one new row, for
// the contact format's tests.
#pragma once

#include "FieldHelpers.h"
#include "core/Context.h"
#include "support/ScriptedUi.h"
#include "tables/Recordset.h"
#include "tables/TSRADODB.h"

#include <gtest/gtest.h>

namespace tsr::test {

class ContactFixture : public ::testing::Test {
protected:
    ContactFixture() { newRow(); }

    void newRow() {
        table = std::make_unique<tables::Recordset>(QStringLiteral("RSContacts"));
        tables::vCardInitRS(*table);
        tables::vCardCreateNewRecord(*table);
    }
    QString field(const QString& name) const { return table->value(name).toText(); }
    void set(const QString& name, const core::Value& v) { table->setValue(name, v); }
    void setFields(FieldValues values) { test::setFields(*table, values); }
    void expectFields(FieldTexts texts) const { expectTexts(*table, texts); }
    void expectFlags(std::initializer_list<const char16_t*> names, bool want = true) const {
        test::expectFlags(*table, names, want);
    }

    // Lines joined with CR LF, with the closing CR LF.
    static QString crlf(std::initializer_list<const char*> lines) {
        QString out;
        for (const char* l : lines)
            out += QString::fromUtf8(l) + QStringLiteral("\r\n");
        return out;
    }

    ScriptedUi ui;
    core::Context ctx{ui};
    std::unique_ptr<tables::Recordset> table;
};

} // namespace tsr::test
