#include "tests/support/ini_text.h"

#include <algorithm>

namespace testkit {
namespace {

std::string_view Trimmed(std::string_view text) {
    const std::size_t first = text.find_first_not_of(" \t");
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

/// Takes the first line off `text`; its line end, "\n" or "\r\n", is dropped.
std::string_view TakeLine(std::string_view& text) {
    const std::size_t end = text.find('\n');
    std::string_view line = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    if (line.ends_with('\r')) line.remove_suffix(1);
    return line;
}

}  // namespace

IniText::IniText(std::string_view text) {
    while (!text.empty()) {
        const std::string_view line = TakeLine(text);
        const std::string_view trimmed = Trimmed(line);
        if (trimmed.starts_with('[') && trimmed.ends_with(']')) {
            sections_.push_back({std::string(trimmed.substr(1, trimmed.size() - 2)), {}});
            continue;
        }
        const std::size_t equals = line.find('=');
        if (trimmed.starts_with(';') || equals == std::string_view::npos || sections_.empty()) continue;
        sections_.back().entries.push_back(
            {std::string(Trimmed(line.substr(0, equals))), std::string(line.substr(equals + 1))});
    }
}

const IniText::Section* IniText::Find(std::string_view section) const {
    const auto found = std::find_if(sections_.begin(), sections_.end(),
                                    [&](const Section& candidate) { return candidate.name == section; });
    return found == sections_.end() ? nullptr : &*found;
}

std::vector<std::string> IniText::Sections() const {
    std::vector<std::string> names;
    for (const Section& section : sections_)
        names.push_back(section.name);
    return names;
}

std::vector<IniText::Entry> IniText::Entries(std::string_view section) const {
    const Section* found = Find(section);
    return found ? found->entries : std::vector<Entry>();
}

std::vector<std::string> IniText::Keys(std::string_view section) const {
    std::vector<std::string> keys;
    for (const Entry& entry : Entries(section))
        keys.push_back(entry.key);
    return keys;
}

std::optional<std::string> IniText::Value(std::string_view section, std::string_view key) const {
    for (const Entry& entry : Entries(section)) {
        if (entry.key == key) return entry.value;
    }
    return std::nullopt;
}

}  // namespace testkit
