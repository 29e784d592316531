#include "tests/program/busy_session.h"

#include <chrono>
#include <stdexcept>
#include <utility>

namespace testkit {
namespace {

constexpr const char* kSections[] = {"Settings", "Buttons", "Cuts", "Switch"};
constexpr int kTabs = 3;
constexpr int kButtons = 9;
constexpr int kFreeTab = kTabs;
constexpr const char* kUnbound = "Without a button";
constexpr const char* kPage = "http://example.test/";

// The rows of a button's menu, without the separators.
constexpr int kGroupRow = 3;
constexpr int kFreeRow = 4;

QuonIni IniShowing(int tab) {
    const QuonIni ini{.current_tab = tab, .click_shows = true};
    return ini;
}

bool IsGroup(const std::string& target) { return target.find('|') != std::string::npos; }

}  // namespace

Records RecordsOf(const IniText& ini) {
    Records records;
    for (const char* section : kSections)
        for (const auto& [key, value] : ini.Entries(section)) {
            if (!records[section].emplace(key, value).second) records[section][key] += " (twice)";
        }
    return records;
}

std::optional<std::string> Find(const Records& records, const std::string& section, const std::string& key) {
    const auto place = records.find(section);
    if (place == records.end()) return std::nullopt;
    const auto record = place->second.find(key);
    return record == place->second.end() ? std::nullopt : std::optional(record->second);
}

void Apply(Records& records, const std::vector<Change>& changes) {
    for (const auto& [section, key, after] : changes) {
        if (after)
            records[section][key] = *after;
        else
            records[section].erase(key);
    }
}

std::string Differences(const Records& expected, const Records& found) {
    std::string lines;
    for (const char* section : kSections) {
        Section keys = expected.contains(section) ? expected.at(section) : Section();
        if (found.contains(section)) keys.insert(found.at(section).begin(), found.at(section).end());
        for (const auto& [key, unused] : keys) {
            const auto wanted = Find(expected, section, key);
            const auto there = Find(found, section, key);
            if (wanted != there)
                lines += std::string(section) + " " + key + ": \"" + there.value_or("(none)") +
                         "\" instead of \"" + wanted.value_or("(none)") + "\"\n";
        }
    }
    return lines;
}

QuonIni FilledIni() {
    QuonIni ini = IniShowing(1);
    for (int tab = 1; tab <= kTabs; ++tab) {
        ini.buttons.emplace_back(std::to_string(10 * tab),
                                 "Tab " + std::to_string(tab) + "|with a description");
        for (int button = 1; button <= kButtons; ++button) {
            const std::string key = std::to_string(10 * tab + button);
            const std::string target = kPage + ("?q=" + key + "&p=ž");
            if (tab == kFreeTab)
                ini.buttons.emplace_back(key, "");
            else
                ini.AddShortcut(key, "Пречица " + key, button == kButtons ? target + "|" + target : target,
                                button % 3 == 0 || button == kButtons ? "" : "/x=" + key);
        }
    }
    ini.cuts.emplace_back(kUnbound, kPage);
    return ini;
}

BusySession::BusySession(const ProgramFolder& folder, unsigned seed)
    : quon_(folder), records_(RecordsOf(folder.Ini())), random_(seed) {
    quon_.Main().Activate();
}

Command BusySession::Next() {
    constexpr int kMostFreed = 6;
    const unsigned kind = Random(20);
    if (kind < 2) return SwitchTab(1 + static_cast<int>(Random(kTabs)));
    if (kind < 5) return DefineTab(1 + static_cast<int>(Random(kTabs)));
    const auto shortcut = At(1 + static_cast<int>(Random(kButtons)));
    if (!shortcut) return SwitchTab(1 + static_cast<int>(Random(kTabs - 1)));
    if (kind < 6 && freed_ < kMostFreed) return Free(*shortcut);
    if (kind < 7 && freed_ < kMostFreed) return DeleteFrom(*shortcut);
    if (IsGroup(shortcut->target)) return EditGroup(*shortcut);
    return kind < 8 ? EditShortcut(*shortcut) : Rename(*shortcut);
}

Command BusySession::NextThatWrites() {
    const unsigned kind = Random(15);
    const bool needs_free = kind == 8 || kind == 9;
    if (kind > 2 && (tab_ == kFreeTab) != needs_free) Run(SwitchTab(needs_free ? kFreeTab : 1));
    switch (kind) {
        case 0: return DefineTab(1 + static_cast<int>(Random(kTabs)));
        case 1: return End();
        case 2: return DropOnList();
        case 3: return Rename(AnyUsed());
        case 4: return Free(AnyUsed());
        case 5: return DeleteFrom(AnyUsed());
        case 6: return DeleteWithoutButton();
        case 7: return EditShortcut(AnyUsed([](const Shortcut& each) { return !IsGroup(each.target); }));
        case 8: return MakeGroup();
        case 9: return DropOnFree();
        case 10: return DropOnUsed(false);
        case 11: return DropOnUsed(true);
        case 12: return Move(true);
        case 13: return Move(Buttons([this](int button) { return !At(button); }).empty());
        default: return EditGroup(AnyUsed([](const Shortcut& each) { return IsGroup(each.target); }));
    }
}

void BusySession::Run(const Command& command) {
    constexpr std::chrono::seconds kEnding{5};
    try {
        command.run();
    } catch (const std::exception& error) {
        // Its windows go a moment before it has ended.
        if (HappensWithin(kEnding, [this] { return !quon_.Program().IsRunning(); })) throw ProgramIsGone();
        throw std::runtime_error(command.name + ": " + error.what());
    }
    Apply(records_, command.changes);
}

std::optional<BusySession::Shortcut> BusySession::At(int button) const {
    const std::string record = Find(records_, "Buttons", Key(button)).value_or("");
    if (record.empty()) return std::nullopt;
    const std::string name = record.substr(0, record.find('|'));
    return Shortcut{button, name, Find(records_, "Cuts", name).value_or("")};
}

std::vector<int> BusySession::Buttons(const std::function<bool(int)>& is_wanted) const {
    std::vector<int> buttons;
    for (int button = 1; button <= kButtons; ++button)
        if (is_wanted(button)) buttons.push_back(button);
    return buttons;
}

int BusySession::AnyFree() {
    const std::vector<int> free = Buttons([this](int button) { return !At(button); });
    return free.at(Random(static_cast<unsigned>(free.size())));
}

BusySession::Shortcut BusySession::AnyUsed(const std::function<bool(const Shortcut&)>& is_wanted) {
    const auto used = [this](int button) { return At(button).has_value(); };
    std::vector<int> buttons =
        Buttons([&](int button) { return used(button) && (!is_wanted || is_wanted(*At(button))); });
    // The session may have freed the only one.
    if (buttons.empty()) buttons = Buttons(used);
    return *At(buttons.at(Random(static_cast<unsigned>(buttons.size()))));
}

std::vector<Change> BusySession::Renaming(const Shortcut& shortcut, const std::string& name,
                                          const std::string& target) {
    std::vector<Change> changes{{"Buttons", Key(shortcut.button), name + "|0"},
                                {"Cuts", shortcut.name, std::nullopt},
                                {"Cuts", name, target}};
    if (const auto value = Find(records_, "Switch", shortcut.name)) {
        changes.push_back({"Switch", shortcut.name, std::nullopt});
        changes.push_back({"Switch", name, value});
    }
    return changes;
}

void BusySession::Await(const std::string& what, const std::function<bool()>& condition) {
    WaitFor(what, [&] { return !quon_.Program().IsRunning() || condition(); });
    if (!quon_.Program().IsRunning()) throw ProgramIsGone();
}

void BusySession::AwaitName(int button, const std::string& name) {
    Await("button " + std::to_string(button) + " is " + name,
          [&] { return quon_.Button(button).Text() == name && quon_.Main().IsEnabled(); });
}

Window BusySession::AwaitDialog(const std::string& title) {
    Window dialog;
    Await(title, [&] {
        dialog = quon_.Program().FindWindow({.title = title});
        return dialog.Exists();
    });
    return dialog;
}

Window BusySession::AwaitMessage(Window owner) {
    Window message;
    Await("the message", [&] {
        message = quon_.Program().FindWindow({.class_name = "#32770", .title = MessageBoxWindow::kCaption});
        return message.Exists() && message.Owner() == owner;
    });
    return message;
}

void BusySession::AwaitEndOf(Window dialog) {
    Await("the dialog closes", [&] { return !dialog.Exists() && quon_.Main().IsEnabled(); });
}

void BusySession::PostClick(Window window, UINT down, UINT up) {
    window.Post(down, 0, MAKELPARAM(4, 4));
    window.Post(up, 0, MAKELPARAM(4, 4));
}

void BusySession::ChooseFromMenu(int button, int rows) {
    PostClick(quon_.Button(button), WM_RBUTTONDOWN, WM_RBUTTONUP);
    Await("the menu", [&] { return PopupMenu::OpenCount(quon_.Id()) == 1; });
    for (int row = 0; row < rows; ++row)
        quon_.Main().Post(WM_KEYDOWN, VK_DOWN);
    quon_.Main().Post(WM_KEYDOWN, VK_RETURN);
}

void BusySession::Organise(const std::string& name, const std::function<void(Window)>& act) {
    PostClick(quon_.ImageButton(2), WM_LBUTTONDOWN, WM_LBUTTONUP);
    Await("the menu", [&] { return PopupMenu::OpenCount(quon_.Id()) == 1; });
    for (const WPARAM key : {VK_DOWN, VK_RETURN})
        quon_.Main().Post(WM_KEYDOWN, key);
    const std::string count = std::to_string(records_.at("Cuts").size());
    const Window organiser = AwaitDialog("Organize shortcuts - " + count + " shortcuts found");
    const Window list = organiser.Child(frmCuts_pBasket);
    list.Post(WM_KEYDOWN, VK_HOME);
    for (std::string before; list.Text() != name; before = list.Text()) {
        list.Post(WM_KEYDOWN, VK_DOWN);
        Await("the next row", [&] { return list.Text() != before || list.Text() == name; });
    }
    act(organiser);
    Await("the row is done with", [&] { return organiser.IsEnabled(); });
    organiser.Post(WM_COMMAND, IDCANCEL);
    AwaitEndOf(organiser);
    // The panel has docked out of its way.
    quon_.Main().Post(WM_LBUTTONDOWN, 0, MAKELPARAM(1, 1));
    Await("the panel comes out", [&] { return quon_.IsOut(); });
}

void BusySession::FillGroupEditor(const std::string& name, const std::string& page) {
    const Window editor = AwaitDialog("Edit group");
    editor.Child(frmEditB_t1).SetText(name);
    editor.PostPress(frmEditB_c1 + 4);
    const Window question = AwaitMessage(editor);
    question.Child(frmMsg_Text1).SetText(page);
    question.PostPress(frmMsg_b1);
    Await("the page is added", [&] { return !question.Exists() && editor.IsEnabled(); });
    editor.PostPress(frmEditB_c1 + 2);
    AwaitEndOf(editor);
}

void BusySession::Drop(const std::string& text, POINT place) {
    if (!source_) source_.emplace(files_);
    quon_.Main().Activate();
    source_->Drop({.text = text}, place);
}

Command BusySession::SwitchTab(int tab) {
    const auto run = [this, tab] {
        PostClick(quon_.Header(tab), WM_LBUTTONDOWN, WM_LBUTTONUP);
        tab_ = tab;
        for (int button = 1; button <= kButtons; ++button) {
            const auto shortcut = At(button);
            AwaitName(button, shortcut ? shortcut->name : "Empty");
        }
    };
    return {"show tab " + std::to_string(tab), {}, run};
}

Command BusySession::DefineTab(int tab) {
    // A label holds seven characters, however long the session.
    const std::string label = "T" + std::to_string(tab) + "." + std::to_string(++count_);
    const auto run = [this, tab, label] {
        PostClick(quon_.Header(tab), WM_RBUTTONDOWN, WM_RBUTTONUP);
        const Window dialog = AwaitDialog("Define tab");
        dialog.Child(frmTabPrep_Text1).SetText(label);
        dialog.PostPress(frmTabPrep_Command1);
        AwaitEndOf(dialog);
    };
    return {"define " + label, {{"Buttons", std::to_string(10 * tab), label + "|with a description"}}, run};
}

Command BusySession::Rename(const Shortcut& shortcut) {
    const std::string name = NewName("Преименована");
    const auto run = [this, shortcut, name] {
        const Window box = quon_.RenameBox();
        quon_.Button(shortcut.button).Post(WM_MOUSEMOVE, 0, MAKELPARAM(20, 20));
        quon_.Button(shortcut.button).Post(WM_KEYDOWN, VK_F2);
        Await("the box", [&] { return box.IsVisible() && box.Text() == shortcut.name; });
        box.SetText(name);
        box.Post(WM_KEYDOWN, VK_RETURN);
        Await("the box closes", [&] { return !box.IsVisible(); });
        AwaitName(shortcut.button, name);
    };
    return {"rename " + shortcut.name + " to " + name, Renaming(shortcut, name, shortcut.target), run};
}

Command BusySession::Free(const Shortcut& shortcut) {
    ++freed_;
    const auto run = [this, button = shortcut.button] {
        ChooseFromMenu(button, kFreeRow);
        AwaitName(button, "Empty");
    };
    return {"free " + shortcut.name,
            {{"Buttons", Key(shortcut.button), ""},
             {"Cuts", shortcut.name, std::nullopt},
             {"Switch", shortcut.name, std::nullopt}},
            run};
}

/// The switch stays.
Command BusySession::DeleteFrom(const Shortcut& shortcut) {
    ++freed_;
    const auto run = [this, shortcut] {
        Organise(shortcut.name, [this](Window organiser) {
            organiser.PostPress(frmCuts_Command1 + 1);
            const Window question = AwaitMessage(organiser);
            question.PostPress(frmMsg_b1);
            Await("the question closes", [&] { return !question.Exists(); });
        });
        AwaitName(shortcut.button, "Empty");
    };
    return {"delete " + shortcut.name,
            {{"Buttons", Key(shortcut.button), ""}, {"Cuts", shortcut.name, std::nullopt}},
            run};
}

Command BusySession::DeleteWithoutButton() {
    const auto run = [this] {
        Organise(kUnbound, [this](Window organiser) {
            const std::string before = organiser.Text();
            organiser.PostPress(frmCuts_Command1 + 1);
            Await("the row goes", [&] { return organiser.Text() != before; });
        });
    };
    return {"delete what has no button", {{"Cuts", kUnbound, std::nullopt}}, run};
}

Command BusySession::EditShortcut(const Shortcut& shortcut) {
    if (IsGroup(shortcut.target)) return Rename(shortcut);
    const std::string name = NewName("Измењена");
    const std::string target = kPage + std::to_string(count_);
    const auto run = [this, shortcut, name, target] {
        Organise(shortcut.name, [&](Window organiser) {
            organiser.PostPress(frmCuts_Command1 + 0);
            const Window editor = AwaitDialog("Edit shortcut");
            editor.Child(frmEdit_t1 + 0).SetText(name);
            editor.Child(frmEdit_t1 + 1).SetText(target);
            editor.PostPress(frmEdit_c1 + 2);
            Await("the editor closes", [&] { return !editor.Exists(); });
        });
        AwaitName(shortcut.button, name);
    };
    return {"edit " + shortcut.name, Renaming(shortcut, name, target), run};
}

Command BusySession::EditGroup(const Shortcut& shortcut) {
    if (!IsGroup(shortcut.target)) return Rename(shortcut);
    // A group holds only so much.
    constexpr size_t kLongestGroup = 400;
    if (shortcut.target.size() > kLongestGroup) return Rename(shortcut);
    const std::string name = NewName("Група");
    const std::string page = kPage + std::to_string(count_);
    const auto run = [this, shortcut, name, page] {
        ChooseFromMenu(shortcut.button, kGroupRow);
        FillGroupEditor(name, page);
        AwaitName(shortcut.button, name);
    };
    return {"edit the group " + shortcut.name, Renaming(shortcut, name, shortcut.target + "|" + page), run};
}

/// The group is stored first, then the button that leads to it.
Command BusySession::MakeGroup() {
    const int button = AnyFree();
    const std::string name = NewName("Нова група");
    const std::string page = kPage + std::to_string(count_);
    const auto run = [this, button, name, page] {
        ChooseFromMenu(button, kGroupRow);
        FillGroupEditor(name, page);
        AwaitName(button, name);
    };
    return {"make " + name, {{"Cuts", name, page}, {"Buttons", Key(button), name + "|0"}}, run, false};
}

Command BusySession::DropOnFree() {
    const int button = AnyFree();
    const auto run = [this, button] {
        Drop(std::string(kPage) + "dropped.html", quon_.Button(button).Centre());
        AwaitName(button, "dropped");
    };
    return {"drop on button " + Key(button),
            {{"Cuts", "dropped", std::string(kPage) + "dropped.html"}, {"Buttons", Key(button), "dropped|0"}},
            run,
            true,
            true};
}

Command BusySession::DropOnUsed(bool group) {
    const Shortcut shortcut = AnyUsed();
    const std::string page = std::string(kPage) + "dropped.html";
    const std::string name = group ? NewName("Обе") : "dropped";
    const auto run = [this, shortcut, page, group, name] {
        Drop(page, quon_.Button(shortcut.button).Centre());
        const Window question = AwaitMessage(quon_.Main());
        if (group) question.Child(frmMsg_Text1).SetText(name);
        question.PostPress(frmMsg_b1 + (group ? kCreateGroup : kReplace));
        AwaitName(shortcut.button, name);
    };
    return {"drop on " + shortcut.name + (group ? " to make a group" : " to replace it"),
            {{"Cuts", name, group ? shortcut.target + "|" + page : page},
             {"Buttons", Key(shortcut.button), name + "|0"}},
            run,
            true,
            true};
}

Command BusySession::DropOnList() {
    const std::string page = std::string(kPage) + "listed.html";
    const auto run = [this, page] {
        const RECT box = quon_.Shortcuts().Rect();
        const LRESULT before = quon_.Shortcuts().Send(CB_GETCOUNT);
        Drop(page, {box.right - 8, box.top + 10});
        Await("the item", [&] { return quon_.Shortcuts().Send(CB_GETCOUNT) > before; });
    };
    return {"drop on the list", {{"Cuts", "listed", page}}, run, true, true};
}

Command BusySession::Move(bool onto_used) {
    const Shortcut source = AnyUsed();
    const int target =
        onto_used ? AnyUsed([&](const Shortcut& each) { return each.button != source.button; }).button
                  : AnyFree();
    if (target == source.button) return Rename(source);
    const auto run = [this, source, target, onto_used] {
        quon_.Main().Activate();
        mouse::Drag(quon_.Button(source.button).Centre(), quon_.Button(target).Centre(),
                    {VK_CONTROL, VK_SHIFT});
        if (onto_used) AwaitMessage(quon_.Main()).PostPress(frmMsg_b1 + kReplace);
        AwaitName(target, source.name);
        AwaitName(source.button, "Empty");
    };
    return {"move " + source.name + " to button " + Key(target),
            {{"Buttons", Key(source.button), ""}, {"Buttons", Key(target), source.name + "|0"}},
            run,
            true,
            true};
}

/// The settings are stored.
Command BusySession::End() {
    const auto run = [this] {
        quon_.Main().Post(WM_CLOSE);
        if (quon_.Program().WaitForExit() != 0) throw ProgramIsGone();
    };
    return {"end", {{"Settings", "Main", IniShowing(tab_).Main()}}, run};
}

}  // namespace testkit
