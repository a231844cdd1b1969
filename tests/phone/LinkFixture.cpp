// SPDX-License-Identifier: GPL-3.0-or-later
#include "phone/LinkFixture.h"

namespace tsr::test {

LinkFixture::LinkFixture() {
    ctx.options.config = config.path();
    ctx.flags.GDX_Check = true;
    ctx.flags.GlobalTimeOut = kTimeOut;
}

EmulatedPhone& LinkFixture::startPhone(const QStringList& options) {
    phone.reset();
    phone = std::make_unique<EmulatedPhone>(options);
    ctx.options.port = phone->link();
    return *phone;
}

QString LinkFixture::boxTexts() const {
    QStringList texts;
    for (const ShownBox& box : ui.boxes)
        texts << box.text;
    return texts.join(u'\n');
}

} // namespace tsr::test
