#include "win/com.h"

#include <thread>

#include "tests/support/unit_test.h"

namespace win {
namespace {

using testkit::CallLog, testkit::RecordedCall;

/// Has no member at all.
class EmptyObject : public IDispatch {
  public:
    virtual ~EmptyObject() = default;
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void**) override { return E_NOINTERFACE; }
    ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
        return DISP_E_UNKNOWNNAME;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                                     UINT*) override {
        ADD_FAILURE() << "there is nothing to invoke";
        return S_OK;
    }
};

TEST(ComTest, AMemberThatAnObjectDoesNotHaveIsNotInvoked) {
    EmptyObject object;
    Variant result;
    EXPECT_EQ(InvokeByName(&object, L"TargetPath", DISPATCH_PROPERTYGET, nullptr, result),
              DISP_E_UNKNOWNNAME);
    EXPECT_EQ(result.Text(), "");
}

TEST(ComTest, OnlyATextHasText) {
    const Variant text(L"文");
    EXPECT_EQ(text.Text(), "文");
    Variant none;
    none.Get()->vt = VT_BSTR;
    EXPECT_EQ(none.Text(), "") << "a text without a pointer is an empty one";
    Variant number;
    number.Get()->vt = VT_I4;
    number.Get()->lVal = 7;
    EXPECT_EQ(number.Text(), "");
}

TEST(ComTest, OleEndsOnlyWhereItHasBegun) {
    CallLog log;
    const RecordedCall end = LOG_CALL(log, OleUninitialize);
    std::thread([] {
        CoInitializeEx(nullptr, COINIT_MULTITHREADED);
        // A thread of the other kind cannot have it.
        {
            const OleThread refused;
        }
        CoUninitialize();
    }).join();
    EXPECT_EQ(log.Count("OleUninitialize"), 0U);
    std::thread([] { const OleThread ole; }).join();
    EXPECT_EQ(log.Count("OleUninitialize"), 1U);
}

}  // namespace
}  // namespace win
