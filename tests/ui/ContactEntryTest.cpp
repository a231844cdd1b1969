// SPDX-License-Identifier: GPL-3.0-or-later
// The contact editor as a real dialog: each field counts what the phone keeps
// and warns past it without cutting, a save asks before the phone cuts, and a
// saved contact reaches the emulated phone's phone book, the store and the
// state file.
#include "roads/DOROutlookContacts.h"
#include "roads/Mobile.h"
#include "roads/RoadsFixture.h"
#include "sync/MobFile.h"
#include "ui/editors/vCardEntry.h"

#include <QCheckBox>
#include <QDirIterator>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

using namespace tsr;
using test::RoadsFixture;

namespace {

class ContactEditor : public RoadsFixture {
protected:
    template <class W> W* child(QWidget& dialog, const QString& name) {
        W* w = dialog.findChild<W*>(name);
        EXPECT_NE(w, nullptr) << name.toStdString();
        return w;
    }
    void type(QWidget& dialog, const char* field, const QString& text) {
        auto* edit = child<QLineEdit>(dialog, QString::fromLatin1(field));
        edit->clear();
        QTest::keyClicks(edit, text);
    }
};

} // namespace

// The counters and the warning line follow the phone's limits as the user types;
// the text itself stays as typed.
TEST_F(ContactEditor, LimitsAreShownNotApplied) {
    struct Case {
        const char* field;
        QString text;
        const char* counter;
        bool warned;
    };
    const Case cases[] = {
        {"LastName", QString(24, u'a'), "24/24", false},
        {"LastName", QString(30, u'a'), "30/24", true},
        {"ZipCode", QStringLiteral("123456789"), "9/8", true},
        {"PhoneMobile", u'+' + QString(40, u'1'), "41/41", false},
        {"PhoneMobile", QString(41, u'1'), "41/40", true},
        {"URL", QString(60, u'w'), "60/57", true}, // the phone puts "http://" in front
        {"URL", QStringLiteral("http://") + QString(57, u'w'), "64/64", false},
    };
    for (const Case& c : cases) {
        ui::vCardEntry dialog(ctx, nullptr);
        dialog.show();
        type(dialog, c.field, c.text);
        const QString field = QString::fromLatin1(c.field);
        EXPECT_EQ(child<QLabel>(dialog, field + QStringLiteral("Counter"))->text(), QString::fromLatin1(c.counter))
            << c.field;
        auto* warning = child<QLabel>(dialog, QStringLiteral("CutWarning"));
        EXPECT_EQ(warning->isVisible(), c.warned) << c.field << " " << warning->text().toStdString();
        EXPECT_EQ(child<QLineEdit>(dialog, field)->text(), c.text) << c.field;
        // Not for the phone: no warning.
        child<QCheckBox>(dialog, QStringLiteral("CheckMobile"))->setChecked(false);
        EXPECT_FALSE(warning->isVisible()) << c.field;
    }
}

// A name over the phone's 24 characters: No keeps the dialog and sends nothing; Yes
// sends the cut name to the phone and the store and notes the contact in the state file.
TEST_F(ContactEditor, SaveReachesPhoneStoreAndStateFile) {
    test::EmulatedPhone& p = phoneWith();
    ctx.settings.SaveTyp = 1;
    ASSERT_TRUE(roads::vCardReadMobile(ctx));
    ASSERT_TRUE(roads::vCardReadOutlook(ctx, *ctx.tables.RSContacts, false));
    ui::vCardEntry dialog(ctx, nullptr);
    dialog.show();
    const QString longName = QStringLiteral("Lenz-Oberhausen-Wittgenstein");
    type(dialog, "LastName", longName);
    type(dialog, "FirstName", QStringLiteral("Eva"));
    type(dialog, "eMail", QStringLiteral("eva@example.org"));
    type(dialog, "PhoneMobile", QStringLiteral("+49 170 1234567"));

    ui.answer(core::MsgResult::No);
    QTest::mouseClick(child<QPushButton>(dialog, QStringLiteral("ContactSaveButton")), Qt::LeftButton);
    EXPECT_TRUE(dialog.isVisible());
    ASSERT_EQ(ui.boxes.size(), 1);
    EXPECT_TRUE(ui.boxes[0].text.contains(QStringLiteral("24 characters"))) << ui.boxes[0].text.toStdString();
    EXPECT_TRUE(p.filesIn(QStringLiteral("pb")).isEmpty());
    EXPECT_EQ(ctx.tables.RSContacts->recordCount(), 0);

    ui.answer(core::MsgResult::Yes);
    QTest::mouseClick(child<QPushButton>(dialog, QStringLiteral("ContactSaveButton")), Qt::LeftButton);
    EXPECT_FALSE(dialog.isVisible());
    const QStringList files = p.filesIn(QStringLiteral("pb"));
    ASSERT_EQ(files.size(), 1) << files.join(u' ').toStdString();
    const QByteArray sent = p.file(QStringLiteral("pb/") + files[0]);
    EXPECT_TRUE(sent.contains("N:" + longName.left(24).toLatin1() + ";Eva\r\n")) << sent.constData();
    EXPECT_TRUE(sent.contains("+49 170 1234567")) << sent.constData();
    EXPECT_TRUE(storeCards().contains("eva@example.org")) << storeCards().constData();
    EXPECT_TRUE(storeCards().contains(longName.toUtf8())) << "the store keeps the whole name";
    tables::Recordset& rs = *ctx.tables.RSContacts;
    ASSERT_EQ(rs.recordCount(), 1);
    rs.moveFirst();
    EXPECT_EQ(rs.value(QStringLiteral("EntryType")).toInt32(), 3);
    EXPECT_EQ(rs.value(QStringLiteral("MobileID")).toText(), files[0]);
    QFile state(sync::mobFilePath(ctx));
    ASSERT_TRUE(state.open(QIODevice::ReadOnly));
    EXPECT_TRUE(state.readAll().contains(longName.left(24).toUtf8()));
}

// A contact needs a name or a company; closing with changes asks first.
TEST_F(ContactEditor, NamelessContactIsRefused) {
    ui::vCardEntry dialog(ctx, nullptr);
    dialog.show();
    type(dialog, "City", QStringLiteral("Bonn"));
    QTest::mouseClick(child<QPushButton>(dialog, QStringLiteral("ContactSaveButton")), Qt::LeftButton);
    EXPECT_TRUE(dialog.isVisible());
    ASSERT_EQ(ui.boxes.size(), 1);
    EXPECT_EQ(ui.boxes[0].text, QStringLiteral("Enter name"));
    ui.answer(core::MsgResult::Cancel);
    QTest::mouseClick(child<QPushButton>(dialog, QStringLiteral("ContactCloseButton")), Qt::LeftButton);
    EXPECT_TRUE(dialog.isVisible());
    EXPECT_EQ(ui.boxes.last().text, QStringLiteral("Save changes?"));
    ui.answer(core::MsgResult::No);
    QTest::mouseClick(child<QPushButton>(dialog, QStringLiteral("ContactCloseButton")), Qt::LeftButton);
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_EQ(ctx.tables.RSContacts->recordCount(), 0);
}
