// quon_test_drag_source.exe: see drag_source.h.
#include <windows.h>

#include <ole2.h>
#include <shellapi.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "tests/support/data_object.h"
#include "tests/support/drag_source/protocol.h"

namespace testkit::drag_source {
namespace {

std::wstring g_offer_path;

class DropSource : public IDropSource {
  public:
    virtual ~DropSource() = default;
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
        const bool known = IsEqualIID(id, IID_IUnknown) || IsEqualIID(id, IID_IDropSource);
        *object = known ? this : nullptr;
        return known ? S_OK : E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return 1; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }
    HRESULT STDMETHODCALLTYPE QueryContinueDrag(BOOL escape, DWORD keys) override {
        if (escape) return DRAGDROP_S_CANCEL;
        return (keys & MK_LBUTTON) != 0 ? S_OK : DRAGDROP_S_DROP;
    }
    HRESULT STDMETHODCALLTYPE GiveFeedback(DWORD) override { return DRAGDROP_S_USEDEFAULTCURSORS; }
};

/// Fills the object from the offer's file; returns the allowed effects.
DWORD ReadOffer(DataObject& object) {
    std::ifstream file(std::filesystem::path(g_offer_path), std::ios::binary);
    std::string line;
    std::getline(file, line);
    const DWORD effects = std::stoul(line);
    std::vector<std::string> files;
    bool any = false;
    while (std::getline(file, line)) {
        if (line.starts_with("file ")) files.push_back(line.substr(5));
        if (line != "text") continue;
        std::ostringstream text;
        text << file.rdbuf();
        object.OfferText(text.str());
        any = true;
    }
    if (!files.empty()) object.OfferFiles(files);
    if (files.empty() && !any)
        object.Offer(static_cast<CLIPFORMAT>(RegisterClipboardFormatW(L"Quon test: nothing to drop")), "x");
    return effects;
}

void Drag(HWND window) {
    DataObject object;
    DropSource source;
    const DWORD allowed = ReadOffer(object);
    SetWindowTextW(window, kDragging);
    DWORD effect = DROPEFFECT_NONE;
    const HRESULT result = DoDragDrop(&object, &source, allowed, &effect);
    if (result != DRAGDROP_S_DROP) effect = DROPEFFECT_NONE;
    SetWindowTextW(window, (kDropped + std::to_wstring(effect)).c_str());
}

LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    switch (message) {
        case WM_LBUTTONDOWN: Drag(window); return 0;
        case WM_DESTROY: PostQuitMessage(0); return 0;
        default: return DefWindowProcW(window, message, wparam, lparam);
    }
}

}  // namespace
}  // namespace testkit::drag_source

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE, PWSTR, int) {
    using namespace testkit::drag_source;  // NOLINT(google-build-using-namespace)
    int count = 0;
    PWSTR* arguments = CommandLineToArgvW(GetCommandLineW(), &count);
    if (count < 2) return 1;
    g_offer_path = arguments[1];
    if (FAILED(OleInitialize(nullptr))) return 1;
    WNDCLASSW record = {};
    record.lpfnWndProc = &Procedure;
    record.hInstance = instance;
    record.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_HIGHLIGHT + 1);
    record.hCursor = LoadCursor(nullptr, IDC_ARROW);
    record.lpszClassName = kClass;
    RegisterClassW(&record);
    CreateWindowExW(WS_EX_TOPMOST | WS_EX_NOACTIVATE, kClass, kWaiting, WS_POPUP | WS_VISIBLE, 40, 560, 120,
                    100, nullptr, nullptr, instance, nullptr);
    MSG message = {};
    while (GetMessageW(&message, nullptr, 0, 0) > 0)
        DispatchMessageW(&message);
    OleUninitialize();
    return 0;
}
