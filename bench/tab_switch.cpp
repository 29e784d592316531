#include <stdexcept>
#include <vector>

#include "app/button_panel.h"
#include "app/panel_layout.h"
#include "app/panel_state.h"
#include "app/tab_strip.h"
#include "bench/bare_panel.h"
#include "bench/benchmarks.h"
#include "bench/host.h"
#include "config/ini.h"
#include "config/settings.h"

namespace bench {
namespace {

/// The parts of the product that take part in a switch, joined as the main window joins them.
class QuonPanel {
  public:
    explicit QuonPanel(HWND parent) {
        tabs_.CreateOn(parent);
        buttons_.CreateOn(parent);
        for (int tab = 1; tab <= model::kTabCount; ++tab)
            state_.Tab(tab).SetParentTab(&tabs_.Header(tab));
        for (int index = 1; index <= model::kButtonCount; ++index)
            state_.Button(index).SetParentButton(&buttons_.Picture(index));
        state_.Context.Records.LoadButtonRecords();
    }

    void Show(int tab) { tabs_.b1_MouseUp(tab, win::MouseButton::kLeft, 0, 9, 9); }
    [[nodiscard]] HDC Dc(int button) { return buttons_.Picture(button).Dc(); }

  private:
    app::PanelState state_;
    app::ButtonPanel buttons_{state_};
    app::TabStrip tabs_{state_, buttons_};
};

void RequireSameFaces(QuonPanel& quon, const BarePanel& bare) {
    for (int button = 1; button <= model::kButtonCount; ++button) {
        for (int y = 0; y < app::layout::kButtonHeight; ++y) {
            for (int x = 0; x < app::layout::kButtonWidth; ++x) {
                if (GetPixel(quon.Dc(button), x, y) != GetPixel(bare.Dc(button), x, y))
                    throw std::runtime_error("The floor draws button " + std::to_string(button) +
                                             " differently: it does not do the same work");
            }
        }
    }
}

/// The times of one of the two kinds of switch.
struct Times {
    std::vector<double> wall;
    double processor = 0;  // the sum of all switches
};

/// Shows tabs by turns, each time until the last pixel is on the screen. Several in a row, because the
/// processor time is counted in coarse steps.
template <class Panel>
void SwitchSome(Panel& panel, HWND window, int count, Times& times) {
    const double processor = ProcessorTime();
    for (int index = 0; index < count; ++index) {
        const double begin = WallTime();
        panel.Show(index % 2 == 0 ? 2 : 1);
        RedrawWindow(window, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
        GdiFlush();
        times.wall.push_back(WallTime() - begin);
    }
    times.processor += ProcessorTime() - processor;
}

}  // namespace

void MeasureTabSwitch(const Scene& scene, const Effort& effort, Table& table) {
    constexpr int kInARow = 10;
    SetCursorPos(GetSystemMetrics(SM_CXSCREEN) - 1, GetSystemMetrics(SM_CYSCREEN) - 1);
    config::IniPath = scene.Folder().IniPath();
    config::LoadMainSettings();
    const Host left(0);
    const Host right(app::layout::kClientWidth + 10);
    QuonPanel quon(left.Handle());
    BarePanel bare(right.Handle(), scene);
    for (const int tab : {1, 2, 1}) {
        quon.Show(tab);
        bare.Show(tab);
        RequireSameFaces(quon, bare);
    }
    Times quonTimes;
    Times bareTimes;
    for (int done = 0; done < effort.tabSwitches; done += kInARow) {
        SwitchSome(quon, left.Handle(), kInARow, quonTimes);
        SwitchSome(bare, right.Handle(), kInARow, bareTimes);
    }
    table.Add("tab switch, median", "ms", Median(quonTimes.wall), Median(bareTimes.wall), "ratio 1.2");
    table.Add("tab switch, fastest", "ms", Fastest(quonTimes.wall), Fastest(bareTimes.wall), "");
    table.Add("tab switch, processor time", "ms", quonTimes.processor / effort.tabSwitches,
              bareTimes.processor / effort.tabSwitches, "");
}

}  // namespace bench
