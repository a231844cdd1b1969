// SPDX-License-Identifier: GPL-3.0-or-later
#include "e2e/ProgramRun.h"

#include <QDir>
#include <QFile>
#include <QSettings>

namespace tsr::test {

namespace {

QByteArray stamp(int daysFromToday, int hour, int minute) {
    const QDate day = QDate::currentDate().addDays(daysFromToday);
    return day.toString(QStringLiteral("yyyyMMdd")).toLatin1() + 'T' +
           QByteArray::number(hour * 10000 + minute * 100).rightJustified(6, '0');
}

const QString kSettingsGroup = QStringLiteral("Software/Orvane/Halvorix 5.0/TSR/Settings");

} // namespace

QByteArray phoneTime(int daysFromToday, int hour, int minute) {
    return stamp(daysFromToday, hour, minute) + 'Z';
}

QByteArray storeTime(int daysFromToday, int hour, int minute) {
    return stamp(daysFromToday, hour, minute);
}

ProgramRun::ProgramRun() {
    for (const char* folder : {"config", "home", "runtime", "pim/calendar", "pim/contacts"})
        QDir().mkpath(path(QString::fromLatin1(folder)));
    QFile::setPermissions(path(QStringLiteral("runtime")), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    m_env = QProcessEnvironment::systemEnvironment();
    m_env.insert(QStringLiteral("XDG_RUNTIME_DIR"), path(QStringLiteral("runtime")));
    // Day-month-year dates with dots, whatever the machine's locale.
    m_env.insert(QStringLiteral("LC_ALL"), QStringLiteral("de_DE.UTF-8"));
    m_env.remove(QStringLiteral("DISPLAY"));
    m_env.remove(QStringLiteral("WAYLAND_DISPLAY"));
}

QString ProgramRun::program() {
    return QStringLiteral(TESSARINE_BINARY_DIR "/src/app/tessarine");
}

EmulatedPhone& ProgramRun::phoneWith(const QStringList& options) {
    phone = std::make_unique<EmulatedPhone>(options);
    return *phone;
}

void ProgramRun::setSetting(const QString& name, int number) {
    QSettings ini(path(QStringLiteral("config/machine.ini")), QSettings::IniFormat);
    ini.setValue(kSettingsGroup + u'/' + name,
                 QStringLiteral("dword:%1").arg(uint32_t(number), 8, 16, QLatin1Char('0')));
}

void ProgramRun::setSetting(const QString& name, const QString& text) {
    QSettings ini(path(QStringLiteral("config/machine.ini")), QSettings::IniFormat);
    ini.setValue(kSettingsGroup + u'/' + name, text);
}

void ProgramRun::writeConfigFile(const QString& name, const QByteArray& bytes) {
    QFile f(path(QStringLiteral("config/") + name));
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write(bytes);
}

void ProgramRun::appointment(const QString& uid, const QByteArray& start, const QByteArray& end, const QString& summary,
                             const QByteArray& rule, bool meeting) {
    QByteArray t = "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:-//test//EN\r\nBEGIN:VEVENT\r\nUID:" + uid.toUtf8() +
                   "\r\nDTSTAMP:20260101T000000Z\r\nDTSTART:" + start + "\r\nDTEND:" + end +
                   "\r\nSUMMARY:" + summary.toUtf8() + "\r\n";
    if (!rule.isEmpty())
        t += "RRULE:" + rule + "\r\n";
    if (meeting)
        t += "ORGANIZER:mailto:me@example.org\r\nATTENDEE:mailto:you@example.org\r\n";
    t += "END:VEVENT\r\nEND:VCALENDAR\r\n";
    QFile f(pim() + QStringLiteral("/calendar/") + uid + QStringLiteral(".ics"));
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write(t);
}

void ProgramRun::contact(const QString& uid, const QString& last, const QString& first, const QString& mobile) {
    const QByteArray t = "BEGIN:VCARD\r\nVERSION:3.0\r\nUID:" + uid.toUtf8() +
                         "\r\nFN:" + (first + u' ' + last).toUtf8() + "\r\nN:" + last.toUtf8() + ';' + first.toUtf8() +
                         ";;;\r\nTEL;TYPE=CELL:" + mobile.toUtf8() + "\r\nEND:VCARD\r\n";
    QFile f(pim() + QStringLiteral("/contacts/") + uid + QStringLiteral(".vcf"));
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write(t);
}

QStringList ProgramRun::filesIn(const QString& rel, const QString& suffix) const {
    return QDir(path(rel)).entryList({u'*' + suffix}, QDir::Files, QDir::Name);
}

QStringList ProgramRun::storeSubjects() const {
    QStringList out;
    for (const QString& name : filesIn(QStringLiteral("pim/calendar"), QStringLiteral(".ics"))) {
        QFile f(pim() + QStringLiteral("/calendar/") + name);
        if (!f.open(QIODevice::ReadOnly))
            continue;
        const QByteArray t = f.readAll();
        const qsizetype from = t.indexOf("\nSUMMARY:") + 9;
        out << QString::fromUtf8(t.mid(from, t.indexOf("\r\n", from) - from));
    }
    out.sort();
    return out;
}

QStringList ProgramRun::phoneSubjects() const {
    QStringList out;
    for (const QByteArray& r : phone->records()) {
        const qsizetype from = r.indexOf("DESCRIPTION:") + 12;
        out << QString::fromLatin1(r.mid(from, r.indexOf("\r\n", from) - from));
    }
    out.sort();
    return out;
}

QStringList ProgramRun::commonArgs() const {
    QStringList args{QStringLiteral("--headless"), QStringLiteral("--config=") + path(QStringLiteral("config")),
                     QStringLiteral("--home=") + home(), QStringLiteral("--pim=") + pim()};
    args << QStringLiteral("--port=") + (phone ? phone->link() : path(QStringLiteral("no-such-phone")));
    return args;
}

std::unique_ptr<QProcess> ProgramRun::start(const QStringList& args) {
    auto p = std::make_unique<QProcess>();
    p->setProcessEnvironment(m_env);
    p->setProgram(program());
    p->setArguments(commonArgs() + args);
    p->start();
    p->waitForStarted(5000);
    return p;
}

RunResult ProgramRun::run(const QStringList& args, int timeoutMs) {
    auto p = start(args);
    RunResult r;
    if (!p->waitForFinished(timeoutMs)) {
        p->kill();
        p->waitForFinished(3000);
    } else if (p->exitStatus() == QProcess::NormalExit) {
        r.status = p->exitCode();
    }
    r.out = QString::fromUtf8(p->readAllStandardOutput());
    r.err = QString::fromUtf8(p->readAllStandardError());
    return r;
}

} // namespace tsr::test
