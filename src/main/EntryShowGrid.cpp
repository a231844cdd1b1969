// SPDX-License-Identifier: GPL-3.0-or-later
#include "main/EntryShowGrid.h"

#include "core/Context.h"

namespace tsr::main {

namespace {

// A caption from the table of labels, without its colon.
QString caption(const core::Context& ctx, int number) {
    QString t = ctx.strings.text(number).trimmed();
    if (t.endsWith(u':'))
        t.chop(1);
    return t;
}

QString shown(const core::Context& ctx, const tables::Recordset& row, const QString& field) {
    const core::Value v = row.value(field);
    if (v.type() == core::FieldType::Bool)
        return ctx.strings.text(v.toBool() ? 802 : 801);
    return v.toText();
}

} // namespace

QList<EntryShowProperty> InitEigenschaftenArray(const core::Context& ctx) {
    const std::pair<const char*, int> fields[] = {
        {"LastName", 566},    {"FirstName", 567}, {"Company", 568}, {"Phone", 574},      {"PhoneWork", 573},
        {"PhoneMobile", 576}, {"Fax", 575},       {"Street", 569},  {"ZipCode", 571},    {"City", 570},
        {"Country", 572},     {"eMail", 577},     {"URL", 578},     {"Categories", 511},
    };
    QList<EntryShowProperty> list;
    for (const auto& [field, number] : fields)
        list.append({QString::fromLatin1(field), caption(ctx, number)});
    return list;
}

std::unique_ptr<tables::Recordset> InitShowGridRS() {
    auto grid = std::make_unique<tables::Recordset>(QStringLiteral("EntryShowGridRS"));
    grid->appendField(QStringLiteral("Typ"), core::FieldType::Text);
    grid->appendField(QStringLiteral("Mobile"), core::FieldType::Text);
    grid->appendField(QStringLiteral("PIM"), core::FieldType::Text);
    grid->open();
    return grid;
}

void FillShowGridRS(const core::Context& ctx, tables::Recordset& grid, const tables::Recordset& pimRow,
                    const tables::Recordset& mobileRow) {
    for (const EntryShowProperty& p : InitEigenschaftenArray(ctx)) {
        grid.addNew();
        grid.setValue(QStringLiteral("Typ"), p.caption);
        grid.setValue(QStringLiteral("Mobile"), shown(ctx, mobileRow, p.field));
        grid.setValue(QStringLiteral("PIM"), shown(ctx, pimRow, p.field));
        grid.update();
    }
}

QList<int> setGridBackColor(tables::Recordset& grid) {
    QList<int> found;
    if (grid.recordCount() == 0)
        return found;
    const int position = grid.absolutePosition();
    int line = 0;
    for (grid.moveFirst(); !grid.eof(); grid.moveNext(), ++line)
        if (grid.value(QStringLiteral("PIM")).toText() != grid.value(QStringLiteral("Mobile")).toText())
            found.append(line);
    grid.setAbsolutePosition(position);
    return found;
}

int16_t EntryShowAnswer(bool chMobileoverPIM, bool chPIMoverMobile, bool chMobandPIM) {
    if (chMobandPIM)
        return MobileAndPim;
    if (chMobileoverPIM)
        return MobileOverPim;
    if (chPIMoverMobile)
        return PimOverMobile;
    return NoChoice;
}

} // namespace tsr::main
