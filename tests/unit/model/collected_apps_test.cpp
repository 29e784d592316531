#include "model/collected_apps.h"

#include "config/ini.h"
#include "tests/support/program_calls.h"
#include "tests/support/unit_test.h"
#include "win/text.h"

namespace model {
namespace {

using ::testing::AllOf, ::testing::ElementsAre, ::testing::HasSubstr, ::testing::IsEmpty, ::testing::Not;
using testkit::IniText;
using Entry = IniText::Entry;

std::string Repeated(const std::string& text, int count) {
    std::string repeated;
    for (int index = 0; index < count; ++index)
        repeated += text;
    return repeated;
}

/// The names in a folder that begin as a probe's does.
std::vector<std::string> ProbesIn(const std::string& folder) {
    std::vector<std::string> names;
    WIN32_FIND_DATAW found{};
    const HANDLE listing = FindFirstFileW(testkit::Wide(folder + "\\tempfile*").c_str(), &found);
    if (listing == INVALID_HANDLE_VALUE) return names;
    do {
        names.push_back(testkit::Utf8(found.cFileName));
    } while (FindNextFileW(listing, &found) != 0);
    FindClose(listing);
    return names;
}

/// The program lies in a folder of the test's own.
class CollectedAppsFixture : public ::testing::Test {
  protected:
    CollectedAppsFixture() { fakes_.push_back(testkit::ProgramLiesAt(folder_.FullPath("Quon.exe"))); }
    ~CollectedAppsFixture() override { EXPECT_THAT(ProbesIn(folder_.Path()), IsEmpty()); }

    std::vector<Entry> Collected() const { return folder_.Ini().Entries("Collected"); }

    testkit::ProgramFolder folder_{"програм 文"};
    testkit::ScopedIniPath ini_{folder_.IniPath()};
    testkit::CallLog log_;
    testkit::RecordedCalls fakes_;
};

/// The registry and the shell answer what a test wants.
class CollectedAppsTest : public CollectedAppsFixture {
  protected:
    CollectedAppsTest() {
        fakes_.push_back(FAKE_CALL(RegEnumKeyExA,
                                   [this](HKEY key, DWORD index, LPSTR name, LPDWORD size, LPDWORD reserved,
                                          LPSTR className, LPDWORD classSize, PFILETIME time) -> LONG {
                                       EXPECT_EQ(key, HKEY_CLASSES_ROOT);
                                       EXPECT_TRUE(reserved == nullptr && className == nullptr &&
                                                   classSize == nullptr && time == nullptr);
                                       log_.Add("key", index);
                                       if (index >= keys_.size()) return ERROR_NO_MORE_ITEMS;
                                       if (keys_[index].size() >= *size) return ERROR_MORE_DATA;
                                       std::memcpy(name, keys_[index].data(), keys_[index].size());
                                       name[keys_[index].size()] = '\0';
                                       *size = static_cast<DWORD>(keys_[index].size());
                                       return ERROR_SUCCESS;
                                   }));
        fakes_.push_back(FAKE_CALL(FindExecutableA, [this](LPCSTR file, LPCSTR folder, LPSTR answer) {
            EXPECT_EQ(folder, nullptr);
            log_.Add("ask", testkit::NameOf(file), testkit::FileExists(file) ? testkit::FileBytes(file) : "");
            EXPECT_EQ(testkit::FolderOf(file), folder_.Path());
            const auto found = programs_.find(testkit::NameOf(file).substr(std::strlen("tempfile")));
            if (found == programs_.end()) return reinterpret_cast<HINSTANCE>(SE_ERR_NOASSOC);
            std::memcpy(answer, found->second.c_str(), found->second.size() + 1);
            return reinterpret_cast<HINSTANCE>(33);
        }));
    }
    /// Registers an extension that a program opens.
    void Register(const std::string& extension, const std::string& program) {
        keys_.push_back(extension);
        programs_[extension] = program;
    }

    std::vector<std::string> keys_;
    std::map<std::string, std::string> programs_;
};

TEST_F(CollectedAppsTest, AsksForEachExtensionWithAProbeFileThatIsGoneAfterwards) {
    keys_ = {"*", ".txt", "txtfile", ".č 文", "AppID", "."};
    clsCollectedApps().CreateAppList();
    const std::string line = "\"Tamo\"\r\n";
    EXPECT_THAT(log_.Lines(), ElementsAre("key 0", "key 1", "ask tempfile.txt " + line, "key 2", "key 3",
                                          "ask tempfile.č 文 " + line, "key 4", "key 5",
                                          ::testing::StartsWith("ask tempfile"), "key 6"));
    EXPECT_THAT(Collected(), IsEmpty());
}

TEST_F(CollectedAppsTest, CutsAKeysNameAtItsFirstNul) {
    using namespace std::string_literals;
    Register(".txt", "C:\\edit.exe");
    keys_ = {".txt\0.doc"s, "\0.md"s};
    clsCollectedApps().CreateAppList();
    EXPECT_THAT(log_.Lines(), ElementsAre("key 0", "ask tempfile.txt \"Tamo\"\r\n", "key 1", "key 2"));
    EXPECT_THAT(Collected(), ElementsAre(Entry{"edit", "C:\\edit.exe"}));
}

TEST_F(CollectedAppsTest, StoresEachProgramOnceUnderTheNameOfItsFile) {
    Register(".txt", "C:\\Програми\\Уредник 2.0.exe");
    Register(".log", "C:\\Програми\\Уредник 2.0.exe");
    Register(".md", "c:\\ПРОГРАМИ\\уредник 2.0.EXE");
    Register(".doc", "D:\\文書\\文.ExE");
    clsCollectedApps().CreateAppList();
    EXPECT_THAT(Collected(), ElementsAre(Entry{"Уредник 2.0", "C:\\Програми\\Уредник 2.0.exe"},
                                         Entry{"文", "D:\\文書\\文.ExE"}));
}

TEST_F(CollectedAppsTest, TakesOnlyProgramsInAFolder) {
    Register(".a", "program.exe");
    Register(".b", "C:\\program.com");
    Register(".c", "C:\\program.exe.txt");
    Register(".d", "C:\\programexe");
    Register(".e", "");
    Register(".f", ".exe");
    keys_.push_back(".g");
    clsCollectedApps().CreateAppList();
    EXPECT_THAT(Collected(), IsEmpty());
}

TEST_F(CollectedAppsTest, PassesOverTheProbeItself) {
    Register(".exe", folder_.FullPath("tempfile.exe"));
    Register(".scr", folder_.FullPath("TEMPFILE.SCR"));
    // The shell may answer with the folder's short name.
    Register(".second.exe", "C:\\PROGRA~1\\TempFile.second.EXE");
    clsCollectedApps().CreateAppList();
    EXPECT_THAT(Collected(), IsEmpty());
}

TEST_F(CollectedAppsTest, MakesNamesStorable) {
    Register(".1", "C:\\a=b.exe");
    Register(".2", "C:\\[draft].exe");
    Register(".3", "C:\\;old.exe");
    Register(".4", "C:\\empty.exe");
    Register(".5", "C:\\tools\\.exe");
    clsCollectedApps().CreateAppList();
    EXPECT_THAT(Collected(), ElementsAre(Entry{"a-b", "C:\\a=b.exe"}, Entry{"draft]", "C:\\[draft].exe"},
                                         Entry{"old", "C:\\;old.exe"}, Entry{"empty_", "C:\\empty.exe"},
                                         Entry{".exe", "C:\\tools\\.exe"}));
}

TEST_F(CollectedAppsTest, KeepsWhatWasCollectedBeforeAndOverwritesTheSameName) {
    folder_.WriteIniText("[Collected]\r\nGone=C:\\gone.exe\r\nword=C:\\old\\word.exe\r\n[Cuts]\r\na=b=c\r\n");
    Register(".a", "C:\\new\\Word.exe");
    Register(".b", "C:\\one\\edit.exe");
    Register(".c", "C:\\two\\edit.exe");
    clsCollectedApps().CreateAppList();
    EXPECT_THAT(Collected(), ElementsAre(Entry{"Gone", "C:\\gone.exe"}, Entry{"word", "C:\\new\\Word.exe"},
                                         Entry{"edit", "C:\\two\\edit.exe"}));
    EXPECT_EQ(folder_.IniValue("Cuts", "a"), "b=c");
}

TEST_F(CollectedAppsTest, NeverTouchesAnotherFileThanItsProbe) {
    const std::string mine = folder_.MakeFile("mine.txt", "mine");
    // Windows would take the way back as done before looking whether the folder in front of it exists.
    for (const char* name : {"./../mine.txt", ".\\..\\mine.txt", ".txt:stream", ".a/b", ".a*", ".a?", ".a|b",
                             ".a<b", ".a\"b", ".\x01"})
        Register(name, "C:\\evil.exe");
    clsCollectedApps().CreateAppList();
    EXPECT_EQ(log_.Count("ask"), 0u);
    EXPECT_EQ(testkit::FileBytes(mine), "mine");
    EXPECT_THAT(Collected(), IsEmpty());
}

TEST_F(CollectedAppsTest, ALongExtensionEndsNeitherTheWalkNorTheProgram) {
    // The longest key that the registry has, in characters of three bytes: no file can be named so.
    Register("." + Repeated("文", 254), "C:\\long.exe");
    Register("." + std::string(254, 'x'), "C:\\long.exe");
    Register("." + std::string(299, 'y'), "C:\\long.exe");
    Register(".txt", "C:\\next.exe");
    clsCollectedApps().CreateAppList();
    EXPECT_THAT(Collected(), ElementsAre(Entry{"next", "C:\\next.exe"}));
}

TEST_F(CollectedAppsTest, PassesOverAPathTooLongToBeReadBack) {
    const std::string folder = "C:\\" + std::string(540, 'f');
    Register(".a", folder + "\\abcdefg.exe");
    Register(".b", folder + "\\abcdef.exe");
    clsCollectedApps().CreateAppList();
    ASSERT_EQ(Collected().size(), 1u);
    EXPECT_EQ(Collected()[0].key, "abcdef");
    EXPECT_EQ(config::ReadIni("Collected", "abcdef"), folder + "\\abcdef.exe");
}

TEST_F(CollectedAppsTest, WaitsForAFileThatIsHeldAndSaysWhenItStaysSo) {
    folder_.WriteIniText("[Cuts]\r\na=1\r\n");
    Register(".txt", "C:\\next.exe");
    auto held = std::make_unique<testkit::HeldFile>(folder_.IniPath());
    int pauses = 0;
    const testkit::RecordedCall pause = FAKE_CALL(Sleep, [&](DWORD) {
        if (++pauses == 5) held.reset();
    });
    EXPECT_TRUE(clsCollectedApps().CreateAppList());
    EXPECT_THAT(Collected(), ElementsAre(Entry{"next", "C:\\next.exe"}));
    held = std::make_unique<testkit::HeldFile>(folder_.IniPath());
    EXPECT_FALSE(clsCollectedApps().CreateAppList());
}

TEST_F(CollectedAppsTest, AsksNothingWhenTheProbeCannotBeMade) {
    Register(".txt", "C:\\edit.exe");
    const testkit::RecordedCall create = ANSWER_CALL(CreateFileA, INVALID_HANDLE_VALUE);
    clsCollectedApps().CreateAppList();
    EXPECT_EQ(log_.Count("ask"), 0u);
    EXPECT_EQ(log_.Count("key"), 2u);
    EXPECT_THAT(Collected(), IsEmpty());
}

TEST_F(CollectedAppsTest, LeavesAFileOfThatNameWhichItMayNotReplace) {
    Register(".txt", "C:\\edit.exe");
    folder_.MakeFile("tempfile.txt", "mine");
    {
        const testkit::RecordedCall create = ANSWER_CALL(CreateFileA, INVALID_HANDLE_VALUE);
        clsCollectedApps().CreateAppList();
    }
    EXPECT_EQ(folder_.ReadFile("tempfile.txt"), "mine");
    folder_.RemoveFile("tempfile.txt");
}

TEST_F(CollectedAppsTest, StoresAllOfThemInOneUnitAfterTheLastQuestion) {
    Register(".a", "C:\\a.exe");
    Register(".b", "C:\\b.exe");
    Register(".c", "C:\\c.exe");
    folder_.WriteIniText("[Cuts]\r\na=1\r\n");
    const auto copy = WATCH_CALL(CopyFileA, [&] { log_.Add("unit"); });
    clsCollectedApps().CreateAppList();
    EXPECT_EQ(log_.Count("unit"), 1u);
    EXPECT_EQ(log_.Lines().back(), "unit");
    EXPECT_EQ(Collected().size(), 3u);
}

TEST_F(CollectedAppsTest, LetsWaitingMessagesRunOnceBeforehand) {
    static testkit::CallLog* log = nullptr;
    log = &log_;
    const testkit::HiddenWindow window;
    SetWindowLongPtrW(
        window.Handle(), GWLP_WNDPROC,
        reinterpret_cast<LONG_PTR>(+[](HWND target, UINT message, WPARAM wParam, LPARAM lParam) {
            if (message == WM_APP) log->Add("message");
            return DefWindowProcW(target, message, wParam, lParam);
        }));
    keys_ = {".txt"};
    PostMessageW(window.Handle(), WM_APP, 0, 0);
    clsCollectedApps().CreateAppList();
    EXPECT_THAT(log_.Lines(), ElementsAre("message", "key 0", HasSubstr("ask"), "key 1"));
}

TEST_F(CollectedAppsTest, DoesNothingOnceTheProgramIsToEnd) {
    Register(".txt", "C:\\edit.exe");
    PostQuitMessage(7);
    clsCollectedApps().CreateAppList();
    EXPECT_THAT(log_.Lines(), IsEmpty());
    MSG message{};
    ASSERT_TRUE(PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE));
    EXPECT_EQ(message.wParam, 7u) << "the message loop has to see it as well";
}

/// The true registry and the true shell.
class CollectingWalkTest : public CollectedAppsFixture {
  protected:
    ~CollectingWalkTest() override {
        for (const std::wstring& key : keys_)
            RegDeleteTreeW(HKEY_CLASSES_ROOT, key.c_str());
    }
    void Register(const std::string& key, const std::string& value) {
        keys_.push_back(testkit::Wide(key.substr(0, key.find('\\'))));
        const std::wstring text = testkit::Wide(value);
        RegSetKeyValueW(HKEY_CLASSES_ROOT, testkit::Wide(key).c_str(), nullptr, REG_SZ, text.c_str(),
                        static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
    }

    std::vector<std::wstring> keys_;
};

TEST_F(CollectingWalkTest, FindsTheProgramsThatAreRegisteredAndStoresEachOnce) {
    const std::string program = folder_.MakeFile("Мој уредник č.exe", "MZ");
    Register(".quontest1", "QuonTest.Document");
    Register(".quontest2", "QuonTest.Document");
    Register(".quon文", "QuonTest.Document");
    Register("QuonTest.Document\\shell\\open\\command", "\"" + program + "\" \"%1\"");
    Register(".quontest3", "QuonTest.Nothing");
    Register(".quon/../test4", "QuonTest.Document");
    Register("." + Repeated("q", 200), "QuonTest.Document");
    folder_.WriteIniText("[Cuts]\r\na=b\r\n");
    clsCollectedApps().CreateAppList();

    const std::vector<Entry> entries = Collected();
    std::set<std::wstring> paths;
    for (const Entry& entry : entries) {
        EXPECT_TRUE(testkit::FileExists(entry.value)) << entry.value;
        EXPECT_TRUE(paths.insert(win::UpperCase(entry.value)).second) << entry.value;
        EXPECT_THAT(win::ToBytes(win::UpperCase(entry.value)),
                    AllOf(::testing::EndsWith(".EXE"), HasSubstr("\\"), Not(HasSubstr("TEMPFILE"))));
    }
    EXPECT_THAT(entries, ::testing::Contains(Entry{"Мој уредник č", program}));
    // Windows and Wine both know a program for this one.
    char notepad[4 * MAX_PATH]{};
    const std::string text = folder_.MakeFile("a.ini");
    ASSERT_GT(reinterpret_cast<INT_PTR>(FindExecutableA(text.c_str(), nullptr, notepad)), 32);
    EXPECT_EQ(paths.count(win::UpperCase(std::string(notepad))), 1u);
    EXPECT_THAT(folder_.Ini().Entries("Cuts"), ElementsAre(Entry{"a", "b"}));
}

TEST_F(CollectingWalkTest, CollectsNothingInAFolderThatNothingCanBeWrittenTo) {
    fakes_.push_back(testkit::ProgramLiesAt(folder_.FullPath("нема\\Quon.exe")));
    const testkit::ScopedIniPath nowhere(folder_.FullPath("нема\\Quon.ini"));
    fakes_.push_back(LOG_CALL(log_, FindExecutableA));
    clsCollectedApps().CreateAppList();
    EXPECT_THAT(log_.Lines(), IsEmpty());
    EXPECT_FALSE(folder_.Exists("нема"));
}

}  // namespace
}  // namespace model
