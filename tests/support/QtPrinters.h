// SPDX-License-Identifier: GPL-3.0-or-later
// Readable failure messages: gtest prints Qt's text and byte types as text
// instead of their raw memory. Every test program includes this first.
#pragma once

#include <QByteArray>
#include <QString>
#include <ostream>

inline void PrintTo(const QString& s, std::ostream* os) {
    *os << '"' << s.toStdString() << '"';
}

inline void PrintTo(const QByteArray& b, std::ostream* os) {
    *os << '"' << b.toStdString() << '"';
}
