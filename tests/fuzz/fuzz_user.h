// A user who does random things with the panel, and knows which records they name.
//
//     FuzzUser user(panel, dice, generator);
//     const std::string what = user.Act();          // "organize", "rename", ...
//     ExpectKept(before, ReadContent(), user.Names());
//
// Dialogs that come up are used and closed again. While the user lives, nothing starts a program, writes to
// the registry or waits. Errors that the program shows are counted in Errors().
#pragma once

#include "res/resource.h"
#include "tests/fuzz/desktop_around.h"
#include "tests/fuzz/dice.h"
#include "tests/fuzz/fuzz_oracle.h"
#include "tests/fuzz/ini_generator.h"
#include "tests/unit/app/panel_harness.h"

namespace testkit {

class FuzzUser {
  public:
    /// `targets` are paths that exist, the last of them a folder to move files to.
    FuzzUser(app::PanelHarness& panel, DesktopAround& desktop, Dice& dice, IniGenerator& generator,
             const std::vector<std::string>& targets);
    ~FuzzUser();
    FuzzUser(const FuzzUser&) = delete;
    FuzzUser& operator=(const FuzzUser&) = delete;

    /// Shows every tab (for three files of four only some) and points at everything there; changes nothing.
    void LookAround();
    /// One command; returns its name.
    std::string Act();
    /// What the last command named.
    const Named& Names() const { return named_; }
    /// Whether the last command may have shown an error: a line of "Buttons" that belongs to no button
    /// ends the work on its shortcut, and a delay may be no number.
    bool MayFail() const { return mayFail_; }
    /// Whether the last command may have moved, renamed or deleted a file.
    bool FilesMayMove() const { return filesMayMove_; }
    /// The errors that have been shown since Act() began.
    static const std::vector<std::string>& Errors();

  private:
    void KeepWindowsAway();
    void KeepRegistryAway();

    void UseList();
    void Organize();
    void UseOptions();
    void DefineTab();
    void EditGroup();
    void Rename();
    void Free();
    void Move();
    void DoubleClick();
    void SwitchTab();
    void DropOnAButton();
    void DropOnTheList();
    void Paste();
    void Pick();
    void OperateOnAFile();
    void ChangeIcon();
    void PressKeys();
    void DockAndComeOut();
    std::string AnyTarget();
    void NameTarget(const std::string& target);
    void NameAddition(int index, const std::string& target);
    void Offer(DataObject& data, const std::string& target);

    void Answer(Window dialog);
    void AnswerMessage(Window box);
    void UseOrganizer(Window dialog);
    void UseShortcutEditor(Window dialog);
    void UseGroupEditor(Window dialog);
    void UseTabEditor(Window dialog);
    void UseOptionsDialog(Window dialog);
    void UseIconChooser(Window dialog);
    /// Presses a button of a dialog; when that leaves the dialog open, presses the other one.
    void Finish(Window dialog, int accept, int cancel);

    Window Header(int tab) const { return panel_.Window().Child(IDC_TAB_HEADER + tab); }
    Window Button(int index) const { return panel_.Window().Child(IDC_BUTTON + index); }
    int AnyButton() { return 1 + static_cast<int>(dice_.Below(9)); }
    int AnyTab() { return 1 + static_cast<int>(dice_.Below(6)); }
    /// A button of the shown tab that holds something, if there is one.
    int AnyUsedButton();
    void NameButton(int index);
    /// Puts a random text into an edit field; returns what the field made of it.
    std::string Type(Window box);
    /// Types a shortcut's name, which the command thereby names.
    void TypeName(Window box);
    void Choose(int button, int command);
    void HoverAt(Window picture);

    app::PanelHarness& panel_;
    DesktopAround& desktop_;
    Dice& dice_;
    IniGenerator& generator_;
    std::vector<std::string> targets_;
    std::string folder_;
    Named named_;
    bool filesMayMove_ = false;
    bool mayFail_ = false;
    /// Whether what is typed into a question is a shortcut's name.
    bool answersAreNames_ = false;
    int chosen_ = 0;
    POINT pointer_{};
    RecordedCalls fakes_;
    ModalAnswers answers_;
};

}  // namespace testkit
