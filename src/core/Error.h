// SPDX-License-Identifier: GPL-3.0-or-later
// The error object every procedure raises and reports: a number, the source
// that raised it and a description, like the numbered errors of the program.
#pragma once

#include <QString>
#include <cstdint>
#include <exception>

namespace tsr::core {

// Error numbers the program raises itself or gets from its platform.
namespace err {
inline constexpr int32_t InvalidProcedureCall = 5;
inline constexpr int32_t Overflow = 6;
inline constexpr int32_t SubscriptOutOfRange = 9;
inline constexpr int32_t TypeMismatch = 13;
inline constexpr int32_t FileNotFound = 53;
inline constexpr int32_t ObjectNotSet = 91;
inline constexpr int32_t ServerGone = 462;
// The recordset's own: no current record, an unknown field name, a bad criteria text.
inline constexpr int32_t AdoNoCurrentRecord = static_cast<int32_t>(0x800A0BCD);
inline constexpr int32_t AdoItemNotFound = static_cast<int32_t>(0x800A0CC1);
inline constexpr int32_t AdoBadArguments = static_cast<int32_t>(0x800A0BB9);
inline constexpr int32_t UnexpectedKeyFirst = -1996; // -1996 ... -1993: unexpected key in an entry
inline constexpr int32_t Utf8Decoding = -1991;
inline constexpr int32_t NoTableService = -1989;
inline constexpr int32_t PimFolder = -1987;
} // namespace err

QString standardDescription(int32_t number);

class TsrError : public std::exception {
public:
    TsrError() = default;
    TsrError(int32_t number, QString source, QString description);
    // An error with the platform's own text for the number.
    explicit TsrError(int32_t number, QString source = {});

    int32_t number() const { return m_number; }
    const QString& source() const { return m_source; }
    const QString& description() const { return m_description; }
    const char* what() const noexcept override { return m_what.constData(); }

private:
    int32_t m_number = 0;
    QString m_source;
    QString m_description;
    QByteArray m_what;
};

[[noreturn]] void raise(int32_t number, const QString& source, const QString& description);
[[noreturn]] void raise(int32_t number, const QString& source = {});

} // namespace tsr::core
