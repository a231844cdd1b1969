// SPDX-License-Identifier: GPL-3.0-or-later
#include "main/ContactForm.h"

#include "core/Context.h"
#include "core/ErrorReport.h"
#include "formats/Allgemein.h"
#include "phone/ComDrvCode.h"
#include "roads/DOROutlookContacts.h"
#include "roads/MobileWrite.h"
#include "sync/MobFile.h"
#include "tables/TSRADODB.h"

namespace tsr::main {

using core::MsgButtons;
using core::MsgIcon;
using core::MsgResult;

namespace {

const QString kModul = QStringLiteral("vCardEntry");
const QString kHttp = QStringLiteral("http://");

} // namespace

const QList<ContactField>& contactFields() {
    static const QList<ContactField> fields = {
        {QStringLiteral("LastName"), 566, 584, 24}, {QStringLiteral("FirstName"), 567, 585, 16},
        {QStringLiteral("Company"), 568, 586, 16},  {QStringLiteral("Street"), 569, 587, 40},
        {QStringLiteral("ZipCode"), 571, 589, 8},   {QStringLiteral("City"), 570, 588, 16},
        {QStringLiteral("Country"), 572, 590, 16},  {QStringLiteral("Phone"), 574, 598, 0},
        {QStringLiteral("PhoneWork"), 573, 597, 0}, {QStringLiteral("PhoneMobile"), 576, 600, 0},
        {QStringLiteral("Fax"), 575, 599, 0},       {QStringLiteral("eMail"), 577, 591, 40},
        {QStringLiteral("URL"), 578, 592, 64},
    };
    return fields;
}

int contactFieldLimit(const ContactField& field, const QString& text) {
    if (field.limit == 0)
        return formats::vCardPhoneNumber_Len(text, 40, 41);
    // An address without "http://" gets it in front on the phone.
    if (field.field == u"URL" && !text.contains(kHttp))
        return field.limit - int(kHttp.size());
    return field.limit;
}

ContactForm::ContactForm(core::Context& ctx) : m_ctx(ctx) {
    for (const ContactField& f : contactFields())
        m_v.text.insert(f.field, QString());
    m_v.pim = ctx.flags.GlobalOrganizerOK && ctx.pim.GlobalContactFolder != nullptr;
    m_saved = m_v;
}

ContactForm::ContactForm(core::Context& ctx, int rowPosition) : m_ctx(ctx), m_row(rowPosition) {
    if (goToRow()) {
        tables::Recordset& t = *ctx.tables.RSContacts;
        for (const ContactField& f : contactFields())
            m_v.text.insert(f.field, t.value(f.field).toText());
        m_v.vip = t.value(QStringLiteral("Categories")).toBool();
        m_v.mobile = t.value(QStringLiteral("Mobile")).toBool();
        m_v.pim = t.value(QStringLiteral("PIM")).toBool();
    }
    m_saved = m_v;
}

bool ContactForm::goToRow() {
    tables::Recordset& t = *m_ctx.tables.RSContacts;
    if (m_row < 1 || m_row > t.recordCount())
        return false;
    t.setAbsolutePosition(m_row);
    return true;
}

QList<std::pair<QString, int>> ContactForm::overLimit() const {
    QList<std::pair<QString, int>> out;
    for (const ContactField& f : contactFields()) {
        const QString text = m_v.text.value(f.field);
        const int limit = contactFieldLimit(f, text);
        if (text.size() > limit)
            out.append({f.field, limit});
    }
    return out;
}

bool ContactForm::queryClose() {
    if (!changed())
        return true;
    switch (m_ctx.ui->msgBox(m_ctx.strings.text(583), MsgButtons::YesNoCancel, MsgIcon::Question, m_ctx.title())) {
    case MsgResult::Yes:
        return save();
    case MsgResult::No:
        return true;
    default:
        return false;
    }
}

bool ContactForm::save() {
    return core::guarded(m_ctx, kModul, QStringLiteral("vCardEntrySave"), false, [&] {
        const auto& s = m_ctx.strings;
        QString name = m_v.text.value(QStringLiteral("LastName")).trimmed();
        if (name.isEmpty())
            name = m_v.text.value(QStringLiteral("FirstName")).trimmed();
        if (name.isEmpty() && m_v.text.value(QStringLiteral("Company")).trimmed().isEmpty()) {
            // "Enter name"
            m_ctx.ui->msgBox(s.text(495), MsgButtons::OK, MsgIcon::Exclamation, m_ctx.title());
            return false;
        }
        const auto cuts = overLimit();
        if (m_v.mobile && !cuts.isEmpty()) {
            QStringList lines;
            for (const auto& [field, limit] : cuts) {
                for (const ContactField& f : contactFields())
                    if (f.field == field)
                        lines << s.text(f.label) + u' ' + s.text(2106).arg(limit);
            }
            lines << s.text(478); // "Are you sure?"
            if (m_ctx.ui->msgBox(lines.join(u'\n'), MsgButtons::YesNo, MsgIcon::Exclamation, m_ctx.title()) !=
                MsgResult::Yes)
                return false;
        }
        tables::Recordset& t = *m_ctx.tables.RSContacts;
        bool wasMobile = false;
        bool wasPim = false;
        if (isNew()) {
            tables::vCardCreateNewRecord(t);
        } else {
            if (!goToRow())
                return false;
            wasMobile = t.value(QStringLiteral("Mobile")).toBool();
            wasPim = t.value(QStringLiteral("PIM")).toBool();
        }
        // The edit is the new state of both sides: the PIM's copies take it as well,
        // whole, as the PIM keeps what the phone cuts.
        for (const ContactField& f : contactFields()) {
            const QString value = formats::RemoveCTRLCharactersFromString(m_v.text.value(f.field));
            t.setValue(f.field, value);
            t.setValue(QStringLiteral("PIM") + f.field, value);
        }
        t.setValue(QStringLiteral("Categories"), m_v.vip);
        t.setValue(QStringLiteral("Mobile"), m_v.mobile);
        t.setValue(QStringLiteral("PIM"), m_v.pim);
        t.setValue(QStringLiteral("EntryType"), int32_t(m_v.mobile && m_v.pim ? 3 : (m_v.mobile ? 2 : 1)));
        t.setValue(QStringLiteral("IsChanged"), true);
        t.update();
        m_row = t.absolutePosition();

        bool ok = true;
        if (m_v.mobile) {
            ok = phone::InitComm(m_ctx) && roads::SendSinglevCardEntry(m_ctx, t, !wasMobile);
            phone::DeinitComm(m_ctx);
        }
        if (ok && m_v.pim) {
            bool isNewItem = !wasPim;
            roads::vCardWriteOutookEntry(m_ctx, t, isNewItem, m_ctx.pim.GlobalContactFolder);
        }
        if (!ok && !wasMobile && !wasPim && goToRow()) {
            // A new contact that reached neither side does not stay in the list.
            t.deleteCurrent();
            m_row = -1;
        }
        goToRow();
        if (ok && m_v.mobile)
            sync::WriteMobFileforall(m_ctx, t);
        goToRow();
        m_ctx.ui->refreshGrid(1);
        if (ok)
            m_saved = m_v;
        return ok;
    });
}

} // namespace tsr::main
