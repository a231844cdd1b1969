// SPDX-License-Identifier: GPL-3.0-or-later
// The serial line's settings from the settings store to the device: the
// emulated phone logs the settings its device has at each command.
#include "phone/LineSettings.h"
#include "phone/ATC.h"
#include "phone/LinkFixture.h"
#include "spine/RegistryStore.h"

#include <QFile>

using namespace tsr;
using tsr::test::LinkFixture;

namespace {

using Line = core::LineSettings;

struct LineCase {
    const char* name;
    QList<std::pair<QString, core::Value>> stored;
    Line expected;
};

void PrintTo(const LineCase& c, std::ostream* os) {
    *os << c.name;
}

// The settings as the emulator logs its device's. A pseudo-terminal keeps 8 bits and no parity
// whatever is asked, so only speed, stop bits and flow can be seen there.
QString onPseudoTerminal(const Line& line) {
    const char* flow = line.flow == Line::Flow::Hardware   ? "rtscts"
                       : line.flow == Line::Flow::Software ? "xonxoff"
                                                           : "none";
    return QStringLiteral("%1 8N%2 %3")
        .arg(line.Speed)
        .arg(line.stopBits == Line::StopBits::Two ? 2 : 1)
        .arg(QString::fromLatin1(flow));
}

class LineSettingsToDevice : public LinkFixture, public ::testing::WithParamInterface<LineCase> {
protected:
    QString lineLog() const { return config.filePath(QStringLiteral("line.log")); }
    QStringList loggedLines() const {
        QFile f(lineLog());
        return f.open(QIODevice::ReadOnly) ? QString::fromLatin1(f.readAll()).split(u'\n', Qt::SkipEmptyParts)
                                           : QStringList();
    }
    void store(const QString& name, const core::Value& value) {
        ASSERT_TRUE(spine::RegValWrite(ctx, spine::HKEY_LOCAL_MACHINE, phone::KeyLine, name, value));
    }
    test::EmulatedPhone& startLoggingPhone() {
        const QByteArray option = "--line-log " + lineLog().toLocal8Bit();
        return startPhone(option.constData());
    }
};

} // namespace

// The stored settings are read into the context and reach the device the link opens; a value
// that cannot be read keeps its default.
TEST_P(LineSettingsToDevice, StoredSettingsReachTheDevice) {
    const LineCase& c = GetParam();
    for (const auto& [name, value] : c.stored)
        store(name, value);
    startLoggingPhone();
    ASSERT_TRUE(phone::ATCInfo(ctx)) << boxTexts().toStdString();
    EXPECT_EQ(ctx.phone.Line.Speed, c.expected.Speed);
    EXPECT_EQ(ctx.phone.Line.DataBits, c.expected.DataBits);
    EXPECT_EQ(ctx.phone.Line.parity, c.expected.parity);
    EXPECT_EQ(ctx.phone.Line.stopBits, c.expected.stopBits);
    EXPECT_EQ(ctx.phone.Line.flow, c.expected.flow);
    const QStringList lines = loggedLines();
    ASSERT_FALSE(lines.isEmpty());
    EXPECT_EQ(lines.last(), onPseudoTerminal(c.expected));
    EXPECT_EQ(lines.first(), lines.last()) << "the settings hold from the first command of the opening on";
}

const LineCase kLines[] = {
    {"NothingStored", {}, Line{}},
    {"Rs232Cable",
     {{phone::ValueSpeed, int32_t(9600)},
      {phone::ValueParity, QStringLiteral("None")},
      {phone::ValueStopBits, QStringLiteral("2")},
      {phone::ValueFlow, QStringLiteral("Hardware")}},
     Line{9600, 8, Line::Parity::None, Line::StopBits::Two, Line::Flow::Hardware}},
    {"ShortNamesAndTextNumbers",
     {{phone::ValueSpeed, QStringLiteral(" 57600 ")},
      {phone::ValueDataBits, QStringLiteral("8")},
      {phone::ValueParity, QStringLiteral("o")},
      {phone::ValueStopBits, QStringLiteral("1.5")},
      {phone::ValueFlow, QStringLiteral("xon/xoff")}},
     Line{57600, 8, Line::Parity::Odd, Line::StopBits::OneAndHalf, Line::Flow::Software}},
    {"UnreadableValuesKeepTheirDefaults",
     {{phone::ValueSpeed, QStringLiteral("fast")},
      {phone::ValueDataBits, int32_t(9)},
      {phone::ValueParity, QStringLiteral("Q")},
      {phone::ValueStopBits, QStringLiteral("3")},
      {phone::ValueFlow, QStringLiteral("maybe")}},
     Line{}},
    {"OneGoodValueAmongBadOnes",
     {{phone::ValueSpeed, int32_t(0)},
      {phone::ValueDataBits, QStringLiteral("seven")},
      {phone::ValueStopBits, QStringLiteral("2")}},
     Line{115200, 8, Line::Parity::None, Line::StopBits::Two, Line::Flow::None}},
};
INSTANTIATE_TEST_SUITE_P(Lines, LineSettingsToDevice, ::testing::ValuesIn(kLines),
                         [](const auto& info) { return std::string(info.param.name); });

// A device that does not take the settings (a pseudo-terminal keeps 8 bits) gives a clear
// error naming the settings, and nothing is sent on it.
TEST_F(LineSettingsToDevice, ADeviceThatRefusesTheSettingsIsReported) {
    store(phone::ValueDataBits, int32_t(7));
    auto& emu = startLoggingPhone();
    EXPECT_FALSE(phone::ATCInfo(ctx));
    ASSERT_EQ(ui.boxes.size(), 1);
    EXPECT_TRUE(ui.boxes.first().text.contains(QStringLiteral("does not take the line settings")))
        << boxTexts().toStdString();
    EXPECT_TRUE(emu.journal().isEmpty());
    EXPECT_EQ(ctx.phone.Line.DataBits, 7) << "the stored value is kept, not overwritten";
}

// A changed setting closes the open device; the next step opens it with the new settings.
TEST_F(LineSettingsToDevice, AChangeTakesEffectAtTheNextStep) {
    auto& emu = startLoggingPhone();
    emu.seed(3, "three");
    ASSERT_TRUE(phone::ATCInfo(ctx));
    EXPECT_EQ(loggedLines().last(), QStringLiteral("115200 8N1 none"));
    store(phone::ValueSpeed, int32_t(19200));
    QByteArray text;
    ASSERT_TRUE(phone::ATCGetSingleMobileEntry(ctx, text, 3)) << boxTexts().toStdString();
    EXPECT_EQ(text, QByteArray("three"));
    EXPECT_EQ(loggedLines().last(), QStringLiteral("19200 8N1 none"));
    EXPECT_EQ(ctx.phone.Line.Speed, 19200);
}
