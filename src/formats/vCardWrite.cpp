// SPDX-License-Identifier: GPL-3.0-or-later
// The contact text written for the phone, and the limits the phone's contact
// store sets on each field. Only N, ORG and ADR are encoded; the other values go
// as they stand, with ";" escaped.
#include "core/ErrorReport.h"
#include "formats/Allgemein.h"
#include "formats/unicode.h"
#include "formats/vCard.h"

namespace tsr::formats {

namespace {

using tables::Recordset;

const QString kCrLf = QStringLiteral("\r\n");
const QString kQuotedUtf8 = QStringLiteral(";CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:");

QString field(const Recordset& table, const QString& name) {
    return table.value(name).toText();
}

void cutTo(Recordset& table, const QString& name, qsizetype limit) {
    const QString value = field(table, name);
    if (value.size() > limit)
        table.setValue(name, value.left(limit));
}

} // namespace

void vCardPreSetActEntryFields(core::Context& ctx) {
    core::VCardHeads& h = ctx.entryFormats.vCard;
    h.Version = QStringLiteral("VERSION:") + h.vCardVersion;
    h.Begin = QStringLiteral("BEGIN:VCARD");
    h.End = QStringLiteral("END:VCARD");
    h.TelHome = QStringLiteral("TEL;HOME:");
    h.TelWork = QStringLiteral("TEL;WORK:");
    h.TelFax = QStringLiteral("TEL;FAX:");
    h.TelCell = QStringLiteral("TEL;CELL:");
    h.Categories = QStringLiteral("CATEGORIES:");
    h.Url = QStringLiteral("URL:");
    h.Email = QStringLiteral("EMAIL:");
}

void vCardLenControl(core::Context& ctx, tables::Recordset& table) {
    core::guarded(ctx, QStringLiteral("vCard"), QStringLiteral("vCardLenControl"), [&] {
        cutTo(table, QStringLiteral("FirstName"), 16);
        cutTo(table, QStringLiteral("LastName"), 24);
        cutTo(table, QStringLiteral("Company"), 16);
        for (const QString& name : {QStringLiteral("Phone"), QStringLiteral("PhoneWork"), QStringLiteral("PhoneMobile"),
                                    QStringLiteral("Fax")}) {
            cutTo(table, name, vCardPhoneNumber_Len(field(table, name), 40, 41));
        }
        cutTo(table, QStringLiteral("Street"), 40);
        cutTo(table, QStringLiteral("City"), 16);
        cutTo(table, QStringLiteral("ZipCode"), 8);
        cutTo(table, QStringLiteral("eMail"), 40);
        cutTo(table, QStringLiteral("Country"), 16);
        // A long URL first loses its "http://", the phone's browser adds it anyway.
        const QString url = field(table, QStringLiteral("URL"));
        if (url.size() > 64)
            table.setValue(QStringLiteral("URL"), URLwithouthttp(url).left(64));
    });
}

QString vCardEntryText(core::Context& ctx, tables::Recordset& table) {
    vCardPreSetActEntryFields(ctx);
    vCardLenControl(ctx, table);
    const core::VCardHeads& h = ctx.entryFormats.vCard;

    QString out;
    out.reserve(512);
    const auto line = [&out](const QString& text) {
        out += text;
        out += kCrLf;
    };
    line(h.Begin);
    line(h.Version);

    QString last = StringToUniToUTFToQuoted(field(table, QStringLiteral("LastName")));
    QString first = StringToUniToUTFToQuoted(field(table, QStringLiteral("FirstName")));
    QString head = QStringLiteral("N:");
    if (last.contains(u'=') || first.contains(u'=')) {
        head = QStringLiteral("N") + kQuotedUtf8;
        CheckSemicolonInToken(last);
        CheckSemicolonInToken(first);
    }
    line(head + last + u';' + first);

    QString company = StringToUniToUTFToQuoted(field(table, QStringLiteral("Company")));
    head = company.contains(u'=') ? QStringLiteral("ORG") + kQuotedUtf8 : QStringLiteral("ORG:");
    if (!company.isEmpty()) {
        CheckSemicolonInToken(company);
        line(head + company);
    }

    QString street = StringToUniToUTFToQuoted(field(table, QStringLiteral("Street")));
    QString city = StringToUniToUTFToQuoted(field(table, QStringLiteral("City")));
    QString country = StringToUniToUTFToQuoted(field(table, QStringLiteral("Country")));
    QString zip = field(table, QStringLiteral("ZipCode"));
    head = QStringLiteral("ADR:");
    if (street.contains(u'=') || city.contains(u'=') || zip.contains(u'=') || country.contains(u'=')) {
        head = QStringLiteral("ADR") + kQuotedUtf8;
        for (QString* piece : {&street, &city, &zip, &country})
            CheckSemicolonInToken(*piece);
    }
    line(head + QStringLiteral(";;") + street + u';' + city + QStringLiteral(";;") + zip + u';' + country);

    const std::pair<QString, const QString*> plain[] = {
        {QStringLiteral("eMail"), &h.Email},   {QStringLiteral("URL"), &h.Url},
        {QStringLiteral("Phone"), &h.TelHome}, {QStringLiteral("PhoneWork"), &h.TelWork},
        {QStringLiteral("Fax"), &h.TelFax},    {QStringLiteral("PhoneMobile"), &h.TelCell},
    };
    for (const auto& [name, lineHead] : plain) {
        QString value = field(table, name);
        if (value.isEmpty())
            continue;
        CheckSemicolonInToken(value);
        line(*lineHead + value);
    }

    if (table.value(QStringLiteral("Categories")).toBool()) {
        QString categories = field(table, QStringLiteral("MobileCategoriesText"));
        CheckSemicolonInToken(categories);
        line(h.Categories + categories);
    }
    line(h.End);
    return out;
}

} // namespace tsr::formats
