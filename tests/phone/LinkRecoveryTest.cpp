// SPDX-License-Identifier: GPL-3.0-or-later
// How the server gets the line back in step with the phone, against the real
// emulator: a probe whose answer cannot be an old one, a line that is closed
// rather than used half set up or after a broken frame, and a write that broke
// off while the phone waited for the record.
#include "phone/ATCServer.h"
#include "phone/EmulatedPhone.h"

#include <QSerialPort>
#include <gtest/gtest.h>

using tsr::phone::ATCServer;
using tsr::test::EmulatedPhone;
using tsr::test::errorOf;
namespace atc = tsr::phone::atc;

namespace {

// Reads from the port until `text` came or two seconds passed.
QByteArray readUntil(QSerialPort& port, const QByteArray& text, int ms = 2000) {
    QByteArray got;
    while (!got.contains(text) && port.waitForReadyRead(ms))
        got += port.readAll();
    return got;
}

} // namespace

// A host that left before a slow answer came leaves that answer's final result on the line. The
// next host's probe passes over it, so each answer stays with its own command.
TEST(LinkRecovery, TheProbePassesOverAStaleAnswer) {
    EmulatedPhone phone("--late 300:+CGMR --latency 50");
    phone.seed(2, "two");
    phone.seed(3, "three");
    {
        QSerialPort gone;
        gone.setPortName(phone.link());
        ASSERT_TRUE(gone.open(QIODevice::ReadWrite));
        gone.write("AT+CGMR\r");
        ASSERT_TRUE(gone.waitForBytesWritten(1000));
    }
    ATCServer server;
    server.setPort(phone.link());
    QByteArray text;
    server.ReadEntry(2, text);
    EXPECT_EQ(text, QByteArray("two"));
    server.ReadEntry(3, text);
    EXPECT_EQ(text, QByteArray("three"));
}

// The probe's answer must carry the token: a phone that answers the probe without it never
// counts as in step, and the open fails within the time-out instead of going on.
TEST(LinkRecovery, AProbeWithoutItsTokenIsNoAnswer) {
    EmulatedPhone phone("--cme 3:$ECHO");
    ATCServer server;
    server.setTimeOut(400);
    server.setPort(phone.link());
    EXPECT_EQ(errorOf([&] { server.Model(); }), atc::NotResponding);
    EXPECT_FALSE(server.isOpen());
}

struct SetUpCase {
    const char* name;
    const char* options;
    int32_t number;
};

void PrintTo(const SetUpCase& c, std::ostream* os) {
    *os << c.name;
}

class LinkSetUp : public ::testing::TestWithParam<SetUpCase> {};

// When ATE0 or AT+CMEE=1 fails, the open fails with that error and the device is closed; the next
// command runs the whole opening again rather than going on with a half-set-up line.
TEST_P(LinkSetUp, AFailedSetUpClosesTheLineAndIsTriedAgain) {
    const SetUpCase& c = GetParam();
    EmulatedPhone phone(c.options);
    ATCServer server;
    server.setTimeOut(400);
    server.setPort(phone.link());
    const int32_t number = errorOf([&] { server.Model(); });
    EXPECT_EQ(number, c.number);
    EXPECT_FALSE(server.isOpen());
    phone.clearJournal();
    errorOf([&] { server.Model(); });
    const QStringList journal = phone.journal();
    ASSERT_FALSE(journal.isEmpty());
    EXPECT_TRUE(journal.first().startsWith(QStringLiteral("AT$ECHO="))) << journal.join(u' ').toStdString();
    EXPECT_FALSE(journal.contains(QStringLiteral("AT+CGMM"))) << "no command on a half-set-up line";
}

constexpr SetUpCase kSetUps[] = {
    {"EchoRefused", "--error E0", atc::GeneralFailure},
    {"NumericErrorsRefused", "--error +CMEE", atc::GeneralFailure},
    {"NumericErrorsUnanswered", "--silent +CMEE", atc::NotResponding},
};
INSTANTIATE_TEST_SUITE_P(SetUp, LinkSetUp, ::testing::ValuesIn(kSetUps),
                         [](const auto& info) { return std::string(info.param.name); });

// An answer that breaks the framing closes the device, so the rest of it is never read as the
// next answer; the next command reads on a fresh line.
TEST(LinkRecovery, AFramingErrorClosesTheLine) {
    EmulatedPhone phone("--misframe $ORGR=4,7 --latency 5");
    phone.seed(7, "seven");
    phone.seed(8, "eight");
    ATCServer server;
    server.setPort(phone.link());
    QByteArray text;
    EXPECT_EQ(errorOf([&] { server.ReadEntry(7, text); }), atc::GeneralFailure);
    EXPECT_FALSE(server.isOpen());
    server.ReadEntry(8, text);
    EXPECT_EQ(text, QByteArray("eight"));
}

// The phone drops a record whose upload falls silent and keeps the stored one; it says so with
// +CME ERROR: 100 and takes commands again.
TEST(LinkRecovery, ThePhoneDropsAnUploadThatFallsSilent) {
    EmulatedPhone phone("--upload-pause 300");
    phone.seed(5, "kept");
    QSerialPort port;
    port.setPortName(phone.link());
    ASSERT_TRUE(port.open(QIODevice::ReadWrite));
    port.write("ATE0\rAT+CMEE=1\r");
    readUntil(port, "OK\r\n\r\nOK\r\n");
    port.write("AT$ORGW=4,5,40\r");
    ASSERT_TRUE(readUntil(port, "> ").contains("> "));
    port.write("only part of it");
    ASSERT_TRUE(port.waitForBytesWritten(1000));
    EXPECT_TRUE(readUntil(port, "+CME ERROR: 100\r\n").contains("+CME ERROR: 100\r\n"));
    EXPECT_EQ(phone.record(5), QByteArray("kept"));
    port.write("AT+CGMM\r");
    EXPECT_TRUE(readUntil(port, "OK\r\n").contains("TX1"));
}

// A write that broke off after its command (the prompt came after the host gave up) leaves the
// phone waiting for the record. The host waits out the phone's pause on reopening, so its
// opening commands are not taken for the record: the record stays and the next write lands.
TEST(LinkRecovery, AfterABrokenWriteTheHostWaitsOutThePause) {
    EmulatedPhone phone("--late 600:$ORGW=4,12");
    phone.seed(12, "old twelve");
    ATCServer server;
    server.setTimeOut(300);
    server.setPort(phone.link());
    server.Model();
    const QByteArray record = "BEGIN:VCALENDAR\r\nEND:VCALENDAR\r\n";
    EXPECT_EQ(errorOf([&] { server.WriteEntry(12, record); }), atc::NotResponding);
    server.setTimeOut(1000);
    QByteArray text;
    server.ReadEntry(12, text);
    EXPECT_EQ(text, QByteArray("old twelve"));
    EXPECT_EQ(phone.record(12), QByteArray("old twelve"));
    server.WriteEntry(13, record);
    EXPECT_EQ(phone.record(13), record);
}
