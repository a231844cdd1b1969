// SPDX-License-Identifier: GPL-3.0-or-later
// Reading ahead on a walk through the store, against the real emulator: the
// records come back byte for byte in ranges, a phone without range reads is
// read record by record, and nothing read ahead outlives the walk.
#include "phone/ATC.h"
#include "phone/ATCServer.h"
#include "phone/ComDrvCode.h"
#include "phone/LinkFixture.h"

using namespace tsr;
using tsr::test::LinkFixture;

namespace {

// A record that holds framing of its own, so a range can only be split by the announced lengths.
QByteArray trickyRecord(int index) {
    if (index % 7 == 0)
        return {}; // an empty record: only its header travels
    QByteArray r = "BEGIN:VCALENDAR\r\n$ORGR: " + QByteArray::number(index + 1) + ",3\r\nOK\r\n";
    for (int i = 0; i < index * 5; ++i)
        r += char((index * 31 + i) & 0xff);
    return r + "\r\nEND:VCALENDAR\r\n";
}

QStringList readCommands(const QStringList& journal) {
    QStringList out;
    for (const QString& line : journal)
        if (line.startsWith(QLatin1String("AT$ORGR=")))
            out << line;
    return out;
}

struct WalkCase {
    const char* name;
    const char* options;
    int first;
    int last;
    bool ranges;       // the phone reads ranges
    QStringList reads; // the read commands of the walk, when the phone reads ranges
};

void PrintTo(const WalkCase& c, std::ostream* os) {
    *os << c.name;
}

class ReadAheadWalk : public LinkFixture, public ::testing::WithParamInterface<WalkCase> {};

} // namespace

// A walk from the first index to the last reads every record as stored, empty ones included,
// in as few commands as the phone allows.
TEST_P(ReadAheadWalk, EveryRecordArrivesAsStored) {
    const WalkCase& c = GetParam();
    auto& emu = startPhone(c.options);
    for (int i = c.first; i <= c.last; ++i)
        if (!trickyRecord(i).isEmpty())
            emu.seed(i, trickyRecord(i));
    ASSERT_TRUE(phone::ATCInfo(ctx));
    emu.clearJournal();
    for (int i = c.first; i <= c.last; ++i) {
        QByteArray text = "left over";
        ASSERT_TRUE(phone::ATCGetSingleMobileEntry(ctx, text, i)) << "index " << i << boxTexts().toStdString();
        EXPECT_EQ(text, trickyRecord(i)) << "index " << i;
    }
    EXPECT_TRUE(ui.boxes.isEmpty());
    const QStringList reads = readCommands(emu.journal());
    EXPECT_EQ(phone::atcServer(ctx).readsRanges(), c.ranges);
    if (c.ranges) {
        EXPECT_EQ(reads, c.reads);
    } else {
        // One refused range, then one read a record.
        ASSERT_EQ(reads.size(), c.last - c.first + 2) << reads.join(u' ').toStdString();
        EXPECT_EQ(reads[0], c.reads.value(0));
        EXPECT_EQ(reads[1], QStringLiteral("AT$ORGR=4,%1").arg(c.first));
    }
}

const WalkCase kWalks[] = {
    {"RangesFromOne",
     "--first 1 --last 70",
     1,
     70,
     true,
     {QStringLiteral("AT$ORGR=4,1,32"), QStringLiteral("AT$ORGR=4,33,64"), QStringLiteral("AT$ORGR=4,65,70")}},
    {"RangesFromZero",
     "--first 0 --last 32",
     0,
     32,
     true,
     {QStringLiteral("AT$ORGR=4,0,31"), QStringLiteral("AT$ORGR=4,32")}},
    {"APhoneWithoutRanges", "--first 1 --last 40 --no-range", 1, 40, false, {QStringLiteral("AT$ORGR=4,1,32")}},
};
INSTANTIATE_TEST_SUITE_P(Walks, ReadAheadWalk, ::testing::ValuesIn(kWalks),
                         [](const auto& info) { return std::string(info.param.name); });

class ReadAhead : public LinkFixture {};

// What was read ahead serves only the walk's next index: a read out of order, a write or a
// delete drops it, so a record changed on the phone meanwhile is read as it is now.
TEST_F(ReadAhead, NothingReadAheadOutlivesTheWalk) {
    auto& emu = startPhone("--first 1 --last 20");
    for (int i = 1; i <= 20; ++i)
        emu.seed(i, "record " + QByteArray::number(i));
    ASSERT_TRUE(phone::ATCInfo(ctx));
    QByteArray text;
    ASSERT_TRUE(phone::ATCGetSingleMobileEntry(ctx, text, 1));
    ASSERT_TRUE(phone::ATCGetSingleMobileEntry(ctx, text, 2));
    EXPECT_EQ(text, QByteArray("record 2"));

    emu.seed(3, "changed on the phone");
    emu.seed(5, "five changed");
    ASSERT_TRUE(phone::ATCGetSingleMobileEntry(ctx, text, 5)) << "out of order";
    EXPECT_EQ(text, QByteArray("five changed"));
    ASSERT_TRUE(phone::ATCGetSingleMobileEntry(ctx, text, 3)) << "back again";
    EXPECT_EQ(text, QByteArray("changed on the phone"));

    // A new walk reads ahead again; a write in the middle drops it.
    ASSERT_TRUE(phone::ATCGetSingleMobileEntry(ctx, text, 1));
    phone::ATCServer& server = phone::atcServer(ctx);
    server.WriteEntry(2, "written");
    emu.seed(4, "four changed");
    server.ReadEntry(2, text);
    EXPECT_EQ(text, QByteArray("written"));
    server.ReadEntry(3, text);
    server.ReadEntry(4, text);
    EXPECT_EQ(text, QByteArray("four changed"));
    server.DeleteEntry(5);
    server.ReadEntry(5, text);
    EXPECT_TRUE(text.isEmpty());
}

// A range the phone cannot serve for another reason (a busy phone) is that error, not a
// silent fall-back, and the next walk still reads ranges.
TEST_F(ReadAhead, ABusyPhoneIsAnErrorNotAFallBack) {
    auto& emu = startPhone("--first 1 --last 10 --cme 515:$ORGR=4,1,10");
    emu.seed(1, "one");
    ASSERT_TRUE(phone::ATCInfo(ctx));
    QByteArray text;
    EXPECT_FALSE(phone::ATCGetSingleMobileEntry(ctx, text, 1));
    EXPECT_TRUE(boxTexts().contains(QStringLiteral("ATC_E_PHONEBUSY"))) << boxTexts().toStdString();
    EXPECT_TRUE(phone::atcServer(ctx).readsRanges());
}
