// SPDX-License-Identifier: GPL-3.0-or-later
// A context for the window tests: its own settings files and home folder in a
// temporary directory, a real local PIM store, a fixed clock, and helpers that
// find widgets by their object names.
#pragma once

#include "core/Context.h"
#include "pim/DOROutlookSession.h"
#include "spine/RegistrySettings.h"
#include "spine/SprachenStrings.h"
#include "support/ScriptedUi.h"

#include <QDir>
#include <QTemporaryDir>
#include <QWidget>
#include <gtest/gtest.h>

namespace tsr::test {

class DialogFixture : public ::testing::Test {
protected:
    DialogFixture() {
        ctx.clock.setFixed(QDateTime(QDate(2026, 3, 14), QTime(9, 26, 53)));
        configure(ctx);
    }

    // Points a context at this test's files and reads its settings as a start does.
    void configure(core::Context& c) const {
        c.options.config = dir.path() + QStringLiteral("/config");
        c.options.home = dir.path() + QStringLiteral("/home");
        c.options.pim = dir.path() + QStringLiteral("/pim");
        QDir().mkpath(c.options.home);
        spine::RegValCreate(c);
        spine::RegValGet(c);
        spine::setStartLanguage(c, QLocale(QLocale::English, QLocale::UnitedKingdom));
    }

    // Opens the local store with a second contact folder, as a start with a PIM does.
    void openPim() {
        QDir().mkpath(ctx.options.pim + QStringLiteral("/contacts/family"));
        ASSERT_TRUE(pim::Check4Outlook(ctx));
        pim::OutlookContactFolder(ctx, true);
        ASSERT_EQ(ctx.pim.GlobalContactFolderCount, 2);
    }

    template <typename W> static W* child(const QWidget* parent, const char* name) {
        W* w = parent->findChild<W*>(QString::fromLatin1(name));
        EXPECT_NE(w, nullptr) << name;
        return w;
    }

    QTemporaryDir dir;
    ScriptedUi ui;
    core::Context ctx{ui};
};

} // namespace tsr::test
