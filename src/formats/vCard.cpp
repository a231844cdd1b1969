// SPDX-License-Identifier: GPL-3.0-or-later
// The contact parser. Lines are not unfolded: the phone writes every property
// on one line, and a continuation line is read as a line of its own (and passed
// over, having no known property).
#include "formats/vCard.h"

#include "core/Error.h"
#include "formats/Allgemein.h"
#include "formats/unicode.h"

namespace tsr::formats {

namespace {

using tables::Recordset;

const QString kSource = QStringLiteral("ParsEntryFromMobile");

QString text(const Recordset& table, const QString& field) {
    return table.value(field).toText();
}

void setBoth(Recordset& table, const QString& field, const QString& pimField, const QString& value) {
    table.setValue(field, value);
    table.setValue(pimField, value);
}

[[noreturn]] void unexpectedTag(const core::Context& ctx, int32_t number, const QString& tag, const QString& key,
                                const QString& value) {
    core::raise(number, kSource,
                ctx.strings.text(753) + tag + QStringLiteral("\r\n") + key + QStringLiteral(":") + value);
}

// ADR: the pieces are counted from 0; street is piece 2, city 3, zip code 5, country 6.
// A field's PIM copy is set only when a further piece follows it; the bare ADR form
// also sets the PIM country.
void fillAddress(Recordset& table, const QStringList& pieces, bool bareForm) {
    const qsizetype upper = pieces.size() - 1;
    struct Slot {
        qsizetype index;
        const char16_t* field;
        const char16_t* pimField;
    };
    static constexpr Slot kSlots[] = {{2, u"Street", u"PIMStreet"},
                                      {3, u"City", u"PIMCity"},
                                      {5, u"ZipCode", u"PIMZipCode"},
                                      {6, u"Country", u"PIMCountry"}};
    for (const Slot& slot : kSlots) {
        if (upper < slot.index)
            break;
        const QString value = RemoveCTRLCharactersFromString(pieces[slot.index]);
        table.setValue(QString::fromUtf16(slot.field), value);
        if (upper > slot.index || (bareForm && slot.index == 6))
            table.setValue(QString::fromUtf16(slot.pimField), value);
    }
}

void parseAddress(Recordset& table, const QStringList& keyPieces, const QString& value) {
    const QStringList pieces = SplitESCStrings(value);
    for (qsizetype i = 0; i < keyPieces.size(); ++i) {
        const QString& piece = keyPieces[i];
        if (i == 0)
            fillAddress(table, pieces, true);
        else if (piece == u"HOME" || piece == u"WORK")
            fillAddress(table, pieces, false);
    }
}

// TEL: a preferred number replaces what stands; a plain one fills only an empty field.
void parsePhone(Recordset& table, const QStringList& params, const QString& value) {
    const auto fillIfEmpty = [&](const QString& field, const QString& pimField) {
        if (text(table, field).isEmpty())
            setBoth(table, field, pimField, value);
    };
    for (qsizetype i = 0; i < params.size(); ++i) {
        const QString& p = params[i];
        if (p == u"PREF") {
            const QString next = i + 1 < params.size() ? params[i + 1] : QString();
            if (next == u"WORK")
                setBoth(table, QStringLiteral("PhoneWork"), QStringLiteral("PIMPhoneWork"), value);
            else if (next == u"HOME")
                setBoth(table, QStringLiteral("Phone"), QStringLiteral("PIMPhone"), value);
        } else if (p == u"WORK") {
            fillIfEmpty(QStringLiteral("PhoneWork"), QStringLiteral("PIMPhoneWork"));
        } else if (p == u"HOME") {
            fillIfEmpty(QStringLiteral("Phone"), QStringLiteral("PIMPhone"));
        } else if (p == u"FAX") {
            setBoth(table, QStringLiteral("Fax"), QStringLiteral("PIMFax"), value);
        } else if (p == u"CELL") {
            fillIfEmpty(QStringLiteral("PhoneMobile"), QStringLiteral("PIMPhoneMobile"));
        }
    }
}

void parseEmail(Recordset& table, const QStringList& keyPieces, const QString& value) {
    for (const QString& piece : keyPieces) {
        if (piece == u"INTERNET" || piece == u"EMAIL")
            setBoth(table, QStringLiteral("eMail"), QStringLiteral("PIMeMail"), value);
    }
}

void parseVersion(core::Context& ctx, const QString& value) {
    QString& known = ctx.entryFormats.vCard.vCardVersion;
    if (value != known) {
        ctx.ui->msgBox(QStringLiteral("Version conflict in vCard! Version: ") + value, core::MsgButtons::OK,
                       core::MsgIcon::Exclamation, ctx.title());
    }
    known = value;
}

void parseLine(core::Context& ctx, Recordset& table, const QString& key, QString value) {
    bool utf8 = false;
    encodeString(ctx, value, key, utf8);
    table.setValue(QStringLiteral("UTF8Flag"), utf8);

    const QStringList keyPieces = key.split(u';');
    const QString& property = keyPieces[0];
    const QStringList params = keyPieces.mid(1);

    if (property == u"BEGIN") {
        if (value != u"VCARD")
            unexpectedTag(ctx, -1996, QStringLiteral(" BEGIN"), key, value);
    } else if (property == u"END") {
        if (value != u"VCARD")
            unexpectedTag(ctx, -1995, QStringLiteral(" END"), key, value);
    } else if (property == u"ORG") {
        if (value.isEmpty())
            return;
        const QStringList pieces = SplitESCStrings(value);
        setBoth(table, QStringLiteral("Company"), QStringLiteral("PIMCompany"),
                RemoveCTRLCharactersFromString(pieces[0]));
    } else if (property == u"N") {
        if (value.isEmpty())
            return;
        const QStringList pieces = SplitESCStrings(value);
        setBoth(table, QStringLiteral("LastName"), QStringLiteral("PIMLastName"),
                RemoveCTRLCharactersFromString(pieces[0]));
        if (pieces.size() > 1) {
            setBoth(table, QStringLiteral("FirstName"), QStringLiteral("PIMFirstname"),
                    RemoveCTRLCharactersFromString(pieces[1]));
        }
    } else if (property == u"ADR") {
        parseAddress(table, keyPieces, value);
    } else if (property == u"URL") {
        setBoth(table, QStringLiteral("URL"), QStringLiteral("PIMURL"), value);
    } else if (property == u"EMAIL") {
        parseEmail(table, keyPieces, value);
    } else if (property == u"VERSION") {
        parseVersion(ctx, value);
    } else if (property == u"CATEGORIES") {
        table.setValue(QStringLiteral("CategoriesText"), value);
        table.setValue(QStringLiteral("Categories"), !value.isEmpty());
        table.setValue(QStringLiteral("MobileCategoriesText"), value);
    } else if (property == u"TEL") {
        parsePhone(table, params, value);
    }
}

} // namespace

bool vCardParsEntryFromMobile(core::Context& ctx, tables::Recordset& table, QString& text) {
    if (ctx.flags.GlobalCommandDebug)
        ctx.ui->msgBox(text, core::MsgButtons::OK, core::MsgIcon::None, ctx.title());

    const QStringList lines = text.split(QLatin1String("\r\n"));
    for (const QString& line : lines) {
        const qsizetype colon = line.indexOf(u':');
        const QString key = colon < 0 ? line : line.left(colon);
        if (key.isEmpty())
            continue;
        parseLine(ctx, table, key, colon < 0 ? QString() : line.mid(colon + 1));
    }
    table.setValue(QStringLiteral("Mobile"), true);
    table.setValue(QStringLiteral("EntryType"), int32_t(2));
    return true;
}

} // namespace tsr::formats
