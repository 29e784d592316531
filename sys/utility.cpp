#include "sys/utility.h"

#include <windows.h>

#include <shlwapi.h>

#include <limits>
#include <optional>

#include "win/text.h"

namespace sys {
inline namespace m_Funkcije {
namespace {

/// The text after the last `separator`, or nothing when it does not occur.
std::optional<std::string> AfterLast(const std::string& text, char separator) {
    const size_t at = text.rfind(separator);
    if (at == std::string::npos) return std::nullopt;
    return text.substr(at + 1);
}

std::string BareName(const std::string& path) {
    const size_t dot = path.rfind('.');
    if (dot == std::string::npos) {
        const std::string name = AfterLast(path, '\\').value_or(path);
        return name.empty() ? win::Before(path, '\\') : name;
    }
    const std::string stem = path.substr(0, dot);
    if (const auto name = AfterLast(stem, '\\')) return *name;
    return AfterLast(stem, '/').value_or(stem);
}

std::wstring LocaleText(LCTYPE type) {
    wchar_t text[16]{};
    GetLocaleInfoEx(LOCALE_NAME_USER_DEFAULT, type, text, static_cast<int>(std::size(text)));
    return text;
}

/// The digit grouping as NUMBERFMT wants it. The setting ends in "0" where the last group repeats, the number
/// where it does not: "3;0" is 3, "3;2;0" is 32, "3" is 30, "0" (no groups) is 0.
UINT GroupingNumber(const std::wstring& setting) {
    UINT number = 0;
    for (const wchar_t character : setting)
        if (character >= L'0' && character <= L'9')
            number = number * 10 + static_cast<UINT>(character - L'0');
    return number % 10 == 0 ? number / 10 : number * 10;
}

/// A whole number with the user's digit grouping and no decimals.
std::string Grouped(std::int32_t number) {
    std::wstring decimal = LocaleText(LOCALE_SDECIMAL);
    std::wstring thousand = LocaleText(LOCALE_STHOUSAND);
    NUMBERFMTW format{};
    format.Grouping = GroupingNumber(LocaleText(LOCALE_SGROUPING));
    format.lpDecimalSep = decimal.data();
    format.lpThousandSep = thousand.data();
    format.NegativeOrder = 1;
    wchar_t text[64]{};
    GetNumberFormatEx(LOCALE_NAME_USER_DEFAULT, 0, std::to_wstring(number).c_str(), &format, text,
                      static_cast<int>(std::size(text)));
    return win::ToBytes(text);
}

std::optional<WIN32_FILE_ATTRIBUTE_DATA> FileAttributes(const std::string& path) {
    WIN32_FILE_ATTRIBUTE_DATA data{};
    if (GetFileAttributesExA(path.c_str(), GetFileExInfoStandard, &data) == 0) return std::nullopt;
    return data;
}

}  // namespace

std::string PathPart(const std::string& path, std::int16_t part) {
    switch (part) {
        case kExtension: return AfterLast(path, '.').value_or("");
        case kBareName: return BareName(path);
        case kFileName: return AfterLast(path, '\\').value_or(path);
        case kFolder: {
            const size_t last = path.rfind('\\');
            return last == std::string::npos ? "" : path.substr(0, last);
        }
        case kIsFolder: return PathIsDirectoryA(path.c_str()) != 0 ? "yes" : "no";
        default: return {};
    }
}

bool IsUrl(const std::string& path) { return PathIsURLA(path.c_str()) != 0; }

std::string SizeText(std::int32_t length) {
    constexpr std::int32_t kKilobyte = 1024;
    constexpr std::int32_t kGigabyte = 0x40000000;
    if (length < kKilobyte) return std::to_string(length) + " bytes";
    if (length < kGigabyte) return Grouped(length / kKilobyte) + " KB";
    // The number stays in kilobytes under the unit " MB"; a length of exactly one gigabyte has no text.
    if (length > kGigabyte) return Grouped(length / kKilobyte) + " MB";
    return {};
}

std::string FileSizeText(const WIN32_FILE_ATTRIBUTE_DATA& data) {
    // A folder has no length. A length of 2 GiB or more has no 32-bit value: better no text than a negative
    // one.
    if ((data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0 || data.nFileSizeHigh != 0 ||
        data.nFileSizeLow > std::numeric_limits<std::int32_t>::max())
        return {};
    return SizeText(static_cast<std::int32_t>(data.nFileSizeLow));
}

std::string FileSizeText(const std::string& path) {
    if (path.empty() || IsUrl(path)) return {};
    const auto data = FileAttributes(path);
    return data ? FileSizeText(*data) : std::string();
}

std::string FileTimeText(const WIN32_FILE_ATTRIBUTE_DATA& data) {
    SYSTEMTIME universal{};
    SYSTEMTIME local{};
    if (FileTimeToSystemTime(&data.ftLastWriteTime, &universal) == 0 ||
        SystemTimeToTzSpecificLocalTime(nullptr, &universal, &local) == 0)
        return {};
    wchar_t date[80]{};
    wchar_t time[80]{};
    GetDateFormatEx(LOCALE_NAME_USER_DEFAULT, DATE_SHORTDATE, &local, nullptr, date,
                    static_cast<int>(std::size(date)), nullptr);
    GetTimeFormatEx(LOCALE_NAME_USER_DEFAULT, 0, &local, nullptr, time, static_cast<int>(std::size(time)));
    return win::ToBytes(date) + " " + win::ToBytes(time);
}

std::string FileTimeText(const std::string& path) {
    const auto data = FileAttributes(path);
    return data ? FileTimeText(*data) : std::string();
}

std::string EncodeBars(const std::string& url) {
    std::string encoded;
    for (const char character : url) {
        if (character == '|')
            encoded += "%7C";
        else
            encoded += character;
    }
    return encoded;
}

}  // namespace m_Funkcije
}  // namespace sys
