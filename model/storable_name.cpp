#include "model/storable_name.h"

#include <windows.h>

#include <algorithm>

#include "config/ini.h"
#include "model/button_shortcut.h"
#include "sys/utility.h"
#include "win/text.h"

namespace model {

namespace {

constexpr char kDelete = 0x7F;

bool IsControl(char character) { return static_cast<unsigned char>(character) < 0x20; }

/// As many whole characters of the text as fit.
std::string Cut(const std::string& text) {
    if (text.size() <= kLongestName) return text;
    // A wide text cannot be cut between the bytes of a character; every unit of it takes at least one byte.
    std::wstring wide = win::ToWide(text.substr(0, kLongestName + 1));
    std::string cut;
    do {
        wide.pop_back();
        if (!wide.empty() && IS_HIGH_SURROGATE(wide.back())) wide.pop_back();
        cut = win::ToBytes(wide);
    } while (cut.size() > kLongestName || !text.starts_with(cut));
    return cut;
}

/// The last element of a path or URL that is not empty, whatever separates them.
std::string LastElement(const std::string& target) {
    const size_t end = target.find_last_not_of("\\/");
    if (end == std::string::npos) return {};
    const size_t before = target.find_last_of("\\/", end);
    const size_t start = before == std::string::npos ? 0 : before + 1;
    return target.substr(start, end - start + 1);
}

}  // namespace

std::string StorableName(const std::string& name) {
    std::string storable;
    for (const char character : name) {
        if (character == '=' || character == '|')
            storable += '-';
        else
            storable += IsControl(character) || character == kDelete ? ' ' : character;
    }
    const size_t first = storable.find_first_not_of(" [;");
    if (first == std::string::npos) return {};
    storable = storable.substr(first, storable.find_last_not_of(' ') - first + 1);
    storable = Cut(storable);
    storable.resize(storable.find_last_not_of(' ') + 1);
    // Keys are compared ignoring case, so no spelling of the word is free.
    if (win::EqualIgnoringCase(storable, kFreeName)) storable += '_';
    return storable;
}

bool IsStorableTarget(const std::string& target) {
    return target.size() <= config::kLongestValue && std::none_of(target.begin(), target.end(), IsControl);
}

std::string WithKeptQuotes(const std::string& value) {
    if (value.size() < 2 || value.front() != value.back()) return value;
    const char quote = value.front();
    return quote == '"' || quote == '\'' ? quote + value + quote : value;
}

std::string StorableTarget(const std::string& target) {
    return sys::IsUrl(target) ? sys::EncodeBars(target) : target;
}

std::string WithoutControls(std::string text) {
    std::replace_if(text.begin(), text.end(), IsControl, ' ');
    return text;
}

std::string StorableSwitch(const std::string& commandSwitch) {
    return WithKeptQuotes(WithoutControls(commandSwitch));
}

std::string NameForTarget(const std::string& target) {
    for (const std::string& candidate :
         {sys::PathPart(target, sys::kBareName), sys::PathPart(target, sys::kFileName), LastElement(target)})
        if (std::string name = StorableName(candidate); !name.empty()) return name;
    return {};
}

}  // namespace model
