// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/dialogs/frmAbout.h"

#include "core/Context.h"

#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStyle>
#include <QVBoxLayout>

namespace tsr::ui {

frmAbout::frmAbout(core::Context& ctx, QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("frmAbout"));
    const core::ResStrings& t = ctx.strings;
    setWindowTitle(t.text(954) + u' ' + ctx.title());

    auto* icon = new QLabel;
    icon->setPixmap(style()->standardIcon(QStyle::SP_ComputerIcon).pixmap(48, 48));
    icon->setAlignment(Qt::AlignTop);

    auto* title = new QLabel(QStringLiteral("<b>%1</b>").arg(ctx.title().toHtmlEscaped()));
    title->setObjectName(QStringLiteral("lblTitle"));
    QFont big = title->font();
    big.setPointSizeF(big.pointSizeF() * 1.5);
    title->setFont(big);
    auto* version = new QLabel(t.text(754) + u' ' + QStringLiteral(TESSARINE_VERSION));
    version->setObjectName(QStringLiteral("lblVersion"));
    version->setTextInteractionFlags(Qt::TextSelectableByMouse);
    auto* description = new QLabel(t.text(1003));
    description->setObjectName(QStringLiteral("lblDescription"));
    description->setWordWrap(true);
    auto* platform = new QLabel(QStringLiteral("Qt %1").arg(QString::fromLatin1(qVersion())));
    platform->setObjectName(QStringLiteral("lblPlatform"));
    auto* web = new QLabel(t.text(948));
    web->setObjectName(QStringLiteral("lblWeb"));
    web->setTextInteractionFlags(Qt::TextSelectableByMouse);

    auto* texts = new QVBoxLayout;
    texts->addWidget(title);
    texts->addWidget(version);
    texts->addSpacing(8);
    texts->addWidget(description);
    texts->addWidget(web);
    texts->addWidget(platform);
    texts->addStretch();
    auto* top = new QHBoxLayout;
    top->addWidget(icon);
    top->addLayout(texts, 1);

    auto* buttons = new QDialogButtonBox;
    QPushButton* ok = buttons->addButton(t.text(691), QDialogButtonBox::AcceptRole);
    ok->setObjectName(QStringLiteral("cmdOK"));
    connect(ok, &QPushButton::clicked, this, &QDialog::accept);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(top);
    layout->addWidget(buttons);
    setMinimumWidth(380);
}

void showAbout(core::Context& ctx, QWidget* parent) {
    frmAbout dialog(ctx, parent);
    dialog.exec();
}

} // namespace tsr::ui
