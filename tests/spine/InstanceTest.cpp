// SPDX-License-Identifier: GPL-3.0-or-later
// Two real processes meet over the instance socket: the probe program starts
// like the real one as far as the instance check and says on standard output
// what the user would see.
#include "spine/Instance.h"
#include "SpineFixture.h"
#include "spine/DebugTrace.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <csignal>

using namespace tsr;

namespace {

class Probe {
public:
    Probe(const QString& runtimeDir, const QStringList& args) {
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("XDG_RUNTIME_DIR"), runtimeDir);
        m_process.setProcessEnvironment(env);
        m_process.start(QStringLiteral(TESSARINE_INSTANCE_PROBE), args);
    }
    ~Probe() {
        if (m_process.state() != QProcess::NotRunning) {
            m_process.kill();
            m_process.waitForFinished(3000);
        }
    }
    // Waits until a line with this text came, or the process ended; true when it came.
    bool waitFor(const QString& text, int ms = 10000) {
        QElapsedTimer t;
        t.start();
        while (t.elapsed() < ms) {
            if (output().contains(text))
                return true;
            if (m_process.state() == QProcess::NotRunning)
                return output().contains(text);
            m_process.waitForReadyRead(100);
        }
        return false;
    }
    bool finished(int ms = 10000) { return m_process.waitForFinished(ms) || m_process.state() == QProcess::NotRunning; }
    QString output() {
        m_out += QString::fromUtf8(m_process.readAllStandardOutput());
        return m_out;
    }
    QProcess& process() { return m_process; }

private:
    QProcess m_process;
    QString m_out;
};

class InstanceTest : public ::testing::Test {
protected:
    QTemporaryDir runtime;
};

class LinkExecuteTest : public test::SpineFixture {
protected:
    QString socketName() const { return runtimeDir.filePath(QStringLiteral("user-Tessarine")); }
    QTemporaryDir runtimeDir;
};

// KILL is acknowledged in any case and closes the window only for CALLER=OL; the
// case-sensitive IsTSR and unknown commands stay unacknowledged.
TEST_F(LinkExecuteTest, Commands) {
    EXPECT_FALSE(spine::Form_LinkExecute(ctx, QStringLiteral("kill")));
    EXPECT_EQ(ui.unloadCount, 0);
    ctx.flags.GlobalCaller = QStringLiteral("OL");
    EXPECT_FALSE(spine::Form_LinkExecute(ctx, QStringLiteral("Kill")));
    EXPECT_EQ(ui.unloadCount, 1);
    EXPECT_TRUE(spine::Form_LinkExecute(ctx, QStringLiteral("IsTSR")));
    EXPECT_TRUE(spine::Form_LinkExecute(ctx, QStringLiteral("QUIT")));
    EXPECT_FALSE(spine::Form_LinkExecute(ctx, QStringLiteral("activate")));
    EXPECT_EQ(ui.activateCount, 1);
}

// Without a first instance the start goes on; with KILL it unloads and ends, showing nothing.
TEST_F(LinkExecuteTest, NoPreviousInstance) {
    EXPECT_TRUE(spine::Check4PrevInstance(ctx, socketName()));
    ctx.flags.GlobalCommandKill = true;
    EXPECT_FALSE(spine::Check4PrevInstance(ctx, socketName()));
    EXPECT_EQ(ui.unloadCount, 1);
    EXPECT_TRUE(ui.boxes.isEmpty());
    EXPECT_FALSE(ctx.flags.SecondInstance);
}

// A silent start beside a first instance, traced: the trace points frame the box,
// and the file holds their own texts.
TEST_F(LinkExecuteTest, SilentSecondStartTraced) {
    spine::InstanceServer first(ctx, socketName());
    ASSERT_TRUE(first.listen());
    ctx.flags.GlobalSilent = true;
    ctx.flags.GlobalCommandDebug = true;
    ASSERT_TRUE(spine::openDebugFile(ctx));
    EXPECT_FALSE(spine::Check4PrevInstance(ctx, socketName()));
    ASSERT_EQ(ui.boxes.size(), 3);
    EXPECT_EQ(ui.boxes[0].text, QStringLiteral("Debug: App.PrevInstance = True : Tessarine"));
    EXPECT_EQ(ui.boxes[1].text, QStringLiteral("Cannot start autosync, as it has already been activated!\r\nPlease "
                                               "shut down the active program and start autosync again."));
    EXPECT_EQ(ui.boxes[1].icon, core::MsgIcon::Exclamation);
    EXPECT_EQ(ui.boxes[2].text, QStringLiteral("Debug: NoPrevInstance"));
    EXPECT_EQ(ui.unloadCount, 1);
    QFile file(ctx.flags.DebugFile);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), QByteArray("\"22.11.26 10:30:15\r\nDebug:  App.PrevInstance = True : Tessarine\"\r\n"
                                         "\"22.11.26 10:30:15\r\nDebug:  NoPrevInstance\"\r\n"));
}

// KILL to a first instance not started by CALLER=OL is acknowledged and ignored.
TEST_F(InstanceTest, KillIsIgnoredWithoutCallerOL) {
    Probe first(runtime.path(), {QStringLiteral("CALLER=XY")});
    ASSERT_TRUE(first.waitFor(QStringLiteral("READY")));
    Probe second(runtime.path(), {QStringLiteral("kill")});
    ASSERT_TRUE(second.finished());
    EXPECT_TRUE(second.output().contains(QStringLiteral("END second=1")));
    ASSERT_TRUE(first.waitFor(QStringLiteral("COMMAND KILL ACK")));
    EXPECT_FALSE(first.process().waitForFinished(500));
    EXPECT_FALSE(first.output().contains(QStringLiteral("UNLOAD")));
}

// KILL closes a first instance that was started with CALLER=OL.
TEST_F(InstanceTest, KillClosesAFirstStartedByOL) {
    Probe first(runtime.path(), {QStringLiteral("caller=ol")});
    ASSERT_TRUE(first.waitFor(QStringLiteral("READY")));
    Probe second(runtime.path(), {QStringLiteral("KILL")});
    ASSERT_TRUE(second.finished());
    EXPECT_TRUE(first.waitFor(QStringLiteral("UNLOAD")));
    ASSERT_TRUE(first.finished());
    EXPECT_EQ(first.process().exitCode(), 0);
}

// The socket of a crashed first instance does not block the next start.
TEST_F(InstanceTest, StaleSocketIsReplaced) {
    {
        Probe crashed(runtime.path(), {});
        ASSERT_TRUE(crashed.waitFor(QStringLiteral("READY")));
        ::kill(static_cast<pid_t>(crashed.process().processId()), SIGKILL);
        ASSERT_TRUE(crashed.finished());
    }
    Probe next(runtime.path(), {});
    EXPECT_TRUE(next.waitFor(QStringLiteral("READY")));
}

// A first instance without switches: its socket lies in the user's runtime folder,
// named after the user and the title, and only its owner may reach it. A silent
// start beside it shows its box, sends nothing and ends; a plain second start
// brings it to the front and ends as a second instance.
TEST_F(InstanceTest, SecondStartsBesideAPlainFirst) {
    Probe first(runtime.path(), {});
    ASSERT_TRUE(first.waitFor(QStringLiteral("READY")));
    const QStringList entries = QDir(runtime.path()).entryList(QDir::System | QDir::Files);
    ASSERT_EQ(entries.size(), 1);
    EXPECT_TRUE(entries[0].endsWith(QStringLiteral("-Tessarine")));
    const QFile::Permissions perms = QFile::permissions(runtime.filePath(entries[0]));
    EXPECT_TRUE(perms & QFile::ReadOwner);
    EXPECT_FALSE(perms & (QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther | QFile::WriteOther));

    Probe silent(runtime.path(), {QStringLiteral("VCAL")});
    ASSERT_TRUE(silent.finished());
    EXPECT_TRUE(silent.output().contains(
        QStringLiteral("BOX Cannot start autosync, as it has already been activated! | Please shut down the active "
                       "program and start autosync again.")));
    EXPECT_TRUE(silent.output().contains(QStringLiteral("END second=0")));
    EXPECT_FALSE(first.output().contains(QStringLiteral("COMMAND")));

    Probe second(runtime.path(), {});
    ASSERT_TRUE(second.finished());
    EXPECT_TRUE(second.output().contains(QStringLiteral("END second=1")));
    EXPECT_TRUE(first.waitFor(QStringLiteral("ACTIVATED")));
    EXPECT_TRUE(first.waitFor(QStringLiteral("COMMAND ACTIVATE ACK")));
}

} // namespace
