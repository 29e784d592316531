#include "tests/support/call_log.h"

#include <algorithm>
#include <cstdio>

#include "tests/support/text.h"

namespace testkit {
namespace {

bool IsResourceId(const void* text) { return IS_INTRESOURCE(text); }

std::string ResourceId(const void* text) {
    return "#" + std::to_string(static_cast<unsigned>(reinterpret_cast<std::uintptr_t>(text)));
}

}  // namespace

std::string LoggedText(std::string_view text) { return std::string(text); }

std::string LoggedText(const char* text) {
    if (!text) return "(null)";
    return IsResourceId(text) ? ResourceId(text) : std::string(text);
}

std::string LoggedText(const wchar_t* text) {
    if (!text) return "(null)";
    return IsResourceId(text) ? ResourceId(text) : Utf8(text);
}

std::string LoggedPointer(std::uintptr_t address) {
    if (address == 0) return "null";
    char text[32];
    std::snprintf(text, sizeof text, "0x%llx", static_cast<unsigned long long>(address));
    return text;
}

std::string CallLog::Text() const {
    std::string text;
    for (const std::string& line : lines_)
        text += line + "\n";
    return text;
}

std::size_t CallLog::Count(std::string_view start) const {
    return static_cast<std::size_t>(std::count_if(
        lines_.begin(), lines_.end(), [&](const std::string& line) { return line.starts_with(start); }));
}

::testing::AssertionResult InOrder(const CallLog& log, std::initializer_list<std::string_view> starts) {
    auto line = log.Lines().begin();
    for (const std::string_view start : starts) {
        line = std::find_if(line, log.Lines().end(),
                            [&](const std::string& candidate) { return candidate.starts_with(start); });
        if (line == log.Lines().end()) {
            return ::testing::AssertionFailure() << "\"" << start << "\" is missing or out of order in:\n"
                                                 << log.Text();
        }
        ++line;
    }
    return ::testing::AssertionSuccess();
}

}  // namespace testkit
