#include "tests/fuzz/ini_generator.h"

#include "win/text.h"

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
// About the limits of what is read back, in bytes: a value, and a section.
constexpr std::array<std::size_t, 10> kSizes{539, 540, 541, 553, 554, 555, 556, 1100, 19990, 30000};
constexpr std::array kFills{"v"sv, "ж"sv, "文"sv,  "\xF0\x9F\x98\x80"sv, "|"sv, "a|"sv,
                            " "sv, "="sv, "\xC3"sv};

std::string Repeated(std::string_view piece, std::size_t size) {
    std::string text;
    while (text.size() < size)
        text += piece;
    text.resize(size);
    return text;
}

std::string Replaced(std::string text, std::string_view from, std::string_view to) {
    for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
        text.replace(at, from.size(), to);
    return text;
}

std::string OtherCase(std::string text) {
    for (char& letter : text)
        if ((letter >= 'a' && letter <= 'z') || (letter >= 'A' && letter <= 'Z')) letter ^= 0x20;
    return text;
}

}  // namespace

std::string IniGenerator::Noise(std::size_t longest) {
    std::string noise(dice_.Below(longest + 1), '\0');
    for (char& byte : noise)
        byte = static_cast<char>(dice_.Once(4) ? dice_.Throw() % 256 : 0x20 + dice_.Throw() % 0x5F);
    return noise;
}

std::string IniGenerator::Name() {
    if (!names_.empty() && !dice_.Once(3)) {
        const std::string& known = dice_.OneOf(names_);
        return dice_.Once(15) ? OtherCase(known) : known;
    }
    std::string name(dice_.OneOf(kOddNames));
    if (dice_.Once(2)) name = "Shortcut " + std::to_string(dice_.Below(20));
    if (dice_.Once(12)) name = Noise(40);
    if (dice_.Once(40)) name = Repeated(dice_.OneOf(kFills), 200 + dice_.Below(800));
    names_.push_back(name);
    return name;
}

std::string IniGenerator::Target() {
    if (dice_.Once(8)) return std::string(dice_.OneOf(kOddValues));
    if (dice_.Once(12)) return "https://example.org/" + Noise(20);
    if (dice_.Once(12)) return "C:\\gone\\" + Name();
    return dice_.OneOf(targets_);
}

std::string IniGenerator::Value() {
    std::string value = Target();
    for (std::size_t members = dice_.Once(3) ? dice_.Below(6) : 0; members > 0; --members)
        value += "|" + Target();
    if (dice_.Once(40)) value += Repeated(dice_.OneOf(kFills), dice_.OneOf(kSizes));
    // The whole value is near a limit, not only what is added to it.
    if (dice_.Once(40)) value = Repeated(value + "|", dice_.OneOf(kSizes));
    if (dice_.Once(20)) value = "\"" + value + "\"";
    if (dice_.Once(60)) value = "'" + value + "'";
    return value;
}

std::string IniGenerator::ButtonRecord(bool ofTab) {
    // A tab's record without "|" ends the start: too many of them, and nothing else would be tried.
    if (dice_.Once(ofTab ? 60 : 12)) return std::string(dice_.OneOf(kOddValues));
    if (dice_.Once(15) && !ofTab) return "Group";
    if (dice_.Once(80)) return Repeated(Name() + "|", dice_.OneOf(kSizes));
    return Name() + "|" + std::string(dice_.Once(4) ? dice_.OneOf(kNumbers) : "0"sv);
}

std::string IniGenerator::Settings() {
    std::string main = std::to_string(1 + dice_.Below(6));
    for (int field = 1; field <= 10; ++field) {
        main += ",";
        main += field == 7 ? std::to_string(dice_.Below(6)) : dice_.Once(2) ? "True" : "False";
    }
    if (dice_.Once(30)) main = Noise(60);
    if (dice_.Once(40)) main.resize(dice_.Below(main.size() + 1));
    if (dice_.Once(15)) main += "," + std::string(dice_.OneOf(kOddValues));
    std::string text = Line("Main", main);
    text += Line("poptf", dice_.Once(30) ? std::string(dice_.OneOf(kOddValues)) : "True");
    text += Line("popdelay", dice_.Once(10) ? std::string(dice_.OneOf(kNumbers)) : "500");
    text += Line("clickshow", dice_.Once(30) ? Noise(8) : "False");
    return text;
}

std::string IniGenerator::Line(const std::string& key, const std::string& value) {
    std::string line = key;
    if (dice_.Once(50)) line.insert(0, dice_.Once(2) ? " " : "\t");
    if (!dice_.Once(80)) line += dice_.Once(20) ? " = " : "=";
    line += value;
    line += dice_.Once(40) ? dice_.OneOf(kLineEnds) : "\r\n"sv;
    return line;
}

std::string IniGenerator::Comment() { return ";" + Noise(20) + (dice_.Once(3) ? "=" : "") + "\r\n"; }

std::string IniGenerator::Header(const std::string& name) {
    if (dice_.Once(60)) return "[" + name + "\r\n";
    if (dice_.Once(60)) return " [ " + name + " ] ;\r\n";
    return "[" + (dice_.Once(15) ? OtherCase(name) : name) + "]\r\n";
}

std::string IniGenerator::Section(const std::string& name) {
    std::string text = Header(name);
    if (name == "Settings") return text + Settings();
    const std::size_t count = dice_.Once(60) ? 400 + dice_.Below(600) : dice_.Below(40);
    for (std::size_t i = 0; i < count; ++i) {
        if (name == "Buttons") {
            const std::size_t key = dice_.Once(20) ? dice_.Below(1000) : 10 + dice_.Below(60);
            text += Line(std::to_string(key), ButtonRecord(key % 10 == 0));
        } else {
            text += Line(Name(), name == "Switch" ? Noise(30) : Value());
        }
        if (dice_.Once(50)) text += Comment();
    }
    return text;
}

std::string IniGenerator::HugeSection(const std::string& name) {
    std::string text = "[" + name + "]\r\n";
    const std::size_t size = dice_.Once(2) ? 70000 : 19900 + dice_.Below(200);
    while (text.size() < size)
        text += Line(dice_.Once(4) ? Name() : "Record " + std::to_string(text.size()), Value());
    return text;
}

std::string IniGenerator::Sections() {
    std::string text = Section("Settings");
    for (const char* name : kSections)
        if (name != kSections[0] && !dice_.Once(8)) text += Section(name);
    if (dice_.Once(8)) text += Section(dice_.OneOf(kSections));
    if (dice_.Once(40)) text += HugeSection(dice_.Once(3) ? "Switch" : "Cuts");
    if (dice_.Once(40)) text = HugeSection("Cuts") + text;
    if (dice_.Once(20)) text = Line("before", "any section") + text;
    return text;
}

void IniGenerator::Damage(std::string& text) {
    for (std::size_t times = dice_.Once(2) ? dice_.Below(12) : 0; times > 0 && !text.empty(); --times) {
        const std::size_t at = dice_.Below(text.size());
        const std::size_t count = dice_.Below(std::min<std::size_t>(text.size() - at, 60) + 1);
        switch (dice_.Below(5)) {
            case 0: text[at] = static_cast<char>(dice_.Throw()); break;
            case 1: text.erase(at, count); break;
            case 2: text.insert(at, text.substr(dice_.Below(text.size()), count)); break;
            case 3: text.insert(at, Noise(30)); break;
            default: text.insert(at, 1, '\0'); break;
        }
    }
}

std::string IniGenerator::Encoded(const std::string& text) {
    switch (dice_.Below(40)) {
        case 0: return "\xEF\xBB\xBF" + text;
        case 1:
        case 2: {
            const std::wstring wide = L"\xFEFF" + win::ToWide(text);
            std::string bytes(reinterpret_cast<const char*>(wide.data()), 2 * wide.size());
            // Half a character at the end.
            if (dice_.Once(4)) bytes.pop_back();
            return bytes;
        }
        case 3: return Replaced(text, "\r\n", "\n");
        case 4: return Replaced(text, "\r\n", "\r");
        case 5: return text.substr(0, dice_.Below(text.size() + 1));
        default: return text;
    }
}

std::string IniGenerator::Next() {
    names_.clear();
    std::string text = Sections();
    Damage(text);
    if (dice_.Once(80)) text = Noise(4000);
    return Encoded(text);
}

std::string IniGenerator::Typed() {
    std::string text = Name();
    if (dice_.Once(4)) text = Target();
    if (dice_.Once(8)) text = Value();
    std::erase_if(text, [](char byte) { return byte == '\0' || byte == '\r' || byte == '\n'; });
    return win::ToBytes(win::ToWide(text));
}

}  // namespace testkit
