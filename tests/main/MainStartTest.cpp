// SPDX-License-Identifier: GPL-3.0-or-later
// The start of an unattended run, cancelled in its status dialog before the phone
// is reached: Yes to "Do you really want to cancel?" ends the start there, No goes
// on to the phone. And the trace file of a start with DEBUG.
#include "main/Main_Modul.h"
#include "spine/SpineFixture.h"

#include <QDir>
#include <QFile>

using namespace tsr;

namespace {

class MainStart : public test::SpineFixture {
protected:
    MainStart() {
        qputenv("XDG_RUNTIME_DIR", runtime.path().toLocal8Bit());
        ctx.options.home = home.path();
        ctx.options.pim = home.filePath(QStringLiteral("pim"));
        ctx.options.port = home.filePath(QStringLiteral("no-phone"));
        ctx.flags.GlobalSilent = true;
    }
    // Presses cancel the first time the start lets window events run.
    void cancelOnce() {
        ui.onProcessEvents = [this] {
            if (!m_pressed) {
                m_pressed = true;
                ctx.status.cancelRequested();
            }
        };
    }
    bool asked() const {
        for (const auto& box : ui.boxes)
            if (box.text == QLatin1String("Do you really want to cancel?"))
                return true;
        return false;
    }

    QTemporaryDir runtime;
    main::StartUp start;
    bool m_pressed = false;
};

} // namespace

TEST_F(MainStart, CancelAnsweredYesEndsTheStartBeforeThePhone) {
    cancelOnce();
    ui.answer(core::MsgResult::Yes);
    EXPECT_FALSE(main::Main(ctx, start, QStringLiteral("VCAL")));
    EXPECT_TRUE(asked());
    EXPECT_FALSE(ctx.servers.ATCServer) << "the phone was reached after the cancel";
    EXPECT_EQ(ui.unloadCount, 1);
}

TEST_F(MainStart, CancelAnsweredNoGoesOnToThePhone) {
    cancelOnce();
    ui.answer(core::MsgResult::No);
    EXPECT_FALSE(main::Main(ctx, start, QStringLiteral("VCAL")));
    EXPECT_TRUE(asked());
    EXPECT_TRUE(ctx.servers.ATCServer) << "the start ended although the user went on";
    // The phone is not there: the run ends with its error in the log.
    ASSERT_TRUE(ctx.tables.LogErrors);
    EXPECT_GE(ctx.tables.LogErrors->recordCount(), 1);
}

TEST_F(MainStart, DebugWritesTheStartsTracePointsInOrder) {
    ctx.flags.GlobalSilent = false;
    main::Main(ctx, start, QStringLiteral("DEBUG VCAL"));
    QFile trace(home.filePath(QStringLiteral("TSRDebug.txt")));
    ASSERT_TRUE(trace.open(QIODevice::ReadOnly));
    const QString text = QString::fromLatin1(trace.readAll());
    const QStringList order{QStringLiteral("Debug: Aufrufstring = "), QStringLiteral("Debug:  NoPrevInstance"),
                            QStringLiteral("Debug: Check4Outlook"), QStringLiteral("Debug: SetGridCaptions")};
    qsizetype at = 0;
    for (const QString& point : order) {
        const qsizetype found = text.indexOf(point, at);
        EXPECT_GE(found, 0) << point.toStdString() << " missing or out of order in\n" << text.toStdString();
        if (found >= 0)
            at = found;
    }
    // Every record is one quoted text: the time, CR LF, the text.
    EXPECT_TRUE(text.startsWith(u'"'));
    EXPECT_TRUE(text.endsWith(QStringLiteral("\"\r\n")));
}
