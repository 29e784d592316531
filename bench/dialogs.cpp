#include <windows.h>

#include <algorithm>
#include <functional>
#include <stdexcept>
#include <vector>

#include "bench/bare_dialogs.h"
#include "bench/benchmarks.h"
#include "config/ini.h"
#include "dialogs/edit_group.h"
#include "dialogs/icon_chooser.h"
#include "dialogs/organize_shortcuts.h"
#include "res/resource.h"
#include "win/text.h"
#include "win/window.h"

namespace bench {
namespace {

constexpr int kMembers = 200;
constexpr int kShortcuts = 1000;
constexpr int kIcons = 300;

BOOL CALLBACK TakeDialog(HWND window, LPARAM found) {
    wchar_t name[16]{};
    GetClassNameW(window, name, static_cast<int>(std::size(name)));
    if (std::wstring_view(name) != L"#32770") return TRUE;
    *reinterpret_cast<HWND*>(found) = window;
    return FALSE;
}

/// Waits inside a dialog's own message loop, shows and paints the dialog, notes when that is done, and ends
/// it.
class Stopwatch : public win::Window {
  public:
    Stopwatch() {
        win::WindowOptions options;
        options.className = L"QuonBenchStopwatch";
        options.parent = HWND_MESSAGE;
        Create(options);
    }

    /// How long it takes from the call until the dialog that it opens is painted, in milliseconds.
    double Time(const std::function<void()>& open) {
        painted_ = 0;
        PostMessageW(Handle(), WM_APP, 0, 0);
        const double begin = WallTime();
        open();
        if (painted_ == 0) throw std::runtime_error("No dialog came up");
        return painted_ - begin;
    }

  protected:
    std::optional<LRESULT> OnMessage(UINT message, WPARAM /*wParam*/, LPARAM /*lParam*/) override {
        if (message != WM_APP) return std::nullopt;
        HWND dialog = nullptr;
        EnumThreadWindows(GetCurrentThreadId(), &TakeDialog, reinterpret_cast<LPARAM>(&dialog));
        if (dialog == nullptr) {
            PostMessageW(Handle(), WM_APP, 0, 0);
            return 0;
        }
        ShowWindow(dialog, SW_SHOWNORMAL);
        RedrawWindow(dialog, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
        GdiFlush();
        painted_ = WallTime();
        EndDialog(dialog, 0);
        return 0;
    }

  private:
    double painted_ = 0;
};

void Compare(const char* what, const char* aim, int runs, const std::function<void()>& product,
             const std::function<void()>& bare, Table& table) {
    Stopwatch watch;
    std::vector<double> times;
    std::vector<double> floors;
    // The first of each warms up.
    watch.Time(product);
    watch.Time(bare);
    for (int run = 0; run < runs; ++run) {
        times.push_back(watch.Time(product));
        floors.push_back(watch.Time(bare));
    }
    table.Add(std::string(what) + ", median", "ms", Median(times), Median(floors), aim);
    table.Add(std::string(what) + ", fastest", "ms", Fastest(times), Fastest(floors), "");
}

/// A group of many members, and many shortcuts.
std::string GroupIni() {
    std::string ini = "[Cuts]\r\nWork=C:\\windows";
    for (int index = 1; index < kMembers; ++index)
        ini.append("|C:\\windows\\file").append(std::to_string(index)).append(".txt");
    return ini + "\r\n";
}

std::string ShortcutsIni() {
    std::string ini = "[Cuts]\r\n";
    for (int index = 0; index < kShortcuts; ++index)
        ini.append("n").append(std::to_string(index)).append("=C:\\windows\r\n");
    return ini;
}

void MeasureGroup(const Effort& effort, Table& table) {
    const testkit::ProgramFolder folder;
    folder.WriteIniText(GroupIni());
    MakeOld(folder.IniPath());
    config::IniPath = folder.IniPath();
    std::vector<BareRow> rows;
    for (const std::string& path : win::Split(*folder.IniValue("Cuts", "Work"), '|'))
        rows.push_back({win::ToWide(path), L"", path});
    model::ButtonContext context;
    Compare(
        "opening the group editor, 200 members", "ratio 1.3", effort.dialogs,
        [&] {
            dialogs::frmEditB editor(context);
            editor.PrepareWindow("Work");
            editor.Show(nullptr);
        },
        [&] { OpenBareGroup(folder.IniPath(), L"Work", rows); }, table);
}

void MeasureOrganiser(const Effort& effort, Table& table) {
    const testkit::ProgramFolder folder;
    folder.WriteIniText(ShortcutsIni());
    MakeOld(folder.IniPath());
    config::IniPath = folder.IniPath();
    std::vector<BareRow> rows;
    for (const auto& entry : folder.Ini().Entries("Cuts"))
        rows.push_back({win::ToWide(entry.key), win::ToWide(entry.value), entry.value});
    model::ButtonContext context;
    Compare(
        "opening the organiser, 1000 shortcuts", "ratio 1.5", effort.dialogs,
        [&] { dialogs::frmCuts(context).Show(nullptr); }, [&] { OpenBareOrganiser(folder.IniPath(), rows); },
        table);
}

/// A copy of the program that holds its icon again and again, until it holds so many.
std::string MakeIconFile(const Scene& scene, const testkit::ProgramFolder& folder) {
    const std::string file = folder.CopyIn(scene.Quon(), "icons.exe");
    HRSRC group =
        FindResourceW(nullptr, MAKEINTRESOURCEW(IDI_QUON), reinterpret_cast<LPCWSTR>(RT_GROUP_ICON));
    HGLOBAL loaded = LoadResource(nullptr, group);
    std::vector<char> data(SizeofResource(nullptr, group));
    std::copy_n(static_cast<const char*>(LockResource(loaded)), data.size(), data.data());
    HANDLE update = BeginUpdateResourceW(win::ToWide(file).c_str(), FALSE);
    // The file has six already.
    for (int index = 6; index < kIcons; ++index)
        UpdateResourceW(update, reinterpret_cast<LPCWSTR>(RT_GROUP_ICON), MAKEINTRESOURCEW(1000 + index),
                        MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US), data.data(),
                        static_cast<DWORD>(data.size()));
    if (update == nullptr || EndUpdateResourceW(update, FALSE) == 0)
        throw std::runtime_error("Could not make the file of icons");
    return file;
}

void MeasureChooser(const Scene& scene, const Effort& effort, Table& table) {
    const testkit::ProgramFolder folder;
    const std::string file = MakeIconFile(scene, folder);
    dialogs::IcoChooser count;
    count.ReadIcons(file);
    if (count.IconCount() != kIcons)
        throw std::runtime_error("The file of icons has " + std::to_string(count.IconCount()));
    Compare(
        "opening the icon chooser, 300 icons", "ratio 1.3", effort.dialogs,
        [&] {
            dialogs::IcoChooser chooser;
            chooser.ReadIcons(file);
            chooser.Show(nullptr);
        },
        [&] { OpenBareChooser(file); }, table);
}

}  // namespace

void MeasureDialogs(const Scene& scene, const Effort& effort, Table& table) {
    MeasureGroup(effort, table);
    MeasureOrganiser(effort, table);
    MeasureChooser(scene, effort, table);
}

}  // namespace bench
