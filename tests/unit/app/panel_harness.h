// A main window for a test: in a program folder of its own, never on the screen. Everything that would reach
// outside the test is recorded and kept away.
//
//     PanelHarness panel("[Settings]\r\nMain=...\r\n");
//     panel.Load();
//     EXPECT_TRUE(InOrder(panel.Log(), {"read Settings Main", "tray add"}));
#pragma once

#include "app/glavni.h"
#include "tests/support/unit_test.h"

namespace app {

/// Settings without an option: the first tab, docked at no edge.
inline constexpr const char* kPlainSettings =
    "Main=1,False,False,False,False,False,False,0,False,False,False\r\n";

class PanelHarness {
  public:
    /// `settings` are the lines of the section "Settings", `rest` the sections behind it.
    explicit PanelHarness(std::string_view settings = kPlainSettings, std::string_view rest = {});
    ~PanelHarness();
    PanelHarness(const PanelHarness&) = delete;
    PanelHarness& operator=(const PanelHarness&) = delete;

    /// Creates the window's parts and runs the load with an empty log.
    void Load();
    /// Deletes the main window object.
    void Release() { panel_.reset(); }
    /// Another main window in the same folder, as the next start of the program makes it; load it.
    void Renew();

    /// Gives the panel a key message, its own or a child window's, while these modifiers are held; true when
    /// it was used.
    bool PressKey(UINT message, WORD key, std::initializer_list<int> held = {}, HWND child = nullptr);

    app::Glavni& Panel() { return *panel_; }
    testkit::Window Window() const { return testkit::Window(panel_->Handle()); }
    testkit::ProgramFolder& Folder() { return folder_; }
    /// One line a call: "read SECTION KEY", "section SECTION", "write SECTION KEY VALUE", "associated NAME",
    /// "edge", "tray add|delete", "drives", "list PATTERN", "place X Y", "topmost", "timer on|off", "find
    /// CLASS", "show", "show quietly", "state N" (ShowWindow).
    testkit::CallLog& Log() { return log_; }
    const NOTIFYICONDATAA& TrayRecord() const { return trayRecord_; }

  private:
    void EndSession();
    void RecordProfile();
    void RecordWindow();
    void RecordShell();

    testkit::ProgramFolder folder_;
    testkit::ScopedIniPath ini_;
    testkit::CallLog log_;
    NOTIFYICONDATAA trayRecord_{};
    testkit::RecordedCalls fakes_;
    std::unique_ptr<app::Glavni> panel_;
};

/// Holds modifier keys down for this thread as long as it lives.
class HeldModifierKeys {
  public:
    explicit HeldModifierKeys(std::initializer_list<int> held) { Write(held, 0x80); }
    ~HeldModifierKeys() { Write({VK_SHIFT, VK_CONTROL, VK_MENU}, 0); }
    HeldModifierKeys(const HeldModifierKeys&) = delete;
    HeldModifierKeys& operator=(const HeldModifierKeys&) = delete;

  private:
    static void Write(std::initializer_list<int> keys, BYTE state);
};

/// Takes the quit message off the queue; false when there was none.
bool TakeQuitMessage();

}  // namespace app
