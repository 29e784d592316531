#include "tests/support/program_folder.h"

#include <windows.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <objbase.h>
#include <shlobj.h>

#include <stdexcept>

#include "tests/support/text.h"

namespace testkit {
namespace {

using ::testing::EndsWith, ::testing::Not;

TEST(ProgramFolderTest, GivesEveryTestAFolderOfItsOwn) {
    const ProgramFolder first;
    const ProgramFolder second;
    EXPECT_NE(first.Path(), second.Path());
    EXPECT_TRUE(FileExists(first.Path()));
    EXPECT_THAT(first.Path(), Not(EndsWith("\\")));
}

TEST(ProgramFolderTest, DeletesItselfWithReadOnlyFilesAndSubFolders) {
    std::string path;
    {
        const ProgramFolder folder;
        path = folder.Path();
        folder.MakeFile("a\\b\\Ω.txt", "text");
        folder.SetReadOnly("a\\b\\Ω.txt");
        folder.MakeFolder("empty");
    }
    EXPECT_FALSE(FileExists(path));
}

TEST(ProgramFolderTest, KeepsEveryByteOfTheIniFile) {
    const ProgramFolder folder;
    EXPECT_EQ(folder.IniBytes(), "");
    constexpr char kText[] = "[A]\nx=\xff\0y\r\n";
    const std::string bytes(kText, sizeof kText - 1);
    folder.WriteIniText(bytes);
    EXPECT_EQ(folder.IniBytes(), bytes);
    folder.WriteIniText("[A]");
    EXPECT_EQ(folder.IniBytes(), "[A]");
}

TEST(ProgramFolderTest, ReadsSingleValuesOfTheIniFile) {
    const ProgramFolder folder;
    folder.WriteIniText("[Settings]\r\nMain=\"1\"\r\n");
    EXPECT_EQ(folder.IniValue("Settings", "Main"), "\"1\"");
    EXPECT_EQ(folder.IniValue("Settings", "main"), std::nullopt);
    EXPECT_EQ(folder.IniValue("Other", "Main"), std::nullopt);
}

TEST(ProgramFolderTest, MakesFilesWithNamesInEveryScript) {
    const ProgramFolder folder("Крај 终");
    const std::string path = folder.MakeFile("фолдер\\名前.txt", "content");
    EXPECT_EQ(path, folder.Path() + "\\фолдер\\名前.txt");
    EXPECT_TRUE(folder.Exists("фолдер\\名前.txt"));
    EXPECT_EQ(folder.ReadFile("фолдер\\名前.txt"), "content");
    folder.RemoveFile("фолдер\\名前.txt");
    EXPECT_FALSE(folder.Exists("фолдер\\名前.txt"));
}

TEST(ProgramFolderTest, CopiesAFileUnderItsOwnOrAnotherName) {
    const ProgramFolder folder;
    const std::string source = folder.MakeFile("from\\a.bin", "bytes");
    EXPECT_EQ(folder.CopyIn(source), folder.FullPath("a.bin"));
    EXPECT_EQ(folder.CopyIn(source, "to\\b.bin"), folder.FullPath("to\\b.bin"));
    EXPECT_EQ(folder.ReadFile("to\\b.bin"), "bytes");
}

TEST(ProgramFolderTest, FailsLoudlyWhenAFileIsMissing) {
    const ProgramFolder folder;
    EXPECT_THROW(folder.ReadFile("none.txt"), std::runtime_error);
    EXPECT_THROW(folder.CopyIn(folder.FullPath("none.txt"), "b"), std::runtime_error);
    EXPECT_THROW(folder.RemoveFile("none.txt"), std::runtime_error);
}

TEST(ProgramFolderTest, MakesShellLinksThatTheShellReadsBack) {
    const ProgramFolder folder;
    const std::string target = folder.MakeFile("мета.txt");
    const std::string path = folder.MakeLink("link.lnk", {.target = target,
                                                          .arguments = "/a \"б c\"",
                                                          .work_folder = folder.Path(),
                                                          .icon_path = "C:\\x.ico",
                                                          .icon_index = 3,
                                                          .show_state = SW_SHOWMAXIMIZED});
    ASSERT_HRESULT_SUCCEEDED(CoInitialize(nullptr));
    IShellLinkW* link = nullptr;
    IPersistFile* file = nullptr;
    ASSERT_HRESULT_SUCCEEDED(CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_IShellLinkW,
                                              reinterpret_cast<void**>(&link)));
    ASSERT_HRESULT_SUCCEEDED(link->QueryInterface(IID_IPersistFile, reinterpret_cast<void**>(&file)));
    EXPECT_HRESULT_SUCCEEDED(file->Load(Wide(path).c_str(), STGM_READ));
    wchar_t text[1024] = L"";
    int number = 0;
    link->GetPath(text, ARRAYSIZE(text), nullptr, 0);
    EXPECT_EQ(Utf8(text), target);
    link->GetArguments(text, ARRAYSIZE(text));
    EXPECT_EQ(Utf8(text), "/a \"б c\"");
    link->GetWorkingDirectory(text, ARRAYSIZE(text));
    EXPECT_EQ(Utf8(text), folder.Path());
    link->GetIconLocation(text, ARRAYSIZE(text), &number);
    EXPECT_EQ(Utf8(text), "C:\\x.ico");
    EXPECT_EQ(number, 3);
    // The show command's place in the file; not every system's Load() reads it back.
    EXPECT_EQ(folder.ReadFile("link.lnk").at(0x3C), SW_SHOWMAXIMIZED);
    file->Release();
    link->Release();
    CoUninitialize();
}

}  // namespace
}  // namespace testkit
