// SPDX-License-Identifier: GPL-3.0-or-later
// The phone emulator as a real process for tests: started with the given
// options, its device reached through a link in a temporary folder, its
// records seeded and inspected as files.
#pragma once

#include "core/Error.h"

#include <QByteArray>
#include <QMap>
#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>

namespace tsr::test {

// Emulator options written as one line: "--first 0 --last 99".
inline QStringList opts(const char* line) {
    return QString::fromLatin1(line).split(u' ', Qt::SkipEmptyParts);
}

// The error number a call raises, or 0 when it went through.
template <class F> int32_t errorOf(F&& f) {
    try {
        f();
    } catch (const core::TsrError& e) {
        return e.number();
    }
    return 0;
}

class EmulatedPhone {
public:
    // Starts the emulator with `options` added to --dir, --link and --journal; a fast,
    // unpaced line unless the options say otherwise.
    explicit EmulatedPhone(const QStringList& options = {});
    explicit EmulatedPhone(const char* options) : EmulatedPhone(opts(options)) {}
    ~EmulatedPhone();
    EmulatedPhone(const EmulatedPhone&) = delete;
    EmulatedPhone& operator=(const EmulatedPhone&) = delete;

    bool running() const { return m_process.state() == QProcess::Running; }
    // The link that always names the current device.
    QString link() const { return m_dir.filePath(QStringLiteral("device")); }
    // The devices the emulator announced so far (a broken line opens a new one),
    // waiting up to two seconds until there are at least `atLeast`.
    QStringList devices(int atLeast = 1);

    void seed(int index, const QByteArray& record);
    bool hasRecord(int index) const;
    QByteArray record(int index) const;
    // Every record the phone holds, by index.
    QMap<int, QByteArray> records() const;
    // Any file of the phone's folder by its path there ("pb/3.vcf"), for the OBEX view.
    void seedFile(const QString& path, const QByteArray& bytes);
    QByteArray file(const QString& path) const;
    // The names of the files in one of the phone's folders ("pb"), sorted.
    QStringList filesIn(const QString& folder) const;
    // The command lines the emulator received, in order.
    QStringList journal() const;
    void clearJournal();

    void kill();
    static QString program();

private:
    QString recordPath(int index) const;

    QTemporaryDir m_dir;
    QProcess m_process;
    QStringList m_devices;
};

} // namespace tsr::test
