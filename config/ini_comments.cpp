#include "config/ini_comments.h"

#include <algorithm>

#include "win/text.h"

namespace config {
namespace {

constexpr std::string_view kBlanks = " \t\r\v\f";

std::string_view Trimmed(std::string_view line) {
    const size_t first = line.find_first_not_of(kBlanks);
    if (first == std::string_view::npos) return {};
    return line.substr(first, line.find_last_not_of(kBlanks) - first + 1);
}

}  // namespace

bool SectionHasComments(std::string_view bytes, const std::string& section) {
    if (bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF")) return true;
    constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";
    if (bytes.starts_with(kUtf8Mark)) bytes.remove_prefix(kUtf8Mark.size());
    bool inSection = false;
    while (!bytes.empty()) {
        const size_t end = std::min(bytes.find('\n'), bytes.size());
        const std::string_view line = Trimmed(bytes.substr(0, end));
        bytes.remove_prefix(std::min(end + 1, bytes.size()));
        if (line.starts_with('[')) {
            const std::string_view name = line.substr(1, line.find_last_of(']') - 1);
            inSection = win::EqualIgnoringCase(std::string(name), section);
        } else if (inSection && line.starts_with(';')) {
            return true;
        }
    }
    return false;
}

}  // namespace config
