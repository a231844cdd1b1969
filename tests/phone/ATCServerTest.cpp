// SPDX-License-Identifier: GPL-3.0-or-later
// The AT-command server against the emulated phone: framing of records,
// identification, store bounds and the port's life.
#include "phone/ATCServer.h"
#include "phone/EmulatedPhone.h"

#include <gtest/gtest.h>

using tsr::phone::ATCServer;
using tsr::test::EmulatedPhone;
using tsr::test::errorOf;

namespace {

QByteArray allBytes() {
    QByteArray bytes;
    for (int i = 0; i < 256; ++i)
        bytes += char(i);
    return bytes;
}

} // namespace

// A record is taken by its announced length, so lines like "OK" or "+CME ERROR" inside it, CR LF and
// every 8-bit byte arrive unchanged.
TEST(ATCServer, RecordsArriveByteForByteWhateverTheyHold) {
    EmulatedPhone phone;
    const QByteArray tricky = "BEGIN:VCALENDAR\r\nOK\r\n+CME ERROR: 3\r\nERROR\r\n$ORGR: 9,9\r\n> " + allBytes();
    phone.seed(3, tricky);
    phone.seed(4, "\r\n");
    ATCServer server;
    server.setPort(phone.link());
    QByteArray text;
    server.ReadEntry(3, text);
    EXPECT_EQ(text, tricky);
    server.ReadEntry(4, text);
    EXPECT_EQ(text, QByteArray("\r\n"));
    server.ReadEntry(5, text);
    EXPECT_TRUE(text.isEmpty()) << "an empty record reads as no bytes";
}

// A written record lands on the phone exactly as sent, and the written bytes read back the same.
TEST(ATCServer, WrittenRecordsLandExactly) {
    EmulatedPhone phone;
    ATCServer server;
    server.setPort(phone.link());
    const QByteArray record = "\r\nOK\r\n" + allBytes() + "> ";
    server.WriteEntry(17, record);
    EXPECT_EQ(phone.record(17), record);
    QByteArray back;
    server.ReadEntry(17, back);
    EXPECT_EQ(back, record);
    server.WriteEntry(18, QByteArray());
    EXPECT_TRUE(phone.hasRecord(18)) << "an empty record is a record too";
    EXPECT_TRUE(phone.record(18).isEmpty());
}

// Opening probes the line with a token, then switches echo off and asks for numeric errors before
// anything else, and the identification answers come through without framing.
TEST(ATCServer, OpeningSetsTheDialogueUpAndIdentifies) {
    EmulatedPhone phone("--manufacturer Orvane --model QX71 --first 0 --last 249");
    ATCServer server;
    server.setPort(phone.link());
    EXPECT_EQ(server.Manufacturer(), QStringLiteral("Orvane"));
    EXPECT_EQ(server.Model(), QStringLiteral("QX71"));
    int16_t first = -1, last = -1;
    server.GetStoreRange(4, first, last);
    EXPECT_EQ(first, 0);
    EXPECT_EQ(last, 249);
    const QStringList journal = phone.journal();
    ASSERT_EQ(journal.size(), 6) << journal.join(u' ').toStdString();
    EXPECT_TRUE(journal[0].startsWith(QStringLiteral("AT$ECHO="))) << journal[0].toStdString();
    EXPECT_EQ(journal.mid(1, 3),
              (QStringList{QStringLiteral("ATE0"), QStringLiteral("AT+CMEE=1"), QStringLiteral("AT+CGMI")}));
    EXPECT_EQ(journal.count(QStringLiteral("ATE0")), 1) << "the device stays open between commands";
}

// A new port closes the old device; the next command opens the new one and runs the opening dialogue there.
TEST(ATCServer, ANewPortIsOpenedOnTheNextCommand) {
    EmulatedPhone a("--model A");
    EmulatedPhone b("--model B");
    ATCServer server;
    server.setPort(a.link());
    EXPECT_EQ(server.Model(), QStringLiteral("A"));
    server.setPort(b.link());
    EXPECT_FALSE(server.isOpen());
    EXPECT_EQ(server.Model(), QStringLiteral("B"));
    ASSERT_GE(b.journal().size(), 2);
    EXPECT_TRUE(b.journal()[0].startsWith(QStringLiteral("AT$ECHO=")));
    EXPECT_EQ(b.journal()[1], QStringLiteral("ATE0"));
}

// A stored "COMn" names the n-th serial port; a path stays a path.
TEST(ATCServer, ComNamesMapToSerialDevices) {
    EXPECT_EQ(tsr::phone::devicePathForPort(QStringLiteral("COM1")), QStringLiteral("/dev/ttyS0"));
    EXPECT_EQ(tsr::phone::devicePathForPort(QStringLiteral("com12")), QStringLiteral("/dev/ttyS11"));
    EXPECT_EQ(tsr::phone::devicePathForPort(QStringLiteral("/dev/rfcomm0")), QStringLiteral("/dev/rfcomm0"));
    EXPECT_EQ(tsr::phone::devicePathForPort(QStringLiteral("COM0")), QStringLiteral("COM0"));
}

// The store's refusals come back as 0x80042000 plus the phone's number; a refused write leaves nothing.
TEST(ATCServer, ErrorsOfTheStoreComeBackAsNumbers) {
    EmulatedPhone phone("--first 1 --last 10 --max-record 100");
    ATCServer server;
    server.setPort(phone.link());
    QByteArray text;
    EXPECT_EQ(errorOf([&] { server.ReadEntry(11, text); }), int32_t(0x80042015)) << "outside the store";
    EXPECT_EQ(errorOf([&] { server.DeleteEntry(5); }), int32_t(0x80042016)) << "an empty record";
    EXPECT_EQ(errorOf([&] { server.WriteEntry(5, QByteArray(101, 'x')); }), int32_t(0x80042018)) << "too long";
    EXPECT_FALSE(phone.hasRecord(5));
    EXPECT_EQ(errorOf([&] { server.WriteEntry(5, QByteArray(100, 'x')); }), 0);
    EXPECT_EQ(phone.record(5).size(), 100);
}
