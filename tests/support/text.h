// Text between the kit and Windows.
//
// Everything in testkit takes and gives UTF-8 in std::string and calls the wide forms of Windows, so that a
// test reads the same whatever the process code page is. Product code under test takes text in the process
// code page; the test programs carry the product's manifest, which makes that UTF-8 too.
//
//     SetWindowTextW(window, Wide("Grüße").c_str());
//     EXPECT_EQ(Utf8(buffer), "Grüße");
#pragma once

#include <windows.h>

#include <string>
#include <string_view>

namespace testkit {

/// UTF-8 to UTF-16. Bytes that are no UTF-8 throw std::runtime_error: a test must not go on with other text.
std::wstring Wide(std::string_view utf8);

/// UTF-16 to UTF-8; a lone surrogate becomes U+FFFD.
std::string Utf8(std::wstring_view wide);

/// "<what> failed: <the system's words> (<number>)" as a std::runtime_error, for a call of Windows that the
/// kit cannot do without.
[[noreturn]] void ThrowWindowsError(std::string_view what, DWORD error = GetLastError());

}  // namespace testkit
