// What the dialogs' tests share: a main window that only takes notes, and the tips that a dialog makes.
#pragma once

#include "dialogs/panel_host.h"
#include "tests/support/unit_test.h"
#include "win/errors.h"

namespace dialogs {

/// How many errors are reported while `open` runs and the box `id` of a dialog takes no text. A dialog that
/// cannot show what is stored must not stay open, because it could store what it shows.
inline int ReportsWithoutText(int id, const std::function<void()>& open) {
    static int reports = 0;
    reports = 0;
    const auto none = FAKE_CALL(SetWindowTextW, [id](HWND window, LPCWSTR text) -> BOOL {
        return GetDlgCtrlID(window) == id ? FALSE : ORIGINAL_CALL(SetWindowTextW)(window, text);
    });
    win::SetErrorReporter([](HWND, const char*) noexcept { ++reports; });
    const auto user = testkit::ModalAnswers::ForAll([](testkit::Window dialog) {
        ADD_FAILURE() << "stays open: " << dialog.Text();
        dialog.Send(WM_SYSCOMMAND, SC_CLOSE);
    });
    open();
    win::SetErrorReporter(nullptr);
    return reports;
}

/// Logs what a dialog asks of the main window.
class RecordedHost : public PanelHost {
  public:
    void ShowQuon(bool bShow, bool bUnTimer) override { log.Add("ShowQuon", bShow, bUnTimer); }
    void EnableTimer(bool enabled) override { log.Add("timer", enabled); }
    void ShowTooltipSetting() override {
        log.Add("tooltip mark");
        if (onTooltipMark) onTooltipMark();
    }
    void TakeCloseSetting() override {
        log.Add("close setting");
        if (onCloseSetting) onCloseSetting();
    }
    bool TakeHotKey(std::uint16_t word) override {
        log.Add("hot key", word);
        return hotKeyAnswer;
    }
    void RefillList() override { log.Add("refill"); }
    model::ButtonContext& Context() override { return context; }
    model::clsTab& Tab(int number) override {
        log.Add("tab", number);
        return tab;
    }

    testkit::CallLog log;
    bool hotKeyAnswer = true;
    std::function<void()> onTooltipMark;
    std::function<void()> onCloseSetting;
    model::ButtonContext context;
    model::clsTab tab{1};
};

/// The tips that are made while it lives, as "ID TITLE|TEXT".
class TipLog {
  public:
    TipLog()
        : fake_(WATCH_CALL(SendMessageA, [this](HWND, UINT message, WPARAM, LPARAM lParam) {
              if (message == TTM_ADDTOOLA) {
                  const auto& record = *reinterpret_cast<const TTTOOLINFOA*>(lParam);
                  control_ = GetDlgCtrlID(record.hwnd);
                  text_ = record.lpszText;
              }
              // A title that a living tip is given comes without a tool before it.
              if (message == TTM_SETTITLEA && control_ != 0) {
                  tips_.push_back(std::to_string(control_) + " " + reinterpret_cast<const char*>(lParam) +
                                  "|" + text_);
                  control_ = 0;
              }
          })) {}

    const std::vector<std::string>& Tips() const { return tips_; }
    void Clear() { tips_.clear(); }

    /// How many tooltip windows this thread has.
    static int WindowCount() {
        int count = 0;
        EnumThreadWindows(GetCurrentThreadId(), &TipLog::CountTip, reinterpret_cast<LPARAM>(&count));
        return count;
    }

  private:
    static BOOL CALLBACK CountTip(HWND window, LPARAM sum) {
        if (testkit::Window(window).Class() == "tooltips_class32") ++*reinterpret_cast<int*>(sum);
        return TRUE;
    }

    int control_ = 0;
    std::string text_;
    std::vector<std::string> tips_;
    testkit::RecordedCall fake_;
};

/// Does a step, then presses a button of its dialog.
inline testkit::ModalAnswers::Step ThenPress(const testkit::ModalAnswers::Step& step, int id) {
    return [step, id](testkit::Window dialog) {
        step(dialog);
        dialog.Press(id);
    };
}

/// The pointer moves over a control of a dialog, or over its background.
inline void PointAt(testkit::Window dialog, testkit::Window what) {
    dialog.Send(WM_SETCURSOR, reinterpret_cast<WPARAM>(what.Handle()), MAKELPARAM(HTCLIENT, WM_MOUSEMOVE));
}

/// The identifiers of a dialog's controls in the order of the Tab key, beginning with `first`.
inline std::vector<int> TabOrder(testkit::Window dialog, int first) {
    std::vector<int> order;
    HWND control = dialog.Child(first).Handle();
    do {
        order.push_back(GetDlgCtrlID(control));
        control = GetNextDlgTabItem(dialog.Handle(), control, FALSE);
    } while (GetDlgCtrlID(control) != first && order.size() < 50);
    return order;
}

/// Presses a key in whatever has the focus, from a dialog's own message loop.
inline void PressInFocus(WORD key) { PostMessageW(GetFocus(), WM_KEYDOWN, key, 0); }

}  // namespace dialogs
