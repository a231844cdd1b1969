// SPDX-License-Identifier: GPL-3.0-or-later
// The emulator program itself: its help, its line rate and a host that comes and goes.
#include "phone/ATCServer.h"
#include "phone/EmulatedPhone.h"

#include <QElapsedTimer>
#include <QProcess>
#include <QSerialPort>
#include <gtest/gtest.h>

using tsr::phone::ATCServer;
using tsr::test::EmulatedPhone;

// --help tells the options and ends well; a missing folder is refused with a usage text.
TEST(PhoneEmulator, HelpAndBadArguments) {
    QProcess help;
    help.start(EmulatedPhone::program(), {QStringLiteral("--help")});
    ASSERT_TRUE(help.waitForFinished(5000));
    EXPECT_EQ(help.exitCode(), 0);
    const QString text = QString::fromLocal8Bit(help.readAllStandardOutput());
    for (const char* option : {"--dir", "--link", "--baud", "--latency", "--cme", "--silent", "--break-after", "--busy",
                               "--first", "--last", "--manufacturer", "--model", "--capacity", "--late", "--misframe",
                               "--no-range", "--upload-pause", "--line-log"})
        EXPECT_TRUE(text.contains(QString::fromLatin1(option))) << option;

    QProcess bad;
    bad.start(EmulatedPhone::program(), {QStringLiteral("--last"), QStringLiteral("5")});
    ASSERT_TRUE(bad.waitForFinished(5000));
    EXPECT_EQ(bad.exitCode(), 2);
}

// At a given baud rate a record takes at least its ten bit times a byte to arrive, and not much more.
TEST(PhoneEmulator, PacesItsOutputAtTheLineRate) {
    EmulatedPhone phone("--baud 57600");
    phone.seed(1, QByteArray(2880, 'x'));
    ATCServer server;
    server.setPort(phone.link());
    server.Model();
    QElapsedTimer clock;
    clock.start();
    QByteArray text;
    server.ReadEntry(1, text);
    const qint64 ms = clock.elapsed();
    EXPECT_EQ(text.size(), 2880);
    EXPECT_GE(ms, 500) << "2,880 bytes at 5,760 bytes a second";
    EXPECT_LT(ms, 3000) << "paced far slower than the line rate";
}

// A host that closes the device and comes back finds the phone as it left it.
TEST(PhoneEmulator, SurvivesAHostThatGoesAndComesBack) {
    EmulatedPhone phone;
    phone.seed(2, "two");
    for (int round = 0; round < 3; ++round) {
        ATCServer server;
        server.setPort(phone.link());
        QByteArray text;
        server.ReadEntry(2, text);
        EXPECT_EQ(text, QByteArray("two")) << "round " << round;
        server.WriteEntry(3 + round, "more");
    }
    EXPECT_TRUE(phone.running());
    EXPECT_EQ(phone.devices().size(), 1);
    EXPECT_TRUE(phone.hasRecord(5));
}

// A host that asks for a large record and vanishes without reading it does not stall the phone
// for the next host.
TEST(PhoneEmulator, AHostThatVanishesMidAnswerLeavesThePhoneUsable) {
    EmulatedPhone phone;
    phone.seed(1, QByteArray(400000, 'z'));
    phone.seed(2, "two");
    {
        QSerialPort gone;
        gone.setPortName(phone.link());
        ASSERT_TRUE(gone.open(QIODevice::ReadWrite));
        gone.write("AT$ORGR=4,1\r");
        ASSERT_TRUE(gone.waitForBytesWritten(1000));
    }
    ATCServer server;
    server.setPort(phone.link());
    QByteArray text;
    server.ReadEntry(2, text);
    EXPECT_EQ(text, QByteArray("two"));
    EXPECT_TRUE(phone.running());
}

// A store at its capacity refuses a new record with "memory full" but still lets
// a record be replaced, and takes new ones again once one is deleted.
TEST(PhoneEmulator, AFullStoreRefusesNewRecordsOnly) {
    EmulatedPhone phone("--capacity 2");
    phone.seed(1, "one");
    phone.seed(2, "two");
    ATCServer server;
    server.setPort(phone.link());
    EXPECT_EQ(uint32_t(tsr::test::errorOf([&] { server.WriteEntry(3, "three"); })), 0x80042014u) // ATC_E_MEMORYFULL
        << "a third record found room";
    EXPECT_NO_THROW(server.WriteEntry(2, "TWO"));
    server.DeleteEntry(1);
    EXPECT_NO_THROW(server.WriteEntry(3, "three"));
}

// The probe and the range read answer as the dialogue fixes them, and refuse what it does not allow.
TEST(PhoneEmulator, ProbeAndRangeReadAnswers) {
    EmulatedPhone phone("--first 1 --last 10");
    phone.seed(2, "two");
    QSerialPort port;
    port.setPortName(phone.link());
    ASSERT_TRUE(port.open(QIODevice::ReadWrite));
    const struct {
        const char* command;
        const char* answer;
    } cases[] = {
        {"ATE0", "ATE0\r\r\nOK\r\n"}, // the echo of ATE0 itself is still on
        {"AT+CMEE=1", "\r\nOK\r\n"},
        {"AT$ECHO=Tok3n", "\r\n$ECHO: Tok3n\r\n\r\nOK\r\n"},
        {"AT$ECHO=not-plain", "\r\n+CME ERROR: 50\r\n"},
        {"AT$ORGR=4,1,3", "\r\n$ORGR: 1,0\r\n$ORGR: 2,3\r\ntwo\r\n$ORGR: 3,0\r\n\r\nOK\r\n"},
        {"AT$ORGR=4,3,2", "\r\n+CME ERROR: 21\r\n"},
        {"AT$ORGR=4,9,11", "\r\n+CME ERROR: 21\r\n"},
    };
    for (const auto& c : cases) {
        port.write(QByteArray(c.command) + '\r');
        const QByteArray expected(c.answer);
        QByteArray got;
        while (got.size() < expected.size() && port.waitForReadyRead(2000))
            got += port.readAll();
        EXPECT_EQ(got, expected) << c.command;
    }
}
