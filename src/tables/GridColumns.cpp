// SPDX-License-Identifier: GPL-3.0-or-later
#include "tables/GridColumns.h"

#include "core/VbDate.h"

namespace tsr::tables {

using Kind = GridColumn::Kind;

namespace {

GridColumn column(const QString& field, const QString& caption, const QString& tooltip, int image, Kind kind,
                  int fixedWidth = 0) {
    GridColumn c;
    c.field = field;
    c.caption = caption;
    c.tooltip = tooltip;
    c.image = image;
    c.kind = kind;
    c.fixedWidth = fixedWidth;
    return c;
}

} // namespace

std::vector<ValueListItem> typValueList(const core::Context& ctx) {
    const auto& s = ctx.strings;
    return {{QString(), s.text(761), 3},
            {QStringLiteral("1"), s.text(812), 4},
            {QStringLiteral("2"), s.text(525), 5},
            {QStringLiteral("3"), s.text(526), 6}};
}

std::vector<ValueListItem> serieValueList(const core::Context& ctx) {
    const auto& s = ctx.strings;
    return {{QString(), s.text(527), 7},
            {QStringLiteral("D"), s.text(528), 8},
            {QStringLiteral("W"), s.text(759), 9},
            {QStringLiteral("M"), s.text(841), 10},
            {QStringLiteral("Y"), s.text(842), 11}};
}

std::vector<GridColumn> SetvCalColCaption(const core::Context& ctx) {
    const auto& s = ctx.strings;
    std::vector<GridColumn> cols(8);
    cols[0] = column(QStringLiteral("PIM"), QString(), s.text(540), 1, Kind::CheckBox, 320);
    cols[0].onlyWithPim = true;
    cols[1] = column(QStringLiteral("Mobile"), QString(), s.text(931), 2, Kind::CheckBox, 320);
    cols[2] = column(QStringLiteral("Alarm"), QString(), s.text(508), 12, Kind::CheckBox, 320);
    cols[3] = column(QStringLiteral("StartDate"), s.text(484), s.text(485), 0, Kind::Date);
    cols[3].widthSample = core::Format(core::DateSerial(2000, 12, 12), ctx.formats.DateFormat);
    cols[4] = column(QStringLiteral("StartTime"), s.text(486), s.text(487), 0, Kind::Time);
    cols[4].widthSample = core::Format(core::TimeSerial(0, 30, 0), ctx.formats.TimeFormatNoSec);
    cols[5] = column(QStringLiteral("Typ"), s.text(488), s.text(489), 0, Kind::ValueList);
    cols[5].widthSample = QStringLiteral("Besprechung");
    cols[5].widthExtra = 400;
    cols[5].values = typValueList(ctx);
    cols[6] = column(QStringLiteral("Text"), s.text(492), s.text(493), 0, Kind::Text);
    cols[6].fillsRest = true;
    cols[7] = column(QStringLiteral("Serie"), s.text(490), s.text(491), 0, Kind::ValueList);
    cols[7].widthSample = QStringLiteral("wöchentlich");
    cols[7].widthExtra = 150;
    cols[7].values = serieValueList(ctx);
    return cols;
}

std::vector<GridColumn> vCardSetColCaption(const core::Context& ctx) {
    const auto& s = ctx.strings;
    std::vector<GridColumn> cols;
    cols.push_back(column(QStringLiteral("PIM"), QString(), s.text(506), 1, Kind::CheckBox, 320));
    cols.back().onlyWithPim = true;
    cols.push_back(column(QStringLiteral("Mobile"), QString(), s.text(933), 2, Kind::CheckBox, 320));
    const std::pair<const char16_t*, int> texts[] = {{u"LastName", 494}, {u"FirstName", 496}, {u"Company", 513},
                                                     {u"Phone", 498},    {u"Street", 500},    {u"ZipCode", 502},
                                                     {u"City", 504}};
    const int tooltips[] = {495, 497, 514, 499, 501, 503, 505};
    for (int i = 0; i < 7; ++i)
        cols.push_back(
            column(QString::fromUtf16(texts[i].first), s.text(texts[i].second), s.text(tooltips[i]), 0, Kind::Text));
    cols.push_back(column(QStringLiteral("Categories"), s.text(511), s.text(935), 0, Kind::CheckBox));
    return cols;
}

int textColumnWidth(int gridWidth, const std::vector<int>& otherWidths) {
    int used = 150;
    for (int w : otherWidths)
        used += w;
    return gridWidth - used;
}

} // namespace tsr::tables
