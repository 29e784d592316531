// The manual as it is shipped: each page and each link in it, read with Windows' own reader of such files.
#include <windows.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <objidl.h>

#include <optional>
#include <regex>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/support/paths.h"
#include "tests/support/text.h"
#include "tests/support/wine.h"
#include "win/com.h"

namespace testkit {
namespace {

using ::testing::Contains, ::testing::HasSubstr, ::testing::IsEmpty, ::testing::IsSupersetOf;

constexpr GUID kStorageClass = {0x5d02926a, 0x212e, 0x11d0, {0x9d, 0xf9, 0x00, 0xa0, 0xc9, 0x22, 0xe6, 0xec}};
constexpr GUID kStorageInterface = {
    0x88cc31de, 0x27ab, 0x11d0, {0x9d, 0xf9, 0x00, 0xa0, 0xc9, 0x22, 0xe6, 0xec}};

/// What itss.dll offers for compiled help files: the functions up to the one that opens them.
struct HelpStorages : public IUnknown {
    virtual HRESULT STDMETHODCALLTYPE Create(const WCHAR*, DWORD, DWORD, IStorage**) = 0;
    virtual HRESULT STDMETHODCALLTYPE CreateOnBytes(ILockBytes*, DWORD, DWORD, IStorage**) = 0;
    virtual HRESULT STDMETHODCALLTYPE IsStorage(const WCHAR*) = 0;
    virtual HRESULT STDMETHODCALLTYPE IsStorageInBytes(ILockBytes*) = 0;
    virtual HRESULT STDMETHODCALLTYPE Open(const WCHAR* path, IStorage* above, DWORD mode, SNB exclude,
                                           DWORD reserved, IStorage** storage) = 0;
};

/// A compiled help file that is open for reading.
class HelpFile {
  public:
    explicit HelpFile(const std::string& path) {
        using ClassObjectGetter = HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**);
        const HMODULE reader = LoadLibraryW(L"itss.dll");
        const auto getter = reinterpret_cast<ClassObjectGetter>(
            reinterpret_cast<void*>(GetProcAddress(reader, "DllGetClassObject")));
        win::ComPtr<IClassFactory> factory;
        win::ComPtr<HelpStorages> storages;
        if (getter == nullptr || FAILED(getter(kStorageClass, IID_IClassFactory, factory.ReceiveVoid())) ||
            FAILED(factory->CreateInstance(nullptr, kStorageInterface, storages.ReceiveVoid())))
            throw std::runtime_error("Windows' reader of help files is not there");
        const HRESULT opened = storages->Open(Wide(path).c_str(), nullptr, STGM_READ | STGM_SHARE_DENY_WRITE,
                                              nullptr, 0, reinterpret_cast<IStorage**>(file_.ReceiveVoid()));
        if (FAILED(opened)) throw std::runtime_error(path + " cannot be opened as a help file");
    }

    /// The bytes of a file in it ("pictures/x.png"); throws when it is not there.
    std::string Read(const std::string& name) const {
        win::ComPtr<IStream> stream;
        const HRESULT opened =
            file_->OpenStream(Wide(name).c_str(), nullptr, STGM_READ | STGM_SHARE_EXCLUSIVE, 0,
                              reinterpret_cast<IStream**>(stream.ReceiveVoid()));
        if (FAILED(opened) || !stream) throw std::runtime_error(name + " is not in the manual");
        std::string bytes;
        char part[4096];
        ULONG read = 0;
        while (SUCCEEDED(stream->Read(part, sizeof part, &read)) && read > 0)
            bytes.append(part, read);
        return bytes;
    }

    bool Has(const std::string& name) const {
        try {
            return !Read(name).empty();
        } catch (const std::runtime_error&) {
            return false;
        }
    }

  private:
    win::ComPtr<IStorage> file_;
};

/// The values of the first group of an expression, wherever it is found.
std::vector<std::string> Found(const std::string& text, const std::string& expression) {
    const std::regex regex(expression);
    std::vector<std::string> values;
    for (std::sregex_iterator at(text.begin(), text.end(), regex), end; at != end; ++at)
        values.push_back((*at)[1]);
    return values;
}

class ManualTest : public ::testing::Test {
  protected:
    void SetUp() override {
        const std::string path = FolderOf(QuonExe()) + "\\Manual.chm";
        if (!FileExists(path)) ONLY_UNDER_WINE("A build on Windows has no compiler for the manual.");
        manual_.emplace(path);
    }
    std::string Read(const std::string& name) const { return manual_.value().Read(name); }
    /// The pages that the contents lead to.
    std::vector<std::string> Pages() const {
        return Found(Read("contents.hhc"), R"re(name="Local" value="([^"]*)")re");
    }

    std::optional<HelpFile> manual_;
};

TEST_F(ManualTest, HasAPageForEachThingThatQuonDoes) {
    EXPECT_THAT(Pages(), IsSupersetOf({"welcome.html", "first-minutes.html", "panel.html", "buttons.html",
                                       "groups.html", "tabs.html", "shortcut-list.html", "organize.html",
                                       "menus.html", "edge.html", "options.html", "keys.html", "storage.html",
                                       "questions.html", "messages.html"}));
}

TEST_F(ManualTest, EachPageOfTheContentsIsThereUnderItsTitle) {
    const std::string contents = Read("contents.hhc");
    const auto titles = Found(contents, R"re(name="Name" value="([^"]*)")re");
    const auto pages = Pages();
    ASSERT_EQ(titles.size(), pages.size());
    for (size_t i = 0; i < pages.size(); ++i)
        EXPECT_THAT(Read(pages[i]), HasSubstr("<h1>" + titles[i] + "</h1>")) << pages[i];
}

TEST_F(ManualTest, EachLinkAndEachPictureLeadsSomewhere) {
    for (const std::string& page : Pages()) {
        const std::string text = Read(page);
        for (const std::string& target : Found(text, R"re((?:href|src)="([^"#]*)[^"]*")re")) {
            if (target.find(':') != std::string::npos) continue;
            EXPECT_TRUE(manual_->Has(target)) << page << " leads to " << target;
        }
    }
}

TEST_F(ManualTest, EachPageIsReachedFromAnother) {
    std::set<std::string> reached{"welcome.html"};
    for (const std::string& page : Pages())
        for (const std::string& target : Found(Read(page), R"re(href="([^"#]*)[^"]*")re"))
            if (target != page) reached.insert(target);
    for (const std::string& page : Pages())
        EXPECT_THAT(reached, Contains(page));
}

TEST_F(ManualTest, TheIndexLeadsToPagesOfTheContents) {
    const auto pages = Pages();
    const auto entries = Found(Read("index.hhk"), R"re(name="Local" value="([^"#]*))re");
    EXPECT_GT(entries.size(), 40U);
    for (const std::string& entry : entries)
        EXPECT_THAT(pages, Contains(entry));
}

TEST_F(ManualTest, EveryPictureHasATextInItsPlace) {
    for (const std::string& page : Pages())
        EXPECT_THAT(Found(Read(page), R"re((<img (?![^>]*alt="[^"])[^>]*>))re"), IsEmpty()) << page;
}

}  // namespace
}  // namespace testkit
