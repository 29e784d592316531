// The menu of folders and drives, item by item, on recorded machines.

#include "sys/shell_folders.h"
#include "tests/support/unit_test.h"
#include "win/menu_array.h"

namespace {

using ::testing::Contains, ::testing::ElementsAre, ::testing::ElementsAreArray, ::testing::Not;
using testkit::RecordedCall;

const std::string kMyComputer = "::{20D04FE0-3AEA-1069-A2D8-08002B30309D}";
const std::string kControlPanel = kMyComputer + "\\::{21EC2020-3AEA-1069-A2DD-08002B30309D}";

/// A machine with these drives and folders.
struct Machine {
    struct Drive {
        std::string root;
        UINT type = DRIVE_FIXED;
        std::string label = {};
    };
    std::vector<Drive> drives;
    /// The paths of special folders by their numbers; a folder that is not here is unknown.
    std::map<int, std::string> folders = {{0, "C:\\Desk"},   {5, "C:\\Docs"}, {7, "C:\\Start"},
                                          {8, "C:\\Recent"}, {9, "C:\\Send"}, {11, "C:\\Menu"}};
    std::string programPath = "C:\\Programs\\Quon\\Quon.exe";
    DWORD driveBuffer = 0;
};

class ShellMenuTest : public testing::Test {
  protected:
    const Machine::Drive* DriveOf(const std::string& root) const {
        for (const Machine::Drive& drive : machine_.drives)
            if (drive.root == root) return &drive;
        return nullptr;
    }

    void List() { sys::clsShell::ListShellFolders(menu_); }

    std::vector<std::string> Captions() const {
        std::vector<std::string> captions;
        for (int i = 0; i < menu_.Count(); ++i)
            captions.push_back(menu_[i].caption);
        return captions;
    }

    /// "caption > tag" of each element; a separator is "-".
    std::vector<std::string> Items() const {
        std::vector<std::string> items;
        for (int i = 0; i < menu_.Count(); ++i)
            items.push_back(menu_[i].caption == "-" ? "-" : menu_[i].caption + " > " + menu_[i].tag);
        return items;
    }

    Machine machine_;
    win::MenuArray menu_{2200, {{"My Computer", {}}}};

  private:
    // A folder's number stands in the place of its item list.
    const RecordedCall location_ =
        FAKE_CALL(SHGetSpecialFolderLocation, [this](HWND, int folder, LPITEMIDLIST* list) -> HRESULT {
            if (!machine_.folders.contains(folder)) return E_FAIL;
            *list = static_cast<LPITEMIDLIST>(CoTaskMemAlloc(sizeof(int)));
            *reinterpret_cast<int*>(*list) = folder;
            return S_OK;
        });
    const RecordedCall path_ = FAKE_CALL(
        SHGetPathFromIDListEx, [this](LPCITEMIDLIST list, LPWSTR path, DWORD, GPFIDL_FLAGS) -> BOOL {
            const std::string& folder = machine_.folders.at(*reinterpret_cast<const int*>(list));
            wcscpy(path, testkit::Wide(folder).c_str());
            return TRUE;
        });
    const RecordedCall roots_ = FAKE_CALL(GetLogicalDriveStringsA, [this](DWORD size, LPSTR buffer) -> DWORD {
        machine_.driveBuffer = size;
        std::string all;
        for (const Machine::Drive& drive : machine_.drives)
            all += drive.root + '\0';
        if (all.size() >= size) return static_cast<DWORD>(all.size() + 1);
        memcpy(buffer, all.c_str(), all.size() + 1);
        return static_cast<DWORD>(all.size());
    });
    const RecordedCall type_ =
        FAKE_CALL(GetDriveTypeA, [this](LPCSTR root) -> UINT { return DriveOf(root)->type; });
    const RecordedCall volume_ =
        FAKE_CALL(GetVolumeInformationA,
                  [this](LPCSTR root, LPSTR label, DWORD size, LPDWORD serial, LPDWORD longest, LPDWORD flags,
                         LPSTR system, DWORD systemSize) -> BOOL {
                      EXPECT_EQ(size, 255U);
                      EXPECT_EQ(std::string(label, size), std::string(size, '\0'));
                      EXPECT_EQ(systemSize, 255U);
                      EXPECT_EQ(std::string(system, systemSize), std::string(systemSize, '\0'));
                      EXPECT_TRUE(serial != nullptr && longest != nullptr && flags != nullptr);
                      if (DriveOf(root)->label.empty()) return FALSE;
                      strcpy(label, DriveOf(root)->label.c_str());
                      return TRUE;
                  });
    const RecordedCall program_ =
        FAKE_CALL(GetModuleFileNameW, [this](HMODULE module, LPWSTR path, DWORD size) -> DWORD {
            if (module != nullptr) return ORIGINAL_CALL(GetModuleFileNameW)(module, path, size);
            const std::wstring program = testkit::Wide(machine_.programPath);
            wcsncpy(path, program.c_str(), size);
            return static_cast<DWORD>(program.size());
        });
};

TEST_F(ShellMenuTest, ReadsInItsOrderWithEachTag) {
    machine_.drives = {{"C:\\", DRIVE_FIXED, "SYSTEM"}};
    List();
    EXPECT_THAT(
        Items(),
        ElementsAre("My Computer > " + kMyComputer, "SYSTEM (C:) > C:\\", "-", "My Documents > C:\\Docs",
                    "Recent items > C:\\Recent", "Recycle bin > ::{645FF040-5081-101B-9F08-00AA002F954E}",
                    "-", "Desktop > C:\\Desk", "Root > C:\\", "My computer > " + kMyComputer,
                    "Network > ::{208D2C60-3AEA-1069-A2D7-08002B30309D}", "-",
                    "Control panel > " + kControlPanel,
                    "Printers > " + kControlPanel + "\\::{2227A280-3AEA-1069-A2DE-08002B30309D}",
                    "Start menu > C:\\Menu", "Startup > C:\\Start", "Send to > C:\\Send"));
}

TEST_F(ShellMenuTest, NamesADriveByItsKind) {
    machine_.drives = {{"A:\\", DRIVE_REMOVABLE, "ignored"},
                       {"C:\\", DRIVE_FIXED, "SYSTEM"},
                       {"D:\\", DRIVE_CDROM, "ignored"},
                       {"E:\\", DRIVE_FIXED},
                       {"F:\\", DRIVE_REMOTE},
                       {"R:\\", DRIVE_RAMDISK},
                       {"X:\\", DRIVE_UNKNOWN},
                       {"Y:\\", DRIVE_NO_ROOT_DIR},
                       {"Z:\\", 99}};
    List();
    std::vector<std::string> captions = Captions();
    captions.resize(10);
    EXPECT_THAT(captions, ElementsAre("My Computer", "Floppy (A:)", "SYSTEM (C:)", "CD Drive (D:)", " (E:)",
                                      "Network drive (F:)", "Ram disk (R:)", "Unrecognized (X:)",
                                      "Unrecognized (Y:)", "Unrecognized (Z:)"));
}

TEST_F(ShellMenuTest, KeepsTheOrderOfWindows) {
    machine_.drives = {{"D:\\", DRIVE_CDROM}, {"A:\\", DRIVE_REMOVABLE}};
    List();
    EXPECT_EQ(menu_[1].tag, "D:\\");
    EXPECT_EQ(menu_[2].tag, "A:\\");
}

TEST_F(ShellMenuTest, LeavesOutFoldersThatAreNotFound) {
    machine_.folders = {{5, "C:\\Docs"}};
    List();
    EXPECT_THAT(Captions(), ElementsAre("My Computer", "-", "My Documents", "Recycle bin", "-", "Root",
                                        "My computer", "Network", "-", "Control panel", "Printers"));
}

TEST_F(ShellMenuTest, LeavesOutEachOptionalFolderByItself) {
    const std::map<int, std::string> optional = {
        {0, "Desktop"}, {7, "Startup"}, {8, "Recent items"}, {9, "Send to"}, {11, "Start menu"}};
    const auto all = machine_.folders;
    List();
    const std::vector<std::string> complete = Captions();
    for (const auto& [folder, caption] : optional) {
        machine_.folders = all;
        machine_.folders.erase(folder);
        std::vector<std::string> expected = complete;
        std::erase(expected, caption);
        List();
        EXPECT_THAT(Captions(), ElementsAreArray(expected)) << caption;
    }
}

TEST_F(ShellMenuTest, ShowsTheDocumentsEvenWhenTheyAreNotFound) {
    machine_.folders.erase(5);
    List();
    EXPECT_THAT(Items(), Contains("My Documents > "));
}

TEST_F(ShellMenuTest, IsTheSameWhenItIsListedAgain) {
    machine_.drives = {{"C:\\", DRIVE_FIXED, "SYSTEM"}, {"D:\\", DRIVE_CDROM}};
    List();
    const std::vector<std::string> first = Items();
    List();
    EXPECT_EQ(Items(), first);
}

TEST_F(ShellMenuTest, FollowsTheDrivesOfTheMoment) {
    machine_.drives = {{"C:\\"}, {"D:\\", DRIVE_CDROM}};
    List();
    machine_.drives = {{"C:\\"}, {"E:\\", DRIVE_REMOTE}};
    List();
    EXPECT_THAT(Captions(), Contains("Network drive (E:)"));
    EXPECT_THAT(Captions(), Not(Contains("CD Drive (D:)")));
}

TEST_F(ShellMenuTest, HasARootForAProgramOnANetworkShare) {
    machine_.programPath = "\\\\server\\share\\Quon\\Quon.exe";
    List();
    EXPECT_THAT(Items(), Contains("Root > \\\\s"));
}

TEST_F(ShellMenuTest, AsksForTheDrivesWithRoomForTwoHundredAndFiftyFive) {
    List();
    EXPECT_EQ(machine_.driveBuffer, 255U);
}

TEST_F(ShellMenuTest, ShowsAllDrivesThatThereCanBe) {
    for (char letter = 'A'; letter <= 'Z'; ++letter)
        machine_.drives.push_back({std::string(1, letter) + ":\\", DRIVE_REMOTE});
    List();
    EXPECT_EQ(menu_[26].caption, "Network drive (Z:)");
    EXPECT_EQ(menu_[27].caption, "-");
}

TEST_F(ShellMenuTest, HasNoDrivesWhenTheirListDoesNotFit) {
    for (int i = 0; i < 70; ++i)
        machine_.drives.push_back({"C:\\", DRIVE_REMOTE});
    List();
    EXPECT_EQ(menu_[1].caption, "-");
}

TEST_F(ShellMenuTest, StopsAtTheEndOfItsBufferWhenNothingEndsTheList) {
    machine_.drives = {{"C:\\", DRIVE_REMOTE}};
    const RecordedCall roots = FAKE_CALL(GetLogicalDriveStringsA, [](DWORD size, LPSTR buffer) -> DWORD {
        for (DWORD i = 0; i < size; ++i)
            buffer[i] = "C:\\\0"[i % 4];
        return size;
    });
    List();
    int drives = 0;
    for (const std::string& caption : Captions())
        if (caption == "Network drive (C:)") ++drives;
    EXPECT_EQ(drives, 63);
}

TEST_F(ShellMenuTest, StopsAfterAHundredDrives) {
    machine_.drives = {{"C", DRIVE_REMOTE}};
    const RecordedCall roots = FAKE_CALL(GetLogicalDriveStringsA, [](DWORD size, LPSTR buffer) -> DWORD {
        for (DWORD i = 0; i + 1 < size; ++i)
            buffer[i] = "C\0"[i % 2];
        return size;
    });
    List();
    EXPECT_EQ(menu_[100].caption, "Network drive (C)");
    EXPECT_EQ(menu_[101].caption, "-");
}

}  // namespace
