#include "config/settings.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <vector>

#include "config/ini.h"
#include "config/ini_unit.h"
#include "win/errors.h"
#include "win/text.h"

namespace config {

SettingsRecord Settings;

namespace {

constexpr const char* kSection = "Settings";
constexpr const char* kHotKey = "hotkey";

// The hot key in the file, as far as is known.
std::uint16_t g_storedHotKey = 0;

// The fields of "Main" by position; the names serve the error messages.
constexpr std::array kMainFields{
    "CurrentTab",           "StartWithWindows",  "StartGlued",        "HideAfterLaunch",
    "TaskbarProcessesOnly", "CloseButtonCloses", "ExtensiveTooltips", "Edge",
    "SingleClickOpen",      "ShowCollected",     "TabDescriptions"};

std::string_view TrimBlanks(std::string_view text) {
    const size_t first = text.find_first_not_of(" \t");
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

/// Reads a decimal number at the start of the text; returns how many characters it takes, 0 for none.
size_t ParseNumber(std::string_view text, double& number) {
    number = 0;
    const size_t sign = !text.empty() && text.front() == '+' ? 1 : 0;
    const size_t digits = sign + (sign == 0 && !text.empty() && text.front() == '-' ? 1 : 0);
    // from_chars would also take "inf" and "nan".
    if (digits >= text.size() || text.substr(digits).find_first_of("0123456789.") != 0) return 0;
    const auto [end, error] = std::from_chars(text.data() + sign, text.data() + text.size(), number);
    // Too large or too small for from_chars, which then gives no number; strtod gives infinity or zero.
    if (error == std::errc::result_out_of_range)
        number = std::strtod(std::string(text.data() + sign, end).c_str(), nullptr);
    return error == std::errc::invalid_argument ? 0 : static_cast<size_t>(end - text.data());
}

std::string Quoted(const std::string& text) { return "\"" + text + "\""; }

std::string MainFieldName(size_t index) {
    return "field " + std::to_string(index) + " (" + kMainFields.at(index) + ") of " + Quoted("Main") +
           " in section " + Quoted(kSection) + " of " + IniPath;
}

std::string KeyName(const std::string& key) {
    return Quoted(key) + " in section " + Quoted(kSection) + " of " + IniPath;
}

/// The fields of "Main", each asked for by its position.
class MainFields {
  public:
    explicit MainFields(const std::string& record)
        : record_(record), fields_(record.empty() ? std::vector<std::string>() : win::Split(record, ',')) {}

    [[nodiscard]] bool Boolean(size_t index) const { return ToBoolean(At(index), MainFieldName(index)); }
    [[nodiscard]] std::int32_t Number(size_t index) const {
        return LeadingNumber(At(index), MainFieldName(index));
    }

  private:
    [[nodiscard]] const std::string& At(size_t index) const {
        if (index >= fields_.size())
            throw win::SubscriptError("Missing " + MainFieldName(index) + ", which is " + Quoted(record_));
        return fields_[index];
    }

    std::string record_;
    std::vector<std::string> fields_;
};

std::int16_t To16Bit(std::int32_t number, const std::string& name) {
    if (number < std::numeric_limits<std::int16_t>::min() ||
        number > std::numeric_limits<std::int16_t>::max())
        throw win::OverflowError("The number " + std::to_string(number) + " is too large for " + name);
    return static_cast<std::int16_t>(number);
}

std::string BooleanText(bool value) { return value ? "True" : "False"; }

bool ReadBoolean(const std::string& key) {
    const std::string text = ReadIni(kSection, key);
    return ToBoolean(text.empty() ? "False" : text, KeyName(key));
}

void ReadPopUpSettings(SettingsRecord& record) {
    constexpr std::int32_t kDefaultDelay = 500;
    record.PopOnHover = ReadBoolean("poptf");
    const std::int32_t delay = LeadingNumber(ReadIni(kSection, "popdelay"), KeyName("popdelay"));
    record.PopDelay = delay == 0 ? kDefaultDelay : delay;
    record.ClickShows = ReadBoolean("clickshow");
}

std::int32_t To32Bit(double number, const std::string& text, const std::string& name) {
    const double rounded = std::nearbyint(number);
    if (rounded < std::numeric_limits<std::int32_t>::min() ||
        rounded > std::numeric_limits<std::int32_t>::max())
        throw win::OverflowError("The number " + Quoted(text) + " is too large for " + name);
    return static_cast<std::int32_t>(rounded);
}

}  // namespace

std::int32_t LeadingNumber(const std::string& text, const std::string& name) {
    double number = 0;
    ParseNumber(TrimBlanks(text), number);
    return To32Bit(number, text, name);
}

std::int32_t ToNumber(const std::string& text, const std::string& name) {
    const std::string_view word = TrimBlanks(text);
    double number = 0;
    if (word.empty() || ParseNumber(word, number) != word.size())
        throw win::TypeMismatchError(Quoted(text) + " is not a number: " + name);
    return To32Bit(number, text, name);
}

bool ToBoolean(const std::string& text, const std::string& name) {
    const std::string word(TrimBlanks(text));
    if (win::EqualIgnoringCase(word, "True")) return true;
    if (win::EqualIgnoringCase(word, "False")) return false;
    double number = 0;
    if (word.empty() || ParseNumber(word, number) != word.size())
        throw win::TypeMismatchError(Quoted(text) + " is neither True, False nor a number: " + name);
    return number != 0;
}

void AwaitSettings() { AwaitRequired(kSection, "Main"); }

void LoadMainSettings() {
    const MainFields main(ReadRequired(kSection, "Main"));
    Settings.CurrentTab = To16Bit(main.Number(0), MainFieldName(0));
    Settings.StartWithWindows = main.Boolean(1);
    Settings.StartGlued = main.Boolean(2);
    Settings.HideAfterLaunch = main.Boolean(3);
    Settings.TaskbarProcessesOnly = main.Boolean(4);
    Settings.CloseButtonCloses = main.Boolean(5);
    Settings.ExtensiveTooltips = main.Boolean(6);
    Settings.Edge = main.Number(7);
    Settings.SingleClickOpen = main.Boolean(8);
    Settings.ShowCollected = main.Boolean(9);
    Settings.TabDescriptions = main.Boolean(10);
}

void LoadPopUpSettings() { ReadPopUpSettings(Settings); }

void LoadHotKey() {
    double number = 0;
    ParseNumber(TrimBlanks(ReadIni(kSection, kHotKey)), number);
    constexpr int kHighest = std::numeric_limits<std::uint16_t>::max();
    Settings.HotKey =
        number >= 1 && number <= kHighest ? static_cast<std::uint16_t>(number) : std::uint16_t{0};
    g_storedHotKey = Settings.HotKey;
}

void CheckPopUpSettings() {
    SettingsRecord unused;
    ReadPopUpSettings(unused);
}

bool SaveSettings() {
    const SettingsRecord& s = Settings;
    const std::vector<std::string> main{std::to_string(s.CurrentTab),        BooleanText(s.StartWithWindows),
                                        BooleanText(s.StartGlued),           BooleanText(s.HideAfterLaunch),
                                        BooleanText(s.TaskbarProcessesOnly), BooleanText(s.CloseButtonCloses),
                                        BooleanText(s.ExtensiveTooltips),    std::to_string(s.Edge),
                                        BooleanText(s.SingleClickOpen),      BooleanText(s.ShowCollected),
                                        BooleanText(s.TabDescriptions)};
    IniUnit unit;
    WriteIni(kSection, "Main", win::Join(main, ','));
    WriteIni(kSection, "popdelay", std::to_string(s.PopDelay));
    WriteIni(kSection, "poptf", BooleanText(s.PopOnHover));
    WriteIni(kSection, "clickshow", BooleanText(s.ClickShows));
    // A file that has none needs no record that says so.
    if (s.HotKey != 0 || g_storedHotKey != 0) WriteIni(kSection, kHotKey, std::to_string(s.HotKey));
    if (!unit.Finish()) return false;
    g_storedHotKey = s.HotKey;
    return true;
}

}  // namespace config
