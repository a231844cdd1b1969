// SPDX-License-Identifier: GPL-3.0-or-later
// What every SyncTyp with every SyncZeitraum leaves on the two sides of one
// fixture, shared by the run inside the process and the run of the built program.
// The fixture, in days from today: the phone's memo in 2, the store's
// memo in 3 and its meeting in 4, the pair "Dentist" in 8, the phone's meeting in
// 18, the store's far entry in 105, and the store's weekly series "Yoga" from today
// on three days a week. The periods: 10 entries; from day 3; days 3 to 18; the
// next 2 weeks.
#pragma once

#include <QStringList>
#include <ostream>

namespace tsr::test {

struct RunCase {
    int syncTyp;
    int zeitraum;
    QStringList phone; // the subjects the phone holds afterwards, sorted
    QStringList store; // the subjects the store holds afterwards, sorted
};

inline const QStringList kStoreBefore{QStringLiteral("Dentist"), QStringLiteral("Far future"),
                                      QStringLiteral("Store meeting"), QStringLiteral("Store memo"),
                                      QStringLiteral("Yoga")};
inline const QStringList kPhoneBefore{QStringLiteral("Dentist"), QStringLiteral("Phone meeting"),
                                      QStringLiteral("Phone memo")};

inline QStringList plus(QStringList list, std::initializer_list<const char*> more) {
    for (const char* m : more)
        list << QString::fromLatin1(m);
    list.sort();
    return list;
}

inline const RunCase kRuns[] = {
    // The phone writes the store: no period, the phone's own entries go over.
    {3, 1, kPhoneBefore, plus(kStoreBefore, {"Phone meeting", "Phone memo"})},
    {3, 2, kPhoneBefore, plus(kStoreBefore, {"Phone meeting", "Phone memo"})},
    {3, 3, kPhoneBefore, plus(kStoreBefore, {"Phone meeting", "Phone memo"})},
    {3, 4, kPhoneBefore, plus(kStoreBefore, {"Phone meeting", "Phone memo"})},
    // The store fills the phone's free room with what the period holds.
    {2, 1, plus(kPhoneBefore, {"Far future", "Store meeting", "Store memo", "Yoga"}), kStoreBefore},
    {2, 2, plus(kPhoneBefore, {"Far future", "Store meeting", "Store memo", "Yoga"}), kStoreBefore},
    {2, 3, plus(kPhoneBefore, {"Store meeting", "Store memo", "Yoga"}), kStoreBefore},
    {2, 4, plus(kPhoneBefore, {"Store meeting", "Store memo", "Yoga"}), kStoreBefore},
    // The store overwrites the phone: the phone's own entries go first.
    {1, 1, plus({}, {"Dentist", "Far future", "Store meeting", "Store memo", "Yoga"}), kStoreBefore},
    {1, 2, plus({}, {"Dentist", "Far future", "Store meeting", "Store memo", "Yoga"}), kStoreBefore},
    {1, 3, plus({}, {"Dentist", "Store meeting", "Store memo", "Yoga"}), kStoreBefore},
    {1, 4, plus({}, {"Dentist", "Store meeting", "Store memo", "Yoga"}), kStoreBefore},
    // Both ways within the period. The limit counts the paired rows it walks past,
    // so a long period can leave its latest store entry for the next run.
    {4, 1, plus(kPhoneBefore, {"Store meeting", "Store memo", "Yoga"}),
     plus(kStoreBefore, {"Phone meeting", "Phone memo"})},
    {4, 2, plus(kPhoneBefore, {"Far future", "Store meeting", "Store memo", "Yoga"}),
     plus(kStoreBefore, {"Phone meeting"})},
    {4, 3, plus(kPhoneBefore, {"Store meeting", "Store memo", "Yoga"}), plus(kStoreBefore, {"Phone meeting"})},
    {4, 4, plus(kPhoneBefore, {"Store meeting", "Store memo", "Yoga"}), plus(kStoreBefore, {"Phone memo"})},
};

inline void PrintTo(const RunCase& c, std::ostream* os) {
    *os << "SyncTyp " << c.syncTyp << " SyncZeitraum " << c.zeitraum;
}

} // namespace tsr::test
