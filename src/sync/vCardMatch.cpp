// SPDX-License-Identifier: GPL-3.0-or-later
// Contact matching (module Verwaltung). Unlike the calendar there is no side
// test: the same search compares a row with its snapshot of the state file,
// where both rows may stand on the same side.
#include "sync/vCardMatch.h"

#include "core/ErrorReport.h"
#include "formats/Allgemein.h"

#include <array>

namespace tsr::sync {

using tables::Recordset;

namespace {
const QString kModul = QStringLiteral("Verwaltung");

enum class Test { String, Phone, Url, Exact };
struct FieldTest {
    const char16_t* field;
    int length; // the characters the phone keeps; 0 for the whole value
    Test test;
};

// In this order; FirstName first, as the gaps are filled right behind it.
constexpr std::array<FieldTest, 13> kFieldTests = {{
    {u"FirstName", 16, Test::String},
    {u"Company", 16, Test::String},
    {u"Phone", 40, Test::Phone},
    {u"PhoneWork", 40, Test::Phone},
    {u"PhoneMobile", 40, Test::Phone},
    {u"Fax", 40, Test::Phone},
    {u"City", 16, Test::String},
    {u"Street", 40, Test::String},
    {u"ZipCode", 8, Test::String},
    {u"eMail", 40, Test::String},
    {u"URL", 64, Test::Url},
    {u"Country", 16, Test::String},
    {u"Categories", 0, Test::Exact},
}};

// The contact's text fields in table order: the values both sides carry.
constexpr std::array<const char16_t*, 13> kTextFields = {
    u"LastName",  u"FirstName",   u"Company", u"Phone", u"Street",  u"ZipCode", u"City",
    u"PhoneWork", u"PhoneMobile", u"Fax",     u"eMail", u"Country", u"URL"};

// The PIM mirrors a PIM-only row keeps in step after its gaps were filled.
constexpr std::array<const char16_t*, 11> kMirrors = {u"Company",   u"Street",      u"City", u"ZipCode",
                                                      u"Country",   u"eMail",       u"URL",  u"Phone",
                                                      u"PhoneWork", u"PhoneMobile", u"Fax"};

QString text(const Recordset& r, const QString& field) {
    return r.value(field).toText();
}

bool fieldPasses(const Recordset& r, const Recordset& e, const FieldTest& t) {
    const QString name = QString::fromUtf16(t.field);
    if (t.test == Test::Exact)
        return r.value(name).toBool() == e.value(name).toBool();
    QString a = text(r, name).left(t.length);
    QString b = text(e, name).left(t.length);
    switch (t.test) {
    case Test::String:
        return formats::CheckvCardString(a, b);
    case Test::Phone:
        return phoneNumbersMatch(a, b);
    case Test::Url:
        return formats::CheckURL(a, b);
    case Test::Exact:
        break;
    }
    return false;
}

bool identityTest(const Recordset& r, const Recordset& e) {
    const int32_t rType = r.value(QStringLiteral("EntryType")).toInt32();
    const int32_t eType = e.value(QStringLiteral("EntryType")).toInt32();
    if (rType != eType && rType != 3 && eType != 3)
        return true;
    const QString rUid = text(r, QStringLiteral("UID")), eUid = text(e, QStringLiteral("UID"));
    const QString rId = text(r, QStringLiteral("MobileID")), eId = text(e, QStringLiteral("MobileID"));
    return (!rUid.isEmpty() && rUid == eUid) || (!rId.isEmpty() && rId == eId);
}

// Fills the empty text fields of `to` from `from`; true when any was filled.
bool takeGaps(Recordset& to, const Recordset& from) {
    bool took = false;
    for (const char16_t* f : kTextFields) {
        const QString name = QString::fromUtf16(f);
        const QString mine = text(to, name);
        const QString theirs = text(from, name);
        if (mine.isEmpty() && !theirs.isEmpty()) {
            to.setValue(name, theirs);
            took = true;
        }
    }
    return took;
}

void markForTransfer(Recordset& row) {
    const int32_t type = row.value(QStringLiteral("EntryType")).toInt32();
    if (type == 1 || type == 2)
        row.setValue(QStringLiteral("Transfernew"), type);
}

void keepPimMirrors(Recordset& row) {
    if (row.value(QStringLiteral("EntryType")).toInt32() != 1)
        return;
    for (const char16_t* f : kMirrors) {
        const QString name = QString::fromUtf16(f);
        row.setValue(QStringLiteral("PIM") + name, row.value(name));
    }
}

void writeOut(core::Context& ctx, Recordset& row, Roads& roads) {
    const core::Value mark = row.value(QStringLiteral("Transfernew"));
    const int32_t transfer = mark.isEmpty() ? 0 : mark.toInt32();
    if (transfer == 1)
        roads.vCardWriteOutookEntry(ctx, row);
    else if (transfer == 2)
        roads.SendSinglevCardEntry(ctx, row);
    else
        return;
    row.setValue(QStringLiteral("Transfernew"), int32_t(0));
}
} // namespace

bool phoneNumbersMatch(const QString& a, const QString& b) {
    if (a == b)
        return true;
    auto digits = [](const QString& s) {
        QString out;
        for (QChar c : s)
            if (c >= u'0' && c <= u'9')
                out += c;
        return out;
    };
    const QString da = digits(a), db = digits(b);
    if (!a.isEmpty() && !b.isEmpty())
        return da == db;
    return da.size() == db.size();
}

bool vCardFindLastName(core::Context& ctx, Recordset& table, const QString& name) {
    return core::guarded(ctx, kModul, QStringLiteral("vCardFindLastName"), false, [&] {
        for (; !table.eof(); table.moveNext()) {
            const QString last = text(table, QStringLiteral("LastName"));
            if (last == name)
                return true;
            if (QString::compare(last, name, Qt::CaseSensitive) > 0)
                return false;
        }
        return false;
    });
}

bool vCardFindCompare(core::Context& ctx, Recordset& table, Recordset& entry, Roads& roads) {
    bool result = false;
    core::guarded(ctx, kModul, QStringLiteral("vCardFindCompare"), [&] {
        const QString lastName = text(entry, QStringLiteral("LastName"));
        // A single quote would break the criterion: such names are found by walking.
        const bool walk = lastName.contains(u'\'');
        const QString criteria = QStringLiteral("LastName = '") + lastName + u'\'';
        const int position = table.absolutePosition();
        if (table.recordCount() > 0)
            table.moveFirst();
        while (!table.eof()) {
            // Only the end of the table leaves the loop. The walk also stops at a
            // row whose name sorts after the searched one, and that row goes
            // through the field tests like a found one; the rows need not be
            // sorted, so a later row may still hold the name.
            if (walk)
                vCardFindLastName(ctx, table, lastName);
            else
                table.find(criteria, 0, 1);
            if (table.eof())
                break;
            bool passed = fieldPasses(table, entry, kFieldTests[0]);
            if (passed && ctx.read.SyncRunning)
                vCardFillGaps(ctx, table, entry, roads);
            for (size_t i = 1; passed && i < kFieldTests.size(); ++i)
                passed = fieldPasses(table, entry, kFieldTests[i]);
            if (passed && identityTest(table, entry)) {
                result = true;
                return;
            }
            table.moveNext();
        }
        table.setAbsolutePosition(position);
    });
    return result;
}

void vCardFillGaps(core::Context& ctx, Recordset& row, Recordset& entry, Roads& roads) {
    core::guarded(ctx, kModul, QStringLiteral("vCardFillGaps"), [&] {
        if (takeGaps(row, entry))
            markForTransfer(row);
        if (takeGaps(entry, row))
            markForTransfer(entry);
        keepPimMirrors(row);
        keepPimMirrors(entry);
        row.update();
        entry.update();
        row.updateBatch();
        entry.updateBatch();
        writeOut(ctx, row, roads);
        writeOut(ctx, entry, roads);
    });
}

} // namespace tsr::sync
