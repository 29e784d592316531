// A running Quon with its panel, and the Quon.ini it starts with.
//
//     ProgramFolder folder;
//     const std::string target = folder.CopyIn(TestTargetExe(), "target.exe");
//     folder.WriteIniText(QuonIni{.single_click = true}.AddShortcut("11", "Editor", target).Text());
//     QuonPanel quon(folder);
//     mouse::Click(quon.Button(1));
#pragma once

#include "res/resource.h"
#include "tests/support/desktop.h"
#include "tests/support/text.h"
#include "win/handles.h"

namespace testkit {

/// The settings by their names and the records by their keys. What a test does not set is as quiet as can be:
/// nothing docks, collects or pops up by itself.
struct QuonIni {
    using Records = std::vector<std::pair<std::string, std::string>>;

    int current_tab = 1;
    bool start_with_windows = false;
    bool start_glued = false;
    bool hide_after_launch = false;
    bool taskbar_processes_only = true;
    bool close_button_closes = false;
    bool extensive_tooltips = false;
    int edge = 4;
    bool single_click = false;
    bool show_collected = false;
    bool tab_descriptions = false;
    bool pop_on_hover = false;
    int pop_delay = 500;
    bool click_shows = false;
    Records buttons = {};
    Records cuts = {};
    Records switches = {};

    /// Binds the button of this key ("11" to "69") to a shortcut; several members joined by "|" are a group.
    /// Gives this record, to go on with.
    QuonIni& AddShortcut(const std::string& key, const std::string& name, const std::string& value,
                         const std::string& command_switch = {});
    /// The value of "Main".
    std::string Main() const;
    /// The whole file.
    std::string Text() const;
};

/// The buttons of the question before a used button gets something else.
enum { kCreateGroup = 0, kReplace = 1, kCancel = 2 };

/// Whether a side file of a unit of writes lies in the folder, whichever process has made it.
inline bool HasSideFile(const ProgramFolder& folder) {
    WIN32_FIND_DATAW found{};
    return static_cast<bool>(
        win::FindFiles(FindFirstFileW(Wide(folder.FullPath("Quon.ini.unit-*")).c_str(), &found)));
}

enum class Edge { kLeft = 1, kTop, kRight, kBottom };

class QuonPanel {
  public:
    /// Starts Quon in the folder and waits until its panel takes input and drops.
    explicit QuonPanel(const ProgramFolder& folder, const StartOptions& options = {});

    RunningProgram& Program() { return program_; }
    DWORD Id() const { return program_.Id(); }

    Window Main() const { return main_; }
    /// 1 to 6.
    Window Header(int index) const { return main_.Child(IDC_TAB_HEADER + index); }
    /// 1 to 9.
    Window Button(int index) const { return main_.Child(IDC_BUTTON + index); }
    Window HoverPicture() const { return main_.Child(IDC_HOVER_PICTURE); }
    Window RenameBox() const { return main_.Child(IDC_RENAME); }
    Window Shortcuts() const { return main_.Child(IDC_SHORTCUTS); }
    /// 0 to 3.
    Window ImageButton(int index) const { return main_.Child(IDC_IMAGE_BUTTON + index); }

    /// Whether only the strip at this edge is on the screen.
    bool IsDockedAt(Edge edge) const;
    /// Whether the whole panel is on the screen.
    bool IsOut() const;
    /// A pixel of the caption bar's close button.
    POINT CloseButtonPlace() const;
    /// A double click on a button with keys held, the panel being in front: Wine forgets held keys when a
    /// click brings a window to the front.
    void OpenButton(int index, const Keys& held = {}) const;
    /// Opens the menu of a button, 1 to 9, with the mouse.
    PopupMenu OpenButtonMenu(int index) const;
    /// Opens the menu of an image button, 0 to 3, with the mouse.
    PopupMenu OpenImageMenu(int index) const;
    PopupMenu OpenSettingsMenu() const { return OpenImageMenu(2); }
    /// Opens the organiser and waits until its list has the focus.
    Window OpenOrganiser() const;
    /// Waits for a dialog of the system's that takes input: a picker, a question of the shell's.
    Window WaitForSystemDialog() const;
    void WaitUntilOut() const;
    void WaitUntilDockedAt(Edge edge) const;
    /// What the shell sends for a click on the notification icon.
    void ClickTrayIcon() const { main_.Post(WM_MOUSEMOVE, 1, WM_LBUTTONUP); }
    /// Waits until the panel has handled all the input so far, seen by the hover picture following the
    /// pointer.
    void Settle() const;
    /// Takes the pointer off the panel and waits until that has painted itself without the hover picture.
    void LeaveAlone() const;
    /// Waits until headers and buttons can be seen on the screen.
    void WaitUntilPainted() const;
    /// Waits until a button bears this name; fails the test naming both when it never does.
    void ExpectName(int button, const std::string& name) const;

  private:
    RunningProgram program_;
    Window main_;
};

}  // namespace testkit
