// An ordered record of what happened, for tests that assert which calls were made and in which order.
//
//     CallLog log;
//     auto write = LOG_CALL(log, WritePrivateProfileStringA);              // see recorded_call.h
//     auto fake = FAKE_CALL(MessageBeep, [&](UINT kind) -> BOOL {
//         log.Add("MessageBeep", kind);
//         return TRUE;
//     });
//     ...
//     EXPECT_THAT(log.Lines(), ElementsAre("WritePrivateProfileStringA Settings Main 1 C:\\...\\Quon.ini",
//                                          "MessageBeep 16"));
//     EXPECT_TRUE(InOrder(log, {"WritePrivateProfileStringA Settings Main", "MessageBeep"}));
//
// A line is the parts joined by single blanks. How a part is written:
//   text            as it is (wide text as UTF-8); a null pointer to text: (null)
//   resource id     a text pointer below 65536, as MAKEINTRESOURCE makes it: #32512
//   whole numbers   decimal; bool: true, false; enumerations: their number
//   other pointers  and handles: null or hexadecimal with 0x
#pragma once

#include <windows.h>

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace testkit {

/// The text of one part of a line, by the rules above.
std::string LoggedText(std::string_view text);
std::string LoggedText(const char* text);
std::string LoggedText(const wchar_t* text);
std::string LoggedPointer(std::uintptr_t address);

template <class Value>
std::string LoggedText(const Value& value) {
    if constexpr (std::is_same_v<Value, std::nullptr_t>) {
        return LoggedPointer(0);
    } else if constexpr (std::is_convertible_v<const Value&, std::string_view> && !std::is_pointer_v<Value>) {
        return LoggedText(static_cast<std::string_view>(value));
    } else if constexpr (std::is_convertible_v<const Value&, const char*>) {
        return LoggedText(static_cast<const char*>(value));
    } else if constexpr (std::is_convertible_v<const Value&, const wchar_t*>) {
        return LoggedText(static_cast<const wchar_t*>(value));
    } else if constexpr (std::is_pointer_v<Value>) {
        return LoggedPointer(reinterpret_cast<std::uintptr_t>(value));
    } else if constexpr (std::is_same_v<Value, bool>) {
        return value ? "true" : "false";
    } else if constexpr (std::is_enum_v<Value>) {
        return std::to_string(static_cast<std::underlying_type_t<Value>>(value));
    } else {
        static_assert(std::is_arithmetic_v<Value>, "a CallLog has no way to write this type");
        return std::to_string(value);
    }
}

class CallLog {
  public:
    /// Appends one line made of the parts.
    template <class... Parts>
    void Add(const Parts&... parts) {
        std::string line;
        ((line += (line.empty() ? "" : " ") + LoggedText(parts)), ...);
        lines_.push_back(std::move(line));
    }

    const std::vector<std::string>& Lines() const { return lines_; }
    /// All lines, each ended by "\n"; reads well in a failure message.
    std::string Text() const;
    /// How many lines begin with `start`.
    std::size_t Count(std::string_view start) const;
    void Clear() { lines_.clear(); }

  private:
    std::vector<std::string> lines_;
};

/// Succeeds when lines beginning with each of `starts` occur in this order; other lines may stand between.
::testing::AssertionResult InOrder(const CallLog& log, std::initializer_list<std::string_view> starts);

}  // namespace testkit
