// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/StatusBar.h"

#include "core/Context.h"

namespace tsr::core {

void SetStatusBarMobile(Context& ctx, bool showContacts) {
    if (ctx.flags.GlobalSilent)
        return;
    StatusBarModel& bar = ctx.statusBar;
    const QString occupied = ctx.strings.text(470); // "Mobile entries occupied"
    if (ctx.read.MobileConnected) {
        bar.Mobile = ctx.phone.MobileManufacturer + u' ' + ctx.phone.MobileModel;
        bar.MobilePicture = MobileIcon::Connected;
        bar.MobileStatus = ctx.strings.text(890);
        const bool read = showContacts ? ctx.read.vCardMobileRead : ctx.read.vCalMobileRead;
        const int32_t count = showContacts ? ctx.read.vCardMobileCount : ctx.read.vCalMobileCount;
        const int16_t capacity = showContacts ? ctx.phone.MobileCardCapacity : ctx.phone.MobileCapacity;
        const QString used = read ? QString::number(count) : QStringLiteral("?");
        bar.EntryCounter = used + u'/' + QString::number(capacity) + QStringLiteral(": ") + occupied;
    } else {
        bar.Mobile = ctx.strings.text(891);
        bar.MobilePicture = MobileIcon::NoMobile;
        bar.MobileStatus = ctx.strings.text(892);
        bar.EntryCounter = QStringLiteral("?: ") + occupied;
    }
    ctx.ui->SetStatusBarMobile();
}

void SetStatusBarMobile(Context& ctx) {
    SetStatusBarMobile(ctx, ctx.settings.ActiveAPP == 1);
}

} // namespace tsr::core
