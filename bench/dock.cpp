#include <functional>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "app/edge_dock.h"
#include "app/screen_place.h"
#include "bench/benchmarks.h"
#include "config/settings.h"
#include "tests/support/input.h"
#include "tests/support/running_program.h"
#include "win/window.h"

namespace bench {
namespace {

// Milliseconds.
constexpr double kPatience = 60000;
constexpr int kHoverDelay = 500;
constexpr int kHoverWait = 100;

/// A Quon that stands at the screen's lower edge and comes out when the pointer rests there.
class DockedQuon {
  public:
    DockedQuon() {
        folder_.WriteIniText(
            "[Settings]\r\nMain=1,False,True,False,True,False,False,4,False,False,False\r\n"
            "poptf=True\r\npopdelay=" +
            std::to_string(kHoverDelay) + "\r\nclickshow=False\r\n");
        quon_.emplace(testkit::StartQuon(folder_));
        panel_ = quon_->WaitForWindow({.class_name = "QuonMain"});
        docked_ = panel_.Rect().top;
    }

    /// From the move onto the strip until the panel stands on the screen.
    double ComeOut() {
        const RECT place = panel_.Rect();
        const int height = GetSystemMetrics(SM_CYSCREEN);
        const double begin = WallTime();
        SetCursorPos((place.left + place.right) / 2, height - 2);
        return WaitUntil(begin, [&] { return panel_.Rect().top < docked_; });
    }

    /// From the close button's command until only the strip is left.
    double Dock() {
        // The pointer goes away from where the strip will be, because docking would begin a hover there.
        testkit::mouse::MoveTo({5, 5});
        const double begin = WallTime();
        panel_.Post(WM_SYSCOMMAND, SC_CLOSE);
        return WaitUntil(begin, [&] { return panel_.Rect().top == docked_; });
    }

  private:
    static double WaitUntil(double begin, const std::function<bool()>& happened) {
        while (!happened()) {
            if (WallTime() - begin > kPatience) throw std::runtime_error("The panel does not move");
            Sleep(1);
        }
        return WallTime() - begin;
    }

    testkit::ProgramFolder folder_;
    std::optional<testkit::RunningProgram> quon_;
    testkit::Window panel_;
    LONG docked_ = 0;
};

/// The same wait with nothing done in it.
double BareWait() {
    const double begin = WallTime();
    for (int wait = 0; wait < kHoverDelay / kHoverWait; ++wait)
        Sleep(kHoverWait);
    return WallTime() - begin;
}

/// A window that does what it is told at each tick of a timer of its own.
class Ticking : public win::Window {
  public:
    Ticking() {
        win::WindowOptions options;
        options.className = L"QuonBenchTicking";
        options.style = WS_POPUP | WS_VISIBLE;
        options.extendedStyle = WS_EX_TOOLWINDOW | WS_EX_TOPMOST;
        options.place = {0, 0, 300, 300};
        Create(options);
    }

    std::function<void()> onTick;

  protected:
    std::optional<LRESULT> OnMessage(UINT message, WPARAM /*wParam*/, LPARAM /*lParam*/) override {
        if (message == WM_TIMER && onTick) onTick();
        return std::nullopt;
    }
};

/// The processor time in milliseconds that this process uses while it only handles messages.
double IdleTime(int seconds) {
    const double begin = ProcessorTime();
    const double end = WallTime() + seconds * 1000.0;
    while (WallTime() < end) {
        const double left = end - WallTime();
        MsgWaitForMultipleObjects(0, nullptr, FALSE, left > 0 ? static_cast<DWORD>(left) : 0, QS_ALLINPUT);
        win::ProcessPendingMessages();
    }
    return ProcessorTime() - begin;
}

double IdleDocked(int seconds) {
    config::Settings.Edge = app::kBottomEdge;
    Ticking window;
    app::EdgeDock dock;
    dock.Attach(window.Handle());
    window.onTick = [&] { dock.OnTimer(); };
    dock.ShowQuon(false, false);
    return IdleTime(seconds);
}

double IdleWithoutTimer(int seconds) {
    const Ticking window;
    return IdleTime(seconds);
}

}  // namespace

void MeasureDock(const Effort& effort, Table& table) {
    DockedQuon quon;
    std::vector<double> out;
    std::vector<double> bare;
    std::vector<double> docked;
    for (int hover = 0; hover < effort.hovers; ++hover) {
        out.push_back(quon.ComeOut() - kHoverDelay);
        bare.push_back(BareWait() - kHoverDelay);
        docked.push_back(quon.Dock());
    }
    table.Add("hover to shown, beyond the delay of 500 ms, median", "ms", Median(out), Median(bare), "");
    table.Add("dock to hidden, median", "ms", Median(docked), "");
    const std::string idle = std::to_string(effort.idleSeconds) + " s docked and idle";
    table.Add("processor time, " + idle, "ms", IdleDocked(effort.idleSeconds),
              IdleWithoutTimer(effort.idleSeconds), "");
}

}  // namespace bench
