// SPDX-License-Identifier: GPL-3.0-or-later
// The contact editor: the contact's fields, each with a count of the characters
// the phone keeps, a warning line for the fields the phone would cut, and the
// VIP, phone and PIM boxes. Its logic is main::ContactForm.
#pragma once

#include "main/ContactForm.h"

#include <QDialog>
#include <QMap>
#include <optional>

class QCheckBox;
class QLabel;
class QLineEdit;

namespace tsr::ui {

class vCardEntry : public QDialog {
    Q_OBJECT
public:
    vCardEntry(core::Context& ctx, QWidget* parent, std::optional<int> rowPosition = std::nullopt);

    main::ContactForm& form() { return m_form; }
    void save();

protected:
    void reject() override;

private:
    void readControls();
    void updateLimits();

    core::Context& m_ctx;
    main::ContactForm m_form;
    QMap<QString, QLineEdit*> m_edits;
    QMap<QString, QLabel*> m_counters;
    QLabel* m_warning = nullptr;
    QCheckBox* m_vip = nullptr;
    QCheckBox* m_mobile = nullptr;
    QCheckBox* m_pim = nullptr;
};

// The entry point for the main window's new and open commands on the contact list:
// modal; true when the contact was saved.
bool showContactEntry(core::Context& ctx, QWidget* parent, std::optional<int> rowPosition = std::nullopt);

} // namespace tsr::ui
