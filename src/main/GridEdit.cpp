// SPDX-License-Identifier: GPL-3.0-or-later
#include "main/GridEdit.h"

#include "core/Context.h"
#include "core/ErrorReport.h"
#include "core/StatusBar.h"
#include "formats/Allgemein.h"
#include "formats/vCal.h"
#include "pim/Pim.h"
#include "roads/DOROutlookCalendar.h"
#include "roads/DOROutlookContacts.h"
#include "roads/MobileWrite.h"
#include "roads/Rereads.h"

#include <cmath>

namespace tsr::main {

namespace {

const QString kModul = QStringLiteral("Main_Form");

tables::Recordset* tableOf(core::Context& ctx, int list) {
    return list == 1 ? ctx.tables.RSContacts.get() : ctx.tables.RSCalendar.get();
}

bool onCurrentRow(const tables::Recordset* t) {
    return t && t->recordCount() > 0 && !t->eof() && !t->bof();
}

bool flag(const tables::Recordset& t, const char16_t* field) {
    return t.value(QString::fromUtf16(field)).toBool();
}

// The row goes to the sides it stands on, the phone first.
bool saveRow(core::Context& ctx, int list, tables::Recordset& t) {
    bool ok = true;
    if (list == 0) {
        if (flag(t, u"Mobile"))
            ok = roads::SendSingleEntry(ctx, t);
        if (ok && flag(t, u"PIM")) {
            bool isNew = false;
            roads::WriteOutlookEntry(ctx, t, isNew);
        }
        return ok;
    }
    if (flag(t, u"Mobile"))
        ok = roads::SendSinglevCardEntry(ctx, t, t.value(QStringLiteral("MobileID")).toText().isEmpty());
    if (ok && flag(t, u"PIM")) {
        bool isNew = t.value(QStringLiteral("UID")).toText().isEmpty();
        roads::vCardWriteOutookEntry(ctx, t, isNew, ctx.pim.GlobalContactFolder);
    }
    return ok;
}

// A contact's PIM item goes; the store knows it by its UID.
void removeContactFromPim(core::Context& ctx, tables::Recordset& t) {
    const QString uid = t.value(QStringLiteral("UID")).toText();
    if (uid.isEmpty() || !ctx.servers.MOL)
        return;
    if (auto item = ctx.servers.MOL->GetNamespace(QStringLiteral("MAPI"))->GetItemFromID(uid))
        item->Delete();
    ctx.read.vCardPIMCount -= 1;
}

} // namespace

QString gridText(const core::Context& ctx, GridText text) {
    const bool german = ctx.settings.Sprache == u"0407";
    switch (text) {
    case GridText::PhoneLimit:
        return german ? QStringLiteral("Das Mobiltelefon speichert hier höchstens %1 Zeichen. Der Text wurde gekürzt:")
                      : QStringLiteral("The mobile keeps at most %1 characters here. The text was shortened:");
    case GridText::NotDiallable:
        return german ? QStringLiteral("Die Nummer enthält Zeichen, die nicht gewählt werden können.")
                      : QStringLiteral("The number holds characters that cannot be dialled.");
    case GridText::SortBy:
        return german ? QStringLiteral("Sortieren nach") : QStringLiteral("Sort by");
    case GridText::ThenBy:
        return german ? QStringLiteral("Dann nach") : QStringLiteral("Then by");
    case GridText::Ascending:
        return german ? QStringLiteral("Aufsteigend") : QStringLiteral("Ascending");
    case GridText::Descending:
        return german ? QStringLiteral("Absteigend") : QStringLiteral("Descending");
    case GridText::NoColumn:
        return german ? QStringLiteral("(keine)") : QStringLiteral("(none)");
    }
    return {};
}

int phoneFieldLimit(int list, const QString& field, const QString& text) {
    if (list == 0) {
        if (field.compare(u"Text", Qt::CaseInsensitive) == 0)
            return kCalendarTextLimit;
        return 0;
    }
    static const QHash<QString, int> limits{
        {QStringLiteral("firstname"), 16}, {QStringLiteral("lastname"), 24}, {QStringLiteral("company"), 16},
        {QStringLiteral("street"), 40},    {QStringLiteral("city"), 16},     {QStringLiteral("zipcode"), 8},
        {QStringLiteral("email"), 40},     {QStringLiteral("country"), 16},  {QStringLiteral("url"), 64}};
    const QString key = field.toLower();
    if (key == u"phone" || key == u"phonework" || key == u"phonemobile" || key == u"fax")
        return formats::vCardPhoneNumber_Len(text, 40, 41);
    return limits.value(key, 0);
}

bool gridEditable(int list, const QString& field) {
    static const QStringList calendar{QStringLiteral("Text"), QStringLiteral("Alarm")};
    static const QStringList contacts{QStringLiteral("LastName"), QStringLiteral("FirstName"),
                                      QStringLiteral("Company"),  QStringLiteral("Phone"),
                                      QStringLiteral("Street"),   QStringLiteral("ZipCode"),
                                      QStringLiteral("City"),     QStringLiteral("Categories")};
    return (list == 0 ? calendar : contacts).contains(field, Qt::CaseInsensitive);
}

bool GridEditCell(core::Context& ctx, int list, const QString& field, const QString& typed) {
    return core::guarded(ctx, kModul, QStringLiteral("GridEditCell"), false, [&] {
        tables::Recordset* t = tableOf(ctx, list);
        if (!onCurrentRow(t) || !gridEditable(list, field))
            return false;
        QString text = formats::RemoveCTRLCharactersFromString(typed);
        if (list == 0 && t->value(QStringLiteral("Typ")).toText() == u"3") {
            // A call's text is the number the phone dials.
            if (formats::check4PhoneCallChar(text)) {
                ctx.ui->msgBox(gridText(ctx, GridText::NotDiallable), core::MsgButtons::OK, core::MsgIcon::Exclamation,
                               ctx.title());
                return false;
            }
        }
        const int limit = list == 0 && t->value(QStringLiteral("Typ")).toText() == u"3"
                              ? formats::Phonecall_Len(text)
                              : phoneFieldLimit(list, field, text);
        if (limit > 0 && text.size() > limit) {
            text.truncate(limit);
            ctx.ui->msgBox(gridText(ctx, GridText::PhoneLimit).arg(limit) + QStringLiteral("\n\n") + text,
                           core::MsgButtons::OK, core::MsgIcon::Information, ctx.title());
        }
        if (t->value(field).toText() == text)
            return true;
        t->setValue(field, text);
        if (list == 0) {
            // The shown text stands for the description; the PIM keeps it as the subject.
            t->setValue(QStringLiteral("Description"), text);
            t->setValue(QStringLiteral("PIMText"), text);
            t->setValue(QStringLiteral("IsChanged"), true);
        }
        t->update();
        return saveRow(ctx, list, *t);
    });
}

bool GridEditFlag(core::Context& ctx, int list, const QString& field, bool on) {
    return core::guarded(ctx, kModul, QStringLiteral("GridEditFlag"), false, [&] {
        tables::Recordset* t = tableOf(ctx, list);
        if (!onCurrentRow(t) || !gridEditable(list, field))
            return false;
        if (t->value(field).toBool() == on)
            return true;
        t->setValue(field, on);
        if (list == 0) {
            t->setValue(QStringLiteral("AAlarmFlag"), on);
            t->setValue(QStringLiteral("DAlarmFlag"), on);
            const core::Value start = on ? t->value(QStringLiteral("Start")) : core::Value(core::VbDate(0));
            t->setValue(QStringLiteral("AAlarm"), start);
            t->setValue(QStringLiteral("DAlarm"), start);
        }
        t->update();
        return saveRow(ctx, list, *t);
    });
}

bool DeleteEntry(core::Context& ctx) {
    return core::guarded(ctx, kModul, QStringLiteral("DeleteEntry"), false, [&] {
        const int list = ctx.settings.ActiveAPP == 1 ? 1 : 0;
        tables::Recordset* t = tableOf(ctx, list);
        if (!onCurrentRow(t))
            return false;
        const bool mobile = flag(*t, u"Mobile");
        const bool pimSide = flag(*t, u"PIM");
        const roads::DeleteSides sides{pimSide, mobile, pimSide && mobile};
        if (!roads::ConfirmEntryDelete(ctx, *t, list == 0 ? roads::EntryKind::Calendar : roads::EntryKind::Contact,
                                       sides))
            return false;
        if (mobile && !roads::RemoveEntryFromMobile(ctx, *t))
            return false;
        if (pimSide) {
            if (list == 0)
                roads::RemoveEntryFromOutlook(ctx, *t);
            else
                removeContactFromPim(ctx, *t);
        }
        if (mobile && list == 0)
            ctx.read.vCalMobileCount -= 1;
        t->deleteCurrent();
        if (t->recordCount() > 0) {
            t->moveNext();
            if (t->eof())
                t->moveLast();
        }
        ctx.ui->refreshGrid(list);
        core::SetStatusBarMobile(ctx);
        return true;
    });
}

RowLook EntryBackround(const core::Context& ctx, int list, const tables::Recordset& table, int viewIndex) {
    const int typeField = table.fieldIndex(QStringLiteral("EntryType"));
    if (list == 0) {
        const int dateField = table.fieldIndex(QStringLiteral("StartDate"));
        if (dateField >= 0) {
            const double day = table.valueAt(viewIndex, dateField).toDate().value;
            const double from = std::floor(ctx.flags.GlobalStartDate.value);
            const double to = ctx.flags.GlobalEndDate.value;
            if (day != 0 && to != 0 && (day < from || day > to))
                return RowLook::OutsideRange;
        }
    }
    switch (typeField >= 0 ? table.valueAt(viewIndex, typeField).toInt32() : 0) {
    case 1:
        return RowLook::PimOnly;
    case 2:
        return RowLook::MobileOnly;
    default:
        return RowLook::Normal;
    }
}

} // namespace tsr::main
