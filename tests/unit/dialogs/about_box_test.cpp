#include "dialogs/message_box.h"
#include "res/resource.h"
#include "tests/unit/dialogs/dialog_parts.h"
#include "version.h"
#include "win/handles.h"

namespace dialogs {
namespace {

using ::testing::ElementsAre, ::testing::HasSubstr, ::testing::IsEmpty;
using testkit::CallLog, testkit::ModalAnswers, testkit::Window;

void Close(Window box) { box.Press(frmMsg::b2); }

testkit::RecordedCall RecordTips(std::vector<std::string>& texts) {
    return WATCH_CALL(SendMessageA, [&](HWND, UINT message, WPARAM, LPARAM lParam) {
        if (message == TTM_ADDTOOLA) {
            const auto& tool = *reinterpret_cast<const TTTOOLINFOA*>(lParam);
            texts.push_back(std::to_string(GetDlgCtrlID(tool.hwnd)) + tool.lpszText);
        }
    });
}

TEST(AboutBoxTest, ShowsItsPanelWithVersionLinksAndCloseButton) {
    ModalAnswers user({[](Window box) {
        EXPECT_EQ(box.Text(), "About Quon");
        for (const int id : {frmMsg::b2, frmMsg::Frame2, frmMsg::VersionLabel, frmMsg::SupportLink,
                             frmMsg::WebLink, frmMsg::ProductPicture})
            EXPECT_TRUE(box.Child(id).IsVisible()) << id;
        for (const int id :
             {frmMsg::l1 + 0, frmMsg::b1 + 0, frmMsg::b1 + 1, frmMsg::b1 + 2, frmMsg::Text1 + 0})
            EXPECT_FALSE(box.Child(id).IsVisible()) << id;
        EXPECT_EQ(box.Child(frmMsg::VersionLabel).Text(), "version " QUON_VERSION);
        EXPECT_EQ(box.Child(frmMsg::SupportLink).Text(), "Tech support, contact");
        EXPECT_EQ(box.Child(frmMsg::WebLink).Text(), "Visit web site");
        EXPECT_EQ(box.Child(frmMsg::b2).Text(), "Close");
        EXPECT_NE(box.Child(frmMsg::ProductPicture).Send(STM_GETICON), 0) << "the product's picture";
        Close(box);
    }});
    frmMsg().AboutQuon();
    EXPECT_EQ(MessageAnswer, "");
}

TEST(AboutBoxTest, OpensBothPagesWithTheDefaultActionAndTheDesktopAsOwner) {
    CallLog log;
    const auto shell = STUB_CALL(log, ShellExecuteA, reinterpret_cast<HINSTANCE>(33));
    ModalAnswers user({[](Window box) {
        box.Send(WM_COMMAND, MAKEWPARAM(frmMsg::SupportLink, STN_CLICKED),
                 reinterpret_cast<LPARAM>(box.Child(frmMsg::SupportLink).Handle()));
        box.Send(WM_COMMAND, MAKEWPARAM(frmMsg::WebLink, STN_CLICKED),
                 reinterpret_cast<LPARAM>(box.Child(frmMsg::WebLink).Handle()));
        Close(box);
    }});
    frmMsg().AboutQuon();
    const std::string start = "ShellExecuteA " + testkit::LoggedText(GetDesktopWindow()) + " (null) ";
    const std::string end = " (null) (null) 1";
    EXPECT_THAT(log.Lines(), ElementsAre(start + "https://quon.example/support" + end,
                                         start + "https://quon.example/" + end));
}

TEST(AboutBoxTest, OpensAPageOnceForADoubleClick) {
    CallLog log;
    const auto shell = STUB_CALL(log, ShellExecuteA, reinterpret_cast<HINSTANCE>(33));
    ModalAnswers user({[](Window box) {
        for (const int id : {frmMsg::SupportLink, frmMsg::WebLink}) {
            box.Child(id).SendClick(3, 3);
            box.Child(id).Send(WM_LBUTTONDBLCLK, MK_LBUTTON, MAKELPARAM(3, 3));
            box.Child(id).Send(WM_LBUTTONUP, 0, MAKELPARAM(3, 3));
        }
        Close(box);
    }});
    frmMsg().AboutQuon();
    EXPECT_EQ(log.Count("ShellExecuteA"), 2u);
}

TEST(AboutBoxTest, TheLinksAreReachedByTabAndOpenedByEnterAndSpace) {
    CallLog log;
    const auto shell = STUB_CALL(log, ShellExecuteA, reinterpret_cast<HINSTANCE>(33));
    const auto press = [](HWND control, WORD key) {
        SetFocus(control);
        for (const UINT message : {WM_KEYDOWN, WM_KEYUP}) {
            MSG sent{control, message, key, message == WM_KEYUP ? static_cast<LPARAM>(0xC0000001) : LPARAM{1},
                     0,       {}};
            if (IsDialogMessageW(GetParent(control), &sent) == 0) DispatchMessageW(&sent);
        }
    };
    ModalAnswers user({[&](Window box) {
        EXPECT_THAT(TabOrder(box, frmMsg::b2), ElementsAre(frmMsg::b2, frmMsg::SupportLink, frmMsg::WebLink));
        press(box.Child(frmMsg::SupportLink).Handle(), VK_RETURN);
        press(box.Child(frmMsg::WebLink).Handle(), VK_SPACE);
        EXPECT_TRUE(box.IsVisible());
        press(box.Child(frmMsg::b2).Handle(), VK_RETURN);
        EXPECT_FALSE(box.IsVisible()) << "Enter still closes from the button";
    }});
    frmMsg().AboutQuon();
    EXPECT_EQ(log.Count("ShellExecuteA"), 2U);
    EXPECT_THAT(log.Lines().front(), HasSubstr("support"));
}

TEST(AboutBoxTest, ALinkWithTheFocusIsFramedInTheHighlightColour) {
    ModalAnswers user({[&](Window box) {
        const Window link = box.Child(frmMsg::WebLink);
        const win::WindowDc screen(nullptr);
        const win::Bitmap bitmap(CreateCompatibleBitmap(screen.Get(), 200, 40));
        const win::MemoryDc dc(CreateCompatibleDC(screen.Get()));
        const win::Selection selected(dc.Get(), bitmap.Get());
        DRAWITEMSTRUCT item{};
        item.CtlType = ODT_BUTTON;
        item.hwndItem = link.Handle();
        item.hDC = dc.Get();
        GetClientRect(link.Handle(), &item.rcItem);
        const auto corner = [&](UINT state, int inset) {
            item.itemState = state;
            box.Send(WM_DRAWITEM, frmMsg::WebLink, reinterpret_cast<LPARAM>(&item));
            return GetPixel(dc.Get(), inset, inset);
        };
        EXPECT_EQ(corner(0, 0), GetSysColor(COLOR_BTNFACE));
        EXPECT_EQ(corner(ODS_FOCUS, 0), GetSysColor(COLOR_HIGHLIGHT));
        EXPECT_EQ(corner(ODS_FOCUS, 1), GetSysColor(COLOR_HIGHLIGHT));
        EXPECT_EQ(corner(ODS_FOCUS, 2), GetSysColor(COLOR_BTNFACE));
        EXPECT_EQ(corner(ODS_FOCUS | ODS_NOFOCUSRECT, 0), GetSysColor(COLOR_BTNFACE));
        Close(box);
    }});
    frmMsg().AboutQuon();
}

TEST(AboutBoxTest, ThePointerIsAHandOverTheLinksAlone) {
    const auto cursor_over = [](Window box, int id) {
        SetCursor(LoadCursor(nullptr, IDC_ARROW));
        box.Send(WM_SETCURSOR, reinterpret_cast<WPARAM>(box.Child(id).Handle()),
                 MAKELPARAM(HTCLIENT, WM_MOUSEMOVE));
        return GetCursor();
    };
    ModalAnswers user({[&](Window box) {
        EXPECT_EQ(cursor_over(box, frmMsg::SupportLink), LoadCursor(nullptr, IDC_HAND));
        EXPECT_EQ(cursor_over(box, frmMsg::WebLink), LoadCursor(nullptr, IDC_HAND));
        EXPECT_EQ(cursor_over(box, frmMsg::VersionLabel), LoadCursor(nullptr, IDC_ARROW));
        Close(box);
    }});
    frmMsg().AboutQuon();
}

TEST(AboutBoxTest, ACommandOfNoControlDoesNothing) {
    ModalAnswers user({[](Window box) {
        box.Send(WM_COMMAND, IDOK);
        EXPECT_TRUE(box.IsVisible());
        Close(box);
        EXPECT_FALSE(box.IsVisible());
    }});
    frmMsg().AboutQuon();
}

TEST(AboutBoxTest, TellsWhatTheSupportLinkIsFor) {
    std::vector<std::string> tips;
    const auto record = RecordTips(tips);
    ModalAnswers user({Close});
    frmMsg().AboutQuon();
    EXPECT_THAT(tips, ElementsAre(std::to_string(frmMsg::SupportLink) +
                                  " If you have questions, suggestions, or just want to say hi "));
}

TEST(AboutBoxTest, HasNoTipInTheMessageMode) {
    std::vector<std::string> tips;
    const auto record = RecordTips(tips);
    ModalAnswers user({[](Window box) { box.Send(WM_CLOSE); }});
    ShowNote("Text");
    EXPECT_THAT(tips, IsEmpty());
}

TEST(AboutBoxTest, ClosesOnEscOnEnterAndByItsTitleBar) {
    const auto press = [](WORD key) {
        return [key](Window) { PostMessageW(GetFocus(), WM_KEYDOWN, key, 0); };
    };
    ModalAnswers user(
        {press(VK_ESCAPE), press(VK_RETURN), [](Window box) { box.Send(WM_SYSCOMMAND, SC_CLOSE); }});
    for (int time = 0; time < 3; ++time)
        frmMsg().AboutQuon();
    EXPECT_EQ(user.Used(), 3u);
    EXPECT_EQ(OpenDialogCount, 0);
}

TEST(AboutBoxTest, CountsAmongTheOpenDialogsAndIsTopmost) {
    ModalAnswers user({[](Window box) {
        EXPECT_EQ(OpenDialogCount, 1);
        EXPECT_TRUE(box.IsTopmost());
        Close(box);
    }});
    frmMsg().AboutQuon();
}

}  // namespace
}  // namespace dialogs
