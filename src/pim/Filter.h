// SPDX-License-Identifier: GPL-3.0-or-later
// The restriction texts of Items.Find: terms like [Start]>="01.02.26" joined by
// "and", their dates read in the user's formats. Anything else it cannot read
// raises an error: a filter never silently matches everything.
#pragma once

#include "core/Settings.h"
#include "core/VbDate.h"
#include "pim/Pim.h"

#include <QList>
#include <QString>
#include <optional>

namespace tsr::pim {

enum class FilterOp { Eq, Ne, Lt, Le, Gt, Ge };

struct FilterTerm {
    QString property; // as written between the brackets, without them
    FilterOp op = FilterOp::Eq;
    QString text;
    std::optional<core::VbDate> date; // for date properties
};

struct Filter {
    QList<FilterTerm> terms; // all must hold
    // The narrowest range the terms give [Start]; a series is expanded inside it.
    std::optional<core::VbDate> startFrom;
    std::optional<core::VbDate> startTo;
};

// Properties that hold a date, and the names Find and Sort know for each item kind.
bool isDateProperty(const QString& property);
bool isKnownProperty(const QString& property, int itemClass);

// Reads a date written in DateFormat (with a GridTimeStyle time behind it) or in DateTimeFormat.
std::optional<core::VbDate> readFilterDate(const QString& text, const core::DateFormats& formats);

// Raises err::InvalidArgument with the filter's text when it cannot be read.
Filter parseFilter(const QString& text, const core::DateFormats& formats);

// The item's value of a known property: a date or a text.
struct PropertyValue {
    std::optional<core::VbDate> date;
    QString text;
};
PropertyValue propertyValue(const Item& item, const QString& property);

bool matches(const Filter& filter, const Item& item);
// Compares two values of a property for Sort: below 0, 0 or above 0.
int compareValues(const PropertyValue& a, const PropertyValue& b);

// "[Start]" -> "Start"; raises err::InvalidArgument when the text is no bracketed name.
QString sortProperty(const QString& text);

} // namespace tsr::pim
