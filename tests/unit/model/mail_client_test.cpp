#include "model/text_shortcut.h"
#include "sys/shell_folders.h"
#include "tests/support/unit_test.h"

namespace {

using ::testing::ElementsAre;
using testkit::CallLog, testkit::RecordedCall;

/// Gives the product a key of the test's own as HKEY_LOCAL_MACHINE, and starts nothing.
class MailClientTest : public testing::Test {
  protected:
    MailClientTest() : path_("Software\\QuonTests-" + std::to_string(GetCurrentProcessId())) {
        EXPECT_EQ(RegCreateKeyA(HKEY_CURRENT_USER, path_.c_str(), &machine_), ERROR_SUCCESS);
        EXPECT_EQ(RegOverridePredefKey(HKEY_LOCAL_MACHINE, machine_), ERROR_SUCCESS);
    }
    ~MailClientTest() override {
        RegOverridePredefKey(HKEY_LOCAL_MACHINE, nullptr);
        RegCloseKey(machine_);
        RegDeleteTreeA(HKEY_CURRENT_USER, path_.c_str());
    }

    void SetDefaultValue(const std::string& key, const std::string& value, DWORD type = REG_SZ) const {
        HKEY made = nullptr;
        ASSERT_EQ(RegCreateKeyW(machine_, testkit::Wide(key).c_str(), &made), ERROR_SUCCESS);
        const std::wstring wide = testkit::Wide(value);
        RegSetValueExW(made, nullptr, 0, type, reinterpret_cast<const BYTE*>(wide.c_str()),
                       static_cast<DWORD>((wide.size() + 1) * sizeof(wchar_t)));
        RegCloseKey(made);
    }
    /// A mail client with this command.
    void InstallClient(const std::string& name, const std::string& command) const {
        SetDefaultValue("Software\\Clients\\Mail", name);
        SetDefaultValue("Software\\Clients\\Mail\\" + name + "\\shell\\open\\command", command);
    }

    /// The command lines that were started, each with its window state.
    CallLog started_;

  private:
    std::string path_;
    HKEY machine_ = nullptr;
    RecordedCall start_ =
        FAKE_CALL(CreateProcessA,
                  [this](LPCSTR program, LPSTR line, LPSECURITY_ATTRIBUTES, LPSECURITY_ATTRIBUTES, BOOL,
                         DWORD, LPVOID, LPCSTR, LPSTARTUPINFOA startup, LPPROCESS_INFORMATION) -> BOOL {
                      EXPECT_EQ(program, nullptr);
                      EXPECT_TRUE(startup->dwFlags & STARTF_USESHOWWINDOW);
                      started_.Add(startup->wShowWindow, "<" + std::string(line) + ">");
                      return FALSE;
                  });
};

TEST_F(MailClientTest, StartsTheCommandOfTheDefaultClientMinimised) {
    SetDefaultValue("Software\\Clients\\Mail\\Other\\shell\\open\\command", "other.exe");
    InstallClient("Почта 邮件", "\"C:\\Łódź\\почта.exe\" -mail");
    model::CTextShortcut::LauchMail();
    EXPECT_THAT(started_.Lines(), ElementsAre("2 <\"C:\\Łódź\\почта.exe\" -mail>"));
}

TEST_F(MailClientTest, OpensTheTwoKeysByTheirNames) {
    InstallClient("Client", "a.exe");
    CallLog log;
    const RecordedCall open = WATCH_CALL(RegOpenKeyExA, [&](HKEY root, LPCSTR key, DWORD, REGSAM, PHKEY) {
        EXPECT_EQ(root, HKEY_LOCAL_MACHINE);
        log.Add(key);
    });
    model::CTextShortcut::LauchMail();
    EXPECT_THAT(log.Lines(), ElementsAre("Software\\Clients\\Mail",
                                         "Software\\Clients\\Mail\\Client\\shell\\open\\command"));
}

TEST_F(MailClientTest, ReadsTheDefaultValuesWith260Characters) {
    InstallClient("Client", "a.exe");
    CallLog log;
    const RecordedCall read = WATCH_CALL(RegQueryValueExA, [&](HKEY, LPCSTR name, LPDWORD, LPDWORD, LPBYTE,
                                                               LPDWORD size) { log.Add(name, *size); });
    model::CTextShortcut::LauchMail();
    EXPECT_THAT(log.Lines(), ElementsAre("(null) 260", "(null) 260"));
}

TEST_F(MailClientTest, PutsTheProgramFilesFolderInForItsVariable) {
    const std::string folder = sys::clsShell::GetSpecialfolder(38);
    ASSERT_FALSE(folder.empty());
    InstallClient("Client",
                  "\"%ProgramFiles%\\a.exe\" %programfiles%|%PROGRAMFILES% %Program Files% Ł%ProgramFiles");
    model::CTextShortcut::LauchMail();
    EXPECT_THAT(started_.Lines(), ElementsAre("2 <\"" + folder + "\\a.exe\" " + folder + "|" + folder +
                                              " %Program Files% Ł%ProgramFiles>"));
}

TEST_F(MailClientTest, CutsTheCommandAtItsFirstComma) {
    InstallClient("Client", "rundll32.exe mail.dll,Open a,b");
    model::CTextShortcut::LauchMail();
    EXPECT_THAT(started_.Lines(), ElementsAre("2 <rundll32.exe mail.dll>"));
}

TEST_F(MailClientTest, CutsAtACommaInTheProgramFilesFolderToo) {
    const RecordedCall folder =
        FAKE_CALL(SHGetPathFromIDListEx, [](LPCITEMIDLIST, LPWSTR path, DWORD, GPFIDL_FLAGS) -> BOOL {
            wcscpy(path, L"D:\\Tools, mine");
            return TRUE;
        });
    InstallClient("Client", "%ProgramFiles%\\a.exe,1");
    model::CTextShortcut::LauchMail();
    EXPECT_THAT(started_.Lines(), ElementsAre("2 <D:\\Tools>"));
}

TEST_F(MailClientTest, RunsAnEmptyCommandWithoutAClient) {
    model::CTextShortcut::LauchMail();
    SetDefaultValue("Software\\Clients\\Mail", "Gone");
    model::CTextShortcut::LauchMail();
    InstallClient("Client", "");
    model::CTextShortcut::LauchMail();
    EXPECT_THAT(started_.Lines(), ElementsAre("2 <>", "2 <>", "2 <>"));
}

TEST_F(MailClientTest, TreatsAValueThatDoesNotFitAsMissing) {
    InstallClient("Client", std::string(259, 'x'));
    model::CTextShortcut::LauchMail();
    InstallClient("Client", std::string(260, 'x'));
    model::CTextShortcut::LauchMail();
    EXPECT_THAT(started_.Lines(), ElementsAre("2 <" + std::string(259, 'x') + ">", "2 <>"));
}

TEST_F(MailClientTest, ClosesEveryKeyThatItOpened) {
    InstallClient("Client", "a.exe");
    std::vector<HKEY> opened;
    std::vector<HKEY> closed;
    const RecordedCall open = FAKE_CALL(
        RegOpenKeyExA, [&](HKEY root, LPCSTR key, DWORD options, REGSAM access, PHKEY result) -> LSTATUS {
            const LSTATUS status = ORIGINAL_CALL(RegOpenKeyExA)(root, key, options, access, result);
            opened.push_back(*result);
            return status;
        });
    const RecordedCall close = WATCH_CALL(RegCloseKey, [&](HKEY key) { closed.push_back(key); });
    model::CTextShortcut::LauchMail();
    EXPECT_EQ(opened.size(), 2u);
    EXPECT_EQ(closed, opened);
}

}  // namespace
