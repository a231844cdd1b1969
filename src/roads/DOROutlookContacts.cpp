// SPDX-License-Identifier: GPL-3.0-or-later
// Module DOROutlook, the contact half.
#include "roads/DOROutlookContacts.h"

#include "core/Context.h"
#include "core/ErrorReport.h"
#include "core/Numbers.h"
#include "core/StatusBar.h"
#include "formats/vCard.h"
#include "log/LogWrite.h"
#include "pim/Pim.h"
#include "roads/LiveRoads.h"
#include "sync/MobFile.h"
#include "sync/Verwaltung.h"
#include "sync/vCardMatch.h"
#include "tables/TSRADODB.h"

namespace tsr::roads {

using tables::Recordset;

namespace {

const QString kModul = QStringLiteral("DOROutlook");

QString text(const Recordset& r, const char16_t* field) {
    return r.value(QString::fromUtf16(field)).toText();
}
bool flag(const Recordset& r, const char16_t* field) {
    return r.value(QString::fromUtf16(field)).toBool();
}

void initScratch(core::Context& ctx, Recordset& scratch) {
    tables::vCardInitRS(scratch);
    tables::applyDateTextForm(ctx, scratch);
}

// The text fields that only the PIM side of a row holds: the PIM's copies of a
// contact's values, a calendar entry's PIM subject.
bool isPimField(const QString& name, bool calendar) {
    if (calendar)
        return name.compare(u"PIMText", Qt::CaseInsensitive) == 0;
    return name.size() > 3 && name.startsWith(QLatin1String("PIM"), Qt::CaseInsensitive);
}

// A restriction term [Property] ="value".
QString term(const char* property, const QString& value) {
    return u'[' + QString::fromLatin1(property) + QStringLiteral("] =\"") + value + u'"';
}

void setContactProperties(pim::ContactItem& item, const Recordset& row) {
    item.setFirstName(text(row, u"PIMFirstname"));
    item.setLastName(text(row, u"PIMLastName"));
    item.setCompanyName(text(row, u"PIMCompany"));
    // A contact with a company keeps its address and fax in the business fields.
    const bool business = !text(row, u"Company").isEmpty();
    const QString street = text(row, u"PIMStreet");
    const QString zip = text(row, u"PIMZipCode");
    const QString city = text(row, u"PIMCity");
    const QString country = text(row, u"PIMCountry");
    const QString fax = text(row, u"PIMFax");
    if (business) {
        item.setBusinessAddressStreet(street);
        item.setBusinessAddressPostalCode(zip);
        item.setBusinessAddressCity(city);
        item.setBusinessAddressCountry(country);
        item.setBusinessFaxNumber(fax);
    } else {
        item.setHomeAddressStreet(street);
        item.setHomeAddressPostalCode(zip);
        item.setHomeAddressCity(city);
        item.setHomeAddressCountry(country);
        item.setHomeFaxNumber(fax);
    }
    item.setHomeTelephoneNumber(text(row, u"PIMPhone"));
    item.setBusinessTelephoneNumber(text(row, u"PIMPhoneWork"));
    item.setMobileTelephoneNumber(text(row, u"PIMPhoneMobile"));
    item.setEmail1Address(text(row, u"PIMeMail"));
    item.setWebPage(text(row, u"PIMURL"));
    item.setCategories(text(row, u"CategoriesText"));
}

void noteWrite(core::Context& ctx, Recordset& table, bool IsNew) {
    table.setValue(QStringLiteral("TransferMode"), int32_t(1));
    table.setValue(QStringLiteral("PIMnew"), IsNew);
    table.setValue(QStringLiteral("Transfernew"), int32_t(1));
    if (text(table, u"EntryID").isEmpty()) {
        int16_t& temp = ctx.pim.TempCardID;
        table.setValue(QStringLiteral("EntryID"), QString::number(temp));
        temp = core::toInt16(qint64(temp) + 1);
    }
    table.update();
    Recordset& pending = *ctx.tables.RSContactsPending;
    tables::vCardCreateNewRecord(pending);
    tables::CopyFromRecordset(pending, table);
    ctx.tools.setEnabled(QStringLiteral("TSRTools"), QStringLiteral("TSRSave"), true);
    if (IsNew) {
        ctx.read.vCardPIMCount += 1;
        ctx.read.vCardPIMRead = true;
    }
}

} // namespace

bool vCardReadOutlook(core::Context& ctx, Recordset& table, bool silent) {
    return core::guarded(ctx, kModul,
                         silent ? QStringLiteral("SilentvCardReadOutlook") : QStringLiteral("vCardReadOutlook"), false,
                         [&] {
                             if (!ctx.flags.GlobalOrganizerOK || !ctx.pim.GlobalContactFolder)
                                 return false;
                             // A second read gives the same rows, not a second copy of each.
                             if (ctx.read.vCardPIMCount > 0 && !ctx.read.SyncRunning)
                                 ClearOutlookFromGrid(ctx, table);
                             if (!silent) {
                                 ctx.status.Start(ctx.title(), false);
                                 ctx.status.SetText(ctx.pim.PIMName + u' ' + ctx.strings.text(466));
                             }
                             auto items = ctx.pim.GlobalContactFolder->Items();
                             items->Sort(silent ? QStringLiteral("[FileAs]") : QStringLiteral("[LastName]"));
                             const bool mobileRows = ctx.read.vCardMobileRead && ctx.read.vCardMobileCount > 0;
                             Recordset scratch(QStringLiteral("RSContacts"));
                             initScratch(ctx, scratch);
                             roads::LiveRoads roads;
                             bool finished = true;
                             const int count = items->Count();
                             for (int i = 1; i <= count; ++i) {
                                 if (!ctx.status.GetState()) {
                                     finished = false;
                                     break;
                                 }
                                 auto contact = asContact(items->ItemAt(i));
                                 if (!contact || (contact->LastName().isEmpty() && contact->FirstName().isEmpty()))
                                     continue;
                                 tables::vCardCreateNewRecord(scratch);
                                 sync::vCardInsertEntry(ctx, *contact, scratch);
                                 if (mobileRows && sync::vCardFindCompare(ctx, table, scratch, roads)) {
                                     formats::vCardSyncOutlookEntry(ctx, table, scratch);
                                 } else {
                                     tables::vCardCreateNewRecord(table);
                                     tables::CopyFromRecordset(table, scratch);
                                 }
                                 scratch.deleteCurrent();
                             }
                             ctx.read.vCardPIMCount = sync::countPimRows(table);
                             ctx.read.vCardPIMRead = ctx.read.vCardPIMCount > 0;
                             if (!silent) {
                                 core::SetStatusBarMobile(ctx, true);
                                 ctx.ui->refreshGrid(1);
                                 if (table.recordCount() > 0)
                                     table.moveFirst();
                                 ctx.status.Quit();
                             }
                             return finished;
                         });
}

bool SilentvCardReadOutlook(core::Context& ctx, Recordset& table) {
    return vCardReadOutlook(ctx, table, true);
}

void vCardWriteOutookEntry(core::Context& ctx, Recordset& table, bool& IsNew,
                           const std::shared_ptr<pim::Folder>& folder) {
    core::guarded(ctx, kModul, QStringLiteral("vCardWriteOutookEntry"), [&] {
        if (ctx.settings.SaveTyp != 1 && !ctx.flags.GlobalTransferRun) {
            noteWrite(ctx, table, IsNew);
            return;
        }
        std::shared_ptr<pim::ContactItem> item;
        if (flag(table, u"PIM") && ctx.flags.GlobalOrganizerOK && ctx.servers.MOL && folder) {
            auto ns = ctx.servers.MOL->GetNamespace(QStringLiteral("MAPI"));
            if (IsNew) {
                item = asContact(folder->Items()->Add());
                if (item) {
                    item->Save();
                    const QString oldID = text(table, u"EntryID");
                    table.setValue(QStringLiteral("UID"), item->EntryID());
                    if (ctx.settings.SaveTyp == 1 && !oldID.isEmpty())
                        tables::SeriesSetEntryID(*ctx.tables.RSContactsPending, oldID, item->EntryID());
                }
            } else {
                item = asContact(ns->GetItemFromID(text(table, u"UID"), folder->StoreID()));
            }
        }
        if (item) {
            setContactProperties(*item, table);
            item->Save();
            if (IsNew && !ctx.flags.GlobalTransferRun) {
                ctx.read.vCardPIMCount += 1;
                ctx.read.vCardPIMRead = true;
            }
            table.setValue(QStringLiteral("CreationDate"), item->LastModificationTime());
            table.update();
        }
        ctx.log.LogTransfer = QStringLiteral("PIM");
        ctx.log.LogAction = IsNew ? log::logActionCreated(ctx) : log::logActionChanged(ctx);
        log::logWriteEntry(ctx, table, core::TsrError(), kModul, QStringLiteral("vCardWriteOutookEntry"));
    });
}

void vCardSearchingforOutlookEntry(core::Context& ctx, Recordset& table, const std::shared_ptr<pim::Folder>& folder) {
    core::guarded(ctx, kModul, QStringLiteral("vCardSearchingforOutlookEntry"), [&] {
        if (!folder)
            return;
        const QString last = text(table, u"LastName");
        const QString first = text(table, u"FirstName");
        QString filter;
        if (!last.isEmpty() && !first.isEmpty())
            filter = term("LastName", last) + QStringLiteral(" and ") + term("FirstName", first);
        else if (!last.isEmpty())
            filter = term("LastName", last);
        else if (!first.isEmpty())
            filter = term("FirstName", first);
        else
            return; // a contact without a name is never searched for
        auto items = folder->Items();
        items->Sort(QStringLiteral("[LastName]"));
        Recordset scratch(QStringLiteral("RSContacts"));
        initScratch(ctx, scratch);
        roads::LiveRoads roads;
        int32_t taken = 0;
        const int position = table.absolutePosition();
        for (auto item = items->Find(filter); item; item = items->FindNext()) {
            auto contact = asContact(item);
            if (!contact)
                continue;
            tables::vCardCreateNewRecord(scratch);
            sync::vCardInsertEntry(ctx, *contact, scratch);
            table.setAbsolutePosition(position);
            const bool match =
                sync::vCardFindCompare(ctx, table, scratch, roads) && table.absolutePosition() == position;
            table.setAbsolutePosition(position);
            if (match && !flag(table, u"PIM")) {
                formats::vCardSyncOutlookEntry(ctx, table, scratch);
                ++taken;
            } else if (!match && ctx.read.MobFileFilled) {
                sync::MobFileAuswertung(ctx, scratch, table, roads);
            }
            scratch.deleteCurrent();
        }
        table.setAbsolutePosition(position);
        ctx.read.vCardPIMCount += taken;
        ctx.read.vCardPIMRead = ctx.read.vCardPIMCount > 0;
        if (!ctx.flags.GlobalSilent)
            core::SetStatusBarMobile(ctx, true);
    });
}

void ClearOutlookFromGrid(core::Context& ctx, Recordset& table) {
    core::guarded(ctx, kModul, QStringLiteral("ClearOutlookFromGrid"), [&] {
        if (table.recordCount() == 0)
            return;
        table.moveFirst();
        const bool calendar = text(table, u"Recordset") != u"RSContacts";
        const core::VbDate from = ctx.flags.GlobalStartDate;
        const core::VbDate to = ctx.flags.GlobalEndDate;
        while (!table.eof()) {
            const int32_t type = table.value(QStringLiteral("EntryType")).toInt32();
            if (calendar) {
                const double start = table.value(QStringLiteral("Start")).toDate().value;
                if (start < from.value || start > to.value) {
                    table.moveNext();
                    continue;
                }
            }
            if (type == 1) {
                table.deleteCurrent();
                table.moveNext();
                continue;
            }
            if (type == 3 || flag(table, u"PIM")) {
                table.setValue(QStringLiteral("PIM"), false);
                for (int i = 0; i < table.fieldCount(); ++i) {
                    const QString& name = table.fieldName(i);
                    if (isPimField(name, calendar) && table.fieldType(i) == core::FieldType::Text)
                        table.setValue(i, QString());
                }
                table.setValue(QStringLiteral("UID"), QString());
                table.setValue(QStringLiteral("EntryType"), int32_t(2));
                // Only the calendar table has the field: the contact table would raise on it.
                if (table.hasField(QStringLiteral("creafromMob")))
                    table.setValue(QStringLiteral("creafromMob"), false);
                table.update();
            }
            table.moveNext();
        }
        if (table.recordCount() > 0)
            table.moveFirst();
        if (calendar) {
            ctx.read.vCalPIMCount = 0;
            ctx.read.vCalPIMRead = false;
        } else {
            ctx.read.vCardPIMCount = 0;
            ctx.read.vCardPIMRead = false;
        }
    });
}

} // namespace tsr::roads
