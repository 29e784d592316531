#include "bench/bare_panel.h"

#include <shellapi.h>
#include <shlwapi.h>

#include <stdexcept>

#include "app/button_panel.h"
#include "app/panel_layout.h"
#include "win/text.h"
#include "win/window.h"

namespace bench {
namespace {

constexpr const wchar_t* kClass = L"QuonBenchBox";

}  // namespace

BarePanel::BarePanel(HWND parent, const Scene& scene) : ini_(scene.Folder().IniPath()) {
    namespace layout = app::layout;
    WNDCLASSW record{};
    record.lpfnWndProc = OnMessage;
    record.hInstance = win::ModuleInstance();
    record.lpszClassName = kClass;
    RegisterClassW(&record);
    for (int index = 0; index < static_cast<int>(headers_.size()); ++index)
        Create(headers_.at(static_cast<size_t>(index)), parent,
               layout::At(layout::kMargin + index * layout::kHeaderWidth, layout::kHeaderTop,
                          layout::kHeaderWidth, layout::kHeaderHeight));
    for (size_t index = 0; index < boxes_.size(); ++index) {
        RECT place = app::ButtonPanel::ButtonPlace(static_cast<int>(index) + 1);
        OffsetRect(&place, 0, layout::kContainerTop);
        Create(boxes_.at(index), parent, place);
        for (int tab = 1; tab <= 2; ++tab) {
            const std::string& name = scene.Tab(tab).at(index).name;
            records_.at(static_cast<size_t>(tab) - 1).at(index) = {name, win::ToWide(name)};
        }
    }
}

BarePanel::~BarePanel() {
    for (const Box& box : boxes_)
        DestroyIcon(box.icon);
}

void BarePanel::Create(Box& box, HWND parent, RECT place) {
    const int width = place.right - place.left;
    const int height = place.bottom - place.top;
    box.window = CreateWindowExW(0, kClass, L"", WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS, place.left,
                                 place.top, width, height, parent, nullptr, win::ModuleInstance(), nullptr);
    const win::WindowDc screen(nullptr);
    box.dc.Reset(CreateCompatibleDC(screen.Get()));
    box.bitmap.Reset(CreateCompatibleBitmap(screen.Get(), width, height));
    SelectObject(box.dc.Get(), box.bitmap.Get());
    SelectObject(box.dc.Get(), win::MessageFont());
    SetBkMode(box.dc.Get(), TRANSPARENT);
    SetTextColor(box.dc.Get(), GetSysColor(COLOR_BTNTEXT));
    SetWindowLongPtrW(box.window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(box.dc.Get()));
}

LRESULT CALLBACK BarePanel::OnMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
    if (message == WM_ERASEBKGND) return 1;
    if (message != WM_PAINT) return DefWindowProcW(window, message, wParam, lParam);
    PAINTSTRUCT paint{};
    const HDC dc = BeginPaint(window, &paint);
    BitBlt(dc, 0, 0, app::layout::kButtonWidth, app::layout::kButtonHeight,
           reinterpret_cast<HDC>(GetWindowLongPtrW(window, GWLP_USERDATA)), 0, 0, SRCCOPY);
    EndPaint(window, &paint);
    return 0;
}

void BarePanel::Show(int tab) {
    InvalidateRect(headers_[0].window, nullptr, FALSE);
    InvalidateRect(headers_[1].window, nullptr, FALSE);
    const auto& records = records_.at(static_cast<size_t>(tab) - 1);
    for (size_t index = 0; index < boxes_.size(); ++index)
        ShowButton(boxes_.at(index), records.at(index));
}

void BarePanel::ShowButton(Box& box, const Record& record) const {
    const HCURSOR former = SetCursor(LoadCursor(nullptr, IDC_WAIT));
    char target[1000]{};
    GetPrivateProfileStringA("Cuts", record.name.c_str(), "", target, 555, ini_.c_str());
    char switchText[1000]{};
    const DWORD switchLength =
        GetPrivateProfileStringA("Switch", record.name.c_str(), "", switchText, 555, ini_.c_str());
    if (PathFileExistsA(target) == 0 || PathIsDirectoryA(target) != 0)
        throw std::runtime_error(std::string(target) + " is no file");
    ReadFileDetails(target);

    const HDC dc = box.dc.Get();
    const RECT all{0, 0, app::layout::kButtonWidth, app::layout::kButtonHeight};
    FillRect(dc, &all, GetSysColorBrush(COLOR_BTNFACE));
    if (PathIsURLA(target) != 0) throw std::runtime_error(std::string(target) + " is no file");
    char program[4 * MAX_PATH]{};
    FindExecutableA(target, nullptr, program);
    const HICON icon = ExtractIconA(win::ModuleInstance(), program, 0);
    if (reinterpret_cast<UINT_PTR>(icon) <= 1)
        throw std::runtime_error(std::string(program) + " has no icon");
    DestroyIcon(box.icon);
    box.icon = icon;
    DrawIcon(dc, 35, 8, icon);

    const int length = static_cast<int>(record.caption.size());
    std::wstring caption = record.caption;
    SIZE size{};
    GetTextExtentPoint32W(dc, caption.c_str(), length, &size);
    const int right = app::layout::kButtonWidth - 3;
    const int top = size.cx > right ? 44 : 56;
    RECT place{3, top, right, top + 30};
    DrawTextExW(dc, caption.data(), length, &place, DT_CENTER | DT_WORDBREAK, nullptr);
    wchar_t mark[555]{};
    const int markLength =
        MultiByteToWideChar(CP_ACP, 0, switchText, static_cast<int>(switchLength), mark, 555);
    RECT corner{4, 2, app::layout::kButtonWidth - 4, 30};
    DrawTextExW(dc, mark, markLength, &corner, DT_WORDBREAK, nullptr);
    RECT edge = all;
    DrawEdge(dc, &edge, BDR_RAISEDOUTER | BDR_SUNKENINNER, BF_RECT);
    InvalidateRect(box.window, nullptr, FALSE);
    SetCursor(former);
}

void BarePanel::ReadFileDetails(const char* target) {
    WIN32_FILE_ATTRIBUTE_DATA data{};
    GetFileAttributesExA(target, GetFileExInfoStandard, &data);
    wchar_t text[80]{};
    wchar_t point[] = L".";
    wchar_t comma[] = L",";
    NUMBERFMTW format{0, 0, 3, point, comma, 1};
    // Less than a kilobyte is written as it is.
    if (data.nFileSizeLow >= 1024)
        GetNumberFormatEx(LOCALE_NAME_USER_DEFAULT, 0, std::to_wstring(data.nFileSizeLow / 1024).c_str(),
                          &format, text, 80);
    SYSTEMTIME universal{};
    SYSTEMTIME local{};
    FileTimeToSystemTime(&data.ftLastWriteTime, &universal);
    SystemTimeToTzSpecificLocalTime(nullptr, &universal, &local);
    GetDateFormatEx(LOCALE_NAME_USER_DEFAULT, DATE_SHORTDATE, &local, nullptr, text, 80, nullptr);
    GetTimeFormatEx(LOCALE_NAME_USER_DEFAULT, 0, &local, nullptr, text, 80);
}

}  // namespace bench
