// Every window, pixel by pixel, against what was kept of it. Pictures differ from machine to machine: what is
// kept counts where fonts, controls and colours are those of the machine that it was kept on, which a picture
// of the system's own controls tells; elsewhere the test is skipped, or fails if QUON_GOLDEN=required.
//
// Where a new look is wanted, QUON_GOLDEN=keep writes golden_pictures.txt into the folder for artifacts.

#include <cstdlib>
#include <sstream>

#include "tests/support/screen.h"
#include "tests/unit/app/every_window.h"
#include "win/handles.h"
#include "win/picture_box.h"
#include "win/process_start.h"
#include "win/text.h"

namespace app {
namespace {

using testkit::Picture, testkit::Window;

constexpr const char* kProbe = "the system's controls";

/// A number for a picture that changes with each of its pixels (FNV-1a).
std::string Fingerprint(const Picture& picture) {
    std::uint64_t hash = 0xCBF29CE484222325U;
    const auto add = [&hash](std::uint64_t value) { hash = (hash ^ value) * 0x100000001B3U; };
    add(static_cast<std::uint64_t>(picture.Width()));
    add(static_cast<std::uint64_t>(picture.Height()));
    for (int y = 0; y < picture.Height(); ++y)
        for (int x = 0; x < picture.Width(); ++x)
            add(picture.At(x, y));
    std::ostringstream text;
    text << std::hex << hash;
    return text.str();
}

/// The client area as it was painted last, without a caret that blinks. Taken from the window and not from
/// the screen, which gets it a moment later.
Picture Photograph(Window window) {
    HideCaret(nullptr);
    RedrawWindow(window.Handle(), nullptr, nullptr,
                 RDW_INVALIDATE | RDW_ERASE | RDW_UPDATENOW | RDW_ALLCHILDREN);
    RECT client{};
    GetClientRect(window.Handle(), &client);
    const win::WindowDc from(window.Handle());
    const win::Bitmap bitmap(CreateCompatibleBitmap(from.Get(), client.right, client.bottom));
    const win::MemoryDc to(CreateCompatibleDC(from.Get()));
    {
        const win::Selection selected(to.Get(), bitmap.Get());
        BitBlt(to.Get(), 0, 0, client.right, client.bottom, from.Get(), 0, 0, SRCCOPY);
    }
    BITMAPINFO format{};
    format.bmiHeader.biSize = sizeof format.bmiHeader;
    format.bmiHeader.biWidth = client.right;
    format.bmiHeader.biHeight = -client.bottom;
    format.bmiHeader.biPlanes = 1;
    format.bmiHeader.biBitCount = 32;
    std::vector<DWORD> pixels(static_cast<std::size_t>(client.right) *
                              static_cast<std::size_t>(client.bottom));
    GetDIBits(to.Get(), bitmap.Get(), 0, static_cast<UINT>(client.bottom), pixels.data(), &format,
              DIB_RGB_COLORS);
    for (DWORD& pixel : pixels)
        pixel &= 0xFFFFFF;
    return {static_cast<int>(client.right), static_cast<int>(client.bottom), std::move(pixels)};
}

/// Letters, marks and colours of the system, on a window that has nothing of ours.
Picture PhotographProbe() {
    const HWND window = CreateWindowExW(WS_EX_TOPMOST, L"Static", L"", WS_POPUP | WS_VISIBLE, 40, 40, 420,
                                        200, nullptr, nullptr, nullptr, nullptr);
    int top = 4;
    for (const auto& [kind, style] :
         std::vector<std::pair<const wchar_t*, DWORD>>{{L"Static", SS_LEFT},
                                                       {L"Button", BS_PUSHBUTTON},
                                                       {L"Button", BS_AUTOCHECKBOX},
                                                       {L"Button", BS_AUTORADIOBUTTON},
                                                       {L"Button", BS_GROUPBOX},
                                                       {L"Edit", WS_BORDER},
                                                       {L"ScrollBar", SBS_HORZ}}) {
        const HWND control = CreateWindowExW(
            0, kind, L"The quick brown fox jumps over the lazy dog, 0123456789 ABCXYZ!?",
            WS_CHILD | WS_VISIBLE | style, 4, top, 410, 22, window, nullptr, nullptr, nullptr);
        SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(win::MessageFont()), FALSE);
        top += 26;
    }
    const Picture picture = Photograph(Window(window));
    DestroyWindow(window);
    return picture;
}

std::map<std::string, std::string> Kept() {
    std::map<std::string, std::string> kept;
    std::istringstream lines(testkit::FileBytes(win::ProgramFolder() + "\\golden_pictures.txt"));
    for (std::string line; std::getline(lines, line);) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        const std::size_t blank = line.find(' ');
        if (blank != std::string::npos) kept[line.substr(blank + 1)] = line.substr(0, blank);
    }
    return kept;
}

/// Saves a picture for people to look at, under a name that files can have.
std::string SavedPicture(const Picture& picture, std::string name) {
    std::replace_if(
        name.begin(), name.end(),
        [](char letter) { return std::string_view(":\\ '").find(letter) != std::string_view::npos; }, '-');
    return picture.SaveAs("golden-" + name + ".bmp");
}

/// Whether the environment's QUON_GOLDEN is this.
bool Wished(std::string_view what) {
    const char* wish = std::getenv("QUON_GOLDEN");
    return wish != nullptr && what == wish;
}

bool Keeping() { return Wished("keep"); }

TEST(GoldenPictureDesktopTest, EveryWindowLooksAsItDid) {
    SetCursorPos(GetSystemMetrics(SM_CXSCREEN) - 1, GetSystemMetrics(SM_CYSCREEN) - 1);
    // Once a key has been used they stay for the life of the process, and other tests use keys.
    win::ShowFocusMarks();
    const auto kept = Kept();
    std::ostringstream found;
    const std::string probe = Fingerprint(PhotographProbe());
    found << probe << ' ' << kProbe << '\n';
    if (!Keeping() && (!kept.contains(kProbe) || kept.at(kProbe) != probe)) {
        constexpr const char* kOther =
            "The fonts or the system's controls are not those of the kept pictures";
        if (Wished("required")) FAIL() << kOther;
        GTEST_SKIP() << kOther;
    }
    std::size_t windows = 0;
    std::vector<std::pair<std::string, Picture>> others;
    ForEveryWindow([&](const std::string& name, Window window) {
        if (name.starts_with("the panel")) ShowWindowAsync(window.Handle(), SW_SHOWNA);
        const Picture picture = Photograph(window);
        const std::string now = Fingerprint(picture);
        found << now << ' ' << name << '\n';
        ++windows;
        if (Keeping() || (kept.contains(name) && kept.at(name) == now)) return;
        others.emplace_back(name, picture);
    });
    // Only now: meanwhile the program's folder was another one.
    for (const auto& [name, picture] : others)
        ADD_FAILURE() << name << " looks otherwise: " << SavedPicture(picture, name);
    EXPECT_EQ(windows + 1, Keeping() ? windows + 1 : kept.size());
    if (Keeping()) testkit::WriteBytes(testkit::ArtifactsFolder() + "\\golden_pictures.txt", found.str());
}

}  // namespace
}  // namespace app
