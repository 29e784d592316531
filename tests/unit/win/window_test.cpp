#include "win/window.h"

#include "tests/support/unit_test.h"
#include "win/errors.h"
#include "win/handles.h"

namespace win {
namespace {

using ::testing::ElementsAre;

constexpr UINT kQuestion = WM_APP + 7;

class ProbeWindow : public Window {
  public:
    explicit ProbeWindow(const wchar_t* className = L"QuonProbe") : className_(className) {}

    void CreateIt(const std::string& text = "", HWND parent = nullptr) {
        WindowOptions options;
        options.className = className_;
        options.text = text;
        options.style = parent == nullptr ? WS_POPUP : WS_CHILD;
        options.place = {20, 30, 140, 80};
        options.parent = parent;
        options.id = parent == nullptr ? 0 : 77;
        Create(options);
    }

    std::function<std::optional<LRESULT>(UINT, WPARAM, LPARAM)> onMessage;
    std::vector<UINT> seen;

  protected:
    std::optional<LRESULT> OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override {
        seen.push_back(message);
        return onMessage ? onMessage(message, wParam, lParam) : std::nullopt;
    }

  private:
    const wchar_t* className_;
};

std::vector<std::string>& Reports() {
    static std::vector<std::string> reports;
    return reports;
}

class WindowTest : public ::testing::Test {
  protected:
    WindowTest() {
        Reports().clear();
        SetErrorReporter([](HWND, const char* message) noexcept { Reports().emplace_back(message); });
    }
    ~WindowTest() override { SetErrorReporter(nullptr); }
};

TEST_F(WindowTest, IsCreatedWithItsOptions) {
    ProbeWindow parent;
    EXPECT_EQ(parent.Handle(), nullptr);
    parent.CreateIt("Наслов č 文");
    const testkit::Window window(parent.Handle());
    EXPECT_EQ(window.Class(), "QuonProbe");
    EXPECT_EQ(window.Text(), "Наслов č 文");
    EXPECT_EQ(window.Rect().left, 20);
    EXPECT_EQ(window.Rect().bottom, 80);
    EXPECT_EQ(parent.ClientRect().right, 120);
    EXPECT_EQ(parent.ClientRect().bottom, 50);
    ProbeWindow child;
    child.CreateIt("", parent.Handle());
    EXPECT_EQ(testkit::Window(child.Handle()).Id(), 77);
    EXPECT_EQ(testkit::Window(child.Handle()).Parent(), window);
}

TEST_F(WindowTest, SeesItsMessagesFromTheFirstOn) {
    ProbeWindow probe;
    HWND early = nullptr;
    probe.onMessage = [&](UINT message, WPARAM, LPARAM) -> std::optional<LRESULT> {
        if (message == WM_NCCREATE) early = probe.Handle();
        return std::nullopt;
    };
    probe.CreateIt();
    EXPECT_EQ(probe.seen.front(), UINT{WM_NCCREATE});
    EXPECT_EQ(early, probe.Handle());
}

TEST_F(WindowTest, AnswersWhatItsHandlerAnswers) {
    ProbeWindow probe;
    probe.onMessage = [](UINT message, WPARAM wParam, LPARAM lParam) -> std::optional<LRESULT> {
        if (message != kQuestion) return std::nullopt;
        return static_cast<LRESULT>(wParam) * 100 + lParam;
    };
    probe.CreateIt();
    EXPECT_EQ(SendMessageW(probe.Handle(), kQuestion, 4, 2), 402);
    // A handler that gives no value gets Windows' own handling: the text is kept.
    SetWindowTextW(probe.Handle(), L"new");
    EXPECT_EQ(testkit::Window(probe.Handle()).Text(), "new");
}

TEST_F(WindowTest, LetsNoExceptionOut) {
    ProbeWindow probe;
    probe.CreateIt("before");
    probe.onMessage = [](UINT message, WPARAM, LPARAM) -> std::optional<LRESULT> {
        if (message == kQuestion) throw OverflowError("Поље 7");
        if (message == WM_SETTEXT) throw 7;
        return std::nullopt;
    };
    EXPECT_EQ(SendMessageW(probe.Handle(), kQuestion, 0, 0), 0);
    // The default handling must not run after a handler that failed half-way.
    SetWindowTextW(probe.Handle(), L"after");
    EXPECT_EQ(testkit::Window(probe.Handle()).Text(), "before");
    EXPECT_THAT(Reports(), ElementsAre("Поље 7", "Unknown error"));
    EXPECT_TRUE(IsWindow(probe.Handle()));
}

TEST_F(WindowTest, GoesWithItsObject) {
    HWND handle = nullptr;
    {
        ProbeWindow probe;
        probe.CreateIt();
        handle = probe.Handle();
    }
    EXPECT_FALSE(IsWindow(handle));
}

TEST_F(WindowTest, IsUnboundWhenItIsDestroyed) {
    ProbeWindow parent;
    parent.CreateIt();
    ProbeWindow child;
    child.CreateIt("", parent.Handle());
    parent.Destroy();
    EXPECT_EQ(parent.Handle(), nullptr);
    EXPECT_EQ(child.Handle(), nullptr);
    EXPECT_THAT(child.seen, ::testing::Not(::testing::Contains(UINT{WM_NCDESTROY})));
    child.Destroy();
    parent.Destroy();
}

TEST_F(WindowTest, HandlesNothingMoreWhileItsObjectGoes) {
    std::vector<UINT> late;
    auto probe = std::make_unique<ProbeWindow>();
    probe->CreateIt();
    probe->onMessage = [&](UINT message, WPARAM, LPARAM) -> std::optional<LRESULT> {
        late.push_back(message);
        return std::nullopt;
    };
    probe.reset();
    EXPECT_THAT(late, ElementsAre());
}

TEST_F(WindowTest, ThatCannotBeMadeIsAnErrorNamingItsClass) {
    const testkit::RecordedCall create = FAKE_CALL(CreateWindowExW, [](auto...) { return HWND{}; });
    ProbeWindow probe;
    try {
        probe.CreateIt();
        FAIL() << "no error";
    } catch (const RuntimeError& error) {
        EXPECT_THAT(error.what(), ::testing::HasSubstr("QuonProbe"));
    }
}

TEST_F(WindowTest, RegistersItsClassOnce) {
    int registered = 0;
    const testkit::RecordedCall call =
        WATCH_CALL(RegisterClassExW, [&](const WNDCLASSEXW*) { ++registered; });
    ProbeWindow first(L"QuonProbeOnce");
    ProbeWindow second(L"QuonProbeOnce");
    first.CreateIt();
    second.CreateIt();
    EXPECT_EQ(registered, 1);
}

TEST_F(WindowTest, ShowsTheHourglassWhereverThePointerMovesWhileThereIsOne) {
    ProbeWindow probe;
    probe.CreateIt();
    // A control asks its parent before it sets a pointer of its own.
    const HWND edit = CreateWindowExW(0, L"EDIT", L"", WS_CHILD, 0, 0, 20, 20, probe.Handle(), nullptr,
                                      ModuleInstance(), nullptr);
    const LPARAM where = MAKELPARAM(HTCLIENT, WM_MOUSEMOVE);
    const auto ask = [&](HWND window) {
        SetCursor(LoadCursor(nullptr, IDC_ARROW));
        SendMessageW(window, WM_SETCURSOR, reinterpret_cast<WPARAM>(window), where);
        return GetCursor();
    };
    {
        const Hourglass outer;
        {
            const Hourglass inner;
            EXPECT_EQ(ask(probe.Handle()), LoadCursor(nullptr, IDC_WAIT));
        }
        EXPECT_TRUE(Hourglass::IsShown());
        EXPECT_EQ(ask(edit), LoadCursor(nullptr, IDC_WAIT));
    }
    EXPECT_FALSE(Hourglass::IsShown());
    EXPECT_EQ(ask(probe.Handle()), LoadCursor(nullptr, IDC_ARROW));
    EXPECT_EQ(ask(edit), LoadCursor(nullptr, IDC_IBEAM));
}

TEST_F(WindowTest, HandlersAreCountedInsideOneAnother) {
    ProbeWindow probe;
    probe.CreateIt();
    std::vector<int> depths;
    probe.onMessage = [&](UINT message, WPARAM wParam, LPARAM) -> std::optional<LRESULT> {
        if (message != kQuestion) return std::nullopt;
        depths.push_back(HandlerDepth());
        if (wParam > 0) SendMessageW(probe.Handle(), kQuestion, wParam - 1, 0);
        if (wParam == 0) throw RuntimeError("leaves as well");
        return 0;
    };
    SendMessageW(probe.Handle(), kQuestion, 2, 0);
    EXPECT_THAT(depths, ElementsAre(1, 2, 3));
    EXPECT_EQ(HandlerDepth(), 0);
    depths.clear();
    PostMessageW(probe.Handle(), kQuestion, 0, 0);
    ProcessPendingMessages([&](const MSG&) {
        SendMessageW(probe.Handle(), kQuestion, 0, 0);
        return false;
    });
    // In the filter, which counts, and afterwards by the loop.
    EXPECT_THAT(depths, ElementsAre(2, 1));
}

TEST_F(WindowTest, WaitingMessagesAreHandled) {
    ProbeWindow probe;
    probe.CreateIt();
    int count = 0;
    probe.onMessage = [&](UINT message, WPARAM, LPARAM) -> std::optional<LRESULT> {
        if (message == kQuestion) ++count;
        return std::nullopt;
    };
    PostMessageW(probe.Handle(), kQuestion, 0, 0);
    PostMessageW(probe.Handle(), kQuestion, 0, 0);
    EXPECT_TRUE(ProcessPendingMessages());
    EXPECT_EQ(count, 2);
}

TEST_F(WindowTest, AFilterTakesMessagesBeforeTheyAreDispatched) {
    ProbeWindow probe;
    probe.CreateIt();
    std::vector<WPARAM> handled;
    probe.onMessage = [&](UINT message, WPARAM wParam, LPARAM) -> std::optional<LRESULT> {
        if (message == kQuestion) handled.push_back(wParam);
        return std::nullopt;
    };
    for (const WPARAM number : {1, 2, 3})
        PostMessageW(probe.Handle(), kQuestion, number, 0);
    EXPECT_TRUE(ProcessPendingMessages([](const MSG& message) {
        if (message.wParam == 3) throw RuntimeError("Филтар");
        return message.message == kQuestion && message.wParam == 2;
    }));
    // A message whose filter fails counts as used.
    EXPECT_THAT(handled, ElementsAre(1U));
    EXPECT_THAT(Reports(), ElementsAre("Филтар"));
}

TEST_F(WindowTest, IsPutAboveAllOthersAndBackWithoutBeingMovedOrActivated) {
    testkit::CallLog log;
    const testkit::RecordedCall place = FAKE_CALL(
        SetWindowPos, [&](HWND, HWND after, int x, int y, int width, int height, UINT flags) -> WINBOOL {
            log.Add(after == HWND_TOPMOST     ? "topmost"
                    : after == HWND_NOTOPMOST ? "not"
                                              : "?",
                    x, y, width, height, flags);
            return TRUE;
        });
    SetTopmost(true, nullptr);
    SetTopmost(false, nullptr);
    EXPECT_THAT(log.Lines(), ElementsAre("topmost 0 0 0 0 19", "not 0 0 0 0 19"));
}

TEST_F(WindowTest, ThePointerIsWhereTheSystemSaysItIs) {
    const testkit::RecordedCall cursor = FAKE_CALL(GetCursorPos, [](LPPOINT at) -> WINBOOL {
        *at = {-7, 1500};
        return TRUE;
    });
    EXPECT_EQ(PointerPlace().x, -7);
    EXPECT_EQ(PointerPlace().y, 1500);
}

TEST_F(WindowTest, TheEndOfTheProgramIsPassedOn) {
    PostQuitMessage(5);
    EXPECT_FALSE(ProcessPendingMessages());
    MSG message{};
    ASSERT_TRUE(PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE));
    EXPECT_EQ(message.wParam, 5U);
    EXPECT_TRUE(ProcessPendingMessages());
}

TEST_F(WindowTest, AHolesRegionsAreGivenBackUnlessTheWindowTakesOne) {
    ProbeWindow probe;
    probe.CreateIt();
    int deleted = 0;
    const testkit::RecordedCall remove = WATCH_CALL(DeleteObject, [&](HGDIOBJ) { ++deleted; });
    CutHole(probe.Handle(), {1, 2, 30, 40});
    EXPECT_EQ(deleted, 1);
    RECT box{};
    EXPECT_EQ(GetWindowRgnBox(probe.Handle(), &box), COMPLEXREGION);
    CutHole(nullptr, {1, 2, 30, 40});
    EXPECT_EQ(deleted, 3);
}

}  // namespace
}  // namespace win
