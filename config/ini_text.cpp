#include "config/ini_text.h"

#include <algorithm>

#include "config/file_bytes.h"
#include "win/text.h"

namespace config {
namespace {

constexpr std::string_view kBlanks = " \t\r\v\f";

std::string_view Trimmed(std::string_view line) {
    const size_t first = line.find_first_not_of(kBlanks);
    if (first == std::string_view::npos) return {};
    return line.substr(first, line.find_last_not_of(kBlanks) - first + 1);
}

bool IsUtf16(std::string_view bytes) {
    return bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF");
}

/// Whether a line of the section, without the blanks around it, answers `matches`.
template <class Matches>
bool AnyLine(std::string_view bytes, const std::string& section, Matches matches) {
    if (bytes.starts_with(kUtf8Mark)) bytes.remove_prefix(kUtf8Mark.size());
    bool inSection = false;
    while (!bytes.empty()) {
        const size_t end = std::min(bytes.find('\n'), bytes.size());
        const std::string_view line = Trimmed(bytes.substr(0, end));
        bytes.remove_prefix(std::min(end + 1, bytes.size()));
        if (line.starts_with('[')) {
            const std::string_view name = line.substr(1, line.find_last_of(']') - 1);
            inSection = win::EqualIgnoringCase(std::string(name), section);
        } else if (inSection && matches(line)) {
            return true;
        }
    }
    return false;
}

}  // namespace

bool SectionHasComments(std::string_view bytes, const std::string& section) {
    return IsUtf16(bytes) ||
           AnyLine(bytes, section, [](std::string_view line) { return line.starts_with(';'); });
}

bool SectionHasKey(std::string_view bytes, const std::string& section, const std::string& key) {
    return IsUtf16(bytes) || AnyLine(bytes, section, [&](std::string_view line) {
               const size_t end = line.find('=');
               return end != std::string_view::npos &&
                      win::EqualIgnoringCase(Trimmed(line.substr(0, end)), key);
           });
}

}  // namespace config
