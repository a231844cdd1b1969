// SPDX-License-Identifier: GPL-3.0-or-later
// The contact editor without its widgets: the fields of a contact with the
// phone's limits, the values on opening, the check before a save and the save to
// the phone, the PIM and the state file. The phone's limits are shown, never
// applied silently: the dialog counts and warns, the send cuts.
#pragma once

#include <QList>
#include <QMap>
#include <QString>

namespace tsr::core {
struct Context;
}

namespace tsr::main {

struct ContactField {
    QString field; // the column of the contact table
    int label;     // its caption in the string table
    int tip;       // its tool tip, which names the limit
    int limit;     // the characters the phone keeps; 0 for a number (40, or 41 with "+")
};

// The editable fields, in the dialog's order.
const QList<ContactField>& contactFields();
// The characters the phone keeps of this text in this field.
int contactFieldLimit(const ContactField& field, const QString& text);

struct ContactValues {
    QMap<QString, QString> text; // by field name
    bool vip = false;            // Categories
    bool mobile = true;
    bool pim = true;
    friend bool operator==(const ContactValues&, const ContactValues&) = default;
};

class ContactForm {
public:
    explicit ContactForm(core::Context& ctx);
    ContactForm(core::Context& ctx, int rowPosition);

    ContactValues& values() { return m_v; }
    bool isNew() const { return m_row < 0; }
    bool changed() const { return m_v != m_saved; }
    // The fields whose text the phone would cut, with the phone's limit.
    QList<std::pair<QString, int>> overLimit() const;

    // Checks, asks about cuts, writes the row and sends it; false keeps the dialog open.
    bool save();
    // Closing: on a change "Save changes?"; true when the dialog may close.
    bool queryClose();

private:
    bool goToRow();

    core::Context& m_ctx;
    int m_row = -1;
    ContactValues m_v;
    ContactValues m_saved;
};

} // namespace tsr::main
