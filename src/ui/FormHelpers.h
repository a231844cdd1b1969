// SPDX-License-Identifier: GPL-3.0-or-later
// Small conversions the editors and dialogs share: the user's date mask as a Qt
// format, dates between the day count and QDate, the saved font.
#pragma once

#include "ui/Icons.h"

#include "core/Context.h"
#include "core/VbDate.h"

#include <QDate>
#include <QFont>
#include <QIcon>
#include <QString>

namespace tsr::ui {

// "dd.mm.yyyy" as QDateEdit wants it: "dd.MM.yyyy".
inline QString qtDateFormat(const QString& vbMask) {
    QString f = vbMask.toLower();
    f.replace(u'm', u'M');
    return f;
}

inline QDate toDate(core::VbDate d) {
    return core::toQDate(d);
}

inline core::VbDate fromDate(const QDate& d) {
    return core::fromQDate(d);
}

// The font the user chose in the options, or the application's.
QFont savedFont(const core::Context& ctx);

} // namespace tsr::ui
