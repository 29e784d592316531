#include "sys/file_operations.h"

#include <commdlg.h>
#include <shlwapi.h>

#include "tests/support/unit_test.h"
#include "tests/support/wine.h"
#include "win/process_start.h"

namespace {

using sys::clsBmenu;
using ::testing::ElementsAre;
using testkit::CallLog, testkit::ModalAnswers, testkit::ProgramFolder, testkit::RecordedCall, testkit::Window;

/// A list of names as the shell reads it: each in brackets, up to the empty one that ends it.
std::string NamesIn(const char* list) {
    std::string names;
    for (const char* name = list; name != nullptr && *name != '\0'; name += std::strlen(name) + 1)
        names += "[" + std::string(name) + "]";
    return names;
}

std::wstring NamesIn(const wchar_t* list) {
    std::wstring names;
    for (const wchar_t* name = list; name != nullptr && *name != L'\0'; name += std::wcslen(name) + 1)
        names += L"[" + std::wstring(name) + L"]";
    return names;
}

TEST(PropertiesSheetTest, IsAskedForWithoutParametersFolderOrMessages) {
    int calls = 0;
    const RecordedCall execute = FAKE_CALL(ShellExecuteExA, [&](SHELLEXECUTEINFOA* record) -> BOOL {
        ++calls;
        EXPECT_EQ(record->cbSize, sizeof(SHELLEXECUTEINFOA));
        EXPECT_EQ(record->fMask, 1100u);
        EXPECT_EQ(record->hwnd, GetDesktopWindow());
        EXPECT_STREQ(record->lpVerb, "properties");
        EXPECT_STREQ(record->lpFile, "C:\\Čaj и 文.txt");
        EXPECT_STREQ(record->lpParameters, "");
        EXPECT_STREQ(record->lpDirectory, "");
        EXPECT_EQ(record->nShow, 0);
        EXPECT_EQ(record->hInstApp, nullptr);
        EXPECT_EQ(record->lpIDList, nullptr);
        EXPECT_EQ(record->lpClass, nullptr);
        EXPECT_EQ(record->hkeyClass, nullptr);
        return FALSE;
    });
    clsBmenu::ShowProperties("C:\\Čaj и 文.txt");
    EXPECT_EQ(calls, 1);
}

TEST(PropertiesSheetTest, GivesBackTheProcessThatTheShellMayReport) {
    const HANDLE process = OpenProcess(SYNCHRONIZE, FALSE, GetCurrentProcessId());
    const RecordedCall execute = FAKE_CALL(ShellExecuteExA, [&](SHELLEXECUTEINFOA* record) -> BOOL {
        record->hProcess = process;
        return TRUE;
    });
    clsBmenu::ShowProperties("C:\\a.txt");
    DWORD flags = 0;
    EXPECT_FALSE(GetHandleInformation(process, &flags));
}

TEST(FolderPickerTest, ShowsFoldersOfTheFileSystemUnderTheProgramsDriveAsTitle) {
    int calls = 0;
    const RecordedCall browse = FAKE_CALL(SHBrowseForFolderW, [&](LPBROWSEINFOW record) -> LPITEMIDLIST {
        ++calls;
        EXPECT_EQ(record->hwndOwner, GetDesktopWindow());
        EXPECT_EQ(record->pidlRoot, nullptr);
        EXPECT_EQ(testkit::Utf8(record->lpszTitle), win::ProgramPath().substr(0, 3));
        EXPECT_EQ(record->ulFlags, 1u);
        EXPECT_EQ(record->lpfn, nullptr);
        EXPECT_EQ(record->lParam, 0);
        return nullptr;
    });
    EXPECT_EQ(clsBmenu::GetFolder(), "") << "the user has cancelled";
    EXPECT_EQ(calls, 1);
}

TEST(FolderPickerTest, GivesThePathOfTheChosenFolderAndFreesItsItemList) {
    const ProgramFolder folder;
    const std::string wanted = folder.MakeFolder("Kućište и 文");
    LPITEMIDLIST chosen = nullptr;
    void* freed = nullptr;
    const RecordedCall browse = FAKE_CALL(SHBrowseForFolderW, [&](LPBROWSEINFOW) {
        SHParseDisplayName(testkit::Wide(wanted).c_str(), nullptr, &chosen, 0, nullptr);
        return chosen;
    });
    const RecordedCall free = FAKE_CALL(CoTaskMemFree, [&](LPVOID memory) {
        freed = memory;
        ORIGINAL_CALL(CoTaskMemFree)(memory);
    });
    EXPECT_EQ(clsBmenu::GetFolder(), wanted);
    EXPECT_NE(chosen, nullptr);
    EXPECT_EQ(freed, chosen);
}

TEST(FilePickerTest, IsAskedForWithEachFieldOfItsRecord) {
    int calls = 0;
    const RecordedCall open = FAKE_CALL(GetOpenFileNameW, [&](LPOPENFILENAMEW record) -> BOOL {
        ++calls;
        EXPECT_EQ(record->lStructSize, sizeof(OPENFILENAMEW));
        EXPECT_EQ(record->hwndOwner, GetDesktopWindow());
        EXPECT_EQ(record->hInstance, GetModuleHandleW(nullptr));
        EXPECT_EQ(NamesIn(record->lpstrFilter), L"[All Files (*.*)][*.*]");
        EXPECT_STREQ(record->lpstrFile, L"") << "a name to begin with";
        EXPECT_EQ(record->nMaxFile, 32768u);
        EXPECT_STREQ(record->lpstrFileTitle, L"");
        EXPECT_EQ(record->nMaxFileTitle, 32768u);
        EXPECT_EQ(testkit::Utf8(record->lpstrInitialDir), win::ProgramPath().substr(0, 3));
        EXPECT_STREQ(record->lpstrTitle, L"Select file");
        EXPECT_EQ(record->Flags, 0u);
        EXPECT_EQ(record->lpstrCustomFilter, nullptr);
        EXPECT_EQ(record->nFilterIndex, 0u);
        EXPECT_EQ(record->lpstrDefExt, nullptr);
        EXPECT_EQ(record->lpfnHook, nullptr);
        EXPECT_EQ(record->lpTemplateName, nullptr);
        std::wcscpy(record->lpstrFile, L"C:\\given up.txt");
        return FALSE;
    });
    EXPECT_EQ(clsBmenu::GetFile(), "") << "the user has cancelled";
    EXPECT_EQ(calls, 1);
}

TEST(FilePickerTest, GivesTheChosenFileWithoutTheBlanksAroundIt) {
    for (const auto& [given, wanted] :
         {std::pair{"C:\\Пут\\文 č.txt", "C:\\Пут\\文 č.txt"}, std::pair{"  C:\\a b.txt ", "C:\\a b.txt"},
          std::pair{"   ", ""}, std::pair{"", ""}}) {
        const RecordedCall open = FAKE_CALL(GetOpenFileNameW, [text = given](LPOPENFILENAMEW record) -> BOOL {
            std::wcscpy(record->lpstrFile, testkit::Wide(text).c_str());
            return TRUE;
        });
        EXPECT_EQ(clsBmenu::GetFile(), wanted);
    }
}

TEST(FilePickerTest, GivesTheLongestPathWhole) {
    const std::wstring longest = L"C:\\" + std::wstring(32760, L'Ж') + L".txt";
    const RecordedCall open = FAKE_CALL(GetOpenFileNameW, [&](LPOPENFILENAMEW record) -> BOOL {
        if (record->nMaxFile <= longest.size()) return FALSE;
        std::wcscpy(record->lpstrFile, longest.c_str());
        return TRUE;
    });
    EXPECT_EQ(clsBmenu::GetFile(), testkit::Utf8(longest));
}

std::wstring CurrentFolder() {
    wchar_t folder[MAX_PATH] = L"";
    GetCurrentDirectoryW(MAX_PATH, folder);
    return folder;
}

TEST(PickerTest, LeavesTheCurrentFolderOfTheProcessAsItWas) {
    const ProgramFolder folder;
    const std::wstring before = CurrentFolder();
    const std::wstring elsewhere = testkit::Wide(folder.MakeFolder("Кућа 文"));
    std::wstring meanwhile;
    const auto look_around = [&] {
        SetCurrentDirectoryW(elsewhere.c_str());
        meanwhile = CurrentFolder();
    };
    const RecordedCall open = FAKE_CALL(GetOpenFileNameW, [&](LPOPENFILENAMEW) -> BOOL {
        look_around();
        return TRUE;
    });
    const RecordedCall browse = FAKE_CALL(SHBrowseForFolderW, [&](LPBROWSEINFOW) -> LPITEMIDLIST {
        look_around();
        return nullptr;
    });
    clsBmenu::GetFile();
    EXPECT_EQ(meanwhile, elsewhere);
    EXPECT_EQ(CurrentFolder(), before);
    clsBmenu::GetFolder();
    EXPECT_EQ(CurrentFolder(), before);
}

TEST(FileOperationTest, GivesTheShellItsRecordForEachCode) {
    struct Expected {
        std::int16_t code;
        UINT function;
        bool destination;
        FILEOP_FLAGS flags;
    };
    for (const Expected& expected :
         {Expected{0, 2, true, 320}, Expected{1, 1, true, 320}, Expected{2, 1, true, 320},
          Expected{3, 3, false, 320}, Expected{4, 3, false, 0}}) {
        SCOPED_TRACE(expected.code);
        int calls = 0;
        const RecordedCall operation = FAKE_CALL(SHFileOperationA, [&](LPSHFILEOPSTRUCTA record) {
            ++calls;
            EXPECT_EQ(record->hwnd, nullptr);
            EXPECT_EQ(record->wFunc, expected.function);
            EXPECT_EQ(NamesIn(record->pFrom), "[C:\\Док\\a b.txt]");
            EXPECT_EQ(record->pTo != nullptr, expected.destination);
            EXPECT_EQ(NamesIn(record->pTo), expected.destination ? "[C:\\文]" : "");
            EXPECT_EQ(record->fFlags, expected.flags);
            EXPECT_EQ(record->fAnyOperationsAborted, FALSE);
            EXPECT_EQ(record->hNameMappings, nullptr);
            EXPECT_EQ(record->lpszProgressTitle, nullptr);
            return 1223;
        });
        EXPECT_EQ(clsBmenu::FileOperation(expected.code, "C:\\Док\\a b.txt", "C:\\文"), 1223);
        EXPECT_EQ(calls, 1);
    }
}

TEST(FileOperationTest, RefusesACodeThatStandsForNothing) {
    CallLog log;
    const RecordedCall operation = STUB_CALL(log, SHFileOperationA, 0);
    for (const std::int16_t code : {std::int16_t{-1}, std::int16_t{5}, std::int16_t{32767}})
        EXPECT_NE(clsBmenu::FileOperation(code, "C:\\a.txt", "C:\\b"), 0) << code;
    EXPECT_THAT(log.Lines(), ElementsAre());
}

class FileOperationOnDiskTest : public testing::Test {
  protected:
    ProgramFolder folder_;
    std::string file_ = folder_.MakeFile("Извор\\čaj 文.txt", "text");
};

TEST_F(FileOperationOnDiskTest, CopiesMovesAndRenames) {
    folder_.MakeFolder("Циљ");
    const struct {
        std::int16_t code;
        const char* destination;
        const char* result;
        bool stays;
    } cases[] = {{sys::kCopyFile, "Циљ", "Циљ\\čaj 文.txt", true},
                 {sys::kRenameFile, "Извор\\ново.md", "Извор\\ново.md", false},
                 {sys::kRenameFile, "Циљ\\ново.md", "Циљ\\ново.md", false},
                 {sys::kMoveFile, "Циљ", "Циљ\\čaj 文.txt", false}};
    for (const auto& [code, destination, result, stays] : cases) {
        SCOPED_TRACE(std::to_string(code) + " to " + destination);
        folder_.MakeFile("Извор\\čaj 文.txt", "text");
        EXPECT_EQ(clsBmenu::FileOperation(code, file_, folder_.FullPath(destination)), 0);
        EXPECT_EQ(folder_.ReadFile(result), "text");
        EXPECT_EQ(folder_.Exists("Извор\\čaj 文.txt"), stays);
        folder_.RemoveFile(result);
    }
}

TEST_F(FileOperationOnDiskTest, MovesIntoAFolderWhosePathTakesMoreBytesThanAPathHasCharacters) {
    const std::string name = testkit::Utf8(std::wstring(60, L'ж'));
    const std::string inside = std::string(name).append("\\").append(name).append("\\ж");
    const std::string deep = folder_.MakeFolder(inside);
    ASSERT_GT(deep.size(), size_t{MAX_PATH});
    EXPECT_EQ(clsBmenu::FileOperation(sys::kMoveFile, file_, deep), 0);
    EXPECT_EQ(folder_.ReadFile(inside + "\\čaj 文.txt"), "text");
    EXPECT_FALSE(folder_.Exists("Извор\\čaj 文.txt"));
}

constexpr char kShellsQuestion[] =
    "Windows asks otherwise, and before it recycles only where its user wants to be asked.";

/// Says yes to the shell's question.
void SayYes(Window question) { question.Press(IDYES); }

TEST_F(FileOperationOnDiskTest, ReportsAFileThatIsNotThere) {
    folder_.RemoveFile("Извор\\čaj 文.txt");
    EXPECT_NE(clsBmenu::FileOperation(sys::kCopyFile, file_, folder_.MakeFolder("Циљ")), 0);
    if (!testkit::RunsUnderWine()) return;  // it looks before it asks
    const ModalAnswers user({SayYes});
    EXPECT_NE(clsBmenu::FileOperation(sys::kDeleteFile, file_, ""), 0);
}

/// How many things of this name lie in the Recycle Bin.
int CountInRecycleBin(const std::string& name) {
    LPITEMIDLIST bin = nullptr;
    IShellFolder* desktop = nullptr;
    IShellFolder* content = nullptr;
    IEnumIDList* items = nullptr;
    SHGetSpecialFolderLocation(nullptr, CSIDL_BITBUCKET, &bin);
    SHGetDesktopFolder(&desktop);
    desktop->BindToObject(bin, nullptr, IID_IShellFolder, reinterpret_cast<void**>(&content));
    content->EnumObjects(nullptr, SHCONTF_NONFOLDERS | SHCONTF_FOLDERS, &items);
    int count = 0;
    LPITEMIDLIST item = nullptr;
    while (items != nullptr && items->Next(1, &item, nullptr) == S_OK) {
        STRRET text{};
        wchar_t shown[MAX_PATH] = L"";
        if (SUCCEEDED(content->GetDisplayNameOf(item, SHGDN_NORMAL, &text)))
            StrRetToBufW(&text, item, shown, MAX_PATH);
        if (testkit::Utf8(shown).find(name) != std::string::npos) ++count;
        CoTaskMemFree(item);
    }
    if (items) items->Release();
    content->Release();
    desktop->Release();
    CoTaskMemFree(bin);
    return count;
}

TEST_F(FileOperationOnDiskTest, SendsAFileToTheRecycleBin) {
    ONLY_UNDER_WINE(kShellsQuestion);
    const ModalAnswers user({SayYes});
    const std::string file = folder_.MakeFile("отпад 文.txt", "text");
    EXPECT_EQ(clsBmenu::FileOperation(sys::kRecycleFile, file, ""), 0);
    EXPECT_FALSE(folder_.Exists("отпад 文.txt"));
    EXPECT_EQ(CountInRecycleBin("отпад 文"), 1);
}

TEST_F(FileOperationOnDiskTest, DeletesAFileForGoodAfterTheShellsOwnQuestion) {
    ONLY_UNDER_WINE(kShellsQuestion);
    const ModalAnswers user({SayYes});
    EXPECT_EQ(clsBmenu::FileOperation(sys::kDeleteFile, file_, ""), 0);
    EXPECT_FALSE(folder_.Exists("Извор\\čaj 文.txt"));
    EXPECT_EQ(CountInRecycleBin("čaj 文"), 0);
}

}  // namespace
