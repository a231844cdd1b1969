// SPDX-License-Identifier: GPL-3.0-or-later
// The grid columns of the calendar and contact tables as data: which field,
// caption and tooltip (string numbers), image, width rule and editor kind. The
// windows render them; both sets are built again after a language change.
#pragma once

#include "core/Context.h"

#include <QString>
#include <vector>

namespace tsr::tables {

struct ValueListItem {
    QString value;
    QString text;
    int image;
};

struct GridColumn {
    enum class Kind { CheckBox, Date, Time, ValueList, Text };
    QString field;
    QString caption; // empty where the header shows only the image
    QString tooltip;
    int image = 0; // header image, 0 for none
    Kind kind = Kind::Text;
    int fixedWidth = 0;  // in twips; 0 where the width comes from a sample text
    QString widthSample; // text whose width the column takes, in the grid's font
    int widthExtra = 0;  // twips added to the sample's width
    bool fillsRest = false;
    bool onlyWithPim = false;
    std::vector<ValueListItem> values;
};

// Captions, tooltips and value lists in the current language; the date sample in the user's date format.
std::vector<GridColumn> SetvCalColCaption(const core::Context& ctx);
std::vector<GridColumn> vCardSetColCaption(const core::Context& ctx);

// The value lists of the type and series columns.
std::vector<ValueListItem> typValueList(const core::Context& ctx);
std::vector<ValueListItem> serieValueList(const core::Context& ctx);

// The width left for the text column: the grid's width less the other visible
// columns' widths and 150.
int textColumnWidth(int gridWidth, const std::vector<int>& otherWidths);

// The calendar grid sorts by date, then time.
inline const QStringList kCalendarSort{QStringLiteral("StartDate"), QStringLiteral("StartTime")};

} // namespace tsr::tables
