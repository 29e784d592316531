#include "sys/shell_link.h"

#include "tests/support/unit_test.h"
#include "win/com.h"

namespace {

using ::testing::ElementsAre;
using testkit::CallLog, testkit::ProgramFolder, testkit::RecordedCall;

/// What the scripting object is to say of a link. S_FALSE: it makes no link, and does not call that a
/// failure.
struct ScriptAnswers {
    HRESULT create = S_OK;
    std::wstring target = {};
    std::wstring arguments = {};
    HRESULT read_target = S_OK;
    HRESULT read_arguments = S_OK;
};

/// The scripting object and the link that it makes, in one: members are found by their names and every use is
/// logged. Lives on the stack, so it must outlast all references.
class FakeScriptShell : public IDispatch {
  public:
    FakeScriptShell(CallLog& log, ScriptAnswers answers) : log_(log), answers_(std::move(answers)) {}
    FakeScriptShell(const FakeScriptShell&) = delete;
    FakeScriptShell& operator=(const FakeScriptShell&) = delete;
    ~FakeScriptShell() { EXPECT_EQ(references_, 0) << "a reference to the scripting object was kept"; }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void**) override { return E_NOINTERFACE; }
    ULONG STDMETHODCALLTYPE AddRef() override { return static_cast<ULONG>(++references_); }
    ULONG STDMETHODCALLTYPE Release() override { return static_cast<ULONG>(--references_); }
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID, DISPID* ids) override {
        names_.emplace_back(names[0]);
        ids[0] = static_cast<DISPID>(names_.size() - 1);
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD kind, DISPPARAMS* parameters,
                                     VARIANT* result, EXCEPINFO*, UINT*) override {
        const std::wstring& name = names_.at(static_cast<size_t>(id));
        if (name == L"CreateShortcut" && kind == DISPATCH_METHOD && parameters->cArgs == 1) {
            log_.Add(name.c_str(), parameters->rgvarg[0].bstrVal);
            if (FAILED(answers_.create)) return answers_.create;
            result->vt = VT_DISPATCH;
            result->pdispVal = answers_.create == S_FALSE ? nullptr : this;
            if (result->pdispVal != nullptr) AddRef();
            return S_OK;
        }
        log_.Add(name.c_str(), kind == DISPATCH_PROPERTYGET ? "get" : "other");
        if (name == L"TargetPath" && FAILED(answers_.read_target)) return answers_.read_target;
        if (name == L"Arguments" && FAILED(answers_.read_arguments)) return answers_.read_arguments;
        const std::wstring& text = name == L"TargetPath" ? answers_.target : answers_.arguments;
        result->vt = VT_BSTR;
        result->bstrVal = SysAllocString(text.c_str());
        return S_OK;
    }

  private:
    CallLog& log_;
    ScriptAnswers answers_;
    std::vector<std::wstring> names_;
    int references_ = 0;
};

class ShellLinkTest : public testing::Test {
  protected:
    /// Puts `shell` in the place of "WScript.Shell"; null: there is no such object.
    void ReplaceScriptShell(FakeScriptShell* shell) {
        calls_.push_back(FAKE_CALL(CLSIDFromProgID, [this](LPCOLESTR name, LPCLSID id) -> HRESULT {
            log_.Add("CLSIDFromProgID", name);
            *id = kScriptShell;
            return S_OK;
        }));
        calls_.push_back(FAKE_CALL(CoCreateInstance,
                                   [this, shell](REFCLSID id, LPUNKNOWN outer, DWORD context, REFIID kind,
                                                 LPVOID* object) -> HRESULT {
                                       if (id != kScriptShell) {
                                           log_.Add(id == CLSID_ShellLink ? "shell link" : "another object");
                                           return ORIGINAL_CALL(CoCreateInstance)(id, outer, context, kind,
                                                                                  object);
                                       }
                                       if (shell == nullptr) return REGDB_E_CLASSNOTREG;
                                       EXPECT_TRUE(kind == IID_IDispatch);
                                       shell->AddRef();
                                       *object = static_cast<IDispatch*>(shell);
                                       return S_OK;
                                   }));
    }

    static constexpr CLSID kScriptShell{0x51, 0x75, 0x6F, {0x6E, 1, 2, 3, 4, 5, 6, 7}};
    win::OleThread ole_;
    ProgramFolder folder_;
    CallLog log_;
    testkit::RecordedCalls calls_;
};

TEST_F(ShellLinkTest, GivesAnyOtherPathBackWithABar) {
    for (const std::string path :
         {"C:\\a.txt", "C:\\a.LNK", "C:\\a.Lnk", "nk", "", "http://example.org/", "C:\\lnk\\a"})
        EXPECT_EQ(sys::ReadLinkTarget(path), path + "|");
}

TEST_F(ShellLinkTest, DoesNotAskTheScriptingObjectForAnyOtherPath) {
    FakeScriptShell shell(log_, {});
    ReplaceScriptShell(&shell);
    sys::ReadLinkTarget("C:\\a.txt");
    EXPECT_EQ(log_.Text(), "");
}

TEST_F(ShellLinkTest, AsksTheScriptingObjectForTargetAndArguments) {
    FakeScriptShell shell(log_, {.target = L"C:\\Łódź\\файл 文件.exe", .arguments = L"/x \"żółw\""});
    ReplaceScriptShell(&shell);
    EXPECT_EQ(sys::ReadLinkTarget("C:\\Ярлык 链接.lnk"), "C:\\Łódź\\файл 文件.exe|/x \"żółw\"");
    EXPECT_THAT(log_.Lines(),
                ElementsAre("CLSIDFromProgID WScript.Shell", "CreateShortcut C:\\Ярлык 链接.lnk",
                            "TargetPath get", "Arguments get"));
}

TEST_F(ShellLinkTest, EncodesTheBarsOfAUrlButOfNothingElse) {
    FakeScriptShell shell(log_, {.target = L"http://example.org/a|b", .arguments = L"c|d"});
    ReplaceScriptShell(&shell);
    EXPECT_EQ(sys::ReadLinkTarget("C:\\a.lnk"), "http://example.org/a%7Cb|c|d");
}

TEST_F(ShellLinkTest, KeepsTheTargetWhenTheArgumentsCannotBeRead) {
    FakeScriptShell shell(log_, {.target = L"C:\\a.exe", .arguments = L"/x", .read_arguments = E_FAIL});
    ReplaceScriptShell(&shell);
    EXPECT_EQ(sys::ReadLinkTarget("C:\\a.lnk"), "C:\\a.exe|");
}

TEST_F(ShellLinkTest, TreatsAnyPathThatEndsInLnkAsALink) {
    FakeScriptShell shell(log_, {.target = L"C:\\a.exe"});
    ReplaceScriptShell(&shell);
    EXPECT_EQ(sys::ReadLinkTarget("lnk"), "C:\\a.exe|");
}

class ShellLinkFallBackTest : public ShellLinkTest, public testing::WithParamInterface<int> {};

TEST_P(ShellLinkFallBackTest, ReadsTheLinkThroughTheShell) {
    const std::string target = folder_.MakeFile("Łódź\\файл 文件.txt");
    const std::string link =
        folder_.MakeLink("Ярлык 链接.lnk", {.target = target, .arguments = "/x \"żółw\" --y=1"});
    FakeScriptShell fails(log_, {.create = E_FAIL});
    FakeScriptShell refuses(log_, {.arguments = L"/other", .read_target = E_FAIL});
    FakeScriptShell knows_nothing(log_, {.arguments = L"/other"});
    FakeScriptShell makes_nothing(log_, {.create = S_FALSE});
    FakeScriptShell* const shells[] = {nullptr, &fails, &refuses, &knows_nothing, &makes_nothing};
    ReplaceScriptShell(shells[GetParam()]);
    EXPECT_EQ(sys::ReadLinkTarget(link), target + "|/x \"żółw\" --y=1");
    EXPECT_EQ(log_.Lines().back(), "shell link");
}

INSTANTIATE_TEST_SUITE_P(WithoutAnAnswer, ShellLinkFallBackTest, testing::Range(0, 5));

TEST_F(ShellLinkTest, ReadsTheLinkThroughTheShellWhereTheScriptingObjectHasNoName) {
    const std::string target = folder_.MakeFile("a.txt");
    const std::string link = folder_.MakeLink("a.lnk", {.target = target});
    const RecordedCall name = ANSWER_CALL(CLSIDFromProgID, CO_E_CLASSSTRING);
    EXPECT_EQ(sys::ReadLinkTarget(link), target + "|");
}

TEST_F(ShellLinkTest, ReadsAgainWhatTheScriptingObjectMayHaveCut) {
    const std::string target = folder_.MakeFile("Кућа\\файл 文件.txt");
    const std::string arguments = "/" + testkit::Utf8(std::wstring(600, L'ж'));
    const std::string link = folder_.MakeLink("a.lnk", {.target = target, .arguments = arguments});
    const std::wstring wide = testkit::Wide(target);
    std::wstring unknown = wide;
    unknown.replace(unknown.rfind(L"文件"), 2, L"??");
    for (const ScriptAnswers& answers :
         {ScriptAnswers{.target = unknown, .arguments = L"/x"},
          ScriptAnswers{.target = wide.substr(0, 20) + L"\uFFFD"},
          ScriptAnswers{.target = wide, .arguments = std::wstring(128, L'ж')}}) {
        FakeScriptShell shell(log_, answers);
        ReplaceScriptShell(&shell);
        EXPECT_EQ(sys::ReadLinkTarget(link), target + "|" + arguments);
        calls_.clear();
    }
}

TEST_F(ShellLinkTest, BelievesTheScriptingObjectWhereTheShellKnowsNoMore) {
    const std::wstring target = L"C:\\" + std::wstring(300, L'ж');
    FakeScriptShell shell(log_, {.target = target});
    ReplaceScriptShell(&shell);
    EXPECT_EQ(sys::ReadLinkTarget(folder_.FullPath("missing.lnk")), testkit::Utf8(target) + "|");
}

TEST_F(ShellLinkTest, ReadsALinkWithTheObjectsOfThisSystem) {
    const std::string target = folder_.MakeFile("цель.txt");
    const std::string link = folder_.MakeLink("a.lnk", {.target = target, .arguments = "/x"});
    EXPECT_EQ(sys::ReadLinkTarget(link), target + "|/x");
    const std::string plain = folder_.MakeLink("b.lnk", {.target = target});
    EXPECT_EQ(sys::ReadLinkTarget(plain), target + "|");
}

TEST_F(ShellLinkTest, GivesABarForABrokenLink) {
    EXPECT_EQ(sys::ReadLinkTarget(folder_.FullPath("missing.lnk")), "|");
    EXPECT_EQ(sys::ReadLinkTarget(folder_.MakeFile("empty.lnk")), "|");
    EXPECT_EQ(sys::ReadLinkTarget(folder_.MakeFile("junk.lnk", std::string(3000, 'L'))), "|");
    EXPECT_EQ(sys::ReadLinkTarget(folder_.MakeFolder("folder.lnk")), "|");
}

TEST_F(ShellLinkTest, GivesABarWhereTheShellsLinkReadsNoFiles) {
    FakeScriptShell neither(log_, {});
    const RecordedCall create =
        FAKE_CALL(CoCreateInstance, [&](REFCLSID id, LPUNKNOWN, DWORD, REFIID, LPVOID* object) -> HRESULT {
            if (id != CLSID_ShellLink) return REGDB_E_CLASSNOTREG;
            neither.AddRef();
            *object = static_cast<IUnknown*>(&neither);
            return S_OK;
        });
    EXPECT_EQ(sys::ReadLinkTarget(folder_.MakeFile("a.lnk")), "|");
}

TEST_F(ShellLinkTest, GivesABarWhenComWasNeverStarted) {
    const RecordedCall create = ANSWER_CALL(CoCreateInstance, CO_E_NOTINITIALIZED);
    EXPECT_EQ(sys::ReadLinkTarget("C:\\a.lnk"), "|");
}

}  // namespace
