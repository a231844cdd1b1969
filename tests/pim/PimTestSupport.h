// SPDX-License-Identifier: GPL-3.0-or-later
// A context over a fresh local store in a temporary folder, for the PIM tests.
#pragma once

#include "core/Context.h"
#include "pim/Pim.h"
#include "pim/local/LocalStore.h"
#include "support/ScriptedUi.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTimeZone>
#include <gtest/gtest.h>

namespace tsr::test {

inline core::VbDate at(int y, int mo, int d, int h = 0, int mi = 0) {
    return core::VbDate(core::DateSerial(y, mo, d).value + core::TimeSerial(h, mi, 0).value);
}

// The local time of a wall-clock moment in Berlin, the zone the foreign files name.
inline core::VbDate berlin(int y, int mo, int d, int h, int mi) {
    return core::fromQDateTime(
        QDateTime(QDate(y, mo, d), QTime(h, mi), QTimeZone(QByteArrayLiteral("Europe/Berlin"))).toLocalTime());
}

class PimStoreTest : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(m_dir.isValid());
        ctx.clock.setFixed(QDateTime(QDate(2026, 3, 2), QTime(9, 15)));
        ctx.formats.DateFormat = QStringLiteral("dd.mm.yyyy");
        ctx.formats.GridTimeStyle = QStringLiteral("hh:mm");
        ctx.formats.DateTimeFormat = QStringLiteral("hh:mm dd.mm.yyyy");
        open();
    }

    // Opens the store anew, as a restart of the program does: nothing is kept but the files.
    void open() {
        app = pim::local::openLocalApplication(ctx, root());
        ns = app->GetNamespace(QStringLiteral("MAPI"));
    }

    QString root() const { return m_dir.path() + QStringLiteral("/pim"); }
    std::shared_ptr<pim::Items> calendarItems() { return ns->GetDefaultFolder(pim::olFolderCalendar)->Items(); }
    std::shared_ptr<pim::Items> contactItems() { return ns->GetDefaultFolder(pim::olFolderContacts)->Items(); }

    std::shared_ptr<pim::AppointmentItem> newAppointment() { return pim::asAppointment(calendarItems()->Add()); }
    std::shared_ptr<pim::ContactItem> newContact() { return pim::asContact(contactItems()->Add()); }

    // All items Find/FindNext give for the filter.
    template <class T = pim::Item> QList<std::shared_ptr<T>> findAll(pim::Items& items, const QString& filter) {
        QList<std::shared_ptr<T>> out;
        for (auto item = items.Find(filter); item; item = items.FindNext())
            if (auto typed = std::dynamic_pointer_cast<T>(item))
                out << typed;
        return out;
    }

    void writeFile(const QString& rel, const QByteArray& text) {
        QFile f(root() + u'/' + rel);
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(text);
    }

    // Puts a file of tests/data/pim into the store.
    void copyData(const QString& name, const QString& rel) {
        QFile f(QStringLiteral(TESSARINE_TEST_DATA "/pim/") + name);
        ASSERT_TRUE(f.open(QIODevice::ReadOnly)) << name.toStdString();
        writeFile(rel, f.readAll());
    }

    QByteArray readFile(const QString& rel) {
        QFile f(root() + u'/' + rel);
        return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
    }

    QStringList filesIn(const QString& rel) { return QDir(root() + u'/' + rel).entryList(QDir::Files, QDir::Name); }

    ScriptedUi ui;
    core::Context ctx{ui};
    std::shared_ptr<pim::Application> app;
    std::shared_ptr<pim::Namespace> ns;

private:
    QTemporaryDir m_dir;
};

} // namespace tsr::test
