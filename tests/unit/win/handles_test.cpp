#include "win/handles.h"

#include <type_traits>

#include "tests/support/unit_test.h"

namespace win {
namespace {

using ::testing::ElementsAre;
using testkit::CallLog, testkit::RecordedCall;

std::vector<int>& Closed() {
    static std::vector<int> closed;
    return closed;
}

struct NumberTraits {
    using Value = int;
    static Value Invalid() noexcept { return -1; }
    static void Close(Value value) noexcept { Closed().push_back(value); }
};
using NumberHandle = Handle<NumberTraits>;

template <class Value>
Value Fake(INT_PTR number) {
    return reinterpret_cast<Value>(number);
}

template <class Owner>
void OwnBriefly(INT_PTR number) {
    const Owner owner(Fake<typename Owner::Value>(number));
}

class HandlesTest : public ::testing::Test {
  protected:
    HandlesTest() { Closed().clear(); }
};

TEST_F(HandlesTest, AreGivenBackOnceAtTheEnd) {
    {
        const NumberHandle handle(7);
        EXPECT_EQ(handle.Get(), 7);
        EXPECT_TRUE(handle);
        EXPECT_THAT(Closed(), ElementsAre());
    }
    EXPECT_THAT(Closed(), ElementsAre(7));
}

TEST_F(HandlesTest, ThatAreNoneAreNotGivenBack) {
    {
        const NumberHandle none;
        const NumberHandle invalid(-1);
        EXPECT_FALSE(none);
        EXPECT_FALSE(invalid);
        EXPECT_TRUE(NumberHandle(0));
    }
    EXPECT_THAT(Closed(), ElementsAre(0));
}

TEST_F(HandlesTest, MoveAndNeverCopy) {
    EXPECT_FALSE(std::is_copy_constructible_v<NumberHandle>);
    EXPECT_FALSE(std::is_copy_assignable_v<NumberHandle>);
    {
        NumberHandle first(1);
        NumberHandle second(std::move(first));
        EXPECT_FALSE(first);  // NOLINT(bugprone-use-after-move): the very question
        EXPECT_EQ(second.Get(), 1);
        NumberHandle third(3);
        third = std::move(second);
        EXPECT_THAT(Closed(), ElementsAre(3));
        EXPECT_EQ(third.Get(), 1);
    }
    EXPECT_THAT(Closed(), ElementsAre(3, 1));
}

TEST_F(HandlesTest, AreExchangedByAReset) {
    NumberHandle handle(1);
    handle.Reset(2);
    EXPECT_THAT(Closed(), ElementsAre(1));
    handle.Reset(2);
    EXPECT_EQ(handle.Get(), 2);
    EXPECT_THAT(Closed(), ElementsAre(1));
    handle.Reset();
    handle.Reset();
    EXPECT_FALSE(handle);
    EXPECT_THAT(Closed(), ElementsAre(1, 2));
}

TEST_F(HandlesTest, ThatAreReleasedBelongToTheCaller) {
    {
        NumberHandle handle(4);
        EXPECT_EQ(handle.Release(), 4);
        EXPECT_FALSE(handle);
    }
    EXPECT_THAT(Closed(), ElementsAre());
}

TEST_F(HandlesTest, GoBackToTheFunctionOfTheirKind) {
    CallLog log;
    std::vector<RecordedCall> calls;
    calls.push_back(STUB_CALL(log, DestroyIcon, TRUE));
    calls.push_back(STUB_CALL(log, DestroyMenu, TRUE));
    calls.push_back(STUB_CALL(log, DeleteDC, TRUE));
    calls.push_back(STUB_CALL(log, DeleteObject, TRUE));
    calls.push_back(STUB_CALL(log, CloseHandle, TRUE));
    calls.push_back(STUB_CALL(log, RegCloseKey, ERROR_SUCCESS));
    calls.push_back(STUB_CALL(log, FindClose, TRUE));
    OwnBriefly<Icon>(16);
    OwnBriefly<Menu>(17);
    OwnBriefly<MemoryDc>(18);
    OwnBriefly<Bitmap>(19);
    OwnBriefly<Brush>(20);
    OwnBriefly<Font>(21);
    OwnBriefly<KernelObject>(22);
    OwnBriefly<RegistryKey>(23);
    OwnBriefly<File>(24);
    OwnBriefly<FindFiles>(25);
    const std::vector<std::string> lines = log.Lines();
    calls.clear();
    EXPECT_THAT(lines,
                ElementsAre("DestroyIcon 0x10", "DestroyMenu 0x11", "DeleteDC 0x12", "DeleteObject 0x13",
                            "DeleteObject 0x14", "DeleteObject 0x15", "CloseHandle 0x16", "RegCloseKey 0x17",
                            "CloseHandle 0x18", "FindClose 0x19"));
}

TEST_F(HandlesTest, OfFilesThatDidNotOpenAreNone) {
    EXPECT_FALSE(File(INVALID_HANDLE_VALUE));
    EXPECT_FALSE(FindFiles(INVALID_HANDLE_VALUE));
    EXPECT_FALSE(File());
    EXPECT_FALSE(KernelObject());
    EXPECT_FALSE(Icon(nullptr));
}

TEST_F(HandlesTest, ASelectionPutsTheFormerObjectBack) {
    const MemoryDc dc(CreateCompatibleDC(nullptr));
    const HGDIOBJ former = GetCurrentObject(dc.Get(), OBJ_BRUSH);
    const Brush brush(CreateSolidBrush(RGB(1, 2, 3)));
    {
        const Selection selected(dc.Get(), brush.Get());
        EXPECT_EQ(GetCurrentObject(dc.Get(), OBJ_BRUSH), brush.Get());
    }
    EXPECT_EQ(GetCurrentObject(dc.Get(), OBJ_BRUSH), former);
}

TEST_F(HandlesTest, AWindowsDcIsReleased) {
    const testkit::HiddenWindow window;
    CallLog log;
    const RecordedCall release = LOG_CALL(log, ReleaseDC);
    HDC given = nullptr;
    {
        const WindowDc dc(window.Handle());
        given = dc.Get();
        EXPECT_NE(given, nullptr);
    }
    EXPECT_THAT(log.Lines(), ElementsAre("ReleaseDC " + testkit::LoggedText(window.Handle()) + " " +
                                         testkit::LoggedText(given)));
}

TEST_F(HandlesTest, APaintingIsEnded) {
    const testkit::HiddenWindow window;
    CallLog log;
    const RecordedCall begin = FAKE_CALL(BeginPaint, [&](HWND on, LPPAINTSTRUCT record) {
        log.Add("begin", on);
        record->hdc = Fake<HDC>(32);
        return record->hdc;
    });
    const RecordedCall end = FAKE_CALL(EndPaint, [&](HWND on, const PAINTSTRUCT* record) -> WINBOOL {
        log.Add("end", on, record->hdc);
        return TRUE;
    });
    {
        const Paint paint(window.Handle());
        EXPECT_EQ(paint.Dc(), Fake<HDC>(32));
    }
    const std::string handle = testkit::LoggedText(window.Handle());
    EXPECT_THAT(log.Lines(), ElementsAre("begin " + handle, "end " + handle + " 0x20"));
}

TEST_F(HandlesTest, TheHourglassPutsThePointerBack) {
    std::vector<HCURSOR> pointers;
    const RecordedCall set = FAKE_CALL(SetCursor, [&](HCURSOR pointer) {
        pointers.push_back(pointer);
        return Fake<HCURSOR>(48);
    });
    {
        const Hourglass hourglass;
        EXPECT_THAT(pointers, ElementsAre(LoadCursor(nullptr, IDC_WAIT)));
    }
    EXPECT_EQ(pointers.back(), Fake<HCURSOR>(48));
    EXPECT_EQ(pointers.size(), 2U);
}

}  // namespace
}  // namespace win
