#include "sys/shell_folders.h"

#include <windows.h>

#include <shlobj.h>

#include <array>
#include <vector>

#include "win/process_start.h"
#include "win/text.h"

namespace sys {
namespace {

// In characters: no path of Windows is longer, so none is cut.
constexpr DWORD kPathBuffer = 32768;
constexpr DWORD kDriveBuffer = 255;
constexpr DWORD kLabelBuffer = 255;
constexpr int kDriveLimit = 100;

#define QUON_MY_COMPUTER "::{20D04FE0-3AEA-1069-A2D8-08002B30309D}"
#define QUON_CONTROL_PANEL QUON_MY_COMPUTER "\\::{21EC2020-3AEA-1069-A2DD-08002B30309D}"
constexpr const char* kMyComputer = QUON_MY_COMPUTER;
constexpr const char* kControlPanel = QUON_CONTROL_PANEL;
constexpr const char* kPrinters = QUON_CONTROL_PANEL "\\::{2227A280-3AEA-1069-A2DE-08002B30309D}";
#undef QUON_CONTROL_PANEL
#undef QUON_MY_COMPUTER
constexpr const char* kRecycleBin = "::{645FF040-5081-101B-9F08-00AA002F954E}";
constexpr const char* kNetwork = "::{208D2C60-3AEA-1069-A2D7-08002B30309D}";

/// Loads elements behind those that are there.
class Loader {
  public:
    explicit Loader(win::MenuArray& menu) noexcept : menu_(menu) {}

    win::MenuItem& Add(const std::string& caption) {
        win::MenuItem& item = menu_.Load(menu_.Count());
        item.caption = caption;
        return item;
    }
    void Add(const std::string& caption, const std::string& tag) { Add(caption).tag = tag; }
    void AddIfFound(const std::string& caption, const std::string& tag) {
        if (!tag.empty()) Add(caption, tag);
    }

  private:
    win::MenuArray& menu_;
};

void AddDrives(Loader& loader) {
    std::array<char, kDriveBuffer> roots{};
    GetLogicalDriveStringsA(kDriveBuffer, roots.data());
    // Each root ends with a NUL, the list with an empty one; the last byte stays NUL in any case.
    roots.back() = '\0';
    const char* next = roots.data();
    for (int drive = 0; drive < kDriveLimit && *next != '\0'; ++drive) {
        const std::string root = next;
        next += root.size() + 1;
        if (next >= roots.data() + roots.size()) break;
        loader.Add(clsShell::DriveTypeCaption(root) + " (" + root.substr(0, 2) + ")", root);
    }
}

void AddPlaces(Loader& loader, win::MenuArray& menu) {
    loader.Add("-");
    // A loaded element has the tag of element 0, which is still the documents' folder.
    loader.Add("My Documents");
    menu[0].tag = kMyComputer;
    loader.AddIfFound("Recent items", clsShell::GetSpecialfolder(CSIDL_RECENT));
    loader.Add("Recycle bin", kRecycleBin);
    loader.Add("-");
    loader.AddIfFound("Desktop", clsShell::GetSpecialfolder(CSIDL_DESKTOP));
    loader.AddIfFound("Root", win::ProgramRoot());
    loader.Add("My computer", kMyComputer);
    loader.Add("Network", kNetwork);
    loader.Add("-");
    loader.Add("Control panel", kControlPanel);
    loader.Add("Printers", kPrinters);
    loader.AddIfFound("Start menu", clsShell::GetSpecialfolder(CSIDL_STARTMENU));
    loader.AddIfFound("Startup", clsShell::GetSpecialfolder(CSIDL_STARTUP));
    loader.AddIfFound("Send to", clsShell::GetSpecialfolder(CSIDL_SENDTO));
}

}  // namespace

std::string TakePath(LPITEMIDLIST list) {
    std::vector<wchar_t> path(kPathBuffer);
    const BOOL found = SHGetPathFromIDListEx(list, path.data(), kPathBuffer, GPFIDL_DEFAULT);
    CoTaskMemFree(list);
    return found != FALSE ? win::ToBytes(path.data()) : std::string();
}

void clsShell::ListShellFolders(win::MenuArray& menu) {
    while (menu.Count() >= 2)
        menu.Unload(menu.Count() - 1);
    menu[0].tag = GetSpecialfolder(CSIDL_PERSONAL);
    Loader loader(menu);
    AddDrives(loader);
    AddPlaces(loader, menu);
}

std::string clsShell::GetSpecialfolder(int folder) {
    LPITEMIDLIST list = nullptr;
    // The owner window is only for prompts that these folders never raise; any number does.
    // NOLINTNEXTLINE(performance-no-int-to-ptr)
    if (SHGetSpecialFolderLocation(reinterpret_cast<HWND>(INT_PTR{100}), folder, &list) != S_OK) return {};
    return TakePath(list);
}

std::string clsShell::DriveTypeCaption(const std::string& root) {
    switch (GetDriveTypeA(root.c_str())) {
        case DRIVE_REMOVABLE: return "Floppy";
        case DRIVE_FIXED: return VolumeLabel(root);
        case DRIVE_REMOTE: return "Network drive";
        case DRIVE_CDROM: return "CD Drive";
        case DRIVE_RAMDISK: return "Ram disk";
        default: return "Unrecognized";
    }
}

std::string clsShell::VolumeLabel(const std::string& root) {
    std::array<char, kLabelBuffer + 1> label{};
    std::array<char, kLabelBuffer + 1> system{};
    DWORD serial = 0;
    DWORD longest = 0;
    DWORD flags = 0;
    GetVolumeInformationA(root.c_str(), label.data(), kLabelBuffer, &serial, &longest, &flags, system.data(),
                          kLabelBuffer);
    return label.data();
}

}  // namespace sys
