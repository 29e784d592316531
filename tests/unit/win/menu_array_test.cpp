#include "win/menu_array.h"

#include "tests/support/unit_test.h"
#include "win/errors.h"

namespace win {
namespace {

using testkit::RecordedCall;

class MenuArrayTest : public ::testing::Test {
  protected:
    static MenuItem Item(const std::string& caption, const std::string& tag = "") {
        MenuItem item;
        item.caption = caption;
        item.tag = tag;
        return item;
    }

    static std::string TextAt(const Menu& menu, int position) {
        wchar_t text[200]{};
        GetMenuStringW(menu.Get(), static_cast<UINT>(position), text, 200, MF_BYPOSITION);
        return testkit::Utf8(text);
    }

    static UINT StateAt(const Menu& menu, int position) {
        return GetMenuState(menu.Get(), static_cast<UINT>(position), MF_BYPOSITION);
    }

    MenuArray menu_{2000, {Item("First", "C:\\tag"), Item("Second")}};
};

TEST_F(MenuArrayTest, HoldsTheElementsFromDesignTime) {
    EXPECT_EQ(menu_.Count(), 2);
    EXPECT_EQ(menu_[0].caption, "First");
    EXPECT_EQ(menu_[0].tag, "C:\\tag");
    EXPECT_TRUE(menu_[1].enabled);
    EXPECT_TRUE(menu_[1].visible);
    EXPECT_FALSE(menu_[1].checked);
}

TEST_F(MenuArrayTest, AnElementThatIsNotThereIsABoundsError) {
    const MenuArray& constant = menu_;
    for (const int index : {-1, 2, 100}) {
        EXPECT_THROW(static_cast<void>(menu_[index]), SubscriptError) << index;
        EXPECT_THROW(static_cast<void>(constant[index]), SubscriptError) << index;
    }
    EXPECT_EQ(constant[1].caption, "Second");
}

TEST_F(MenuArrayTest, LoadsElementsAsCopiesOfTheFirst) {
    menu_[0].enabled = false;
    menu_[0].checked = true;
    MenuItem& loaded = menu_.Load(2);
    EXPECT_EQ(menu_.Count(), 3);
    EXPECT_EQ(loaded.caption, "First");
    EXPECT_EQ(loaded.tag, "C:\\tag");
    EXPECT_FALSE(loaded.enabled);
    EXPECT_TRUE(loaded.checked);
    loaded.caption = "Трећи";
    EXPECT_EQ(menu_[2].caption, "Трећи");
    EXPECT_EQ(menu_[0].caption, "First");
}

TEST_F(MenuArrayTest, LoadsOnlyTheNextElement) {
    for (const int index : {-1, 0, 1, 3})
        EXPECT_THROW(menu_.Load(index), SubscriptError) << index;
    EXPECT_EQ(menu_.Count(), 2);
}

TEST_F(MenuArrayTest, UnloadsFromTheEndWhatWasLoaded) {
    menu_.Load(2);
    menu_.Load(3);
    EXPECT_THROW(menu_.Unload(2), SubscriptError);
    menu_.Unload(3);
    menu_.Unload(2);
    EXPECT_THROW(menu_.Unload(1), SubscriptError);
    EXPECT_THROW(menu_.Unload(2), SubscriptError);
    EXPECT_THROW(menu_.Unload(-1), SubscriptError);
    EXPECT_EQ(menu_.Count(), 2);
}

TEST_F(MenuArrayTest, KnowsItsCommands) {
    EXPECT_EQ(menu_.IndexOf(2000), 0);
    EXPECT_EQ(menu_.IndexOf(2001), 1);
    EXPECT_EQ(menu_.IndexOf(2002), std::nullopt);
    EXPECT_EQ(menu_.IndexOf(1999), std::nullopt);
    menu_.Load(2);
    EXPECT_EQ(menu_.IndexOf(2002), 2);
}

TEST_F(MenuArrayTest, BecomesAWindowsMenu) {
    menu_[1].enabled = false;
    menu_.Load(2).caption = "-";
    menu_.Load(3).caption = "Ћирилица č 文";
    menu_[3].checked = true;
    const Menu built = menu_.Build();
    EXPECT_EQ(GetMenuItemCount(built.Get()), 4);
    EXPECT_EQ(TextAt(built, 0), "First");
    EXPECT_EQ(StateAt(built, 0) & (MF_GRAYED | MF_DISABLED | MF_CHECKED | MF_SEPARATOR), 0U);
    EXPECT_EQ(GetMenuItemID(built.Get(), 0), 2000U);
    EXPECT_NE(StateAt(built, 1) & MF_GRAYED, 0U);
    EXPECT_NE(StateAt(built, 2) & MF_SEPARATOR, 0U);
    EXPECT_EQ(TextAt(built, 3), "Ћирилица č 文");
    EXPECT_NE(StateAt(built, 3) & MF_CHECKED, 0U);
    EXPECT_EQ(GetMenuItemID(built.Get(), 3), 2003U);
}

TEST_F(MenuArrayTest, LeavesInvisibleElementsOutAndKeepsTheOthersCommands) {
    menu_[0].visible = false;
    const Menu built = menu_.Build();
    EXPECT_EQ(GetMenuItemCount(built.Get()), 1);
    EXPECT_EQ(TextAt(built, 0), "Second");
    EXPECT_EQ(GetMenuItemID(built.Get(), 0), 2001U);
}

TEST_F(MenuArrayTest, ShowsAnAmpersandAsItself) {
    menu_[0].caption = "R & D && more";
    EXPECT_EQ(TextAt(menu_.Build(), 0), "R && D &&&& more");
}

TEST_F(MenuArrayTest, OpensSubmenus) {
    const MenuArray inner(2500, {Item("Inside")});
    menu_[1].submenu = &inner;
    menu_[1].enabled = false;
    const Menu built = menu_.Build();
    const HMENU opened = GetSubMenu(built.Get(), 1);
    ASSERT_NE(opened, nullptr);
    EXPECT_EQ(GetMenuItemID(opened, 0), 2500U);
    EXPECT_EQ(TextAt(built, 1), "Second");
    EXPECT_NE(StateAt(built, 1) & MF_GRAYED, 0U);
    EXPECT_EQ(GetSubMenu(built.Get(), 0), nullptr);
}

TEST_F(MenuArrayTest, GoesWithItsSubmenus) {
    const MenuArray inner(2500, {Item("Inside")});
    menu_[1].submenu = &inner;
    HMENU opened = nullptr;
    {
        const Menu built = menu_.Build();
        opened = GetSubMenu(built.Get(), 1);
        EXPECT_TRUE(IsMenu(opened));
    }
    EXPECT_FALSE(IsMenu(opened));
}

TEST_F(MenuArrayTest, IsShownAtAPointAndAnswersTheCommand) {
    std::string shown;
    const RecordedCall track =
        FAKE_CALL(TrackPopupMenu,
                  [&](HMENU menu, UINT flags, int x, int y, int, HWND owner, const RECT* rect) -> WINBOOL {
                      EXPECT_EQ(flags, UINT{TPM_RETURNCMD | TPM_RIGHTBUTTON});
                      EXPECT_EQ(x, 12);
                      EXPECT_EQ(y, 34);
                      EXPECT_EQ(owner, GetDesktopWindow());
                      EXPECT_EQ(rect, nullptr);
                      wchar_t text[50]{};
                      GetMenuStringW(menu, 1, text, 50, MF_BYPOSITION);
                      shown = testkit::Utf8(text);
                      return 2001;
                  });
    EXPECT_EQ(TrackMenu(menu_, {12, 34}, GetDesktopWindow()), 2001);
    EXPECT_EQ(shown, "Second");
}

TEST_F(MenuArrayTest, TheEndOfThePressThatOpensItChoosesNothing) {
    UINT flags = 0;
    const RecordedCall track =
        FAKE_CALL(TrackPopupMenu, [&](HMENU, UINT how, int, int, int, HWND, const RECT*) -> WINBOOL {
            flags = how;
            return 0;
        });
    const RecordedCall pressed =
        FAKE_CALL(GetKeyState, [](int key) -> SHORT { return key == VK_RBUTTON ? SHORT{-128} : SHORT{0}; });
    TrackMenu(menu_, {12, 34}, GetDesktopWindow());
    EXPECT_EQ(flags, UINT{TPM_RETURNCMD});
}

TEST_F(MenuArrayTest, KeepsNoSubmenuThatWindowsDidNotTake) {
    MenuArray inner(2100, {Item("Inner")});
    menu_[0].submenu = &inner;
    int open = 0;
    const RecordedCall create = FAKE_CALL(CreatePopupMenu, [&] {
        ++open;
        return ORIGINAL_CALL(CreatePopupMenu)();
    });
    const RecordedCall destroy = WATCH_CALL(DestroyMenu, [&](HMENU) { --open; });
    const RecordedCall append =
        FAKE_CALL(AppendMenuW, [](HMENU menu, UINT flags, UINT_PTR item, LPCWSTR text) -> BOOL {
            return (flags & MF_POPUP) != 0 ? FALSE : ORIGINAL_CALL(AppendMenuW)(menu, flags, item, text);
        });
    {
        const Menu built = menu_.Build();
        EXPECT_EQ(GetMenuItemCount(built.Get()), 1);
    }
    EXPECT_EQ(open, 0);
}

}  // namespace
}  // namespace win
