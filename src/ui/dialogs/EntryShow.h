// SPDX-License-Identifier: GPL-3.0-or-later
// The compare dialog for a contact changed on both sides: both versions side by
// side, the lines that differ marked, and three boxes for the user's choice.
#pragma once

#include "main/EntryShowGrid.h"

#include <QDialog>

class QCheckBox;
class QTableView;

namespace tsr::core {
struct Context;
}

namespace tsr::ui {

class EntryShow : public QDialog {
    Q_OBJECT
public:
    EntryShow(core::Context& ctx, const tables::Recordset& pimRow, const tables::Recordset& mobileRow, QWidget* parent);

    // EntryShowAnswer: read from the boxes when the dialog goes.
    int16_t answer() const { return m_answer; }
    // The grid's lines marked as differing, from 0.
    const QList<int>& foundLines() const { return m_found; }

protected:
    void done(int result) override;

private:
    std::unique_ptr<tables::Recordset> m_grid; // EntryShowGridRS
    QList<int> m_found;
    QCheckBox* m_mobileOverPim;
    QCheckBox* m_pimOverMobile;
    QCheckBox* m_both;
    int16_t m_answer = main::NoChoice;
};

// Shows the dialog modally over the parent and returns its answer.
int compareContacts(core::Context& ctx, QWidget* parent, const tables::Recordset& pimRow,
                    const tables::Recordset& mobileRow);

} // namespace tsr::ui
