// Drops on a button and on the drop-down, the clipboard, typing in the drop-down and its list.

#include "app/button_commands.h"
#include "config/ini.h"
#include "dialogs/message_box.h"
#include "model/text_shortcut.h"
#include "res/resource.h"
#include "tests/leaks/panel_leak_test.h"
#include "win/window.h"

namespace leaks {
namespace {

using testkit::DataObject, testkit::ModalAnswers;

constexpr size_t kFreeButton = 8;  // by their targets
constexpr size_t kUsedButton = 0;
constexpr size_t kDropDown = 10;
constexpr size_t kDropDownEdit = 11;

class DropLeakTest : public PanelLeakTest {
  protected:
    void Free() {
        DoubleClick(Button(9), {VK_CONTROL});
        ASSERT_EQ(Button(9).Text(), "Empty");
    }
    void DropOnButton(const std::function<void(DataObject&)>& offer) {
        Drop(kFreeButton, offer);
        ASSERT_NE(Button(9).Text(), "Empty");
        Free();
    }
    void OfferFile(DataObject& data) const { data.OfferFiles({otherFile_}); }
    void OfferLink(DataObject& data) const { data.OfferFiles({link_}); }
    static void OfferUrl(DataObject& data) { data.OfferText("http://dropped.test/there.html"); }
};

TEST_F(DropLeakTest, AFileOnAButton) {
    Repeat([this] { DropOnButton([this](DataObject& data) { OfferFile(data); }); });
}

TEST_F(DropLeakTest, ALinkOnAButton) {
    Repeat([this] { DropOnButton([this](DataObject& data) { OfferLink(data); }); });
}

TEST_F(DropLeakTest, AUrlOnAButton) {
    Repeat([this] { DropOnButton(&OfferUrl); });
}

TEST_F(DropLeakTest, ATextOnAButton) {
    bare_ = [this] { OpenBare({IDD_MESSAGE}); };
    Repeat([this] {
        const ModalAnswers user({Press(dialogs::frmMsg::b1)});
        Drop(kFreeButton, [](DataObject& data) { data.OfferText("only words"); });
    });
}

TEST_F(DropLeakTest, AFileOnAUsedButton) {
    bare_ = [this] { OpenBare({IDD_MESSAGE, IDD_MESSAGE, IDD_MESSAGE}); };
    Repeat([this] {
        const ModalAnswers user(
            {Press(dialogs::frmMsg::b1 + 1), Press(dialogs::frmMsg::b1 + 2), Press(dialogs::frmMsg::b1 + 1)});
        Drop(kUsedButton, [this](DataObject& data) { OfferFile(data); });
        Drop(kUsedButton, [this](DataObject& data) { OfferFile(data); });
        Drop(kUsedButton, [this](DataObject& data) { data.OfferFiles({file_}); });
    });
}

TEST_F(DropLeakTest, AnythingOnTheDropDown) {
    bare_ = [this] { OpenBare({IDD_MESSAGE, IDD_MESSAGE}); };
    Repeat([this] {
        Drop(kDropDown, [this](DataObject& data) { OfferFile(data); });
        Drop(kDropDownEdit, &OfferUrl);
        {
            const ModalAnswers user({Press(dialogs::frmMsg::b1)});
            Drop(kDropDown, [this](DataObject& data) { OfferLink(data); });
        }
        {
            const ModalAnswers user({Press(dialogs::frmMsg::b1)});
            Drop(kDropDown, [](DataObject& data) { data.OfferText(std::string(1000, 'x')); });
        }
        for (const char* name : {"other file", "there"})
            config::RemoveRecord("Cuts", name);
    });
}

TEST_F(DropLeakTest, ADragThatOnlyPassesOver) {
    Repeat([this] {
        DataObject data;
        OfferFile(data);
        DWORD effect = DROPEFFECT_COPY;
        for (size_t target = 0; target < dropTargets_.size(); ++target) {
            DropTarget(target).DragEnter(&data, 0, {}, &effect);
            DropTarget(target).DragOver(0, {}, &effect);
            DropTarget(target).DragLeave();
        }
        ASSERT_EQ(data.AddRef(), 2u);
    });
}

/// With a clipboard that only the test knows, because the real one belongs to everybody.
class PasteLeakTest : public DropLeakTest {
  protected:
    PasteLeakTest() {
        fakes_.push_back(FAKE_CALL(IsClipboardFormatAvailable,
                                   [this](UINT format) -> BOOL { return format == format_ ? TRUE : FALSE; }));
        fakes_.push_back(FAKE_CALL(OpenClipboard, [this](HWND) {
            Calls().Take("open clipboard");
            return TRUE;
        }));
        fakes_.push_back(FAKE_CALL(CloseClipboard, [this] {
            Calls().Give("open clipboard");
            return TRUE;
        }));
        fakes_.push_back(FAKE_CALL(GetClipboardData, [this](UINT) { return medium_.hGlobal; }));
        fakes_.push_back(ANSWER_CALL(TrackPopupMenu, static_cast<BOOL>(IDM_BUTTON + app::kPaste)));
    }

    /// Puts what a data object offers on the clipboard and pastes it onto a free button.
    void Paste(UINT format, const std::function<void(DataObject&)>& offer) {
        DataObject data;
        offer(data);
        FORMATETC wanted{static_cast<CLIPFORMAT>(format), nullptr, DVASPECT_CONTENT, -1, TYMED_HGLOBAL};
        ASSERT_EQ(data.GetData(&wanted, &medium_), S_OK);
        format_ = format;
        Button(9).Send(WM_RBUTTONDOWN, MK_RBUTTON, MAKELPARAM(5, 5));
        ReleaseStgMedium(&medium_);
        format_ = 0;
    }

    UINT format_ = 0;
    STGMEDIUM medium_{};
};

TEST_F(PasteLeakTest, PastingFilesLinksTextAndNothing) {
    bare_ = [this] { OpenBare({IDD_MESSAGE}); };
    Repeat([this] {
        Paste(CF_HDROP, [this](DataObject& data) { data.OfferFiles({otherFile_, link_}); });
        Free();
        Paste(CF_UNICODETEXT, &OfferUrl);
        Free();
        Paste(CF_UNICODETEXT, [](DataObject& data) { data.OfferText("only words"); });
        const ModalAnswers user({Press(dialogs::frmMsg::b1)});
        Button(9).Send(WM_RBUTTONDOWN, MK_RBUTTON, MAKELPARAM(5, 5));
    });
}

class DropDownLeakTest : public PanelLeakTest {
  protected:
    testkit::Window Edit() const {
        COMBOBOXINFO info{};
        info.cbSize = sizeof info;
        GetComboBoxInfo(Child(IDC_SHORTCUTS).Handle(), &info);
        return testkit::Window(info.hwndItem);
    }
    void Type(const std::string& text) {
        for (const char character : text) {
            const WORD key = static_cast<WORD>(character - 'a' + 'A');
            panel_.PressKey(WM_KEYDOWN, key, {}, Edit().Handle());
            // The character that the key has been translated to.
            win::ProcessPendingMessages();
            panel_.PressKey(WM_KEYUP, key, {}, Edit().Handle());
        }
    }
};

TEST_F(DropDownLeakTest, CompletingWhatIsTyped) {
    Repeat([this] {
        Type("gro");
        ASSERT_EQ(Edit().Text(), "Group");
        Edit().SetText("");
        Type("zzz");
        Paint();
        panel_.PressKey(WM_KEYDOWN, VK_ESCAPE, {}, Edit().Handle());
    });
}

TEST_F(DropDownLeakTest, OpeningWhatIsTyped) {
    Repeat([this] {
        for (const char* name : {"File", "Group", "Tool"}) {
            Edit().SetText(name);
            Click(Child(IDC_IMAGE_BUTTON + 3));
        }
        Edit().SetText("");
    });
}

TEST_F(DropDownLeakTest, RefreshingTheList) {
    // The classes of three types: all of them would take seconds.
    const auto classes =
        FAKE_CALL(RegEnumKeyExA,
                  [](HKEY, DWORD index, LPSTR name, LPDWORD, LPDWORD, LPSTR, LPDWORD, PFILETIME) -> LSTATUS {
                      if (index == 3) return ERROR_NO_MORE_ITEMS;
                      std::strcpy(name, index == 1 ? "folder" : index == 0 ? ".txt" : ".htm");
                      return ERROR_SUCCESS;
                  });
    bare_ = [this] { OpenBare({IDD_MESSAGE}); };
    Repeat([this] {
        const ModalAnswers user({Press(dialogs::frmMsg::b1)});
        Child(IDC_SHORTCUTS).SetText(model::kRefreshItem);
        Panel().Send(WM_QUON_CHOSEN);
    });
}

}  // namespace
}  // namespace leaks
