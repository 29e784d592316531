#pragma once

#include <windows.h>

#include <exception>
#include <stdexcept>

namespace win {

/// The base of every error of ours; what() names the thing at fault (section, key, field, value).
class RuntimeError : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// An index or a field lies outside what exists.
class SubscriptError : public RuntimeError {
    using RuntimeError::RuntimeError;
};

/// A text does not have the form that an operation needs.
class InvalidArgumentError : public RuntimeError {
    using RuntimeError::RuntimeError;
};

/// A text cannot be read as the type it stands for.
class TypeMismatchError : public RuntimeError {
    using RuntimeError::RuntimeError;
};

/// A number does not fit the width it is kept in.
class OverflowError : public RuntimeError {
    using RuntimeError::RuntimeError;
};

/// Shows an error that got out of an event handler to the user; must not throw.
using ErrorReporter = void (*)(HWND owner, const char* message) noexcept;

/// Sets the routine that shows such errors; until then they are swallowed.
void SetErrorReporter(ErrorReporter reporter) noexcept;

/// Hands the exception that is being handled to the reporter; call it only inside a catch block.
void ReportCurrentException(HWND owner) noexcept;

/// Runs a handler on the edge to Windows: nothing gets out of it. Returns `fallback` after an error.
template <class Handler, class Result>
Result Guarded(HWND owner, Result fallback, Handler&& handler) noexcept {
    try {
        return handler();
    } catch (...) {
        ReportCurrentException(owner);
        return fallback;
    }
}

}  // namespace win
