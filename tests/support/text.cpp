#include "tests/support/text.h"

#include <stdexcept>

namespace testkit {

std::wstring Wide(std::string_view utf8) {
    if (utf8.empty()) return {};
    const int bytes = static_cast<int>(utf8.size());
    const int length = MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, utf8.data(), bytes, nullptr, 0);
    if (length == 0) throw std::runtime_error("testkit: text that is not UTF-8");
    std::wstring wide(static_cast<std::size_t>(length), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, utf8.data(), bytes, wide.data(), length);
    return wide;
}

std::string Utf8(std::wstring_view wide) {
    if (wide.empty()) return {};
    const int units = static_cast<int>(wide.size());
    const int length = WideCharToMultiByte(CP_UTF8, 0, wide.data(), units, nullptr, 0, nullptr, nullptr);
    std::string utf8(static_cast<std::size_t>(length), '\0');
    WideCharToMultiByte(CP_UTF8, 0, wide.data(), units, utf8.data(), length, nullptr, nullptr);
    return utf8;
}

void ThrowWindowsError(std::string_view what, DWORD error) {
    wchar_t words[512] = L"";
    const DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                                        error, 0, words, ARRAYSIZE(words), nullptr);
    std::string message = Utf8(std::wstring_view(words, length));
    while (!message.empty() && (message.back() == '\n' || message.back() == '\r'))
        message.pop_back();
    throw std::runtime_error(std::string(what) + " failed: " + message + " (" + std::to_string(error) + ")");
}

}  // namespace testkit
