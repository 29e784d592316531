#include "tests/fuzz/ini_generator.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace testkit {
namespace {

using namespace std::string_view_literals;

constexpr std::array kOddNames{
    "Empty"sv, "Group"sv, ""sv,      " "sv,  "[Cuts]"sv, ";note"sv,    "a|b"sv,  "a=b"sv,
    "\"x\""sv, "11"sv,    "мир"sv,   "文"sv, "\xC3"sv,   "\xE6\x96"sv, "Main"sv, "?find"sv,
    "&amp&"sv, "\t"sv,    "a\x01"sv, "%s"sv, "../.."sv,  "con"sv,      "="sv,    "name with blanks "sv};
constexpr std::array kOddValues{""sv,
                                "|"sv,
                                "||||"sv,
                                "\""sv,
                                "'"sv,
                                "0"sv,
                                "-1"sv,
                                "99999999999999999999"sv,
                                "1e400"sv,
                                "0x10"sv,
                                "True"sv,
                                "http://"sv,
                                "https://example.org/a|b"sv,
                                "mailto:user@server"sv,
                                "\\\\server\\share\\x"sv,
                                "C:"sv,
                                "C:\\"sv,
                                "\xFF\xFE"sv,
                                "\xF0\x9F"sv,
                                "a\0b"sv,
                                "=x=y="sv,
                                "%n%n%n"sv,
                                "[Buttons]"sv};
constexpr std::array kNumbers{"0"sv,           "1"sv, "-1"sv, "7"sv,  "2147483648"sv,
                              "99999999999"sv, ""sv,  "x"sv,  "1.5"sv};
constexpr std::array kLineEnds{"\r\n"sv, "\n"sv, "\r"sv, "\r\n\r\n"sv, "\0"sv};
constexpr std::array kSections{"Settings", "Buttons", "Cuts", "Switch", "Collected"};

}  // namespace

std::string IniGenerator::Noise(std::size_t longest) {
    std::string noise(Below(longest + 1), '\0');
    for (char& byte : noise)
        byte = static_cast<char>(Once(4) ? random_() % 256 : 0x20 + random_() % 0x5F);
    return noise;
}

std::string IniGenerator::Name() {
    if (!names_.empty() && !Once(3)) return OneOf(names_);
    std::string name(OneOf(kOddNames));
    if (Once(2)) name = "Shortcut " + std::to_string(Below(20));
    if (Once(12)) name = Noise(40);
    if (Once(40)) name = std::string(200 + Below(800), 'n');
    names_.push_back(name);
    return name;
}

std::string IniGenerator::Target() {
    if (Once(8)) return std::string(OneOf(kOddValues));
    if (Once(12)) return "https://example.org/" + Noise(20);
    if (Once(12)) return "C:\\gone\\" + Name();
    return OneOf(targets_);
}

std::string IniGenerator::Value() {
    std::string value = Target();
    for (std::size_t members = Once(3) ? Below(6) : 0; members > 0; --members)
        value += "|" + Target();
    if (Once(60)) value += std::string(Below(30000), 'v');
    if (Once(20)) value = "\"" + value + "\"";
    return value;
}

std::string IniGenerator::ButtonRecord() {
    if (Once(12)) return std::string(OneOf(kOddValues));
    if (Once(15)) return "Group";
    return Name() + "|" + std::string(Once(4) ? OneOf(kNumbers) : "0"sv);
}

std::string IniGenerator::Settings() {
    std::string main = std::to_string(1 + Below(6));
    for (int field = 1; field <= 10; ++field) {
        main += ",";
        main += field == 7 ? std::to_string(Below(6)) : Once(2) ? "True" : "False";
    }
    if (Once(10)) main = Noise(60);
    if (Once(15)) main.resize(Below(main.size() + 1));
    if (Once(15)) main += "," + std::string(OneOf(kOddValues));
    std::string text = Line("Main", main);
    text += Line("poptf", Once(10) ? std::string(OneOf(kOddValues)) : "True");
    text += Line("popdelay", Once(6) ? std::string(OneOf(kNumbers)) : "500");
    text += Line("clickshow", Once(10) ? Noise(8) : "False");
    return text;
}

std::string IniGenerator::Line(const std::string& key, const std::string& value) {
    std::string line = key;
    if (!Once(40)) line += Once(20) ? " = " : "=";
    line += value;
    line += Once(25) ? OneOf(kLineEnds) : "\r\n"sv;
    return line;
}

std::string IniGenerator::Section(const std::string& name) {
    std::string text = "[" + name + "]\r\n";
    if (name == "Settings") return text + Settings();
    const std::size_t count = Once(60) ? 400 + Below(600) : Below(40);
    for (std::size_t i = 0; i < count; ++i) {
        if (name == "Buttons") {
            const std::string key = std::to_string(Once(20) ? Below(1000) : 10 + Below(60));
            text += Line(key, ButtonRecord());
        } else {
            text += Line(Name(), name == "Switch" ? Noise(30) : Value());
        }
        if (Once(50)) text += ";" + Noise(20) + "\r\n";
    }
    return text;
}

void IniGenerator::Damage(std::string& text) {
    for (std::size_t times = Once(2) ? 0 : Below(12); times > 0 && !text.empty(); --times) {
        const std::size_t at = Below(text.size());
        const std::size_t count = Below(std::min<std::size_t>(text.size() - at, 60) + 1);
        switch (Below(5)) {
            case 0: text[at] = static_cast<char>(random_()); break;
            case 1: text.erase(at, count); break;
            case 2: text.insert(at, text.substr(Below(text.size()), count)); break;
            case 3: text.insert(at, Noise(30)); break;
            default: text.insert(at, 1, '\0'); break;
        }
    }
}

std::string IniGenerator::Next() {
    names_.clear();
    std::string text = Section("Settings");
    for (const char* name : kSections)
        if (name != kSections[0] && !Once(8)) text += Section(name);
    if (Once(10)) text += Section(OneOf(kSections));
    if (Once(20)) text = "\xEF\xBB\xBF" + text;
    Damage(text);
    if (Once(50)) text = Noise(4000);
    return text;
}

}  // namespace testkit
