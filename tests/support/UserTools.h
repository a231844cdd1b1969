// SPDX-License-Identifier: GPL-3.0-or-later
// The user's own tools (khal, khard) as real processes over a temporary HOME
// whose configuration points at a test store, so a test sees what they see.
#pragma once

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace tsr::test {

class UserTools {
public:
    // `storeRoot` holds calendar/ and contacts/.
    explicit UserTools(const QString& storeRoot) {
        const QString config = m_home.path() + QStringLiteral("/.config");
        QDir().mkpath(config + QStringLiteral("/khal"));
        QDir().mkpath(config + QStringLiteral("/khard"));
        write(config + QStringLiteral("/khal/config"),
              QStringLiteral("[calendars]\n[[tsr]]\npath = %1/calendar\ntype = calendar\n"
                             "[locale]\ntimeformat = %H:%M\ndateformat = %Y-%m-%d\nlongdateformat = %Y-%m-%d\n"
                             "datetimeformat = %Y-%m-%d %H:%M\nlongdatetimeformat = %Y-%m-%d %H:%M\n"
                             "local_timezone = Europe/Berlin\ndefault_timezone = Europe/Berlin\n"
                             "[default]\ndefault_calendar = tsr\n")
                  .arg(storeRoot));
        write(config + QStringLiteral("/khard/khard.conf"),
              QStringLiteral("[addressbooks]\n[[tsr]]\npath = %1/contacts\n[general]\ndebug = no\n"
                             "default_action = list\neditor = /bin/true\nmerge_editor = /bin/true\n"
                             "[contact table]\ndisplay = first_name\ngroup_by_addressbook = no\nreverse = no\n"
                             "show_nicknames = no\nshow_uids = no\nsort = last_name\nlocalize_dates = no\n"
                             "[vcard]\npreferred_version = 3.0\nsearch_in_source_files = no\n"
                             "skip_unparsable = no\n")
                  .arg(storeRoot));
    }

    // Runs the tool and gives its standard output; a failed run fails the test.
    QString run(const QString& program, const QStringList& args, const QByteArray& input = {}) {
        QProcess p;
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("HOME"), m_home.path());
        env.insert(QStringLiteral("XDG_CONFIG_HOME"), m_home.path() + QStringLiteral("/.config"));
        env.insert(QStringLiteral("XDG_DATA_HOME"), m_home.path() + QStringLiteral("/.local/share"));
        env.insert(QStringLiteral("TZ"), QStringLiteral("Europe/Berlin"));
        env.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
        p.setProcessEnvironment(env);
        p.start(program, args);
        if (!input.isEmpty())
            p.write(input);
        p.closeWriteChannel();
        EXPECT_TRUE(p.waitForFinished(60000)) << program.toStdString();
        const QString err = QString::fromUtf8(p.readAllStandardError());
        EXPECT_EQ(p.exitCode(), 0) << program.toStdString() << ": " << err.toStdString();
        return QString::fromUtf8(p.readAllStandardOutput());
    }

    static bool installed(const QString& program) { return !QStandardPaths::findExecutable(program).isEmpty(); }

    // The output's lines with their white space folded.
    static QStringList lines(const QString& text) {
        QStringList out;
        for (const QString& l : text.split(u'\n', Qt::SkipEmptyParts))
            out << l.simplified();
        return out;
    }

private:
    static void write(const QString& path, const QString& text) {
        QFile f(path);
        ASSERT_TRUE(f.open(QIODevice::WriteOnly)) << path.toStdString();
        f.write(text.toUtf8());
    }

    QTemporaryDir m_home;
};

} // namespace tsr::test
