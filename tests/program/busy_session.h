// A running panel that is given one command after the other, and what Quon.ini has to hold after each.
//
//     BusySession session(folder, seed);              // the folder has FilledIni() for a Quon.ini
//     session.Run(session.Next());
//     const Command last = session.NextThatWrites();
//     session.Run(last);                              // throws ProgramIsGone if it is killed meanwhile
#pragma once

#include <exception>
#include <random>

#include "tests/program/quon_panel.h"
#include "tests/support/drag_source.h"

namespace testkit {

/// What stands in the four sections of Quon.ini, by section and key.
using Section = std::map<std::string, std::string>;
using Records = std::map<std::string, Section>;

Records RecordsOf(const IniText& ini);

/// How the records differ, a line each; "" when they do not.
std::string Differences(const Records& expected, const Records& found);

/// A record that a command changes; no value stands for a record that is not there.
struct Change {
    std::string section;
    std::string key;
    std::optional<std::string> after;
};

std::optional<std::string> Find(const Records& records, const std::string& section, const std::string& key);
void Apply(Records& records, const std::vector<Change>& changes);

struct Command {
    std::string name;
    std::vector<Change> changes;
    std::function<void()> run;
    /// Whether all of them are stored together.
    bool at_once = true;
    /// By the mouse, which takes its time.
    bool by_hand = false;
};

class ProgramIsGone : public std::exception {};

/// A panel with two full tabs and one of free buttons.
QuonIni FilledIni();

class BusySession {
  public:
    BusySession(const ProgramFolder& folder, unsigned seed);

    /// A command that is possible now, given by messages; nothing of it has been done yet.
    Command Next();
    /// The same, of all kinds that store something, by messages or by hand. Shows another tab first where it
    /// has to. To be the session's last: afterwards the pointer may be anywhere.
    Command NextThatWrites();

    /// Runs it to its end, or throws ProgramIsGone.
    void Run(const Command& command);

    QuonPanel& Quon() { return quon_; }
    const Records& Expected() const { return records_; }

  private:
    struct Shortcut {
        int button = 0;
        std::string name;
        std::string target;
    };

    std::string Key(int button) const { return std::to_string(10 * tab_ + button); }
    /// What a button of the shown tab holds; no value for a free one.
    std::optional<Shortcut> At(int button) const;
    std::vector<int> Buttons(const std::function<bool(int)>& is_wanted) const;
    /// A free button of the shown tab, or one that is not.
    int AnyFree();
    Shortcut AnyUsed(const std::function<bool(const Shortcut&)>& is_wanted = {});
    unsigned Random(unsigned below) { return random_() % below; }
    std::string NewName(const std::string& word) { return word + " " + std::to_string(++count_); }
    /// The changes by which a shortcut gets another name, and a target.
    std::vector<Change> Renaming(const Shortcut& shortcut, const std::string& name,
                                 const std::string& target);

    Command SwitchTab(int tab);
    Command DefineTab(int tab);
    Command Rename(const Shortcut& shortcut);
    Command Free(const Shortcut& shortcut);
    Command DeleteFrom(const Shortcut& shortcut);
    Command DeleteWithoutButton();
    Command EditShortcut(const Shortcut& shortcut);
    Command EditGroup(const Shortcut& shortcut);
    Command MakeGroup();
    Command DropOnFree();
    Command DropOnUsed(bool group);
    Command DropOnList();
    Command Move(bool onto_used);
    Command End();

    /// Waits until the condition holds or the program has gone.
    void Await(const std::string& what, const std::function<bool()>& condition);
    void AwaitName(int button, const std::string& name);
    Window AwaitDialog(const std::string& title);
    Window AwaitMessage(Window owner);
    void AwaitEndOf(Window dialog);
    static void PostClick(Window window, UINT down, UINT up);
    /// Chooses from a button's menu by this many presses of the arrow key.
    void ChooseFromMenu(int button, int rows);
    /// Opens the organiser, acts on the row of this name and closes it.
    void Organise(const std::string& name, const std::function<void(Window)>& act);
    /// Adds a page to the group that is being edited, gives it a name and stores it.
    void FillGroupEditor(const std::string& name, const std::string& page);
    void Drop(const std::string& text, POINT place);

    ProgramFolder files_{"dragged"};
    std::optional<DragSource> source_;
    QuonPanel quon_;
    Records records_;
    std::mt19937 random_;
    int tab_ = 1;
    int count_ = 0;
    int freed_ = 0;
};

}  // namespace testkit
