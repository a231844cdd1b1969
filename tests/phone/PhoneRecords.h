// SPDX-License-Identifier: GPL-3.0-or-later
// A calendar record as the phone keeps it, for tests that seed the emulated phone.
#pragma once

#include <QByteArray>

namespace tsr::test {

inline QByteArray vcs(const QByteArray& start, const QByteArray& end, const char* category, const QByteArray& summary,
                      const char* rule = nullptr) {
    QByteArray t = "BEGIN:VCALENDAR\r\nVERSION:1.0\r\nBEGIN:VEVENT\r\nCATEGORIES:" + QByteArray(category) +
                   "\r\nDTSTART:" + start + "\r\nDTEND:" + end + "\r\n";
    if (rule)
        t += "RRULE:" + QByteArray(rule) + "\r\n";
    return t + "DESCRIPTION:" + summary + "\r\nEND:VEVENT\r\nEND:VCALENDAR\r\n";
}

} // namespace tsr::test
