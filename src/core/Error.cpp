// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/Error.h"

namespace tsr::core {

QString standardDescription(int32_t number) {
    switch (number) {
    case err::InvalidProcedureCall:
        return QStringLiteral("Invalid procedure call or argument");
    case err::Overflow:
        return QStringLiteral("Overflow");
    case err::SubscriptOutOfRange:
        return QStringLiteral("Subscript out of range");
    case err::TypeMismatch:
        return QStringLiteral("Type mismatch");
    case err::FileNotFound:
        return QStringLiteral("File not found");
    case err::ObjectNotSet:
        return QStringLiteral("Object variable or With block variable not set");
    case err::ServerGone:
        return QStringLiteral("The remote server machine does not exist or is unavailable");
    default:
        return QStringLiteral("Application-defined or object-defined error");
    }
}

TsrError::TsrError(int32_t number, QString source, QString description)
    : m_number(number), m_source(std::move(source)), m_description(std::move(description)) {
    m_what =
        (QString::number(m_number) + QStringLiteral(" (") + m_source + QStringLiteral("): ") + m_description).toUtf8();
}

TsrError::TsrError(int32_t number, QString source) : TsrError(number, std::move(source), standardDescription(number)) {}

void raise(int32_t number, const QString& source, const QString& description) {
    throw TsrError(number, source, description);
}

void raise(int32_t number, const QString& source) {
    throw TsrError(number, source);
}

} // namespace tsr::core
