// The button's menu, opened by the right mouse button, and its commands on real files and programs.
#include <span>

#include "dialogs/edit_group.h"
#include "dialogs/icon_chooser.h"
#include "tests/program/quon_test.h"
#include "tests/support/neighbour.h"
#include "tests/support/paths.h"
#include "tests/support/wine.h"

namespace testkit {
namespace {

using ::testing::HasSubstr;

constexpr char kShellsQuestion[] =
    "Windows asks otherwise, and before it recycles only where its user wants to be asked.";

class ButtonMenuProgramTest : public QuonTest {
  protected:
    static void Choose(const QuonPanel& quon, int button, std::initializer_list<std::string_view> path) {
        quon.OpenButtonMenu(button).Choose(path);
    }
    static void Choose(const QuonPanel& quon, int button, std::string_view command) {
        Choose(quon, button, {command});
    }
    /// Reads the note, closes it by its button and gives its text.
    static std::string ReadNote(const QuonPanel& quon) {
        const MessageBoxWindow box = MessageBoxWindow::Wait(quon.Id());
        std::string text = box.Text();
        box.ClickButton(0);
        return text;
    }
    /// The picker that the program shows; the panel takes no input meanwhile.
    static Window WaitForPicker(QuonPanel& quon) {
        const Window picker = quon.WaitForSystemDialog();
        EXPECT_FALSE(quon.Main().IsEnabled());
        EXPECT_FALSE(quon.Main().IsTopmost());
        return picker;
    }
    static void ExpectPanelBack(const QuonPanel& quon) {
        WaitFor("the panel takes input again", [&] { return quon.Main().IsEnabled(); });
        WaitFor("the panel is topmost again", [&] { return quon.Main().IsTopmost(); });
    }
};

/// The bytes of a program with its imports in memory that may only be read, where newer linkers put them.
std::string WithProtectedImports(const std::string& program) {
    std::string bytes = FileBytes(program);
    const auto* start = reinterpret_cast<const IMAGE_DOS_HEADER*>(bytes.data());
    auto* headers = reinterpret_cast<IMAGE_NT_HEADERS*>(bytes.data() + start->e_lfanew);
    const std::span sections(IMAGE_FIRST_SECTION(headers), headers->FileHeader.NumberOfSections);
    for (IMAGE_SECTION_HEADER& section : sections)
        if (std::memcmp(section.Name, ".idata", sizeof(".idata")) == 0)
            section.Characteristics &= ~DWORD{IMAGE_SCN_MEM_WRITE};
    return bytes;
}

TEST_F(ButtonMenuProgramTest, RenamesAFileAndKeepsItsButton) {
    const std::string path = folder_.MakeFile("Извор\\writ č.txt", "text");
    QuonPanel quon = Start(QuonIni{}.AddShortcut("11", "Име", path));
    Choose(quon, 1, {"File operations", "Rename file"});
    {
        const MessageBoxWindow box = MessageBoxWindow::Wait(quon.Id());
        EXPECT_THAT(box.Text(), HasSubstr("old extension (txt) will be kept.)"));
        box.SetInput("ново 文");
        box.ClickButton(0);
    }
    EXPECT_EQ(ReadNote(quon), "Operation completed.");
    EXPECT_EQ(folder_.ReadFile("Извор\\ново 文.txt"), "text");
    const std::string renamed = folder_.FullPath("Извор\\ново 文.txt");
    WaitForRecord("Buttons", "11", renamed + "|0");
    EXPECT_EQ(folder_.IniValue("Cuts", "Име"), renamed) << "the shortcut leads there too";
    for (const int header : {2, 1})
        mouse::Click(quon.Header(header));
    quon.ExpectName(1, renamed);
    EXPECT_EQ(folder_.IniValue("Buttons", "11"), renamed + "|0") << "the button lives on";
}

TEST_F(ButtonMenuProgramTest, FreesAButtonWhoseFileHasVanishedWhenTheShellReportsFailure) {
    ONLY_UNDER_WINE(kShellsQuestion);
    QuonPanel quon = Start(QuonIni{}.AddShortcut("11", "Име", folder_.MakeFile("writ č.txt", "text")));
    folder_.RemoveFile("writ č.txt");
    Choose(quon, 1, {"File operations", "Delete file"});
    const Window question = WaitForPicker(quon);
    question.PostPress(IDYES);
    EXPECT_EQ(ReadNote(quon), "Couldn't perform the operation, sorry.");
    quon.ExpectName(1, "Empty");
    WaitForRecord("Buttons", "11", "");
}

TEST_F(ButtonMenuProgramTest, RecyclesAndDeletesFiles) {
    ONLY_UNDER_WINE(kShellsQuestion);
    QuonPanel quon = Start(QuonIni{}
                               .AddShortcut("11", "one", folder_.MakeFile("један.txt", "1"))
                               .AddShortcut("12", "two", folder_.MakeFile("два.txt", "2")));
    for (const auto& [button, command, file] :
         {std::tuple{1, "Move to Recycle bin", "један.txt"}, std::tuple{2, "Delete file", "два.txt"}}) {
        Choose(quon, button, {"File operations", command});
        WaitForPicker(quon).PostPress(IDYES);
        EXPECT_EQ(ReadNote(quon), "Operation completed.");
        EXPECT_FALSE(folder_.Exists(file));
        quon.ExpectName(button, "Empty");
    }
    EXPECT_EQ(folder_.IniValue("Cuts", "one"), folder_.FullPath("један.txt"));
}

TEST_F(ButtonMenuProgramTest, PickersReturnAndCancel) {
    const std::string path = folder_.MakeFile("Picked.txt", "text");
    QuonPanel quon = Start({});
    Choose(quon, 2, "Add file to button");
    {
        const Window picker = WaitForPicker(quon);
        EXPECT_EQ(picker.Text(), "Select file");
        CaptureScreen().SaveAs("file-picker.bmp");
        keyboard::Press(VK_ESCAPE);
        WaitUntilClosed(picker);
    }
    ExpectPanelBack(quon);
    EXPECT_EQ(quon.Button(2).Text(), "Empty");
    Choose(quon, 2, "Add file to button");
    {
        const Window picker = WaitForPicker(quon);
        WaitFor("the picker to be in front", [&] { return picker.IsForeground(); });
        keyboard::Chord({VK_CONTROL, 'A'});
        keyboard::Type(path + "\n");
        WaitUntilClosed(picker);
    }
    quon.ExpectName(2, "Picked");
    ExpectPanelBack(quon);
    EXPECT_EQ(folder_.IniValue("Cuts", "Picked"), path);
    Choose(quon, 3, "Add folder to button");
    {
        const Window picker = WaitForPicker(quon);
        CaptureScreen().SaveAs("folder-picker.bmp");
        picker.PostPress(IDCANCEL);
        WaitUntilClosed(picker);
    }
    ExpectPanelBack(quon);
    EXPECT_EQ(quon.Button(3).Text(), "Empty");
}

TEST_F(ButtonMenuProgramTest, ALibraryThatIsLoadedLateNeedsNoWritableImports) {
    folder_.MakeFile("Quon.exe", WithProtectedImports(QuonExe()));
    QuonPanel quon = Start({});
    Choose(quon, 2, "Add file to button");
    const Window picker = WaitForPicker(quon);
    keyboard::Press(VK_ESCAPE);
    WaitUntilClosed(picker);
    ExpectPanelBack(quon);
}

TEST_F(ButtonMenuProgramTest, AssignsARunningProgramAndNeverOffersItself) {
    const Neighbour neighbour(folder_, "Сусед č.exe", "a neighbour");
    QuonPanel quon = Start({});
    const PopupMenu programs = quon.OpenButtonMenu(4).Open("Assign from active");
    CaptureScreen().SaveAs("assign-from-active.bmp");
    EXPECT_FALSE(programs.Has("Quon"));
    programs.Choose("Сусед č");
    quon.ExpectName(4, "Сусед č");
    EXPECT_EQ(folder_.IniValue("Cuts", "Сусед č"), neighbour.Path());
    EXPECT_EQ(folder_.IniValue("Buttons", "14"), "Сусед č|0");
}

TEST_F(ButtonMenuProgramTest, PastesTextAndFiles) {
    const Neighbour neighbour(folder_, "copier.exe");
    const std::string first = folder_.MakeFile("Прва.txt");
    const std::string second = folder_.MakeFile("druga č.txt");
    QuonPanel quon = Start({});
    neighbour.CopyText("http://example.test/strana.html");
    Choose(quon, 1, "Paste from clipboard");
    quon.ExpectName(1, "strana");
    neighbour.CopyText(first);
    Choose(quon, 2, "Paste from clipboard");
    quon.ExpectName(2, "Прва");
    neighbour.CopyFiles({second});
    Choose(quon, 3, "Paste from clipboard");
    quon.ExpectName(3, "druga č");
    neighbour.CopyFiles({first, second});
    Choose(quon, 4, "Paste from clipboard");
    quon.ExpectName(4, "Прва");
    WaitForRecord("Cuts", "Прва", first + "|" + second);
    // A megabyte of text is neither a path nor a URL.
    neighbour.CopyText("megabyte", 1 << 17);
    Choose(quon, 5, "Paste from clipboard");
    quon.Settle();
    EXPECT_FALSE(MessageBoxWindow::IsShown(quon.Id()));
    EXPECT_EQ(quon.Button(5).Text(), "Empty");
}

TEST_F(ButtonMenuProgramTest, EditsAGroupAndChangesAnIcon) {
    const std::string target = folder_.CopyIn(TestTargetExe(), "target.exe");
    QuonPanel quon = Start(QuonIni{}
                               .AddShortcut("11", "Група", target + "|" + folder_.Path())
                               .AddShortcut("12", "Single", QuonExe()));
    Choose(quon, 1, "Edit group");
    const Window editor = quon.Program().WaitForWindow({.title = "Edit group"});
    EXPECT_FALSE(quon.Main().IsEnabled());
    editor.Child(dialogs::frmEditB::t1 + 0).SetText("Нова");
    editor.PostPress(dialogs::frmEditB::c1 + 2);
    quon.ExpectName(1, "Нова");
    ExpectPanelBack(quon);
    Choose(quon, 2, "Change icon");
    const Window chooser = quon.Program().WaitForWindow({.title = "Icon Chooser"});
    WaitFor("the chooser shows icons", [&] { return bool(chooser.FindChild(dialogs::IcoChooser::p2 + 1)); });
    mouse::Click(chooser.Child(dialogs::IcoChooser::p2 + 1));
    WaitForRecord("Buttons", "12", "Single|1");
    ExpectPanelBack(quon);
}

TEST_F(ButtonMenuProgramTest, ARightPressThatSlipsOntoAnItemRunsNothing) {
    QuonPanel quon = Start(QuonIni{}.AddShortcut("11", "Stays", folder_.MakeFile("a.txt")));
    const std::string before = folder_.IniBytes();
    mouse::MoveTo(quon.Button(1).Centre());
    mouse::Press(mouse::Button::kRight);
    const PopupMenu menu = PopupMenu::Wait(quon.Id());
    const RECT item = menu.Item("Free button").rect;
    mouse::Glide({(item.left + item.right) / 2, (item.top + item.bottom) / 2});
    WaitFor("the item is marked", [&] { return menu.Item("Free button").highlighted; });
    mouse::Release(mouse::Button::kRight);
    quon.Main().Send(WM_NULL);
    EXPECT_TRUE(menu.PopupWindow().IsVisible()) << "the menu stays for a choice";
    menu.Dismiss();
    EXPECT_EQ(quon.Button(1).Text(), "Stays");
    EXPECT_EQ(folder_.IniBytes(), before);
}

}  // namespace
}  // namespace testkit
