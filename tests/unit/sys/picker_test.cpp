// The pickers of the system in a user's hands.

#include <commdlg.h>
#include <dlgs.h>

#include "sys/file_operations.h"
#include "sys/shell_folders.h"
#include "tests/support/unit_test.h"
#include "win/com.h"
#include "win/process_start.h"

namespace {

using testkit::ModalAnswers, testkit::ProgramFolder, testkit::Window;

constexpr int kPickerTitle = 0x3742;  // the shell's own identifier for the text above the folders

TEST(FolderPickerDesktopTest, GivesTheFolderThatIsSelectedOrNothingWhenItIsCancelled) {
    const win::OleThread ole;
    const ModalAnswers user({[](Window picker) {
                                 EXPECT_EQ(picker.Child(kPickerTitle).Text(),
                                           win::ProgramPath().substr(0, 3));
                                 picker.Press(IDOK);
                             },
                             testkit::Press(IDCANCEL)});
    // It begins with the desktop, which is a folder too.
    EXPECT_EQ(sys::clsBmenu::GetFolder(), sys::clsShell::GetSpecialfolder(CSIDL_DESKTOPDIRECTORY));
    EXPECT_EQ(sys::clsBmenu::GetFolder(), "");
}

/// A folder whose path has this many characters, most of them Cyrillic.
std::string DeepFolder(const ProgramFolder& folder, std::size_t length) {
    std::wstring path = testkit::Wide(folder.Path());
    while (path.size() + 1 < length)
        path += L"\\" + std::wstring(std::min<std::size_t>(length - path.size() - 1, 60), L'ж');
    const std::string name = testkit::Utf8(path).substr(folder.Path().size() + 1);
    return folder.MakeFolder(name);
}

TEST(FolderPickerTest, GivesALongFolderOfAnyScriptWhole) {
    const win::OleThread ole;
    const ProgramFolder folder;
    const std::string wanted = DeepFolder(folder, 159);
    ASSERT_GT(wanted.size(), 255u) << "bytes";
    const testkit::RecordedCall browse = FAKE_CALL(SHBrowseForFolderW, [&](LPBROWSEINFOW) {
        LPITEMIDLIST chosen = nullptr;
        SHParseDisplayName(testkit::Wide(wanted).c_str(), nullptr, &chosen, 0, nullptr);
        return chosen;
    });
    EXPECT_EQ(sys::clsBmenu::GetFolder(), wanted);
}

/// Types into the file picker's box for the name, and presses "Open".
void OpenTyped(Window picker, const std::string& name) {
    const Window box = picker.Child(cmb13);
    (box.Handle() != nullptr ? box : picker.Child(edt1)).SetText(name);
    picker.Post(WM_COMMAND, IDOK);
}

TEST(FilePickerDesktopTest, GivesALongFileOfAnyScriptWhole) {
    const win::OleThread ole;
    const ProgramFolder folder;
    const std::string wanted = DeepFolder(folder, 150) + "\\文件.txt";
    testkit::WriteBytes(wanted, "text");
    ASSERT_GT(wanted.size(), 255u) << "bytes";
    const ModalAnswers user({[&](Window picker) { OpenTyped(picker, wanted); }});
    EXPECT_EQ(sys::clsBmenu::GetFile(), wanted);
}

TEST(FilePickerDesktopTest, SurvivesOpenPressedAgainAndAgainInAFolder) {
    const win::OleThread ole;
    const ProgramFolder folder;
    const std::string inside = DeepFolder(folder, 159);
    wchar_t before[MAX_PATH] = L"";
    GetCurrentDirectoryW(MAX_PATH, before);
    const ModalAnswers user({[&](Window picker) {
        OpenTyped(picker, inside);
        for (int press = 0; press < 20; ++press)
            picker.Post(WM_COMMAND, IDOK);
        picker.Post(WM_COMMAND, IDCANCEL);
    }});
    EXPECT_EQ(sys::clsBmenu::GetFile(), "");
    wchar_t after[MAX_PATH] = L"";
    GetCurrentDirectoryW(MAX_PATH, after);
    EXPECT_STREQ(after, before);
}

}  // namespace
