#include <cstdio>
#include <stdexcept>
#include <string>
#include <vector>

#include "app/edge_dock.h"
#include "app/shortcut_box.h"
#include "bench/benchmarks.h"
#include "bench/host.h"
#include "config/ini.h"
#include "config/settings.h"
#include "res/resource.h"
#include "tests/support/program_folder.h"
#include "tests/support/scoped_ini_path.h"
#include "win/combo_box.h"
#include "win/text.h"

namespace bench {
namespace {

/// As many entries as a section can be read with, some 1,500.
std::string FullSection() {
    constexpr size_t kSectionLimit = 19998;
    std::string section = "[Cuts]\r\n";
    size_t used = 0;
    for (int number = 0;; ++number) {
        char entry[32]{};
        const int length = std::snprintf(entry, sizeof entry, "App%04d=C:\\a", number);
        used += static_cast<size_t>(length) + 1;
        if (used > kSectionLimit) return section;
        section += std::string(entry) + "\r\n";
    }
}

/// The floor: the combo box's own calls, with the names ready.
void FillBare(HWND list, const std::vector<std::wstring>& names) {
    SendMessageW(list, WM_SETREDRAW, FALSE, 0);
    SendMessageW(list, CB_RESETCONTENT, 0, 0);
    for (const std::wstring& name : names)
        SendMessageW(list, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(name.c_str()));
    SendMessageW(list, WM_SETREDRAW, TRUE, 0);
}

/// The milliseconds from typing a character into the box until its effect is on the screen.
double TimeKey(app::ShortcutBox& box, char key) {
    const HWND edit = box.List().Edit();
    return Time([&] {
        MSG message{};
        message.hwnd = edit;
        message.message = WM_KEYDOWN;
        message.wParam = static_cast<unsigned char>(key);
        box.PreTranslate(message);
        SendMessageW(edit, WM_CHAR, message.wParam, 0);
        message.message = WM_KEYUP;
        box.PreTranslate(message);
        RedrawWindow(box.List().Handle(), nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
        GdiFlush();
    });
}

/// Types a text into the empty box.
void Type(app::ShortcutBox& box, const std::string& text, std::vector<double>& times) {
    box.List().SetText("");
    for (const char key : text)
        times.push_back(TimeKey(box, key));
}

}  // namespace

void MeasureShortcutList(const Effort& effort, Table& table) {
    const testkit::ProgramFolder folder;
    const testkit::ScopedIniPath path(folder.IniPath());
    folder.WriteIniText(FullSection());
    MakeOld(folder.IniPath());
    config::Settings = {};
    const Host left(0);
    const Host right(app::layout::kClientWidth + 10);
    app::EdgeDock dock;
    app::PanelState state;
    app::ShortcutBox box(state, dock);
    box.CreateOn(left.Handle());
    win::ComboBox bare;
    bare.CreateOn(right.Handle(), IDC_SHORTCUTS, app::layout::At(5, 36, 278, 240));
    box.Refill();
    const std::vector<std::string> items = box.List().Items();
    std::vector<std::wstring> names;
    names.reserve(items.size());
    for (const std::string& item : items)
        names.push_back(win::ToWide(item));

    std::vector<double> quonTimes;
    std::vector<double> bareTimes;
    for (int fill = 0; fill < effort.listFills; ++fill) {
        quonTimes.push_back(Time([&] { box.Refill(); }));
        bareTimes.push_back(Time([&] { FillBare(bare.Handle(), names); }));
    }
    const std::string size = std::to_string(items.size()) + " names";
    table.Add("filling the drop-down with " + size + ", median", "ms", Median(quonTimes), Median(bareTimes),
              "ratio 1.5");
    table.Add("filling the drop-down with " + size + ", fastest", "ms", Fastest(quonTimes),
              Fastest(bareTimes), "");

    // The last name is found after all others have been searched, the other text in none of them.
    const std::string& last = items.at(items.size() - 2);
    std::vector<double> keys;
    for (int round = 0; round < effort.typedNames; ++round) {
        Type(box, win::ToBytes(win::UpperCase(last)), keys);
        if (box.List().Text() != last) throw std::runtime_error("The last name was not completed");
        Type(box, "QUERTZU", keys);
    }
    table.Add("completing at a keystroke among " + size + ", median", "ms", Median(keys), "2 ms");
}

}  // namespace bench
