// The ledger sees one thing of each kind, and that it is given back; so does the heap's count.
#include "tests/leaks/ledger.h"

#include <tlhelp32.h>

#include "app/drop_target.h"
#include "res/resource.h"
#include "tests/leaks/heap_count.h"
#include "tests/support/data_object.h"
#include "win/com.h"
#include "win/process_start.h"

namespace leaks {
namespace {

using ::testing::ElementsAre, ::testing::IsEmpty, ::testing::Pair;

class LedgerTest : public testing::Test {
  protected:
    /// Something of the kind is held after it was made, and no longer after it was given back.
    template <class Make, class End>
    void Expect(const char* kind, Make make, End end) {
        const auto thing = make();
        EXPECT_THAT(ledger_.Held(), ElementsAre(Pair(kind, 1)));
        end(thing);
        EXPECT_THAT(ledger_.Held(), IsEmpty()) << kind;
    }

    testkit::HiddenWindow window_;
    const HMODULE module_ = GetModuleHandleW(nullptr);
    Ledger ledger_;
};

TEST_F(LedgerTest, SeesIconsAndMenus) {
    const auto destroy = [](HICON icon) { DestroyIcon(icon); };
    std::string program = win::ProgramPath();
    Expect("icon", [&] { return ExtractIconA(module_, program.c_str(), 0); }, destroy);
    program.resize(4 * MAX_PATH);
    Expect(
        "icon",
        [&] {
            WORD index = 0;
            return ExtractAssociatedIconA(module_, program.data(), &index);
        },
        destroy);
    Expect(
        "icon",
        [&] {
            SHFILEINFOA info{};
            SHGetFileInfoA("C:\\", 0, &info, sizeof info, SHGFI_ICON | SHGFI_LARGEICON);
            return info.hIcon;
        },
        destroy);
    Expect("icon", [&] { return CopyIcon(LoadIconW(nullptr, MAKEINTRESOURCEW(32512))); }, destroy);
    Expect(
        "icon",
        [&] {
            return static_cast<HICON>(LoadImageW(module_, MAKEINTRESOURCEW(IDI_QUON), IMAGE_ICON, 20, 20, 0));
        },
        destroy);
    Expect("menu", [] { return CreatePopupMenu(); }, [](HMENU menu) { DestroyMenu(menu); });
}

TEST_F(LedgerTest, SeesDrawingObjects) {
    const auto destroy = [](HGDIOBJ object) { DeleteObject(object); };
    Expect(
        "font",
        [] {
            const LOGFONTW font{};
            return CreateFontIndirectW(&font);
        },
        destroy);
    Expect("brush", [] { return CreateSolidBrush(RGB(1, 2, 3)); }, destroy);
    Expect("pen", [] { return CreatePen(PS_SOLID, 1, 0); }, destroy);
    Expect("region", [] { return CreateRectRgn(0, 0, 1, 1); }, destroy);
    const RECT place{0, 0, 2, 2};
    Expect(
        "region", [&] { return CreateRectRgnIndirect(&place); },
        [&](HRGN region) { SetWindowRgn(window_.Handle(), region, FALSE); });
    const HDC screen = GetDC(nullptr);
    const HBITMAP bitmap = CreateCompatibleBitmap(screen, 4, 4);
    EXPECT_THAT(ledger_.Held(), ElementsAre(Pair("bitmap", 1), Pair("window's device context", 1)));
    ReleaseDC(nullptr, screen);
    DeleteObject(bitmap);
    EXPECT_THAT(ledger_.Held(), IsEmpty());
}

TEST_F(LedgerTest, SeesDeviceContexts) {
    Expect("memory device context", [] { return CreateCompatibleDC(nullptr); }, [](HDC dc) { DeleteDC(dc); });
    Expect(
        "window's device context", [&] { return GetDC(window_.Handle()); },
        [&](HDC dc) { ReleaseDC(window_.Handle(), dc); });
    PAINTSTRUCT paint{};
    Expect(
        "paint", [&] { return BeginPaint(window_.Handle(), &paint); },
        [&](HDC) { EndPaint(window_.Handle(), &paint); });
}

TEST_F(LedgerTest, SeesADrawingObjectDeletedWhileItIsSelected) {
    for (const bool former : {true, false}) {
        const HDC dc = CreateCompatibleDC(nullptr);
        const HBRUSH brush = CreateSolidBrush(RGB(1, 2, 3));
        const HGDIOBJ before = SelectObject(dc, brush);
        if (former) SelectObject(dc, before);
        DeleteObject(brush);
        DeleteDC(dc);
        const Ledger::Counts counts = ledger_.Held();
        EXPECT_EQ(counts.contains("drawing object deleted while selected"), !former);
    }
}

TEST_F(LedgerTest, SeesWhatIsGivenBackTwice) {
    const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, 8);
    GlobalLock(memory);
    GlobalUnlock(memory);
    GlobalUnlock(memory);
    GlobalFree(memory);
    EXPECT_THAT(ledger_.Held(), ElementsAre(Pair("lock on global memory of nobody's given back", 1)));
}

TEST_F(LedgerTest, SeesKernelObjectsSearchesAndKeys) {
    const auto close = [](HANDLE handle) { CloseHandle(handle); };
    Expect(
        "process", [] { return OpenProcess(PROCESS_QUERY_INFORMATION, FALSE, GetCurrentProcessId()); },
        close);
    Expect("snapshot", [] { return CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0); }, close);
    const testkit::ProgramFolder folder;
    const std::string path = folder.FullPath("a.txt");
    Expect(
        "file",
        [&] { return CreateFileA(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr); },
        close);
    Expect(
        "file search",
        [&] {
            WIN32_FIND_DATAA found{};
            return FindFirstFileA(path.c_str(), &found);
        },
        [](HANDLE search) { FindClose(search); });
    Expect(
        "registry key",
        [] {
            HKEY key = nullptr;
            RegOpenKeyExA(HKEY_LOCAL_MACHINE, "Software", 0, KEY_READ, &key);
            return key;
        },
        [](HKEY key) { RegCloseKey(key); });
}

LRESULT CALLBACK Unchanged(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR, DWORD_PTR) {
    return DefSubclassProc(window, message, wParam, lParam);
}

void CALLBACK Ignore(HWINEVENTHOOK, DWORD, HWND, LONG, LONG, DWORD, DWORD) {}

LRESULT CALLBACK PassOn(int code, WPARAM wParam, LPARAM lParam) {
    return CallNextHookEx(nullptr, code, wParam, lParam);
}

TEST_F(LedgerTest, SeesTimersSubclassesAndHooks) {
    const HWND window = window_.Handle();
    Expect(
        "timer", [&] { return SetTimer(window, 7, 1000, nullptr) + SetTimer(window, 7, 2000, nullptr); },
        [&](UINT_PTR) { KillTimer(window, 7); });
    Expect(
        "timer", [] { return SetTimer(nullptr, 0, 1000, nullptr); },
        [](UINT_PTR id) { KillTimer(nullptr, id); });
    Expect(
        "subclass", [&] { return SetWindowSubclass(window, &Unchanged, 3, 0); },
        [&](BOOL) { RemoveWindowSubclass(window, &Unchanged, 3); });
    Expect(
        "hook", [] { return SetWindowsHookExW(WH_GETMESSAGE, &PassOn, nullptr, GetCurrentThreadId()); },
        [](HHOOK hook) { UnhookWindowsHookEx(hook); });
    Expect(
        "event hook",
        [] {
            return SetWinEventHook(EVENT_SYSTEM_FOREGROUND, EVENT_SYSTEM_FOREGROUND, nullptr, &Ignore, 0, 0,
                                   WINEVENT_OUTOFCONTEXT);
        },
        [](HWINEVENTHOOK hook) { UnhookWinEvent(hook); });
    SetTimer(window, 8, 1000, nullptr);
    window_.Destroy();
    EXPECT_THAT(ledger_.Held(), IsEmpty()) << "a window takes its timers along";
}

TEST_F(LedgerTest, SeesMemory) {
    Expect(
        "global memory", [] { return GlobalAlloc(GMEM_MOVEABLE, 8); },
        [](HGLOBAL memory) { GlobalFree(memory); });
    Expect(
        "global memory",
        [] {
            testkit::DataObject data;
            data.OfferText("text");
            FORMATETC format{CF_UNICODETEXT, nullptr, DVASPECT_CONTENT, -1, TYMED_HGLOBAL};
            STGMEDIUM medium{};
            data.GetData(&format, &medium);
            return medium;
        },
        [](STGMEDIUM medium) { ReleaseStgMedium(&medium); });
    const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, 8);
    GlobalLock(memory);
    EXPECT_THAT(ledger_.Held(), ElementsAre(Pair("global memory", 1), Pair("lock on global memory", 1)));
    GlobalUnlock(memory);
    GlobalFree(memory);
    const auto release = [](LPVOID bytes) { CoTaskMemFree(bytes); };
    Expect("shell memory", [] { return CoTaskMemAlloc(8); }, release);
    Expect(
        "shell memory",
        [] {
            LPITEMIDLIST list = nullptr;
            SHGetSpecialFolderLocation(nullptr, CSIDL_DESKTOP, &list);
            return list;
        },
        release);
    Expect(
        "automation text", [] { return SysAllocStringLen(L"abc", 3); },
        [](BSTR text) {
            VARIANT value{};
            value.vt = VT_BSTR;
            value.bstrVal = text;
            VariantClear(&value);
        });
}

TEST_F(LedgerTest, SeesOleDropTargetsAndObjects) {
    Expect("OLE", [] { return OleInitialize(nullptr); }, [](HRESULT) { OleUninitialize(); });
    const win::OleThread ole;
    CLSID scriptShell{};
    ASSERT_EQ(CLSIDFromProgID(L"WScript.Shell", &scriptShell), S_OK);
    Ledger::Counts none = ledger_.Held();
    IDispatch* object = nullptr;
    CoCreateInstance(scriptShell, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch,
                     reinterpret_cast<void**>(&object));
    {
        win::Variant path(L"C:\\a.lnk");
        win::Variant link;
        win::InvokeByName(object, L"CreateShortcut", DISPATCH_METHOD, &path, link);
        EXPECT_EQ(ledger_.Held()["automation object"], 2);
    }
    EXPECT_EQ(ledger_.Held()["automation object"], 1);
    object->Release();
    EXPECT_EQ(ledger_.Held(), none);
    {
        app::DropTarget target;
        target.Register(window_.Handle(), [](const sys::DroppedData&) {});
        EXPECT_EQ(ledger_.Held()["drop target"], 1);
        RevokeDragDrop(window_.Handle());
        EXPECT_FALSE(ledger_.Held().contains("drop target"));
    }
    IUnknown* link = nullptr;
    CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_IUnknown,
                     reinterpret_cast<void**>(&link));
    EXPECT_EQ(ledger_.Held()["COM object"], 1) << "there is a reference beside the ledger's own";
    link->Release();
}

TEST(HeapCountTest, CountsBlocksAndBytes) {
    const HeapCount before = CountHeap();
    auto block = std::make_unique<std::string>(1000, 'x');
    const HeapCount with = CountHeap();
    EXPECT_EQ(with.blocks - before.blocks, 2u);
    EXPECT_GE(with.bytes - before.bytes, 1000 + sizeof(std::string));
    block.reset();
    EXPECT_EQ(CountHeap().blocks, before.blocks);
    EXPECT_EQ(CountHeap().bytes, before.bytes);
}

}  // namespace
}  // namespace leaks
