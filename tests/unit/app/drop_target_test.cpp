#include "app/drop_target.h"

#include <new>

#include "app/button_drops.h"
#include "res/resource.h"
#include "tests/support/data_object.h"
#include "tests/support/unit_test.h"
#include "win/com.h"
#include "win/errors.h"

namespace app {
namespace {

using ::testing::ElementsAre;
using testkit::CallLog, testkit::DataObject, testkit::RecordedCall;

constexpr DWORD kNone = DROPEFFECT_NONE;
constexpr DWORD kCopy = DROPEFFECT_COPY;
constexpr DWORD kMove = DROPEFFECT_MOVE;
constexpr DWORD kLink = DROPEFFECT_LINK;

/// A window that is never shown, with a child that takes the drops.
class DropTargetTest : public ::testing::Test {
  protected:
    DropTargetTest() {
        text_.OfferText("https://example.org/");
        target_.Register(child_, [this](const sys::DroppedData& data) {
            dropped_.push_back(data.value);
            if (throws_) throw win::RuntimeError("the handler failed");
        });
    }
    ~DropTargetTest() override {
        target_.Revoke();
        DestroyWindow(window_);
    }

    DWORD EffectOfEntering(IDataObject* object, DWORD allowed) {
        DWORD effect = allowed;
        EXPECT_EQ(target_.DragEnter(object, 0, {}, &effect), S_OK);
        return effect;
    }
    DWORD EffectOfDropping(IDataObject* object, DWORD allowed) {
        EffectOfEntering(object, allowed);
        DWORD effect = allowed;
        EXPECT_EQ(target_.Drop(object, 0, {}, &effect), S_OK);
        return effect;
    }

    const win::OleThread ole_;
    const HWND window_ =
        CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 10, 10, nullptr, nullptr, nullptr, nullptr);
    const HWND child_ = CreateWindowExW(0, L"STATIC", L"", WS_CHILD | WS_VISIBLE, 0, 0, 10, 10, window_,
                                        nullptr, nullptr, nullptr);
    DataObject text_;
    DropTarget target_;
    std::vector<std::string> dropped_;
    bool throws_ = false;
};

TEST_F(DropTargetTest, CopiesWhereThatIsAllowedElseLinksElseRefuses) {
    EXPECT_EQ(DropTarget::EffectFor(kCopy | kMove | kLink), kCopy);
    EXPECT_EQ(DropTarget::EffectFor(kCopy), kCopy);
    EXPECT_EQ(DropTarget::EffectFor(kMove | kLink), kLink);
    EXPECT_EQ(DropTarget::EffectFor(kLink), kLink);
    EXPECT_EQ(DropTarget::EffectFor(kMove), kNone);
    EXPECT_EQ(DropTarget::EffectFor(kNone), kNone);
}

TEST_F(DropTargetTest, SaysTheEffectOnEnteringMovingAndDropping) {
    EXPECT_EQ(EffectOfEntering(&text_, kMove | kLink), kLink);
    DWORD effect = kCopy | kLink;
    EXPECT_EQ(target_.DragOver(0, {}, &effect), S_OK);
    EXPECT_EQ(effect, kCopy);
    effect = kLink;
    EXPECT_EQ(target_.Drop(&text_, 0, {}, &effect), S_OK);
    EXPECT_EQ(effect, kLink);
    EXPECT_THAT(dropped_, ElementsAre("https://example.org/"));
}

TEST_F(DropTargetTest, TakesNothingWhoseEffectIsNotAllowed) {
    EXPECT_EQ(EffectOfDropping(&text_, kMove), kNone);
    EXPECT_EQ(dropped_.size(), 0u);
}

TEST_F(DropTargetTest, RefusesWhatHoldsNeitherTextNorFiles) {
    DataObject object;
    object.Offer(CF_TEXT, "x");
    EXPECT_EQ(EffectOfDropping(&object, kCopy | kLink), kNone);
    EXPECT_EQ(EffectOfDropping(nullptr, kCopy | kLink), kNone);
    EXPECT_EQ(dropped_.size(), 0u);
}

TEST_F(DropTargetTest, CallsNobodyWhenThePromisedDataDoNotCome) {
    DataObject object;
    object.Promise(CF_UNICODETEXT);
    EffectOfDropping(&object, kCopy);
    EXPECT_EQ(dropped_.size(), 0u);
}

TEST_F(DropTargetTest, RefusesEverythingAfterTheDragHasLeft) {
    EffectOfEntering(&text_, kCopy);
    EXPECT_EQ(target_.DragLeave(), S_OK);
    DWORD effect = kCopy;
    target_.DragOver(0, {}, &effect);
    EXPECT_EQ(effect, kNone);
    EXPECT_EQ(EffectOfDropping(&text_, kCopy), kCopy);
    effect = kCopy;
    target_.DragOver(0, {}, &effect);
    EXPECT_EQ(effect, kNone) << "a drop ends the drag as well";
}

TEST_F(DropTargetTest, TakesNothingWhileTheWindowTakesNoInput) {
    EnableWindow(window_, FALSE);
    EXPECT_EQ(EffectOfDropping(&text_, kCopy), kNone);
    EXPECT_EQ(dropped_.size(), 0u);
    EnableWindow(window_, TRUE);
    EXPECT_EQ(EffectOfDropping(&text_, kCopy), kCopy);
    EXPECT_EQ(dropped_.size(), 1u);
}

TEST_F(DropTargetTest, AnswersForTwoInterfaces) {
    void* object = nullptr;
    EXPECT_EQ(target_.QueryInterface(IID_IUnknown, &object), S_OK);
    EXPECT_EQ(object, static_cast<IDropTarget*>(&target_));
    EXPECT_EQ(target_.QueryInterface(IID_IDropTarget, &object), S_OK);
    EXPECT_EQ(object, static_cast<IDropTarget*>(&target_));
    const ULONG references = target_.Release();
    EXPECT_EQ(target_.Release(), references - 1);
    EXPECT_EQ(target_.QueryInterface(IID_IDataObject, &object), E_NOINTERFACE);
    EXPECT_EQ(object, nullptr);
    EXPECT_EQ(target_.QueryInterface(IID_IUnknown, nullptr), E_POINTER);
    DWORD* nowhere = nullptr;
    EXPECT_EQ(target_.DragOver(0, {}, nowhere), E_POINTER);
    target_.Drop(&text_, 0, {}, nowhere);
    EXPECT_EQ(dropped_.size(), 0u);
}

std::vector<std::string> g_reported;

TEST_F(DropTargetTest, LetsNoErrorOutToTheProgramThatDrops) {
    g_reported.clear();
    win::SetErrorReporter(+[](HWND, const char* message) noexcept { g_reported.emplace_back(message); });
    throws_ = true;
    EXPECT_EQ(EffectOfDropping(&text_, kCopy), kCopy);
    win::SetErrorReporter(nullptr);
    EXPECT_THAT(g_reported, ElementsAre("the handler failed"));
    throws_ = false;
    EffectOfDropping(&text_, kCopy);
    EXPECT_EQ(dropped_.size(), 2u);
}

TEST_F(DropTargetTest, RegistersItsWindowOnceAndRevokesItOnce) {
    CallLog log;
    const RecordedCall add = LOG_CALL(log, RegisterDragDrop);
    const RecordedCall remove = LOG_CALL(log, RevokeDragDrop);
    {
        DropTarget target;
        target_.Revoke();
        target.Register(child_, [](const sys::DroppedData&) {});
        target.Revoke();
        target.Revoke();
    }
    EXPECT_EQ(log.Count("RegisterDragDrop"), 1u);
    EXPECT_EQ(log.Count("RevokeDragDrop"), 2u) << "one for each of the two targets";
}

TEST_F(DropTargetTest, RevokesWithItself) {
    target_.Revoke();
    {
        DropTarget().Register(child_, [](const sys::DroppedData&) {});
    }
    EXPECT_EQ(RevokeDragDrop(child_), DRAGDROP_E_NOTREGISTERED);
}

TEST_F(DropTargetTest, RefusesDropsWhenTheSystemRefusesTheRegistration) {
    CallLog log;
    const RecordedCall add = STUB_CALL(log, RegisterDragDrop, E_OUTOFMEMORY);
    const RecordedCall remove = LOG_CALL(log, RevokeDragDrop);
    {
        DropTarget target;
        target.Register(child_, [](const sys::DroppedData&) {});
        DWORD effect = kCopy;
        target.DragEnter(&text_, 0, {}, &effect);
        EXPECT_EQ(effect, kNone);
    }
    EXPECT_EQ(log.Count("RevokeDragDrop"), 0u);
}

TEST(ButtonDropsTest, MakesEachButtonAndTheHoverPictureATargetOnce) {
    const win::OleThread ole;
    PanelState state;
    ButtonPanel buttons(state);
    const HWND window =
        CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 400, 400, nullptr, nullptr, nullptr, nullptr);
    buttons.CreateOn(window);
    std::vector<HWND> expected;
    for (int index = 1; index <= 9; ++index)
        expected.push_back(buttons.Picture(index).Handle());
    expected.push_back(buttons.HoverPicture().Handle());

    std::vector<HWND> registered;
    std::vector<HWND> revoked;
    const RecordedCall add =
        WATCH_CALL(RegisterDragDrop, [&](HWND target, LPDROPTARGET) { registered.push_back(target); });
    const RecordedCall remove = WATCH_CALL(RevokeDragDrop, [&](HWND target) { revoked.push_back(target); });
    ButtonDrops drops(state, buttons);
    drops.Attach(window);
    EXPECT_EQ(registered, expected);
    drops.Detach();
    EXPECT_EQ(revoked, expected);
    drops.Detach();
    EXPECT_EQ(revoked, expected);
    DestroyWindow(window);
}

TEST(ButtonDropsTest, ActsOnADropOnlyWhenItsMessageComes) {
    const win::OleThread ole;
    PanelState state;
    ButtonPanel buttons(state);
    const HWND window =
        CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 400, 400, nullptr, nullptr, nullptr, nullptr);
    buttons.CreateOn(window);
    std::vector<IDropTarget*> targets;
    const RecordedCall add =
        WATCH_CALL(RegisterDragDrop, [&](HWND, LPDROPTARGET object) { targets.push_back(object); });
    CallLog log;
    const RecordedCall box = STUB_CALL(log, DialogBoxIndirectParamW, 0);
    ButtonDrops drops(state, buttons);
    drops.Attach(window);
    ASSERT_EQ(targets.size(), 10u);

    DataObject words;
    words.OfferText("only words");
    DWORD effect = kCopy;
    targets[3]->DragEnter(&words, 0, {}, &effect);
    targets[3]->Drop(&words, 0, {}, &effect);
    EXPECT_EQ(log.Text(), "") << "the program that drops would wait for the answer";
    MSG message = {};
    ASSERT_TRUE(PeekMessageW(&message, window, WM_QUON_DROP, WM_QUON_DROP, PM_REMOVE));
    drops.Act();
    EXPECT_EQ(log.Count("DialogBoxIndirectParamW"), 1u);
    EXPECT_EQ(state.Context.CurrentButtonIndex, 4);
    drops.Act();
    EXPECT_EQ(log.Count("DialogBoxIndirectParamW"), 1u) << "a drop is acted on once";
    // On the hover picture it is meant for the button below.
    buttons.Hover(8);
    effect = kCopy;
    targets[9]->DragEnter(&words, 0, {}, &effect);
    targets[9]->Drop(&words, 0, {}, &effect);
    ASSERT_TRUE(PeekMessageW(&message, window, WM_QUON_DROP, WM_QUON_DROP, PM_REMOVE));
    drops.Act();
    EXPECT_EQ(state.Context.CurrentButtonIndex, 8);
    drops.Detach();
    DestroyWindow(window);
}

}  // namespace
}  // namespace app
