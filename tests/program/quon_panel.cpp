#include "tests/program/quon_panel.h"

namespace testkit {
namespace {

/// How much of a docked panel can be seen, in pixels.
constexpr LONG kStrip = 4;

bool IsClipped(Window window) {
    RECT box{};
    return GetWindowRgnBox(window.Handle(), &box) != ERROR;
}

bool ShowsOnlyAStrip(Window window) {
    RECT box{};
    return GetWindowRgnBox(window.Handle(), &box) == SIMPLEREGION &&
           std::min(box.right - box.left, box.bottom - box.top) == kStrip;
}

std::string Word(bool value) { return value ? "True" : "False"; }

std::string SectionText(const std::string& name, const QuonIni::Records& records) {
    std::string text = "[" + name + "]\r\n";
    for (const auto& [key, value] : records)
        text.append(key).append("=").append(value).append("\r\n");
    return text;
}

}  // namespace

QuonIni& QuonIni::AddShortcut(const std::string& key, const std::string& name, const std::string& value,
                              const std::string& command_switch) {
    buttons.emplace_back(key, name + "|0");
    cuts.emplace_back(name, value);
    if (!command_switch.empty()) switches.emplace_back(name, command_switch);
    return *this;
}

std::string QuonIni::Main() const {
    return std::to_string(current_tab) + "," + Word(start_with_windows) + "," + Word(start_glued) + "," +
           Word(hide_after_launch) + "," + Word(taskbar_processes_only) + "," + Word(close_button_closes) +
           "," + Word(extensive_tooltips) + "," + std::to_string(edge) + "," + Word(single_click) + "," +
           Word(show_collected) + "," + Word(tab_descriptions);
}

std::string QuonIni::Text() const {
    return SectionText("Settings", {{"Main", Main()},
                                    {"poptf", Word(pop_on_hover)},
                                    {"popdelay", std::to_string(pop_delay)},
                                    {"clickshow", Word(click_shows)}}) +
           SectionText("Buttons", buttons) + SectionText("Cuts", cuts) + SectionText("Switch", switches);
}

QuonPanel::QuonPanel(const ProgramFolder& folder, const StartOptions& options)
    : program_(StartQuon(folder, options)), main_(program_.WaitForWindow({.class_name = "QuonMain"})) {
    // The panel is shown before its drop targets are registered, the hover picture as the last of them.
    // The system keeps a target as a property of its window.
    WaitFor("the panel takes drops",
            [this] { return GetPropW(HoverPicture().Handle(), L"OleDropTargetInterface") != nullptr; });
}

bool QuonPanel::IsDockedAt(Edge edge) const {
    const RECT place = main_.Rect();
    if (!ShowsOnlyAStrip(main_)) return false;
    const LONG width = GetSystemMetrics(SM_CXSCREEN);
    const LONG height = GetSystemMetrics(SM_CYSCREEN);
    const bool centred_across = place.left == (width - (place.right - place.left)) / 2;
    const bool centred_down = place.top == (height - (place.bottom - place.top)) / 2;
    switch (edge) {
        case Edge::kLeft: return centred_down && place.right == kStrip;
        case Edge::kTop: return centred_across && place.bottom == kStrip;
        case Edge::kRight: return centred_down && place.left == width - kStrip;
        case Edge::kBottom: return centred_across && place.top == height - kStrip;
    }
    return false;
}

bool QuonPanel::IsOut() const {
    const RECT place = main_.Rect();
    return !IsClipped(main_) && place.left >= 0 && place.top >= 0 &&
           place.right <= GetSystemMetrics(SM_CXSCREEN) && place.bottom <= GetSystemMetrics(SM_CYSCREEN);
}

POINT QuonPanel::CloseButtonPlace() const {
    constexpr LONG kInside = 3;
    const RECT place = main_.Rect();
    for (LONG y = place.top; y < place.bottom; ++y) {
        for (LONG x = place.right - 1; x > (place.left + place.right) / 2; --x) {
            if (main_.Send(WM_NCHITTEST, 0, MAKELPARAM(x, y)) == HTCLOSE) return {x - kInside, y + kInside};
        }
        if (main_.Send(WM_NCHITTEST, 0, MAKELPARAM(place.left + kInside * 10, y)) == HTCLIENT) break;
    }
    throw std::runtime_error("the panel has no close button");
}

void QuonPanel::OpenButton(int index, const Keys& held) const {
    main_.Activate();
    mouse::MoveTo(Button(index).Centre());
    main_.Send(WM_NULL);
    mouse::DoubleClick(Button(index), held);
}

PopupMenu QuonPanel::OpenButtonMenu(int index) const {
    mouse::RightClick(Button(index));
    return PopupMenu::Wait(Id());
}

PopupMenu QuonPanel::OpenImageMenu(int index) const {
    mouse::Click(ImageButton(index));
    return PopupMenu::Wait(Id());
}

Window QuonPanel::OpenOrganiser() const {
    OpenSettingsMenu().Choose("Organize shortcuts");
    Window organiser;
    WaitFor("the organiser in front, with the focus on its list", [&] {
        for (const Window window : program_.Windows())
            if (window.Text().starts_with("Organize shortcuts - ")) organiser = window;
        return organiser.Exists() && organiser.IsForeground() &&
               organiser.FindChild(frmCuts_pBasket).IsFocused();
    });
    return organiser;
}

Window QuonPanel::WaitForSystemDialog() const {
    return WaitFor("a dialog of the system's", [&] {
        for (const Window window : program_.Windows())
            if (window != main_ && window.Class() == "#32770" && window.IsEnabled()) return window;
        return Window();
    });
}

void QuonPanel::WaitUntilOut() const {
    WaitFor("the panel comes out", [this] { return IsOut(); });
}

void QuonPanel::WaitUntilDockedAt(Edge edge) const {
    WaitFor("the panel docks", [&] { return IsDockedAt(edge); });
}

void QuonPanel::Settle() const {
    const auto hovers_over = [this](Window button) {
        const RECT picture = HoverPicture().Rect();
        const RECT place = button.Rect();
        return HoverPicture().IsVisible() && picture.left > place.left && picture.left < place.right &&
               picture.top > place.top && picture.top < place.bottom;
    };
    Window next;
    for (const int index : {7, 8, 9}) {
        const RECT place = Button(index).Rect();
        if (!PtInRect(&place, mouse::Place()) && !hovers_over(Button(index))) next = Button(index);
    }
    mouse::MoveTo(next.Centre());
    WaitFor("the hover picture to follow the pointer", [&] { return hovers_over(next); });
}

void QuonPanel::LeaveAlone() const {
    // A window that has just come up can bring the pointer back once more under Wine.
    WaitFor("the hover picture to hide", [&] {
        mouse::MoveTo({5, 5});
        return !HoverPicture().IsVisible();
    });
    WaitUntilPainted();
    constexpr int kRounds = 8;
    Picture last;
    int same = 0;
    WaitFor("the panel's picture to rest", [&] {
        const Picture now = CaptureWindow(main_);
        same = now == last ? same + 1 : 0;
        last = now;
        return same >= kRounds;
    });
}

void QuonPanel::WaitUntilPainted() const {
    // What is not painted yet has one colour; a painted header without a label has two.
    for (const Window part : {Header(1), Header(6), Button(1), Button(9)})
        WaitFor("the panel is painted", [&] { return CaptureWindow(part).ColourCount() > 1; });
}

void QuonPanel::ExpectName(int button, const std::string& name) const {
    // Read once: a late echo of the pointer may show another tab for a moment.
    std::string last;
    HappensWithin(kPatience, [&] { return (last = Button(button).Text()) == name; });
    EXPECT_EQ(last, name);
}

}  // namespace testkit
