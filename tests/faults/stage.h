// A loaded panel in a world of its own: a configuration file with a record of every kind, targets that are
// there, a shell that opens nothing, a menu that chooses what it is told, a clipboard, and a user who
// answers every dialog.
//
//     Stage stage;
//     stage.Load();
//     stage.Choose(IDM_BUTTON + app::kFree);
//     stage.RightClick(stage.Button(1));
//     EXPECT_THAT(stage.Said(), IsEmpty());        // the messages that came up
#pragma once

#include "res/resource.h"
#include "tests/faults/resource_ledger.h"
#include "tests/support/data_object.h"
#include "tests/unit/app/panel_harness.h"
#include "win/com.h"

namespace faults {

class Stage {
  public:
    /// A dialog is looked at; null for nobody.
    std::function<void()> onTick;

    /// The panel's object and its files; nothing of the panel exists yet.
    Stage();
    ~Stage();
    Stage(const Stage&) = delete;
    Stage& operator=(const Stage&) = delete;

    /// Starts the panel as the program does. An error that ends the start is shown, and the answer is false.
    bool Load();
    /// Ends the panel as the Task Manager would, and deletes its object.
    void End();
    bool IsAlive() { return loaded_ && panel_.Panel().Handle() != nullptr; }

    app::PanelHarness& Harness() { return panel_; }
    testkit::Window Panel() const { return panel_.Window(); }
    testkit::Window Child(int id) const { return Panel().FindChild(id); }
    testkit::Window Button(int index) const { return Child(IDC_BUTTON + index); }
    /// A file that is there.
    std::string File(const std::string& name) const { return data_.FullPath(name); }
    /// A shell link to a file, with arguments.
    std::string Link() const {
        return data_.MakeLink("link.lnk", {.target = File("tool.exe"), .arguments = "/link"});
    }

    // What a user does. Where there is no window (any more) nothing happens.
    static void Click(testkit::Window window);
    static void DoubleClick(testkit::Window window);
    static void RightClick(testkit::Window window);
    static void Hover(testkit::Window window);
    static void Paint(testkit::Window window);
    static void RunMessages();
    /// Drops an object on a window that has registered for it.
    void Drop(HWND window, testkit::DataObject& object);

    /// What the next menu answers.
    void Choose(int command) { chosen_ = command; }
    /// How the next dialog with this control is used, instead of being closed.
    void Use(int control, std::function<void(testkit::Window)> use) {
        uses_[control] = std::move(use);
        tries_[control] = 0;
    }
    /// What is on the clipboard, as text or as files.
    void PutOnClipboard(CLIPFORMAT format, testkit::DataObject& object);

    /// The messages and error reports that came up.
    const std::vector<std::string>& Said() const { return said_; }
    /// Errors that reached the edge to Windows and are not of the product's own types.
    static std::vector<std::string>& ForeignErrors();
    std::string IniBytes() { return panel_.Folder().IniBytes(); }
    /// What was taken from Windows and not given back; to be asked after the end.
    std::vector<std::string> Open() const;

  private:
    void PlayShell();
    void PlayPickers();
    void PlayClipboard();
    void PlayRegistry();
    void PlayDesktop();
    static void CALLBACK Tick(HWND, UINT, UINT_PTR, DWORD);
    void Answer(testkit::Window dialog);
    void UseDialog(testkit::Window dialog);
    static void Report(HWND owner, const char* message) noexcept;

    testkit::ProgramFolder data_{"faults"};
    win::OleThread ole_;
    std::vector<std::string> said_;
    std::map<int, std::function<void(testkit::Window)>> uses_;
    std::map<int, int> tries_;
    std::map<HWND, IDropTarget*> targets_;
    int chosen_ = 0;
    CLIPFORMAT clipboardFormat_ = 0;
    STGMEDIUM clipboard_{};
    app::PanelHarness panel_;
    testkit::RecordedCalls fakes_;
    ResourceLedger ledger_;
    bool loaded_ = false;
    UINT_PTR timer_ = 0;
};

}  // namespace faults
