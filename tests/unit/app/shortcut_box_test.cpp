#include "config/ini.h"
#include "dialogs/message_box.h"
#include "tests/support/data_object.h"
#include "tests/unit/app/shortcut_box_fixture.h"
#include "win/com.h"
#include "win/handles.h"

namespace app {
namespace {

using ::testing::ElementsAre, ::testing::IsEmpty;
using testkit::IniText;

class ShortcutBoxTest : public ShortcutBoxFixture {};

TEST_F(ShortcutBoxTest, ListsTheShortcutsAndKeepsWhatIsTyped) {
    EXPECT_EQ(testkit::Window(box_.List().Handle()).Id(), 230);
    EXPECT_THAT(box_.List().Items(), ElementsAre("План", "[Refresh list]"));
    box_.List().SetText("не文");
    box_.Refill();
    EXPECT_EQ(box_.List().Text(), "не文");
}

TEST_F(ShortcutBoxTest, OpensWhatIsTypedOnEnterAndSelectsNothing) {
    EXPECT_TRUE(Press("План", VK_RETURN));
    EXPECT_THAT(log_.Lines(), ElementsAre("open C:\\план.txt"));
    EXPECT_EQ(box_.List().Text(), "План");
    const LRESULT selection = testkit::Window(Edit()).Selection();
    EXPECT_EQ(LOWORD(selection), HIWORD(selection));
    EXPECT_FALSE(dock_.Hidden());
}

TEST_F(ShortcutBoxTest, PassesAnUnknownNameToTheUrlHandler) {
    Press("http://host/文", VK_RETURN);
    EXPECT_THAT(log_.Lines(), ElementsAre("start rundll32.exe url.dll,FileProtocolHandler http://host/文 1"));
}

TEST_F(ShortcutBoxTest, DocksAfterOpeningOnEnterWhenTheSettingSaysSo) {
    config::Settings.HideAfterLaunch = true;
    Press("План", VK_RETURN);
    EXPECT_THAT(log_.Lines(), ElementsAre("open C:\\план.txt", "timer 500", "topmost"));
    EXPECT_TRUE(dock_.Hidden());
}

TEST_F(ShortcutBoxTest, DocksBeforeOpeningByTheGoButton) {
    box_.List().SetText("План");
    box_.Go();
    EXPECT_THAT(log_.Lines(), ElementsAre("open C:\\план.txt"));
    log_.Clear();
    config::Settings.HideAfterLaunch = true;
    box_.Go();
    EXPECT_THAT(log_.Lines(), ElementsAre("timer 500", "topmost", "open C:\\план.txt"));
    EXPECT_EQ(box_.List().Text(), "План");
}

TEST_F(ShortcutBoxTest, EmptiesItselfOnEscAndDocksOnlyWhenItWasEmpty) {
    EXPECT_TRUE(Press("text", VK_ESCAPE));
    EXPECT_EQ(box_.List().Text(), "");
    EXPECT_FALSE(dock_.Hidden());
    EXPECT_TRUE(Press("", VK_ESCAPE));
    EXPECT_TRUE(dock_.Hidden());
}

TEST_F(ShortcutBoxTest, LeavesOtherKeysAndOtherWindowsAlone) {
    EXPECT_FALSE(Press("План", VK_TAB));
    MSG message{};
    message.hwnd = host_.Handle();
    message.message = WM_KEYDOWN;
    message.wParam = VK_RETURN;
    EXPECT_FALSE(box_.PreTranslate(message));
    message.hwnd = box_.List().Edit();
    message.message = WM_KEYUP;
    EXPECT_FALSE(box_.PreTranslate(message));
    EXPECT_THAT(log_.Lines(), IsEmpty());
}

class OpenListTest : public ShortcutBoxFixture {
  protected:
    OpenListTest() {
        folder_.WriteIniText("[Cuts]\r\nПлан=C:\\план.txt\r\nДруги=C:\\other.txt\r\n");
        box_.Refill();
        ShowWindow(host_.Handle(), SW_SHOWNOACTIVATE);
    }
    void OpenList(int marked) {
        SendMessageW(box_.List().Handle(), CB_SHOWDROPDOWN, TRUE, 0);
        ASSERT_TRUE(box_.List().IsOpen());
        COMBOBOXINFO info{};
        info.cbSize = sizeof info;
        GetComboBoxInfo(box_.List().Handle(), &info);
        SendMessageW(info.hwndList, LB_SETCURSEL, static_cast<WPARAM>(marked), 0);
    }
};

TEST_F(OpenListTest, EscIsTheListsOwn) {
    OpenList(0);
    MSG message{};
    message.hwnd = Edit();
    message.message = WM_KEYDOWN;
    message.wParam = VK_ESCAPE;
    EXPECT_FALSE(box_.PreTranslate(message));
    EXPECT_THAT(log_.Lines(), IsEmpty());
    EXPECT_FALSE(dock_.Hidden());
}

TEST_F(OpenListTest, EnterTakesTheMarkedNameAndOpensIt) {
    box_.List().SetText("План");
    OpenList(1);
    EXPECT_TRUE(Key(WM_KEYDOWN, VK_RETURN));
    EXPECT_FALSE(box_.List().IsOpen());
    EXPECT_EQ(Text(), "Други");
    EXPECT_THAT(log_.Lines(), ElementsAre("open C:\\other.txt"));
}

TEST_F(OpenListTest, EnterOpensWhatIsTypedWhereNothingIsMarked) {
    box_.List().SetText("План");
    OpenList(-1);
    EXPECT_TRUE(Key(WM_KEYDOWN, VK_RETURN));
    EXPECT_FALSE(box_.List().IsOpen());
    EXPECT_THAT(log_.Lines(), ElementsAre("open C:\\план.txt"));
}

TEST_F(OpenListTest, EnterOnTheRefreshItemRefreshes) {
    config::Settings.HideAfterLaunch = true;
    folder_.WriteIniText("[Cuts]\r\nНовый=C:\\a\r\n");
    OpenList(2);
    EXPECT_TRUE(Key(WM_KEYDOWN, VK_RETURN));
    EXPECT_EQ(Text(), "");
    EXPECT_THAT(box_.List().Items(), ElementsAre("Новый", "[Refresh list]"));
    EXPECT_THAT(log_.Lines(), IsEmpty()) << "nothing is opened or docked";
}

TEST_F(ShortcutBoxTest, EnterAndGoOnTheRefreshItemRefresh) {
    config::Settings.HideAfterLaunch = true;
    for (const char* name : {"Новый", "Други"}) {
        folder_.WriteIniText(std::string("[Cuts]\r\n") + name + "=C:\\a\r\n");
        box_.List().SetText("[Refresh list]");
        if (name == std::string("Новый"))
            EXPECT_TRUE(Key(WM_KEYDOWN, VK_RETURN));
        else
            box_.Go();
        EXPECT_EQ(Text(), "");
        EXPECT_THAT(box_.List().Items(), ElementsAre(name, "[Refresh list]"));
    }
    EXPECT_THAT(log_.Lines(), IsEmpty());
}

TEST_F(ShortcutBoxTest, SaysWhereToGetTheSearchTool) {
    testkit::ModalAnswers user({testkit::Note(
        "You need to have Quon Search Utility to execute this command.\n\nYou can download it from "
        "Quon's web site.")});
    Press("?report", VK_RETURN);
    EXPECT_THAT(log_.Lines(), IsEmpty());
}

class ChoosingTest : public ShortcutBoxFixture {
  protected:
    /// How many times the window was told of a choice; takes them away.
    int Told() {
        int count = 0;
        MSG message{};
        while (PeekMessageW(&message, host_.Handle(), WM_QUON_CHOSEN, WM_QUON_CHOSEN, PM_REMOVE) != 0)
            ++count;
        return count;
    }
};

TEST_F(ChoosingTest, TellsTheWindowOfAChoiceFromTheOpenListOnly) {
    const auto notify = [this](std::initializer_list<int> codes) {
        for (const int code : codes)
            box_.OnNotification(code);
        return Told();
    };
    EXPECT_EQ(notify({CBN_DROPDOWN, CBN_SELCHANGE, CBN_SELENDOK}), 0) << "it is not over yet";
    EXPECT_EQ(notify({CBN_CLOSEUP, CBN_SELCHANGE}), 1);
    EXPECT_EQ(notify({CBN_SELENDOK, CBN_SELCHANGE}), 0) << "an arrow key or the wheel over the closed list";
    EXPECT_EQ(notify({CBN_DROPDOWN, CBN_SELCHANGE, CBN_SELENDCANCEL, CBN_CLOSEUP}), 0) << "Esc";
    EXPECT_EQ(notify({CBN_DROPDOWN, CBN_SELENDOK, CBN_SELENDCANCEL, CBN_CLOSEUP}), 0);
    EXPECT_EQ(notify({CBN_SELENDOK, CBN_DROPDOWN, CBN_CLOSEUP}), 0);
    EXPECT_EQ(notify({CBN_EDITCHANGE, CBN_EDITUPDATE, CBN_SETFOCUS, CBN_KILLFOCUS, CBN_CLOSEUP}), 0);
}

TEST_F(ChoosingTest, TheRefreshItemFillsTheListAnewAndEmptiesTheBox) {
    folder_.WriteIniText("[Cuts]\r\nНовый=C:\\a\r\n[Collected]\r\nWord=C:\\w.exe\r\n");
    box_.List().SetText("[Refresh list]");
    box_.OnChosen();
    EXPECT_EQ(Text(), "");
    EXPECT_THAT(box_.List().Items(), ElementsAre("Новый", "[Refresh list]"));
    EXPECT_THAT(log_.Lines(), IsEmpty());
}

TEST_F(ChoosingTest, AnyOtherItemIsOnlyShown) {
    folder_.WriteIniText("[Cuts]\r\nНовый=C:\\a\r\n");
    for (const char* text : {"План", "[refresh list]", ""}) {
        box_.List().SetText(text);
        box_.OnChosen();
        EXPECT_EQ(Text(), text);
    }
    EXPECT_THAT(box_.List().Items(), ElementsAre("План", "[Refresh list]")) << "nothing was filled anew";
    EXPECT_THAT(log_.Lines(), IsEmpty());
}

TEST(PanelChoiceTest, ThePanelHandsTheChoiceToTheBox) {
    PanelHarness panel(kPlainSettings, "[Cuts]\r\nПлан=C:\\a\r\n");
    panel.Load();
    const testkit::Window list = panel.Window().Child(IDC_SHORTCUTS);
    list.SetText("[Refresh list]");
    panel.Log().Clear();
    for (const int code : {CBN_DROPDOWN, CBN_SELENDOK, CBN_CLOSEUP})
        panel.Window().Send(WM_COMMAND, MAKEWPARAM(IDC_SHORTCUTS, code),
                            reinterpret_cast<LPARAM>(list.Handle()));
    EXPECT_EQ(list.Text(), "[Refresh list]");
    MSG message{};
    ASSERT_TRUE(PeekMessageW(&message, panel.Window().Handle(), WM_QUON_CHOSEN, WM_QUON_CHOSEN, PM_REMOVE));
    DispatchMessageW(&message);
    EXPECT_EQ(list.Text(), "");
    EXPECT_EQ(panel.Log().Count("section Cuts"), 1u);
}

class CollectingTest : public ShortcutBoxFixture {
  protected:
    CollectingTest() {
        config::Settings.ShowCollected = true;
        fakes_.push_back(
            FAKE_CALL(RegEnumKeyExA,
                      [this](HKEY, DWORD index, LPSTR, LPDWORD, LPDWORD, LPSTR, LPDWORD, PFILETIME) -> LONG {
                          log_.Add("walk", index, Text(), win::Hourglass::IsShown());
                          config::WriteIni("Collected", "Writer", "C:\\writer.exe");
                          return ERROR_NO_MORE_ITEMS;
                      }));
    }
};

TEST_F(CollectingTest, ShowsTheHourglassAndSaysToWaitAndThenWhatToDo) {
    testkit::ModalAnswers user({[this](testkit::Window note) {
        log_.Add("note", note.Child(dialogs::frmMsg::l1).Text());
        EXPECT_EQ(note.Child(dialogs::frmMsg::b1 + 0).Text(), "OK");
        EXPECT_FALSE(note.Child(dialogs::frmMsg::b1 + 1).IsVisible());
        EXPECT_FALSE(win::Hourglass::IsShown());
        EXPECT_THAT(box_.List().Items(), ElementsAre("Writer", "План", "[Refresh list]"));
        note.Press(dialogs::frmMsg::b1 + 0);
    }});
    box_.List().SetText("[Refresh list]");
    box_.OnChosen();
    EXPECT_THAT(log_.Lines(),
                ElementsAre("walk 0 Please wait... true",
                            "note To start the application, just choose it from drop-down box."));
    EXPECT_EQ(Text(), "");
}

TEST_F(CollectingTest, SaysThatNothingCouldBeStored) {
    const testkit::RecordedCall pause = FAKE_CALL(Sleep, [](DWORD) {});
    const testkit::RecordedCall flush = FAKE_CALL(FlushFileBuffers, [](HANDLE) -> BOOL {
        SetLastError(ERROR_DISK_FULL);
        return FALSE;
    });
    const testkit::RecordedCall walk =
        FAKE_CALL(RegEnumKeyExA,
                  [](HKEY, DWORD index, LPSTR name, LPDWORD, LPDWORD, LPSTR, LPDWORD, PFILETIME) -> LONG {
                      std::strcpy(name, ".txt");
                      return index == 0 ? ERROR_SUCCESS : ERROR_NO_MORE_ITEMS;
                  });
    const testkit::RecordedCall find = FAKE_CALL(FindExecutableA, [](LPCSTR, LPCSTR, LPSTR program) {
        std::strcpy(program, "C:\\next.exe");
        return reinterpret_cast<HINSTANCE>(INT_PTR{42});
    });
    testkit::ModalAnswers user({testkit::Note(dialogs::kCouldNotMake)});
    box_.CollectApplications();
    EXPECT_EQ(folder_.Ini().Entries("Collected").size(), 0u);
}

TEST_F(CollectingTest, DoesNotRunWhenCollectedApplicationsAreNotShown) {
    config::Settings.ShowCollected = false;
    box_.List().SetText("[Refresh list]");
    box_.OnChosen();
    EXPECT_THAT(log_.Lines(), IsEmpty());
}

TEST_F(CollectingTest, SaysNothingMoreWhenTheProgramIsEndedMeanwhile) {
    fakes_.push_back(FAKE_CALL(RegEnumKeyExA, [this](auto...) -> LONG {
        host_.Destroy();
        return ERROR_NO_MORE_ITEMS;
    }));
    box_.CollectApplications();
    EXPECT_FALSE(win::Hourglass::IsShown());
}

class BoxDropTest : public ShortcutBoxFixture {
  protected:
    BoxDropTest() {
        fakes_.push_back(FAKE_CALL(RegisterDragDrop, [this](HWND window, IDropTarget* target) -> HRESULT {
            windows_.push_back(window);
            targets_.push_back(target);
            return S_OK;
        }));
        fakes_.push_back(FAKE_CALL(RevokeDragDrop, [this](HWND window) -> HRESULT {
            std::erase(windows_, window);
            return S_OK;
        }));
        box_.Attach(host_.Handle());
    }
    /// Drops onto the edit field.
    DWORD Drop(testkit::DataObject& data) {
        DWORD effect = DROPEFFECT_COPY;
        targets_.at(1)->DragEnter(&data, 0, {}, &effect);
        effect = DROPEFFECT_COPY;
        targets_.at(1)->Drop(&data, 0, {}, &effect);
        return effect;
    }
    void DropText(const std::string& text) {
        testkit::DataObject data;
        data.OfferText(text);
        EXPECT_EQ(Drop(data), static_cast<DWORD>(DROPEFFECT_COPY));
        box_.ActOnDrops();
    }
    void DropFiles(const std::vector<std::string>& files) {
        testkit::DataObject data;
        data.OfferFiles(files);
        EXPECT_EQ(Drop(data), static_cast<DWORD>(DROPEFFECT_COPY));
        box_.ActOnDrops();
    }
    std::vector<IniText::Entry> Cuts() { return folder_.Ini().Entries("Cuts"); }

    win::OleThread ole_;
    std::vector<HWND> windows_;
    std::vector<IDropTarget*> targets_;
};

TEST_F(BoxDropTest, BoxAndEditFieldAreDropTargetsUntilTheEnd) {
    EXPECT_THAT(windows_, ElementsAre(box_.List().Handle(), Edit()));
    box_.Detach();
    EXPECT_THAT(windows_, IsEmpty());
}

TEST_F(BoxDropTest, ADropIsActedOnByAPostedMessageOnly) {
    testkit::DataObject data;
    data.OfferText("C:\\Docs\\Plan.txt");
    Drop(data);
    EXPECT_THAT(Cuts(), ElementsAre(IniText::Entry{"План", "C:\\план.txt"}));
    MSG message{};
    ASSERT_TRUE(PeekMessageW(&message, host_.Handle(), WM_QUON_DROP, WM_QUON_DROP, PM_REMOVE));
    box_.ActOnDrops();
    EXPECT_THAT(box_.List().Items(), ElementsAre("План", "Plan", "[Refresh list]"));
    folder_.WriteIniText("");
    box_.ActOnDrops();
    EXPECT_EQ(folder_.IniBytes(), "") << "a drop is acted on once";
}

TEST_F(BoxDropTest, StoresTheFirstFileUnderItsNameWithoutExtension) {
    const std::string file = folder_.MakeFile("План работ č.txt");
    box_.List().SetText("куцам");
    DropFiles({file, folder_.MakeFile("second.txt"), folder_.MakeFile("third.txt")});
    EXPECT_THAT(Cuts(),
                ElementsAre(IniText::Entry{"План", "C:\\план.txt"}, IniText::Entry{"План работ č", file}));
    EXPECT_THAT(box_.List().Items(), ElementsAre("План", "План работ č", "[Refresh list]"));
    EXPECT_EQ(Text(), "куцам");
}

TEST_F(BoxDropTest, StoresALinksTargetWithoutItsArgumentsAndSaysSoOnce) {
    const std::string file = folder_.MakeFile("文書.txt");
    testkit::ModalAnswers user({[this, &file](testkit::Window note) {
        EXPECT_EQ(note.Child(dialogs::frmMsg::l1).Text(),
                  "This shortcut has command switch. Quon will make this text shortcut, but you can use "
                  "command switches only with button shortcuts.");
        EXPECT_EQ(note.Child(dialogs::frmMsg::b1 + 0).Text(), "OK");
        EXPECT_EQ(folder_.IniValue("Cuts", "文書"), file) << "stored before the note";
        EXPECT_THAT(box_.List().Items(), ElementsAre("План", "[Refresh list]")) << "listed after it";
        note.Press(dialogs::frmMsg::b1 + 0);
    }});
    DropFiles({folder_.MakeLink("one.lnk", {.target = file, .arguments = "/a b"})});
    EXPECT_EQ(user.Used(), 1u);
    EXPECT_FALSE(folder_.Ini().HasSection("Switch"));
    EXPECT_THAT(box_.List().Items(), ElementsAre("План", "文書", "[Refresh list]"));
    DropFiles({folder_.MakeLink("two.lnk", {.target = file})});
    EXPECT_EQ(user.Used(), 1u) << "nothing to say about a link without arguments";
}

TEST_F(BoxDropTest, TextGoesBeforeFilesAndIsCutAtItsFirstLine) {
    testkit::DataObject data;
    data.OfferFiles({"C:\\file.txt"});
    data.OfferText("https://example.org/мир/page.html\r\nA page");
    Drop(data);
    box_.ActOnDrops();
    EXPECT_EQ(folder_.IniValue("Cuts", "page"), "https://example.org/мир/page.html");
    EXPECT_EQ(Cuts().size(), 2u);
}

TEST_F(BoxDropTest, AnyTextIsStoredWhetherItCanBeOpenedOrNot) {
    DropText("just some words");
    EXPECT_EQ(folder_.IniValue("Cuts", "just some words"), "just some words");
    DropText("C:\\gone\\a=b.txt");
    EXPECT_EQ(folder_.IniValue("Cuts", "a-b"), "C:\\gone\\a=b.txt") << "under a name that can be stored";
    DropText("C:\\other\\A-B.doc");
    EXPECT_EQ(folder_.IniValue("Cuts", "a-b"), "C:\\other\\A-B.doc") << "the last one of a name counts";
    EXPECT_EQ(Cuts().size(), 3u);
}

TEST_F(BoxDropTest, ADropWithoutANameIsWrittenAllTheSame) {
    fakes_.push_back(LOG_CALL(log_, WritePrivateProfileStringA));
    DropText("");
    EXPECT_EQ(log_.Count("WritePrivateProfileStringA Cuts   "), 1u);
    EXPECT_EQ(folder_.IniValue("Cuts", "План"), "C:\\план.txt");
    EXPECT_EQ(box_.List().Items().front(), "План");
}

TEST_F(BoxDropTest, ABrokenLinkIsADropWithoutAName) {
    const testkit::ModalAnswers nobody({});
    fakes_.push_back(LOG_CALL(log_, WritePrivateProfileStringA));
    DropFiles({folder_.MakeFile("веза.lnk", "no link")});
    EXPECT_EQ(log_.Count("WritePrivateProfileStringA Cuts   "), 1u);
    EXPECT_EQ(folder_.IniValue("Cuts", "План"), "C:\\план.txt");
}

TEST_F(BoxDropTest, SaysSoWhenTheFileCannotBeWritten) {
    const testkit::ModalAnswers user({testkit::Note("Couldn't make this shortcut, sorry.")});
    const std::string before = folder_.IniBytes();
    HANDLE file = CreateFileW(testkit::Wide(folder_.IniPath()).c_str(), GENERIC_READ, FILE_SHARE_READ,
                              nullptr, OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(file, INVALID_HANDLE_VALUE);
    DropText("C:\\Docs\\Plan.txt");
    CloseHandle(file);
    EXPECT_EQ(folder_.IniBytes(), before);
    EXPECT_EQ(box_.List().Items().back(), "[Refresh list]");
}

TEST_F(BoxDropTest, TakesATextWithATabulatorAndNoneWithAnotherControlCharacter) {
    DropText("some\twords");
    EXPECT_EQ(folder_.IniValue("Cuts", "some words"), "some\twords");
    const std::string before = folder_.IniBytes();
    const testkit::ModalAnswers user({testkit::Press(dialogs::frmMsg::b1 + 0)});
    DropText("some\rwords");
    EXPECT_EQ(folder_.IniBytes(), before);
}

TEST_F(BoxDropTest, AUrlWithABarStaysOneTarget) {
    DropText("https://example.org/a|b.html");
    EXPECT_EQ(folder_.IniValue("Cuts", "a-b"), "https://example.org/a%7Cb.html");
}

TEST_F(BoxDropTest, AShownButtonOfThatNameFollowsAtOnce) {
    folder_.WriteIniText("[Buttons]\r\n14=Plan|0\r\n[Cuts]\r\nPlan=http://old/\r\n");
    state_.Context.Records.LoadButtonRecords();
    state_.Button(4).RefreshButton("14");
    DropText("http://new/Plan.html");
    EXPECT_EQ(state_.Button(4).FilePath, "http://new/Plan.html");
}

TEST_F(BoxDropTest, KeepsItsListWhileTheFileCannotBeRead) {
    int unread = 0;
    state_.Context.onUnread = [&] { ++unread; };
    {
        const testkit::HeldFile held(folder_.IniPath());
        box_.Refill();
    }
    EXPECT_EQ(box_.List().Items().front(), "План");
    EXPECT_EQ(unread, 1);
}

TEST_F(BoxDropTest, RefusesWhatCouldNotBeReadBackWhole) {
    const std::string before = folder_.IniBytes();
    testkit::ModalAnswers user({testkit::Note("Couldn't make this shortcut, sorry.")});
    const std::string address = "https://example.org/" + std::string(524, 'a') + "/page.html";
    DropText(address + "x");
    EXPECT_EQ(user.Used(), 1u);
    EXPECT_EQ(folder_.IniBytes(), before);
    DropText(address);
    EXPECT_EQ(config::ReadIni("Cuts", "page"), address);
}

}  // namespace
}  // namespace app
