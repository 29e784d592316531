// The folder picker of the system in a user's hands.
#include <windows.h>

#include <gtest/gtest.h>
#include <shlobj.h>

#include "sys/file_operations.h"
#include "sys/shell_folders.h"
#include "tests/support/modal_answers.h"
#include "tests/support/window.h"
#include "win/com.h"
#include "win/process_start.h"

namespace {

using testkit::ModalAnswers;
using testkit::Window;

constexpr int kPickerTitle = 0x3742;  // the shell's own identifier for the text above the folders

TEST(FolderPickerDesktopTest, GivesTheFolderThatIsSelectedOrNothingWhenItIsCancelled) {
    const win::OleThread ole;
    const ModalAnswers user({[](Window picker) {
                                 EXPECT_EQ(picker.Child(kPickerTitle).Text(),
                                           win::ProgramPath().substr(0, 3));
                                 picker.Child(IDOK).Send(BM_CLICK);
                             },
                             [](Window picker) { picker.Child(IDCANCEL).Send(BM_CLICK); }});
    // It begins with the desktop, which is a folder too.
    EXPECT_EQ(sys::clsBmenu::GetFolder(), sys::clsShell::GetSpecialfolder(CSIDL_DESKTOPDIRECTORY));
    EXPECT_EQ(sys::clsBmenu::GetFolder(), "");
}

}  // namespace
