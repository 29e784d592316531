#include "sys/process_list.h"

#include <dwmapi.h>
#include <psapi.h>

#include "tests/support/neighbour.h"
#include "tests/support/unit_test.h"
#include "win/process_start.h"

namespace {

using sys::clsProcesi;
using ::testing::ElementsAre, ::testing::IsEmpty;
using testkit::CallLog, testkit::Neighbour, testkit::ProgramFolder, testkit::RecordedCall;

/// A top-level window of this program.
class TestWindow {
  public:
    explicit TestWindow(const std::string& title, DWORD style = WS_OVERLAPPEDWINDOW, DWORD extended = 0,
                        HWND owner = nullptr)
        : handle_(CreateWindowExW(extended, L"STATIC", testkit::Wide(title).c_str(), style, 700, 500, 60, 60,
                                  owner, nullptr, GetModuleHandleW(nullptr), nullptr)) {}
    ~TestWindow() { DestroyWindow(handle_); }
    TestWindow(const TestWindow&) = delete;
    TestWindow& operator=(const TestWindow&) = delete;
    // NOLINTNEXTLINE(google-explicit-constructor): it stands for its handle in every call.
    operator HWND() const { return handle_; }

  private:
    HWND handle_;
};

constexpr DWORD kVisible = WS_OVERLAPPEDWINDOW | WS_VISIBLE;

/// "caption|tag" of each element.
std::vector<std::string> Elements(const win::MenuArray& menu) {
    std::vector<std::string> elements;
    for (int index = 0; index < menu.Count(); ++index)
        elements.push_back(menu[index].caption + "|" + menu[index].tag);
    return elements;
}

std::string OwnElement() {
    const std::string path = win::ProgramPath();
    std::string name = testkit::NameOf(path);
    return name.substr(0, name.rfind('.')) + "|" + path;
}

class ProcessListTest : public testing::Test {
  protected:
    win::MenuArray menu_{2700, {{"Item1", {}}}};
    CallLog log_;
};

TEST_F(ProcessListTest, KnowsTheWindowsThatATaskbarShows) {
    const TestWindow plain("plain");
    const TestWindow tool("tool", WS_OVERLAPPEDWINDOW, WS_EX_TOOLWINDOW);
    const TestWindow child("child", WS_CHILD, 0, plain);
    const TestWindow popup("popup owned by a plain window", WS_POPUP, 0, plain);
    const TestWindow owned("owned by a plain window", WS_OVERLAPPEDWINDOW, 0, plain);
    const TestWindow owned_by_tool("owned by a tool window", WS_OVERLAPPEDWINDOW, 0, tool);
    const TestWindow tool_owned_by_tool("tool", WS_OVERLAPPEDWINDOW, WS_EX_TOOLWINDOW, tool);
    EXPECT_TRUE(clsProcesi::IsTaskbarWindow(plain));
    EXPECT_FALSE(clsProcesi::IsTaskbarWindow(tool));
    EXPECT_FALSE(clsProcesi::IsTaskbarWindow(child));
    EXPECT_FALSE(clsProcesi::IsTaskbarWindow(popup));
    EXPECT_FALSE(clsProcesi::IsTaskbarWindow(owned));
    EXPECT_TRUE(clsProcesi::IsTaskbarWindow(owned_by_tool));
    EXPECT_FALSE(clsProcesi::IsTaskbarWindow(tool_owned_by_tool));
    EXPECT_TRUE(clsProcesi::IsToolWindow(tool));
    EXPECT_FALSE(clsProcesi::IsToolWindow(plain));
}

TEST_F(ProcessListTest, AsksForParentOwnerAndKindInThisOrder) {
    const TestWindow tool("tool", WS_OVERLAPPEDWINDOW, WS_EX_TOOLWINDOW);
    const TestWindow window("w", WS_OVERLAPPEDWINDOW, 0, tool);
    const auto name = [&](HWND handle) { return handle == window ? "window" : "owner"; };
    const RecordedCall parent =
        WATCH_CALL(GetParent, [&](HWND handle) { log_.Add("parent of", name(handle)); });
    const RecordedCall owner = WATCH_CALL(
        GetWindowLongPtrA, [&](HWND handle, int index) { log_.Add("data of", name(handle), index); });
    const RecordedCall style =
        WATCH_CALL(GetWindowLongA, [&](HWND handle, int index) { log_.Add("data of", name(handle), index); });
    EXPECT_TRUE(clsProcesi::IsTaskbarWindow(window));
    EXPECT_THAT(log_.Lines(), ElementsAre("parent of window", "data of window -8", "data of owner -20",
                                          "data of window -20"));
}

TEST_F(ProcessListTest, TakesTheProgramOfAVisibleWindowWithATitle) {
    const TestWindow window("Наслов 文", kVisible);
    clsProcesi list(menu_, true, 0);
    list.AddWindow(window);
    EXPECT_THAT(Elements(menu_), ElementsAre(OwnElement()));
    ASSERT_EQ(list.WindowCount(), 1);
    EXPECT_EQ(list.Windows()[0].handle, window);
    EXPECT_EQ(list.Windows()[0].title, "Наслов 文");
    EXPECT_EQ(list.MenuCount(), 1);
    EXPECT_EQ(list.LastProcessId(), GetCurrentProcessId());
}

TEST_F(ProcessListTest, PassesOverWindowsWithoutATitle) {
    const TestWindow visible("", kVisible);
    const TestWindow hidden("");
    for (const bool taskbar_only : {true, false}) {
        clsProcesi list(menu_, taskbar_only, 0);
        list.AddWindow(visible);
        list.AddWindow(hidden);
        EXPECT_THAT(list.Windows(), IsEmpty());
        EXPECT_THAT(Elements(menu_), ElementsAre("Item1|"));
    }
}

TEST_F(ProcessListTest, RecordsOnItsWalkOnlyWhatATaskbarShows) {
    const TestWindow plain("plain", kVisible);
    const TestWindow tool("tool", kVisible, WS_EX_TOOLWINDOW);
    const TestWindow owned("owned", kVisible, 0, plain);
    const std::vector<HWND> all{tool, owned, plain};
    const RecordedCall top = FAKE_CALL(GetTopWindow, [&](HWND) { return all.front(); });
    const RecordedCall next = FAKE_CALL(GetWindow, [&](HWND handle, UINT) -> HWND {
        const auto after = std::find(all.begin(), all.end(), handle) + 1;
        return after == all.end() ? nullptr : *after;
    });
    clsProcesi list(menu_, true, 0);
    list.Refresh();
    ASSERT_EQ(list.WindowCount(), 1);
    EXPECT_EQ(list.Windows()[0].handle, plain);
    // Another walk goes on where this one ended.
    list.Refresh();
    EXPECT_EQ(list.WindowCount(), 2);
    EXPECT_EQ(list.MenuCount(), 1);
    EXPECT_THAT(Elements(menu_), ElementsAre(OwnElement()));
}

TEST_F(ProcessListTest, TakesHiddenWindowsOnlyWhenOthersThanTheTaskbarsAreWanted) {
    const TestWindow window("hidden");
    clsProcesi with_option(menu_, true, 0);
    with_option.AddWindow(window);
    EXPECT_THAT(with_option.Windows(), IsEmpty());
    EXPECT_THAT(Elements(menu_), ElementsAre("Item1|"));
    clsProcesi without(menu_, false, 0);
    without.AddWindow(window);
    EXPECT_EQ(without.WindowCount(), 1);
    EXPECT_THAT(Elements(menu_), ElementsAre(OwnElement()));
}

TEST_F(ProcessListTest, RecordsTheLaunchersWindowsButOffersNoneOfThem) {
    const TestWindow exact("Quon", kVisible);
    const TestWindow longer("Quon: Error report", kVisible);
    clsProcesi list(menu_, true, 0);
    list.AddWindow(exact);
    list.AddWindow(longer);
    EXPECT_EQ(list.WindowCount(), 2);
    EXPECT_EQ(list.MenuCount(), 0);
    EXPECT_THAT(Elements(menu_), ElementsAre("Item1|"));
    for (const char* title : {"quon", "QUON", "Quo", " Quon", "My Quon"}) {
        win::MenuArray menu(2700, {{"Item1", {}}});
        clsProcesi others(menu, true, 0);
        others.AddWindow(TestWindow(title, kVisible));
        EXPECT_THAT(Elements(menu), ElementsAre(OwnElement())) << title;
    }
}

TEST_F(ProcessListTest, OffersNoneOfTheProcessThatIsLeftOut) {
    const TestWindow window("Default IME", kVisible);
    clsProcesi list(menu_, true, GetCurrentProcessId());
    list.AddWindow(window);
    EXPECT_EQ(list.WindowCount(), 1);
    EXPECT_THAT(Elements(menu_), ElementsAre("Item1|"));
}

TEST_F(ProcessListTest, AsksTheWindowForItsTextWithATimeLimit) {
    const TestWindow window("title", kVisible);
    const RecordedCall send = WATCH_CALL(SendMessageTimeoutW, [&](HWND, UINT message, WPARAM wparam,
                                                                  LPARAM lparam, UINT flags, UINT limit,
                                                                  PDWORD_PTR) {
        log_.Add("send", message, wparam, flags, limit);
        if (message == WM_GETTEXT) {
            EXPECT_EQ(std::wstring(reinterpret_cast<wchar_t*>(lparam), wparam), std::wstring(wparam, L'\0'));
        }
    });
    const RecordedCall visible = LOG_CALL(log_, IsWindowVisible);
    const RecordedCall thread = WATCH_CALL(GetWindowThreadProcessId, [&] { log_.Add("process"); });
    const RecordedCall version = FAKE_CALL(GetVersionExA, [&](LPOSVERSIONINFOA record) -> BOOL {
        log_.Add("version");
        EXPECT_EQ(record->dwOSVersionInfoSize, 148u);
        EXPECT_EQ(std::string(record->szCSDVersion, 128), std::string(128, ' '));
        record->dwPlatformId = 3;
        return TRUE;
    });
    clsProcesi(menu_, true, 0).AddWindow(window);
    EXPECT_TRUE(
        InOrder(log_, {"send 14 0 2 500", "send 13 6 2 500", "IsWindowVisible", "process", "version"}));
    EXPECT_EQ(log_.Lines().size(), 5u);
}

TEST_F(ProcessListTest, StopsAtTheFirstTextRequestThatFails) {
    const TestWindow window("title", kVisible);
    UINT failing = WM_GETTEXTLENGTH;
    const RecordedCall send = FAKE_CALL(SendMessageTimeoutW,
                                        [&](HWND handle, UINT message, WPARAM wparam, LPARAM lparam,
                                            UINT flags, UINT limit, PDWORD_PTR answer) -> LRESULT {
                                            log_.Add(message);
                                            if (message == failing) return 0;
                                            return ORIGINAL_CALL(SendMessageTimeoutW)(
                                                handle, message, wparam, lparam, flags, limit, answer);
                                        });
    const RecordedCall visible = WATCH_CALL(IsWindowVisible, [&](HWND) { log_.Add("visible"); });
    clsProcesi list(menu_, false, 0);
    list.AddWindow(window);
    failing = WM_GETTEXT;
    list.AddWindow(window);
    EXPECT_THAT(log_.Lines(), ElementsAre("14", "14", "13", "visible"));
    EXPECT_THAT(list.Windows(), IsEmpty());
    EXPECT_THAT(Elements(menu_), ElementsAre("Item1|"));
}

TEST_F(ProcessListTest, LeavesOutCloakedWindowsWhereHiddenOnesAreLeftOut) {
    const TestWindow window("suspended", kVisible);
    HRESULT answer = S_OK;
    DWORD cloaked = DWM_CLOAKED_SHELL;
    const RecordedCall attribute =
        FAKE_CALL(DwmGetWindowAttribute, [&](HWND handle, DWORD which, PVOID value, DWORD size) -> HRESULT {
            EXPECT_EQ(handle, window);
            EXPECT_EQ(which, DWORD{DWMWA_CLOAKED});
            EXPECT_EQ(size, sizeof(DWORD));
            if (SUCCEEDED(answer)) *static_cast<DWORD*>(value) = cloaked;
            return answer;
        });
    const auto added = [&](bool taskbarOnly) {
        clsProcesi list(menu_, taskbarOnly, 0);
        list.AddWindow(window);
        return list.Windows().size();
    };
    EXPECT_EQ(added(true), 0u);
    EXPECT_EQ(added(false), 1u);
    cloaked = 0;
    EXPECT_EQ(added(true), 1u);
    answer = E_INVALIDARG;
    EXPECT_EQ(added(true), 1u) << "where the system cannot tell";
}

TEST_F(ProcessListTest, TakesNoMoreOfATitleThanATitleCanHold) {
    const TestWindow window("title", kVisible);
    const RecordedCall send = FAKE_CALL(SendMessageTimeoutW,
                                        [&](HWND handle, UINT message, WPARAM wparam, LPARAM lparam,
                                            UINT flags, UINT limit, PDWORD_PTR answer) -> LRESULT {
                                            if (message == WM_GETTEXTLENGTH) {
                                                *answer = ~DWORD_PTR{0};
                                                return 1;
                                            }
                                            return ORIGINAL_CALL(SendMessageTimeoutW)(
                                                handle, message, wparam, lparam, flags, limit, answer);
                                        });
    clsProcesi list(menu_, true, 0);
    list.AddWindow(window);
    ASSERT_EQ(list.WindowCount(), 1);
    EXPECT_EQ(list.Windows()[0].title, "title");
}

TEST_F(ProcessListTest, KeepsAllWindowsWhenThereAreMoreThanTwenty) {
    const TestWindow window("many", kVisible);
    clsProcesi list(menu_, true, 0);
    for (int count = 0; count < 45; ++count)
        list.AddWindow(window);
    EXPECT_EQ(list.WindowCount(), 45);
    EXPECT_EQ(list.Windows().capacity(), 60u) << "it grows by twenty";
    EXPECT_EQ(list.Windows().front().handle, window);
    EXPECT_EQ(list.Windows().back().handle, window);
    EXPECT_EQ(list.MenuCount(), 1) << "one element for each executable";
}

/// Windows whose programs the test decides, in place of those of the desktop.
class ProcessListWalkTest : public ProcessListTest {
  protected:
    /// The title of a window that no taskbar shows.
    static constexpr const char* kTool = "tool";

    /// Lets the walk find these windows, and their modules have these paths.
    std::vector<std::string> Walk(const std::vector<std::pair<std::string, std::string>>& titles_and_paths) {
        std::vector<std::unique_ptr<TestWindow>> windows;
        for (const auto& [title, path] : titles_and_paths)
            windows.push_back(
                std::make_unique<TestWindow>(title, kVisible, title == kTool ? WS_EX_TOOLWINDOW : 0));
        const auto position = [&](HWND handle) {
            return static_cast<size_t>(
                std::find_if(windows.begin(), windows.end(),
                             [&](const auto& window) { return static_cast<HWND>(*window) == handle; }) -
                windows.begin());
        };
        const RecordedCall top = FAKE_CALL(GetTopWindow, [&](HWND parent) -> HWND {
            EXPECT_EQ(parent, nullptr);
            return windows.empty() ? nullptr : static_cast<HWND>(*windows.front());
        });
        const RecordedCall next = FAKE_CALL(GetWindow, [&](HWND handle, UINT which) -> HWND {
            EXPECT_EQ(which, 2u);
            const size_t at = position(handle) + 1;
            return at < windows.size() ? static_cast<HWND>(*windows[at]) : nullptr;
        });
        size_t asked = 0;
        const RecordedCall thread =
            WATCH_CALL(GetWindowThreadProcessId, [&](HWND handle, LPDWORD) { asked = position(handle); });
        const RecordedCall module =
            FAKE_CALL(GetModuleFileNameExA, [&](HANDLE, HMODULE, LPSTR buffer, DWORD) -> DWORD {
                const std::string& path = titles_and_paths.at(asked).second;
                std::memcpy(buffer, path.data(), path.size());
                return static_cast<DWORD>(path.size());
            });
        clsProcesi(menu_, true, 0).Refresh();
        return Elements(menu_);
    }
};

TEST_F(ProcessListWalkTest, GivesEachExecutableOneElementTopmostFirst) {
    menu_[0].enabled = false;
    menu_[0].visible = false;
    EXPECT_THAT(
        Walk({{"a", "C:\\Ручно\\žaba.exe"},
              {"b", "C:\\b.b.exe"},
              {"Quon", "C:\\Quon.exe"},
              {"a again", "D:\\other\\žaba.com"},
              {"A", "C:\\ŽABA.exe"},
              {"文", "C:\\文.exe"}}),
        ElementsAre("žaba|C:\\Ручно\\žaba.exe", "b.b|C:\\b.b.exe", "ŽABA|C:\\ŽABA.exe", "文|C:\\文.exe"));
    EXPECT_FALSE(menu_[0].enabled);
    EXPECT_FALSE(menu_[0].visible);
    for (const int index : {1, 2, 3}) {
        EXPECT_TRUE(menu_[index].enabled) << index;
        EXPECT_TRUE(menu_[index].visible) << index;
    }
}

TEST_F(ProcessListWalkTest, PassesOverWhatNoTaskbarShows) {
    EXPECT_THAT(Walk({{kTool, "C:\\tool.exe"}, {"a", "C:\\a.exe"}, {kTool, "C:\\b.exe"}}),
                ElementsAre("a|C:\\a.exe"));
}

TEST_F(ProcessListWalkTest, TakesTheFirstProgramWhateverElementZeroIsCalled) {
    EXPECT_THAT(Walk({{"a", "C:\\Item1.exe"}, {"b", "D:\\Item1.exe"}, {"c", "C:\\c.exe"}}),
                ElementsAre("Item1|C:\\Item1.exe", "c|C:\\c.exe"));
}

TEST_F(ProcessListWalkTest, GivesThoseWhosePathIsNotFoundOneElementWithoutACaption) {
    EXPECT_THAT(Walk({{"a", "C:\\a.exe"}, {"b", ""}, {"c", ""}}), ElementsAre("a|C:\\a.exe", "|"));
}

TEST_F(ProcessListWalkTest, LeavesElementZeroAloneWhenNothingIsFound) {
    EXPECT_THAT(Walk({}), ElementsAre("Item1|"));
    EXPECT_THAT(Walk({{"", "C:\\a.exe"}, {"Quon", "C:\\Quon.exe"}}), ElementsAre("Item1|"));
}

TEST_F(ProcessListWalkTest, FindsNoPathOnAnUnknownPlatform) {
    const RecordedCall version = FAKE_CALL(GetVersionExA, [&](LPOSVERSIONINFOA record) -> BOOL {
        record->dwPlatformId = 0;
        return TRUE;
    });
    EXPECT_THAT(Walk({{"a", "C:\\a.exe"}, {"b", "C:\\b.exe"}}), ElementsAre("|"));
}

/// The true desktop with other programs on it.
class ProcessListDesktopTest : public ProcessListTest {
  protected:
    /// How many elements have this caption and tag.
    std::ptrdiff_t Count(const std::string& name, const std::string& path) const {
        const std::vector<std::string> elements = Elements(menu_);
        return std::count(elements.begin(), elements.end(), name + "|" + path);
    }
    ProgramFolder folder_;
};

TEST_F(ProcessListDesktopTest, ListsRunningProgramsTopmostFirstAndOnce) {
    const Neighbour below(folder_, "ispod č.exe", "the lower one");
    const Neighbour above(folder_, "изнад 文.exe", "the upper one");
    const TestWindow first("first", kVisible);
    const TestWindow second("second", kVisible);
    clsProcesi list(menu_, true, 0);
    list.Refresh();
    EXPECT_EQ(Count("изнад 文", above.Path()), 1);
    EXPECT_EQ(Count("ispod č", below.Path()), 1);
    const std::string own = win::ProgramPath();
    EXPECT_EQ(Count("quon_unit_tests", own), 1);
    const std::vector<testkit::Window> in_order = testkit::FindTopWindows({.visible_only = false});
    const auto found = [](const auto& all, const auto& what) {
        return std::find(all.begin(), all.end(), what) - all.begin();
    };
    const std::vector<std::string> elements = Elements(menu_);
    EXPECT_EQ(found(in_order, below.MainWindow()) < found(in_order, above.MainWindow()),
              found(elements, "ispod č|" + below.Path()) < found(elements, "изнад 文|" + above.Path()));
}

TEST_F(ProcessListDesktopTest, ListsAProgramWithAHiddenWindowOnlyWhenWanted) {
    const Neighbour neighbour(folder_, "skriven.exe", "hidden");
    ShowWindow(neighbour.MainWindow().Handle(), SW_HIDE);
    clsProcesi(menu_, true, 0).Refresh();
    EXPECT_EQ(Count("skriven", neighbour.Path()), 0);
    menu_ = win::MenuArray(2700, {{"Item1", {}}});
    clsProcesi(menu_, false, 0).Refresh();
    EXPECT_EQ(Count("skriven", neighbour.Path()), 1);
}

TEST_F(ProcessListDesktopTest, WaitsHalfASecondForEachQuestionToAProgramThatHangs) {
    const Neighbour neighbour(folder_, "visi.exe", "hanging");
    neighbour.Hang();
    clsProcesi list(menu_, true, 0);
    const ULONGLONG begin = GetTickCount64();
    list.AddWindow(neighbour.MainWindow().Handle());
    const ULONGLONG took = GetTickCount64() - begin;
    EXPECT_LE(took, 1500u) << "at most two waits of 500 ms, and the machine's own slowness";
    EXPECT_THAT(Elements(menu_), ElementsAre("Item1|"));
    EXPECT_THAT(list.Windows(), IsEmpty());
}

}  // namespace
