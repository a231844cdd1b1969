// SPDX-License-Identifier: GPL-3.0-or-later
// A context over a fresh configuration folder and a fresh HomeDir, with the
// clock fixed at Sunday 2026-11-22 10:30:15 and the user boundary scripted.
#pragma once

#include "core/Context.h"
#include "support/ScriptedUi.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace tsr::test {

class SpineFixture : public ::testing::Test {
protected:
    SpineFixture() {
        ctx.options.config = config.path();
        ctx.settings.HomeDir = home.path();
        ctx.clock.setFixed(QDateTime(QDate(2026, 11, 22), QTime(10, 30, 15)));
    }

    core::VbDate today() const { return ctx.clock.Date(); }
    QString configFile(const QString& name) const { return config.filePath(name); }

    QTemporaryDir config;
    QTemporaryDir home;
    ScriptedUi ui;
    core::Context ctx{ui};
};

} // namespace tsr::test
