// SPDX-License-Identifier: GPL-3.0-or-later
#include "log/LogInit.h"

namespace tsr::log {

using core::FieldType;
using tables::Recordset;

namespace {

std::unique_ptr<Recordset> makeTable(const QString& name,
                                     std::initializer_list<std::pair<const char16_t*, FieldType>> fields) {
    auto table = std::make_unique<Recordset>(name);
    for (const auto& [field, type] : fields)
        table->appendField(QString::fromUtf16(field), type);
    table->open();
    return table;
}

} // namespace

void LogInit(core::Context& ctx) {
    ctx.tables.LogCalendar = makeTable(QStringLiteral("LogCalendar"), {{u"Transfer", FieldType::Text},
                                                                       {u"Action", FieldType::Text},
                                                                       {u"SynchDate", FieldType::Date},
                                                                       {u"Date", FieldType::Date},
                                                                       {u"Time", FieldType::Date},
                                                                       {u"Text", FieldType::Text},
                                                                       {u"Typ", FieldType::Text},
                                                                       {u"Error", FieldType::Text},
                                                                       {u"ErrorDesc", FieldType::Text}});
    ctx.tables.LogContacts = makeTable(QStringLiteral("LogContacts"), {{u"Transfer", FieldType::Text},
                                                                       {u"Action", FieldType::Text},
                                                                       {u"SynchDate", FieldType::Date},
                                                                       {u"Date", FieldType::Date},
                                                                       {u"Name", FieldType::Text},
                                                                       {u"Phone", FieldType::Text},
                                                                       {u"Error", FieldType::Text},
                                                                       {u"ErrorDesc", FieldType::Text}});
    ctx.tables.LogErrors = makeTable(QStringLiteral("LogErrors"), {{u"Date", FieldType::Text},
                                                                   {u"ErrorNum", FieldType::Text},
                                                                   {u"ErrorDesc", FieldType::Text},
                                                                   {u"Modul", FieldType::Text},
                                                                   {u"Proc", FieldType::Text}});
}

} // namespace tsr::log
