// SPDX-License-Identifier: GPL-3.0-or-later
// The numbered string table: every text the program shows is looked up here by
// its number. The English texts are built in; a language file replaces them.
#pragma once

#include <QHash>
#include <QString>

namespace tsr::core {

class ResStrings {
public:
    ResStrings();
    // The text of a number; the English one where the table has none.
    QString text(int number) const;
    bool has(int number) const { return m_table.contains(number); }
    void set(int number, const QString& text) { m_table.insert(number, text); }
    void resetToEnglish();
    const QHash<int, QString>& table() const { return m_table; }

    // The built-in English table, number by number.
    static const QHash<int, QString>& english();

private:
    QHash<int, QString> m_table;
};

} // namespace tsr::core
