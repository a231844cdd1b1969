// SPDX-License-Identifier: GPL-3.0-or-later
// The built program as a process: its own settings folder, home folder, PIM store
// and runtime folder (so runs in parallel never meet as instances), a phone
// emulator on a pseudo-terminal, and what the run printed and left behind.
#pragma once

#include "phone/EmulatedPhone.h"

#include <QDate>
#include <QProcess>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <memory>

namespace tsr::test {

struct RunResult {
    int status = -1; // the exit status; -1 when the process did not end by itself
    QString out;
    QString err;
};

// A day relative to today as the phone writes it: "20270111T090000Z".
QByteArray phoneTime(int daysFromToday, int hour, int minute = 0);
// The same for the store: "20270111T090000".
QByteArray storeTime(int daysFromToday, int hour, int minute = 0);

class ProgramRun : public ::testing::Test {
protected:
    ProgramRun();

    static QString program();
    QString path(const QString& rel) const { return m_dir.filePath(rel); }
    QString pim() const { return path(QStringLiteral("pim")); }
    QString home() const { return path(QStringLiteral("home")); }

    // The phone, started with the emulator's options (unpaced, unless they say otherwise).
    EmulatedPhone& phoneWith(const QStringList& options = {});

    // A setting of the program's settings key, as the program itself writes it.
    void setSetting(const QString& name, int number);
    void setSetting(const QString& name, const QString& text);
    // A line of machine.ini or user.ini written as it stands, for broken files.
    void writeConfigFile(const QString& name, const QByteArray& bytes);

    // One .ics of the store's calendar folder; `rule` an RRULE value.
    void appointment(const QString& uid, const QByteArray& start, const QByteArray& end, const QString& summary,
                     const QByteArray& rule = {}, bool meeting = false);
    void contact(const QString& uid, const QString& last, const QString& first, const QString& mobile);
    // The subjects of the store's appointments, and of the phone's records, sorted.
    QStringList storeSubjects() const;
    QStringList phoneSubjects() const;
    QStringList filesIn(const QString& rel, const QString& suffix) const;

    // Runs `tessarine --headless` with the folders above and the phone's link, and the arguments.
    RunResult run(const QStringList& args, int timeoutMs = 60000);
    // Starts it and returns at once, for runs that are stopped or met by a second start.
    std::unique_ptr<QProcess> start(const QStringList& args);
    QStringList commonArgs() const;

    QProcessEnvironment m_env;
    QTemporaryDir m_dir;
    std::unique_ptr<EmulatedPhone> phone;
};

} // namespace tsr::test
