#include "tests/fuzz/fuzz_user.h"

#include <psapi.h>

#include "app/button_commands.h"
#include "config/settings.h"
#include "res/resource.h"
#include "win/errors.h"
#include "win/window.h"

namespace testkit {
namespace {

constexpr int kRenameBox = IDC_RENAME;
constexpr int kList = IDC_SHORTCUTS;
constexpr int kSettingsButton = IDC_IMAGE_BUTTON + 2;
constexpr int kOrganizeCommand = IDM_SETTINGS + 0;
constexpr int kOptionsCommand = IDM_SETTINGS + 1;
constexpr int kGroupCommand = IDM_BUTTON + 2;
constexpr int kFreeCommand = IDM_BUTTON + 4;

constexpr const char* kRunKey = "SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Run";
const auto kFakeKey = reinterpret_cast<HKEY>(static_cast<UINT_PTR>(0x5155));

std::vector<std::string>& ShownErrors() {
    static std::vector<std::string> errors;
    return errors;
}

constexpr LPARAM kInside = MAKELPARAM(5, 5);

void Press(Window picture) { picture.Send(WM_LBUTTONDOWN, MK_LBUTTON, kInside); }
void LetGo(Window picture) { picture.Send(WM_LBUTTONUP, 0, kInside); }

void Click(Window picture) {
    Press(picture);
    LetGo(picture);
}

}  // namespace

FuzzUser::FuzzUser(app::PanelHarness& panel, DesktopAround& desktop, Dice& dice, IniGenerator& generator,
                   const std::vector<std::string>& targets)
    : panel_(panel),
      desktop_(desktop),
      dice_(dice),
      generator_(generator),
      targets_(targets),
      folder_(targets.back()),
      answers_(ModalAnswers::ForAll([this](Window dialog) { Answer(dialog); })) {
    KeepWindowsAway();
    KeepRegistryAway();
    win::SetErrorReporter(+[](HWND, const char* message) noexcept { ShownErrors().emplace_back(message); });
}

FuzzUser::~FuzzUser() { win::SetErrorReporter(nullptr); }

const std::vector<std::string>& FuzzUser::Errors() { return ShownErrors(); }

void FuzzUser::KeepWindowsAway() {
    fakes_.push_back(FAKE_CALL(Sleep, [](DWORD) {}));
    fakes_.push_back(ANSWER_CALL(ShellExecuteA, reinterpret_cast<HINSTANCE>(33)));
    fakes_.push_back(ANSWER_CALL(CreateProcessA, FALSE));
    fakes_.push_back(
        FAKE_CALL(TrackPopupMenu, [this](HMENU menu, UINT, int, int, int, HWND, const RECT*) -> BOOL {
            const int chosen = std::exchange(chosen_, 0);
            // An entry of the submenu is out of reach where that is.
            const bool inside = chosen >= IDM_FILE_OPERATIONS && chosen <= IDM_FILE_OPERATIONS + app::kDelete;
            const UINT state = inside ? GetMenuState(menu, app::kFileOperations, MF_BYPOSITION)
                                      : GetMenuState(menu, static_cast<UINT>(chosen), MF_BYCOMMAND);
            return state != UINT(-1) && (state & (MF_GRAYED | MF_DISABLED)) != 0 ? 0 : chosen;
        }));
    fakes_.push_back(FAKE_CALL(EnumProcesses, [](DWORD*, DWORD, LPDWORD needed) -> BOOL {
        *needed = 0;
        return TRUE;
    }));
    fakes_.push_back(FAKE_CALL(
        GetMessagePos, [this]() -> DWORD { return static_cast<DWORD>(MAKELONG(pointer_.x, pointer_.y)); }));
}

void FuzzUser::KeepRegistryAway() {
    fakes_.push_back(FAKE_CALL(
        RegOpenKeyExA, [](HKEY root, LPCSTR path, DWORD options, REGSAM access, PHKEY key) -> LSTATUS {
            if (root != HKEY_LOCAL_MACHINE || std::string_view(path) != kRunKey)
                return ORIGINAL_CALL(RegOpenKeyExA)(root, path, options, access, key);
            *key = kFakeKey;
            return ERROR_SUCCESS;
        }));
    fakes_.push_back(ANSWER_CALL(RegSetValueExA, ERROR_SUCCESS));
    fakes_.push_back(ANSWER_CALL(RegDeleteValueA, ERROR_SUCCESS));
    fakes_.push_back(FAKE_CALL(RegCloseKey, [](HKEY key) -> LSTATUS {
        return key == kFakeKey ? ERROR_SUCCESS : ORIGINAL_CALL(RegCloseKey)(key);
    }));
    // A few of the registered extensions are enough, among them one that no file's name can end with.
    fakes_.push_back(
        FAKE_CALL(RegEnumKeyExA,
                  [](HKEY, DWORD index, LPSTR name, LPDWORD, LPDWORD, LPSTR, LPDWORD, PFILETIME) -> LSTATUS {
                      static constexpr std::array kExtensions{".txt", ".a/b", "no extension"};
                      if (index >= kExtensions.size()) return ERROR_NO_MORE_ITEMS;
                      std::strcpy(name, kExtensions.at(index));
                      return ERROR_SUCCESS;
                  }));
}

void FuzzUser::HoverAt(Window picture) {
    picture.Send(WM_MOUSEMOVE, 0, kInside);
    picture.Send(WM_MOUSEMOVE, 0, MAKELPARAM(6, 6));
}

void FuzzUser::LookAround() {
    // All free buttons have the same tip, and a tip's window takes longest to make.
    bool freeOneSeen = false;
    const bool everywhere = dice_.Once(4);
    for (int tab = 6; tab >= 1; --tab) {
        if (!everywhere && !dice_.Once(4)) continue;
        HoverAt(Header(tab));
        Click(Header(tab));
        for (int index = 1; index <= 9; ++index) {
            if (Button(index).Text() == "Empty" && std::exchange(freeOneSeen, true)) continue;
            HoverAt(Button(index));
            HoverAt(panel_.Window().Child(IDC_HOVER_PICTURE));
        }
    }
    win::ProcessPendingMessages();
}

std::string FuzzUser::Act() {
    static constexpr std::array<std::pair<const char*, void (FuzzUser::*)()>, 18> kCommands{
        {{"list", &FuzzUser::UseList},
         {"organize", &FuzzUser::Organize},
         {"options", &FuzzUser::UseOptions},
         {"define tab", &FuzzUser::DefineTab},
         {"edit group", &FuzzUser::EditGroup},
         {"rename", &FuzzUser::Rename},
         {"free", &FuzzUser::Free},
         {"move", &FuzzUser::Move},
         {"double click", &FuzzUser::DoubleClick},
         {"switch tab", &FuzzUser::SwitchTab},
         {"drop on a button", &FuzzUser::DropOnAButton},
         {"drop on the list", &FuzzUser::DropOnTheList},
         {"paste", &FuzzUser::Paste},
         {"pick", &FuzzUser::Pick},
         {"operate on a file", &FuzzUser::OperateOnAFile},
         {"change the icon", &FuzzUser::ChangeIcon},
         {"keys", &FuzzUser::PressKeys},
         {"dock", &FuzzUser::DockAndComeOut}}};
    named_ = {};
    filesMayMove_ = false;
    mayFail_ = HasImpossibleButton();
    answersAreNames_ = false;
    ShownErrors().clear();
    const auto& [name, command] = dice_.OneOf(kCommands);
    (this->*command)();
    win::ProcessPendingMessages();
    return name;
}

int FuzzUser::AnyUsedButton() {
    int index = AnyButton();
    for (int tries = 0; tries < 8 && Button(index).Text() == "Empty"; ++tries)
        index = index % 9 + 1;
    return index;
}

void FuzzUser::NameButton(int index) {
    named_.buttons.insert(std::to_string(config::Settings.CurrentTab) + std::to_string(index));
    named_.AddShortcut(Button(index).Text());
}

void FuzzUser::Choose(int button, int command) {
    chosen_ = command;
    Button(button).Send(WM_RBUTTONDOWN, MK_RBUTTON, kInside);
    Button(button).Send(WM_RBUTTONUP, 0, kInside);
}

void FuzzUser::UseList() {
    const Window list = panel_.Window().Child(kList);
    const Window field(GetWindow(list.Handle(), GW_CHILD));
    // With collected applications shown, refreshing the list collects.
    named_.collected.insert("BROWSER");
    for (std::size_t times = 1 + dice_.Below(3); times > 0; --times) {
        std::wstring typed = Wide(generator_.Typed());
        typed.resize(std::min<std::size_t>(typed.size(), dice_.Below(4)));
        panel_.PressKey(WM_KEYDOWN, 'A', {}, field.Handle());
        SetWindowTextW(field.Handle(), typed.c_str());
        field.Send(EM_SETSEL, typed.size(), static_cast<LPARAM>(typed.size()));
        panel_.PressKey(WM_KEYUP, 'A', {}, field.Handle());
    }
    if (dice_.Once(2)) {
        const LRESULT count = list.Send(CB_GETCOUNT);
        list.Send(CB_SETCURSEL, dice_.Once(3) ? count - 1 : dice_.Below(static_cast<std::size_t>(count)));
        panel_.Window().Send(WM_COMMAND, MAKEWPARAM(kList, CBN_SELENDOK),
                             reinterpret_cast<LPARAM>(list.Handle()));
        win::ProcessPendingMessages();
    }
    if (dice_.Once(2)) panel_.PressKey(WM_KEYDOWN, VK_RETURN, {}, field.Handle());
    panel_.PressKey(WM_KEYDOWN, VK_ESCAPE, {}, field.Handle());
}

void FuzzUser::Organize() {
    named_.with_button = true;
    chosen_ = kOrganizeCommand;
    Click(panel_.Window().Child(kSettingsButton));
}

void FuzzUser::UseOptions() {
    chosen_ = kOptionsCommand;
    Click(panel_.Window().Child(kSettingsButton));
}

void FuzzUser::DefineTab() {
    const int tab = AnyTab();
    named_.buttons.insert(std::to_string(tab) + "0");
    Header(tab).Send(WM_RBUTTONDOWN, MK_RBUTTON, kInside);
    Header(tab).Send(WM_RBUTTONUP, 0, kInside);
}

void FuzzUser::EditGroup() {
    const int index = dice_.Once(4) ? AnyButton() : AnyUsedButton();
    NameButton(index);
    named_.with_button = true;
    Choose(index, kGroupCommand);
}

void FuzzUser::Rename() {
    const int index = AnyUsedButton();
    NameButton(index);
    named_.kept.insert(Folded(Button(index).Text()));
    Click(Button(index));
    panel_.PressKey(WM_KEYDOWN, VK_F2);
    const Window box = panel_.Window().Child(kRenameBox);
    if ((box.Style() & WS_VISIBLE) == 0) return;
    TypeName(box);
    SetFocus(box.Handle());
    panel_.PressKey(WM_KEYDOWN, dice_.Once(5) ? VK_ESCAPE : VK_RETURN, {}, box.Handle());
}

void FuzzUser::Free() {
    const int index = AnyUsedButton();
    NameButton(index);
    Choose(index, kFreeCommand);
}

void FuzzUser::Move() {
    const int source = AnyUsedButton();
    NameButton(source);
    named_.kept.insert(Folded(Button(source).Text()));
    answersAreNames_ = true;
    {
        const app::HeldModifierKeys held({VK_CONTROL, VK_SHIFT});
        Press(Button(source));
    }
    if (dice_.Once(2)) {
        pointer_ = Header(AnyTab()).Centre();
        Button(source).Send(WM_MOUSEMOVE, MK_LBUTTON, kInside);
    }
    const int target = AnyButton();
    NameButton(target);
    pointer_ = Button(target).Centre();
    Button(source).Send(WM_MOUSEMOVE, MK_LBUTTON, kInside);
    LetGo(Button(source));
}

void FuzzUser::DoubleClick() {
    static constexpr std::array<std::array<int, 2>, 5> kHeld{
        {{0, 0}, {VK_SHIFT, 0}, {VK_MENU, 0}, {VK_CONTROL, 0}, {VK_CONTROL, VK_MENU}}};
    const auto& held = dice_.OneOf(kHeld);
    const int index = AnyUsedButton();
    // CTRL frees the button, ALT+CTRL gives it a switch; otherwise it is only opened, which names nothing.
    if (held[0] == VK_CONTROL) NameButton(index);
    const app::HeldModifierKeys keys({held[0], held[1]});
    Click(Button(index));
    if (!config::Settings.SingleClickOpen) Button(index).Send(WM_LBUTTONDBLCLK, MK_LBUTTON, kInside);
}

void FuzzUser::SwitchTab() {
    Click(Header(AnyTab()));
    HoverAt(Button(AnyButton()));
    HoverAt(panel_.Window().Child(IDC_HOVER_PICTURE));
}

}  // namespace testkit
