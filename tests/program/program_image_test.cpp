// What the built program carries and needs, read back from its file.
#include <windows.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cstring>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/support/paths.h"
#include "tests/support/text.h"
#include "version.h"

namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::IsSubsetOf;

/// The program's file, laid out as the loader would, but never run.
class ProgramImage {
  public:
    ProgramImage()
        : module_(
              LoadLibraryExW(testkit::Wide(testkit::QuonExe()).c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE)),
          bytes_(testkit::FileBytes(testkit::QuonExe())) {
        if (module_ == nullptr) testkit::ThrowWindowsError("LoadLibraryEx");
    }
    ~ProgramImage() { FreeLibrary(module_); }
    ProgramImage(const ProgramImage&) = delete;
    ProgramImage& operator=(const ProgramImage&) = delete;

    std::string Resource(int id, LPCWSTR type) const {
        const HRSRC found = FindResourceW(module_, MAKEINTRESOURCEW(id), type);
        if (found == nullptr) throw std::runtime_error("no such resource: " + std::to_string(id));
        return {static_cast<const char*>(LockResource(LoadResource(module_, found))),
                SizeofResource(module_, found)};
    }

    const IMAGE_NT_HEADERS& Headers() const {
        return *At<IMAGE_NT_HEADERS>(static_cast<size_t>(At<IMAGE_DOS_HEADER>(0)->e_lfanew));
    }

    /// The names of the libraries in the import table, in lower case.
    std::vector<std::string> Imports() const {
        std::vector<std::string> names;
        const auto& directory = Headers().OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
        for (const auto* entry = AtAddress<IMAGE_IMPORT_DESCRIPTOR>(directory.VirtualAddress);
             entry->Name != 0; ++entry) {
            std::string name = AtAddress<char>(entry->Name);
            std::transform(name.begin(), name.end(), name.begin(),
                           [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
            names.push_back(name);
        }
        return names;
    }

  private:
    template <class Record>
    const Record* At(size_t offset) const {
        return reinterpret_cast<const Record*>(bytes_.data() + offset);
    }
    template <class Record>
    const Record* AtAddress(DWORD address) const {
        const auto* section = IMAGE_FIRST_SECTION(&Headers());
        for (int index = 0; index < Headers().FileHeader.NumberOfSections; ++index, ++section)
            if (address >= section->VirtualAddress &&
                address < section->VirtualAddress + section->SizeOfRawData)
                return At<Record>(address - section->VirtualAddress + section->PointerToRawData);
        throw std::runtime_error("an address outside the image");
    }

    HMODULE module_;
    std::string bytes_;
};

/// The text between an element's tags; attributes of the opening tag are passed over.
std::optional<std::string> ElementText(const std::string& xml, const std::string& name) {
    const size_t tag = xml.find("<" + name);
    if (tag == std::string::npos) return std::nullopt;
    const size_t start = xml.find('>', tag) + 1;
    return xml.substr(start, xml.find('<', start) - start);
}

TEST(ProgramImageTest, AsksWindowsForWhatItNeedsInItsManifest) {
    const std::string manifest = ProgramImage().Resource(1, MAKEINTRESOURCEW(24));
    EXPECT_EQ(ElementText(manifest, "activeCodePage"), "UTF-8");
    EXPECT_EQ(ElementText(manifest, "dpiAware "), "true");
    EXPECT_EQ(ElementText(manifest, "dpiAwareness"), "PerMonitorV2, system");
    EXPECT_EQ(ElementText(manifest, "gdiScaling"), std::nullopt);
    EXPECT_THAT(manifest, HasSubstr("requestedExecutionLevel level=\"asInvoker\""));
    EXPECT_THAT(manifest, AllOf(HasSubstr("name=\"Microsoft.Windows.Common-Controls\" version=\"6.0.0.0\""),
                                HasSubstr("publicKeyToken=\"6595b64144ccf1df\"")));
}

TEST(ProgramImageTest, NamesEveryWindowsItSupports) {
    const std::string manifest = ProgramImage().Resource(1, MAKEINTRESOURCEW(24));
    for (const char* system :
         {"{35138b9a-5d96-4fbd-8e2d-a2440225f93a}", "{4a2f28e3-53b9-4441-ba9c-d69d4a4a6e38}",
          "{1f676c76-80e1-4239-95bb-83d0f6d0da78}", "{8e0f7a12-bfb3-4fe8-b9a5-48fd50a15a9a}"})
        EXPECT_THAT(manifest, HasSubstr(system));
}

TEST(ProgramImageTest, CarriesItsVersion) {
    const std::string version = ProgramImage().Resource(1, MAKEINTRESOURCEW(16));
    const DWORD signature = 0xFEEF04BD;
    const size_t at = version.find(std::string(reinterpret_cast<const char*>(&signature), sizeof signature));
    ASSERT_NE(at, std::string::npos);
    VS_FIXEDFILEINFO fixed{};
    std::memcpy(&fixed, version.data() + at, sizeof fixed);
    const std::array<DWORD, 4> parts{QUON_VERSION_NUMBERS};
    EXPECT_EQ(fixed.dwFileVersionMS, parts[0] << 16 | parts[1]);
    EXPECT_EQ(fixed.dwFileVersionLS, parts[2] << 16 | parts[3]);
    EXPECT_EQ(fixed.dwProductVersionMS, fixed.dwFileVersionMS);
    EXPECT_EQ(fixed.dwProductVersionLS, fixed.dwFileVersionLS);
    // A value follows its name after the name's end and what aligns it to four bytes.
    for (const std::wstring name : {L"FileVersion", L"ProductVersion"}) {
        const std::wstring text(reinterpret_cast<const wchar_t*>(version.data()), version.size() / 2);
        const size_t end = text.find(name + L'\0') + name.size();
        const std::wstring expected = testkit::Wide(QUON_VERSION) + L'\0';
        EXPECT_EQ(text.substr(text.find_first_not_of(L'\0', end), expected.size()), expected);
    }
}

TEST(ProgramImageTest, HasItsIconInEverySize) {
    const std::string group = ProgramImage().Resource(1, MAKEINTRESOURCEW(14));
    // Six bytes of head, fourteen for each picture; a width of 0 stands for 256.
    std::vector<int> widths;
    for (size_t at = 6; at + 14 <= group.size(); at += 14)
        widths.push_back(group[at] == 0 ? 256 : static_cast<unsigned char>(group[at]));
    std::sort(widths.begin(), widths.end());
    widths.erase(std::unique(widths.begin(), widths.end()), widths.end());
    EXPECT_THAT((std::vector<int>{16, 24, 32, 48, 256}), IsSubsetOf(widths));
}

TEST(ProgramImageTest, NeedsOnlyLibrariesOfWindows) {
    const std::vector<std::string> windows{"advapi32.dll", "comctl32.dll", "comdlg32.dll", "dwmapi.dll",
                                           "gdi32.dll",    "mpr.dll",      "kernel32.dll", "msvcrt.dll",
                                           "ole32.dll",    "oleaut32.dll", "psapi.dll",    "shcore.dll",
                                           "shell32.dll",  "shlwapi.dll",  "user32.dll",   "uxtheme.dll"};
    EXPECT_THAT(ProgramImage().Imports(), IsSubsetOf(windows));
}

TEST(ProgramImageTest, RunsInAWindowOnWindows7) {
    const ProgramImage image;
    const auto& header = image.Headers().OptionalHeader;
    EXPECT_EQ(header.Subsystem, IMAGE_SUBSYSTEM_WINDOWS_GUI);
    EXPECT_LE(MAKELONG(header.MinorSubsystemVersion, header.MajorSubsystemVersion), MAKELONG(1, 6));
    EXPECT_LE(MAKELONG(header.MinorOperatingSystemVersion, header.MajorOperatingSystemVersion),
              MAKELONG(1, 6));
}

TEST(ProgramImageTest, CanBePlacedAnywhereAndRunsNoData) {
    const ProgramImage image;
    const WORD marks = image.Headers().OptionalHeader.DllCharacteristics;
    EXPECT_NE(marks & IMAGE_DLLCHARACTERISTICS_DYNAMIC_BASE, 0);
    EXPECT_NE(marks & IMAGE_DLLCHARACTERISTICS_NX_COMPAT, 0);
}

}  // namespace
