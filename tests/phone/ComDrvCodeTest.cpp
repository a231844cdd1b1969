// SPDX-License-Identifier: GPL-3.0-or-later
// The link session: whether the phone may be used, the port lists, the port
// taken from the suite's settings and given to the server only on a change.
#include "phone/ComDrvCode.h"
#include "phone/ATCServer.h"
#include "phone/LinkFixture.h"
#include "spine/RegistrySettings.h"
#include "spine/RegistryStore.h"

#include <QMap>

using namespace tsr;
using tsr::test::LinkFixture;

namespace {

// The serial control's answers per port number; a port not listed is not there (8002).
class FakeComm : public phone::CommProbe {
public:
    explicit FakeComm(QMap<int, int32_t> answers) : m_answers(std::move(answers)) {}
    int32_t openPort(int16_t commPort) override {
        asked << commPort;
        return m_answers.value(commPort, 8002);
    }
    QList<int> asked;

private:
    QMap<int, int32_t> m_answers;
};

class FakeEnumerator : public phone::PortEnumerator {
public:
    explicit FakeEnumerator(QString list) : m_list(std::move(list)) {}
    QString ports() override { return m_list; }

private:
    QString m_list;
};

class LinkSession : public LinkFixture {
protected:
    void storePort(const QString& value) {
        ASSERT_TRUE(spine::RegValWrite(ctx, spine::HKEY_LOCAL_MACHINE, spine::KeySuite, QStringLiteral("Port"),
                                       core::Value(value)));
    }
};

} // namespace

// InitComm follows GDX_Check and, with the file-transfer setting off, opens nothing.
TEST_F(LinkSession, InitCommFollowsTheCheckBox) {
    ctx.settings.FileTransfer = 0;
    ctx.flags.GDX_Check = false;
    EXPECT_FALSE(phone::InitComm(ctx));
    ctx.flags.GDX_Check = true;
    EXPECT_TRUE(phone::InitComm(ctx));
    EXPECT_FALSE(ctx.servers.ATCServer);
}

// Every "exists" answer of the serial control lists the port, a port in use included; others do not.
TEST_F(LinkSession, ProbingListsThePortsThatExist) {
    // Ports 1 to 10 answer these codes in turn; port 32 answers 0, the others are not there.
    QMap<int, int32_t> answers{{32, 0}};
    int port = 1;
    for (int32_t code : {0, 8005, 8002, 8000, 8003, 8010, 8013, 8015, 8019, 8012})
        answers.insert(port++, code);
    FakeComm comm(answers);
    QStringList combo;
    EXPECT_TRUE(phone::GetCommPort(ctx, comm, combo));
    EXPECT_EQ(combo, QStringLiteral("COM1 COM2 COM4 COM5 COM6 COM7 COM8 COM9 COM32").split(u' '));
    EXPECT_EQ(comm.asked.size(), 32);
    EXPECT_EQ(comm.asked.first(), 1);
    EXPECT_EQ(comm.asked.last(), 32);
}

// The enumerator's list is split at ";" and trimmed; an empty list leaves the combo empty.
TEST_F(LinkSession, EnumeratorListIsSplitAndTrimmed) {
    QStringList combo{QStringLiteral("stale")};
    FakeEnumerator some(QStringLiteral(" /dev/ttyUSB0 ;/dev/ttyACM0; COM3"));
    EXPECT_TRUE(phone::GDXGetCommPort(ctx, some, combo));
    EXPECT_EQ(combo,
              (QStringList{QStringLiteral("/dev/ttyUSB0"), QStringLiteral("/dev/ttyACM0"), QStringLiteral("COM3")}));
    FakeEnumerator none{QString()};
    EXPECT_TRUE(phone::GDXGetCommPort(ctx, none, combo));
    EXPECT_TRUE(combo.isEmpty());
}

// The options list selects PORT ignoring case, item 0 for an unknown port, and warns each time it is empty.
TEST_F(LinkSession, PortListSelectsAndWarns) {
    FakeComm comm({{1, 0}, {3, 0}});
    QStringList combo;
    ctx.settings.PORT = QStringLiteral("com3");
    EXPECT_EQ(phone::LoadPortList(ctx, nullptr, comm, combo), 1);
    combo.clear();
    ctx.settings.PORT = QStringLiteral("COM7");
    EXPECT_EQ(phone::LoadPortList(ctx, nullptr, comm, combo), 0);
    EXPECT_TRUE(ui.boxes.isEmpty());

    FakeEnumerator none{QString()};
    for (int i = 0; i < 2; ++i) {
        combo.clear();
        EXPECT_EQ(phone::LoadPortList(ctx, &none, comm, combo), -1);
    }
    ASSERT_EQ(ui.boxes.size(), 2);
    EXPECT_EQ(ui.boxes[1].text, QStringLiteral("No COM-port found!"));
    EXPECT_EQ(ui.boxes[1].icon, core::MsgIcon::Exclamation);
}

// The suite-level Port rules; a terminator costs the text its last two characters; no value is COM1.
TEST_F(LinkSession, GetATCPortReadsTheSuiteValue) {
    ctx.options.port.clear();
    EXPECT_TRUE(phone::GetATCPort(ctx));
    EXPECT_EQ(ctx.phone.ATCPort, QStringLiteral("COM1"));
    storePort(QStringLiteral("COM4"));
    EXPECT_TRUE(phone::GetATCPort(ctx));
    EXPECT_EQ(ctx.phone.ATCPort, QStringLiteral("COM4"));
    storePort(QStringLiteral("COM4") + QChar(0) + QStringLiteral("xyz"));
    EXPECT_TRUE(phone::GetATCPort(ctx));
    EXPECT_EQ(ctx.phone.ATCPort, QStringLiteral("COM4") + QChar(0) + QStringLiteral("x"));
    ctx.options.port = QStringLiteral("/dev/rfcomm0");
    EXPECT_TRUE(phone::GetATCPort(ctx));
    EXPECT_EQ(ctx.phone.ATCPort, QStringLiteral("/dev/rfcomm0")) << "a device named on the command line wins";
}

// The port the options save as PORT is the one the link opens: the store's names ignore case.
TEST_F(LinkSession, GetATCPortFindsThePortRegValSetSaved) {
    ASSERT_TRUE(spine::RegValCreate(ctx));
    ctx.settings.PORT = QStringLiteral("/dev/ttyUSB3");
    ASSERT_TRUE(spine::RegValSet(ctx, false));
    ctx.options.port.clear();
    EXPECT_TRUE(phone::GetATCPort(ctx));
    EXPECT_EQ(ctx.phone.ATCPort, QStringLiteral("/dev/ttyUSB3"));
}

// SetATCPort gives the port once; an unchanged port reaches the server no more, a changed one does.
TEST_F(LinkSession, SetATCPortCallsTheServerOnlyOnAChange) {
    auto& first = startPhone("--model first");
    EXPECT_TRUE(phone::SetATCPort(ctx)) << "an empty slot is left empty";
    EXPECT_TRUE(ctx.servers.ATCPortSet.isEmpty());
    phone::ATCServer& server = phone::atcServer(ctx);
    EXPECT_TRUE(phone::SetATCPort(ctx));
    EXPECT_EQ(server.port(), first.link());
    EXPECT_EQ(server.portChanges(), 0) << "the server started on that port already";
    EXPECT_EQ(ctx.servers.ATCPortSet, first.link());
    EXPECT_EQ(server.Model(), QStringLiteral("first"));
    EXPECT_TRUE(server.isOpen());
    EXPECT_TRUE(phone::SetATCPort(ctx));
    EXPECT_TRUE(server.isOpen()) << "an unchanged port leaves the open device alone";
    EXPECT_EQ(server.portChanges(), 0);

    test::EmulatedPhone second("--model second");
    ctx.options.port = second.link();
    EXPECT_TRUE(phone::SetATCPort(ctx));
    EXPECT_EQ(server.Model(), QStringLiteral("second"));
}

// A fresh server after the slot was emptied starts on its own port: SetATCPort gives it the port
// only when ATCPort changed since the last server got it.
TEST_F(LinkSession, AFreshServerGetsThePortOnlyWhenItChanged) {
    auto& emu = startPhone();
    phone::atcServer(ctx);
    phone::SetATCPort(ctx);
    ctx.servers.ATCServer.reset();
    phone::ATCServer& fresh = phone::atcServer(ctx);
    phone::SetATCPort(ctx);
    EXPECT_EQ(fresh.portChanges(), 0);
    EXPECT_EQ(fresh.port(), emu.link());
    EXPECT_EQ(fresh.Model(), QStringLiteral("TX1"));
    test::EmulatedPhone other;
    ctx.options.port = other.link();
    phone::SetATCPort(ctx);
    EXPECT_EQ(fresh.portChanges(), 1);
    EXPECT_EQ(fresh.port(), other.link());
}

// A dump item is one line whatever its data holds.
TEST(DumpLine, EscapesSeparatorsAndLineEnds) {
    EXPECT_EQ(phone::dumpLine(QStringLiteral("\\telecom\\cal\\"), QStringLiteral("12.vcs"), "a\tb\r\nc\\",
                              QStringLiteral("Send vCal:")),
              QByteArray("Send vCal:\t\\\\telecom\\\\cal\\\\\t12.vcs\ta\\tb\\r\\nc\\\\\n"));
}
