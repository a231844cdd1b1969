// SPDX-License-Identifier: GPL-3.0-or-later
// The two merges of a matched contact pair. Each row keeps a value twice, the
// phone's under the plain name and the PIM's under the PIM... name, so a merge
// takes one side's set from the fresh row and leaves the other side's alone.
#include "core/ErrorReport.h"
#include "formats/vCard.h"
#include "tables/TSRADODB.h"

namespace tsr::formats {

void vCardSyncOutlookEntry(core::Context& ctx, tables::Recordset& target, tables::Recordset& source) {
    core::guarded(ctx, QStringLiteral("vCard"), QStringLiteral("vCardSyncOutlookEntry"), [&] {
        tables::copyFields(target, source,
                           {u"UID", u"PIMLastName", u"PIMFirstName", u"PIMCompany", u"PIMStreet", u"PIMCity",
                            u"PIMZipCode", u"PIMCountry", u"PIMeMail", u"PIMURL", u"PIMPhone", u"PIMPhoneWork",
                            u"PIMPhoneMobile", u"PIMFax", u"CreationDate", u"PIM"});
        target.setValue(QStringLiteral("EntryType"), int32_t(3));
        tables::copyFields(target, source, {u"PIMNew"});
        target.update();
    });
}

void vCardSyncMobileEntry(core::Context& ctx, tables::Recordset& target, tables::Recordset& source) {
    core::guarded(ctx, QStringLiteral("vCard"), QStringLiteral("vCardSyncMobileEntry"), [&] {
        tables::copyFields(target, source,
                           {u"EntryID", u"MobileID", u"LastName", u"FirstName", u"Company", u"Phone", u"Street",
                            u"ZipCode", u"City", u"Categories", u"PhoneWork", u"PhoneMobile", u"Fax", u"eMail",
                            u"Country", u"URL", u"Mobile"});
        target.setValue(QStringLiteral("EntryType"), int32_t(3));
        tables::copyFields(target, source,
                           {u"CategoriesText", u"MobileCategoriesText", u"UTF8Flag", u"EntryPath", u"EntryFile"});
        target.update();
    });
}

} // namespace tsr::formats
