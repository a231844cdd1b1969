// SPDX-License-Identifier: GPL-3.0-or-later
// Reading and applying the restriction texts of Items.Find and the property
// names of Items.Sort.
#include "pim/Filter.h"

#include <QRegularExpression>
#include <cmath>

namespace tsr::pim {

namespace {

const QString kSource = QStringLiteral("Items:Find");

[[noreturn]] void badFilter(const QString& filter, const QString& why) {
    core::raise(err::InvalidArgument, kSource,
                QStringLiteral("Cannot parse condition. Error at \"%1\": %2").arg(filter, why));
}

const QStringList& dateProperties() {
    static const QStringList names{QStringLiteral("Start"), QStringLiteral("End"), QStringLiteral("CreationTime"),
                                   QStringLiteral("LastModificationTime")};
    return names;
}

const QStringList& appointmentTexts() {
    static const QStringList names{QStringLiteral("Subject"), QStringLiteral("EntryID")};
    return names;
}

const QStringList& contactTexts() {
    static const QStringList names{QStringLiteral("FirstName"),
                                   QStringLiteral("LastName"),
                                   QStringLiteral("FileAs"),
                                   QStringLiteral("FullName"),
                                   QStringLiteral("CompanyName"),
                                   QStringLiteral("Email1Address"),
                                   QStringLiteral("Categories"),
                                   QStringLiteral("EntryID"),
                                   QStringLiteral("HomeTelephoneNumber"),
                                   QStringLiteral("WebPage"),
                                   QStringLiteral("MobileTelephoneNumber"),
                                   QStringLiteral("BusinessTelephoneNumber")};
    return names;
}

// The date part of a date-time mask: the time tokens and a day-part mark taken out.
QString dateMaskOf(const QString& dateTimeMask) {
    static const QRegularExpression timeRe(
        QStringLiteral(R"([hH]{1,2}[:.]?[mMnN]{0,2}(?:[:.][sS]{1,2})?\s*(?:AM/PM|am/pm|A/P|a/p|AMPM)?)"));
    QString mask = dateTimeMask;
    mask.remove(timeRe);
    return mask.trimmed();
}

// Two dates count as equal within half a second: the formats carry no finer time.
bool sameMoment(core::VbDate a, core::VbDate b) {
    return std::fabs(a.value - b.value) < 0.5 / 86400.0;
}

int compareDates(core::VbDate a, core::VbDate b) {
    if (sameMoment(a, b))
        return 0;
    return a < b ? -1 : 1;
}

bool holds(FilterOp op, int cmp) {
    switch (op) {
    case FilterOp::Eq:
        return cmp == 0;
    case FilterOp::Ne:
        return cmp != 0;
    case FilterOp::Lt:
        return cmp < 0;
    case FilterOp::Le:
        return cmp <= 0;
    case FilterOp::Gt:
        return cmp > 0;
    case FilterOp::Ge:
        return cmp >= 0;
    }
    return false;
}

QString canonicalName(const QString& property) {
    for (const QStringList* list : {&dateProperties(), &appointmentTexts(), &contactTexts()})
        for (const QString& name : *list)
            if (name.compare(property, Qt::CaseInsensitive) == 0)
                return name;
    return property;
}

} // namespace

bool isDateProperty(const QString& property) {
    return dateProperties().contains(property, Qt::CaseInsensitive);
}

bool isKnownProperty(const QString& property, int itemClass) {
    if (isDateProperty(property))
        return itemClass != olContact || property.compare(QStringLiteral("Start"), Qt::CaseInsensitive) != 0;
    if (itemClass == olAppointment)
        return appointmentTexts().contains(property, Qt::CaseInsensitive);
    return contactTexts().contains(property, Qt::CaseInsensitive);
}

std::optional<core::VbDate> readFilterDate(const QString& text, const core::DateFormats& formats) {
    if (auto d = core::parseDate(text, formats.DateFormat, formats.GridTimeStyle))
        return d;
    return core::parseDate(text, dateMaskOf(formats.DateTimeFormat), formats.TimeFormat);
}

Filter parseFilter(const QString& text, const core::DateFormats& formats) {
    // One term: [Name], an operator, and a value in double or single quotes (doubled quotes inside).
    static const QRegularExpression termRe(
        QStringLiteral(R"re(^\s*\[([^\]]+)\]\s*(<>|<=|>=|=|<|>)\s*(?:"((?:[^"]|"")*)"|'((?:[^']|'')*)'))re"));
    static const QRegularExpression andRe(QStringLiteral(R"(^\s+and\s+|^\s*and\s*(?=\[))"),
                                          QRegularExpression::CaseInsensitiveOption);
    Filter filter;
    int pos = 0;
    while (true) {
        auto m = termRe.match(text.mid(pos));
        if (!m.hasMatch())
            badFilter(text,
                      QStringLiteral("a term [Name] operator \"value\" was expected at position %1").arg(pos + 1));
        FilterTerm term;
        term.property = canonicalName(m.captured(1).trimmed());
        const QString op = m.captured(2);
        term.op = op == u"="    ? FilterOp::Eq
                  : op == u"<>" ? FilterOp::Ne
                  : op == u"<"  ? FilterOp::Lt
                  : op == u"<=" ? FilterOp::Le
                  : op == u">"  ? FilterOp::Gt
                                : FilterOp::Ge;
        term.text = m.capturedStart(3) >= 0 ? m.captured(3).replace(QStringLiteral("\"\""), QStringLiteral("\""))
                                            : m.captured(4).replace(QStringLiteral("''"), QStringLiteral("'"));
        if (!isDateProperty(term.property) && !contactTexts().contains(term.property) &&
            !appointmentTexts().contains(term.property))
            badFilter(text, QStringLiteral("the property [%1] is unknown").arg(term.property));
        if (isDateProperty(term.property)) {
            term.date = readFilterDate(term.text, formats);
            if (!term.date)
                badFilter(text, QStringLiteral("\"%1\" is no date").arg(term.text));
            if (term.property == u"Start") {
                const core::VbDate d = *term.date;
                if (term.op == FilterOp::Ge || term.op == FilterOp::Gt || term.op == FilterOp::Eq)
                    filter.startFrom = filter.startFrom ? std::max(*filter.startFrom, d) : d;
                if (term.op == FilterOp::Le || term.op == FilterOp::Lt || term.op == FilterOp::Eq)
                    filter.startTo = filter.startTo ? std::min(*filter.startTo, d) : d;
            }
        }
        filter.terms << term;
        pos += int(m.capturedLength(0));
        const QString rest = text.mid(pos);
        if (rest.trimmed().isEmpty())
            break;
        auto a = andRe.match(rest);
        if (!a.hasMatch())
            badFilter(text, QStringLiteral("only \"and\" may join terms, at position %1").arg(pos + 1));
        pos += int(a.capturedLength(0));
    }
    return filter;
}

PropertyValue propertyValue(const Item& item, const QString& property) {
    PropertyValue v;
    if (property == u"CreationTime") {
        v.date = item.CreationTime();
        return v;
    }
    if (property == u"LastModificationTime") {
        v.date = item.LastModificationTime();
        return v;
    }
    if (property == u"EntryID") {
        v.text = item.EntryID();
        return v;
    }
    if (const auto* a = dynamic_cast<const AppointmentItem*>(&item)) {
        if (property == u"Start")
            v.date = a->Start();
        else if (property == u"End")
            v.date = a->End();
        else if (property == u"Subject")
            v.text = a->Subject();
        return v;
    }
    if (const auto* c = dynamic_cast<const ContactItem*>(&item)) {
        static const QHash<QString, QString (ContactItem::*)() const> getters{
            {QStringLiteral("FirstName"), &ContactItem::FirstName},
            {QStringLiteral("LastName"), &ContactItem::LastName},
            {QStringLiteral("FileAs"), &ContactItem::FileAs},
            {QStringLiteral("FullName"), &ContactItem::FullName},
            {QStringLiteral("CompanyName"), &ContactItem::CompanyName},
            {QStringLiteral("Email1Address"), &ContactItem::Email1Address},
            {QStringLiteral("Categories"), &ContactItem::Categories},
            {QStringLiteral("HomeTelephoneNumber"), &ContactItem::HomeTelephoneNumber},
            {QStringLiteral("MobileTelephoneNumber"), &ContactItem::MobileTelephoneNumber},
            {QStringLiteral("BusinessTelephoneNumber"), &ContactItem::BusinessTelephoneNumber},
            {QStringLiteral("WebPage"), &ContactItem::WebPage}};
        if (auto getter = getters.value(property))
            v.text = (c->*getter)();
    }
    return v;
}

bool matches(const Filter& filter, const Item& item) {
    for (const FilterTerm& term : filter.terms) {
        const PropertyValue v = propertyValue(item, term.property);
        int cmp;
        if (term.date) {
            if (!v.date)
                return false;
            cmp = compareDates(*v.date, *term.date);
        } else {
            cmp = v.text.compare(term.text, Qt::CaseInsensitive);
        }
        if (!holds(term.op, cmp))
            return false;
    }
    return true;
}

int compareValues(const PropertyValue& va, const PropertyValue& vb) {
    if (va.date || vb.date) {
        const double da = va.date ? va.date->value : -1e300, db = vb.date ? vb.date->value : -1e300;
        return da < db ? -1 : (da > db ? 1 : 0);
    }
    return va.text.compare(vb.text, Qt::CaseInsensitive);
}

QString sortProperty(const QString& text) {
    static const QRegularExpression re(QStringLiteral(R"(^\s*\[?\s*([A-Za-z0-9]+)\s*\]?\s*$)"));
    auto m = re.match(text);
    if (!m.hasMatch())
        core::raise(err::InvalidArgument, QStringLiteral("Items:Sort"),
                    QStringLiteral("The property \"%1\" cannot be sorted on.").arg(text));
    return canonicalName(m.captured(1));
}

} // namespace tsr::pim
