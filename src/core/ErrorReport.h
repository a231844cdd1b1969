// SPDX-License-Identifier: GPL-3.0-or-later
// The common error path. Every procedure ends in the same handler: an error it
// raised is reported under its module and procedure name, and the procedure
// returns its default. Errors never travel to the caller.
#pragma once

#include "core/Context.h"
#include "core/Error.h"

#include <exception>
#include <utility>

namespace tsr::core {

// Turns a failed call into a message for the user (unless silent, suppressed or
// marked with "~") and a row of the error log; switches tools off and empties
// server slots after the worst failures.
void ErrorsCode(Context& ctx, const TsrError& error, const QString& modul, const QString& proc,
                const QString& extra = {});
// The handler every procedure ends in; the same road as ErrorsCode.
void ErrorReport(Context& ctx, const TsrError& error, const QString& modul, const QString& proc,
                 const QString& extra = {});

// The friendly text for an error number, before the module's name table and the extra text.
QString friendlyText(const Context& ctx, int32_t number, const QString& modul);
// The name of an AT-command server error number, or an empty text when it has none.
QString atcErrorName(int32_t number);

// An error from outside our own code (a std::exception) as a numbered error.
TsrError asTsrError(const std::exception& e, const QString& source);

// Runs `body`; whatever it raises goes to ErrorReport under `modul` and `proc`,
// and `fallback` comes back instead of the body's result.
template <class R, class F> R guarded(Context& ctx, const QString& modul, const QString& proc, R fallback, F&& body) {
    try {
        return std::forward<F>(body)();
    } catch (const TsrError& e) {
        ErrorReport(ctx, e, modul, proc);
    } catch (const std::exception& e) {
        ErrorReport(ctx, asTsrError(e, proc), modul, proc);
    }
    return fallback;
}

template <class F> void guarded(Context& ctx, const QString& modul, const QString& proc, F&& body) {
    try {
        std::forward<F>(body)();
    } catch (const TsrError& e) {
        ErrorReport(ctx, e, modul, proc);
    } catch (const std::exception& e) {
        ErrorReport(ctx, asTsrError(e, proc), modul, proc);
    }
}

} // namespace tsr::core
