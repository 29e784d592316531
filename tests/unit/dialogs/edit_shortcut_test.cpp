#include "dialogs/edit_shortcut.h"

#include "config/ini.h"
#include "dialogs/message_box.h"
#include "model/launching.h"
#include "res/resource.h"
#include "tests/support/ini_writes.h"
#include "tests/support/pickers.h"
#include "tests/unit/dialogs/dialog_parts.h"
#include "win/errors.h"

namespace dialogs {
namespace {

using ::testing::ElementsAre;
using testkit::IniText, testkit::ModalAnswers, testkit::Press, testkit::Window;

constexpr int kName = 600;
constexpr int kFile = 601;
constexpr int kExists = 613;
constexpr int kSelectFile = 620;
constexpr int kSelectFolder = 621;
constexpr int kApply = 622;
constexpr int kCancel = 623;
constexpr int kIcon = 630;
constexpr COLORREF kColor = RGB(0xF0, 0xE8, 0xD0);

class EditShortcutTest : public ::testing::Test {
  protected:
    EditShortcutTest() {
        folder_.WriteIniText(
            "[Buttons]\r\n10=Tab|Стари\r\n12=Други|3\r\n23=Стари|07|x\r\n31=Стари|1\r\n"
            "[Cuts]\r\nПрви=C:\\a?b=c\r\nСтари=http://old/?q=1\r\nДруги=C:\\d.txt\r\n"
            "[Switch]\r\nПрви=/p=1\r\nСтари=\"\"C:\\x y\"\"\r\n");
        context_.Records.LoadButtonRecords();
        fakes_.push_back(FAKE_CALL(FindExecutableA, [this](LPCSTR file, LPCSTR, LPSTR answer) {
            calls_.Add("associated", file);
            std::strcpy(answer, "C:\\program.exe");
            return reinterpret_cast<HINSTANCE>(33);
        }));
        fakes_.push_back(FAKE_CALL(ExtractIconA, [this](HINSTANCE, LPCSTR file, UINT index) {
            calls_.Add("extract", file, index);
            return extracts_ ? CopyIcon(LoadIconA(nullptr, IDI_WARNING)) : nullptr;
        }));
        fakes_.push_back(FAKE_CALL(ExtractAssociatedIconA, [this](HINSTANCE, LPSTR file, WORD* index) {
            calls_.Add("extract associated", file, *index);
            return CopyIcon(LoadIconA(nullptr, IDI_ERROR));
        }));
        fakes_.push_back(WATCH_CALL(
            DrawIcon, [this](HDC, int x, int y, HICON icon) { calls_.Add("draw", x, y, icon != nullptr); }));
    }
    ~EditShortcutTest() override { model::DefaultBrowserPath.clear(); }

    /// Opens the editor for a shortcut and for one step, which closes it.
    void Open(const std::string& name, const std::string& fileText, const ModalAnswers::Step& step) {
        ModalAnswers user({step});
        frmEdit editor(context_);
        editor.PrepareWindow(name, fileText, kColor);
        editor.Show(owner_.Handle());
    }
    /// Opens it for one step and cancels or applies it.
    void Look(const std::string& name, const std::string& fileText, const ModalAnswers::Step& step) {
        Open(name, fileText, ThenPress(step, kCancel));
    }
    void Apply(const std::string& name, const std::string& fileText, const ModalAnswers::Step& step) {
        Open(name, fileText, ThenPress(step, kApply));
    }
    /// Types both texts over what a shortcut has and applies them.
    void Edit(const std::string& old, const std::string& name, const std::string& file) {
        Apply(old, "whatever\n", [&](Window dialog) {
            dialog.Child(kName).SetText(name);
            dialog.Child(kFile).SetText(file);
        });
    }
    std::vector<std::string> CutsKeys() { return folder_.Ini().Keys("Cuts"); }

    testkit::ProgramFolder folder_;
    testkit::ScopedIniPath ini_{folder_.IniPath()};
    testkit::HiddenWindow owner_;
    model::ButtonContext context_;
    testkit::CallLog calls_;
    bool extracts_ = true;
    testkit::RecordedCalls fakes_;
};

/// The colours that a box of the dialog is painted with, text and background.
std::pair<COLORREF, COLORREF> ColorsOf(Window dialog, int id) {
    const win::MemoryDc dc(CreateCompatibleDC(nullptr));
    const auto brush = static_cast<LRESULT>(dialog.Send(WM_CTLCOLOREDIT, reinterpret_cast<WPARAM>(dc.Get()),
                                                        reinterpret_cast<LPARAM>(dialog.Child(id).Handle())));
    LOGBRUSH record{};
    GetObjectW(reinterpret_cast<HGDIOBJ>(brush), sizeof record, &record);
    EXPECT_EQ(record.lbColor, GetBkColor(dc.Get()));
    return {GetTextColor(dc.Get()), GetBkColor(dc.Get())};
}

TEST_F(EditShortcutTest, KeepsTheFormerShortcutWhenAnyOfItsWritesFails) {
    const std::string before = folder_.IniBytes();
    const std::vector<std::string> records{"Buttons 23", "Cuts Нови", "Switch Нови"};
    for (const std::string& record : records) {
        bool refused = false;
        const auto write =
            FAKE_CALL(WritePrivateProfileStringA, [&](LPCSTR name, LPCSTR key, LPCSTR value, LPCSTR file) {
                if (std::string(name) + " " + key != record)
                    return ORIGINAL_CALL(WritePrivateProfileStringA)(name, key, value, file);
                refused = true;
                return FALSE;
            });
        // The user is told, and what was typed stays.
        ModalAnswers user({[&](Window dialog) {
                               dialog.Child(kName).SetText("Нови");
                               dialog.Child(kFile).SetText("http://new/");
                               dialog.PostPress(kApply);
                           },
                           [&](Window box) {
                               EXPECT_EQ(box.Child(frmMsg::l1).Text(), "Couldn't make this shortcut, sorry.");
                               const Window editor = box.Owner();
                               EXPECT_EQ(editor.Child(kName).Text(), "Нови");
                               editor.PostPress(kCancel);
                               box.Press(frmMsg::b1);
                           }});
        frmEdit editor(context_);
        editor.PrepareWindow("Стари", "whatever\n", kColor);
        editor.Show(owner_.Handle());
        EXPECT_FALSE(editor.StoredName());
        EXPECT_EQ(context_.Records.At("23"), "Стари|07|x") << record;
        EXPECT_TRUE(refused) << record;
        EXPECT_EQ(folder_.IniBytes(), before) << record;
    }
}

TEST_F(EditShortcutTest, ShowsItsCaptions) {
    const std::vector<std::pair<int, std::string>> captions{
        {610, "Shortcut name:"}, {611, "File:"},         {612, "or type URL"}, {613, "Shortcut exists!"},
        {620, "Select file"},    {621, "Select folder"}, {622, "Apply"},       {623, "Cancel"}};
    Look("Стари", "x\n", [&](Window dialog) {
        EXPECT_EQ(dialog.Text(), "Edit shortcut");
        for (const auto& [id, caption] : captions) {
            EXPECT_EQ(dialog.Child(id).Text(), caption);
            EXPECT_TRUE(dialog.Child(id).IsVisible()) << id;
        }
        EXPECT_TRUE(dialog.Child(frmEdit::Frame1).IsVisible());
        EXPECT_TRUE(dialog.IsTopmost());
        EXPECT_EQ(dialog.Owner().Handle(), owner_.Handle());
    });
}

TEST_F(EditShortcutTest, ShowsNameColourAndTheFirstLineOfTheFile) {
    Look("Стари", "C:\\Фасцикла\\文.txt\n12 KB\nmore", [](Window dialog) {
        EXPECT_EQ(dialog.Child(kName).Text(), "Стари");
        EXPECT_EQ(dialog.Child(kFile).Text(), "C:\\Фасцикла\\文.txt");
        EXPECT_EQ(ColorsOf(dialog, kName).second, kColor);
        EXPECT_EQ(ColorsOf(dialog, kFile).second, kColor);
    });
}

TEST_F(EditShortcutTest, DoesNotOpenWhereItCannotShowWhatIsStored) {
    for (const int box : {kName, kFile})
        EXPECT_EQ(ReportsWithoutText(box,
                                     [this] {
                                         frmEdit editor(context_);
                                         editor.PrepareWindow("Стари", "http://old/?q=1", kColor);
                                         editor.Show(owner_.Handle());
                                     }),
                  1)
            << box;
}

TEST_F(EditShortcutTest, DrawsTheIconOfTheFile) {
    Look("Стари", "C:\\d.txt\n", [&](Window dialog) {
        EXPECT_THAT(calls_.Lines(),
                    ElementsAre("associated C:\\d.txt", "extract C:\\program.exe 0", "draw 0 0 true"));
        const RECT place = dialog.Child(kIcon).Rect();
        EXPECT_EQ(place.right - place.left, 32);
        EXPECT_EQ(place.bottom - place.top, 32);
        EXPECT_TRUE(dialog.Child(kIcon).IsVisible());
    });
    calls_.Clear();
    extracts_ = false;
    Open("Стари", "C:\\d.txt\n", Press(kCancel));
    EXPECT_TRUE(
        InOrder(calls_, {"extract C:\\program.exe 0", "extract associated C:\\d.txt 0", "draw 0 0 true"}));
}

TEST_F(EditShortcutTest, DrawsTheIconOfAPickedFileOnAClearedPictureAndShowsIt) {
    std::vector<COLORREF> before;
    const auto draw = FAKE_CALL(DrawIcon, [&](HDC dc, int, int, HICON) -> BOOL {
        before.push_back(GetPixel(dc, 9, 9));
        const win::Brush brush(CreateSolidBrush(RGB(1, 2, 3)));
        const RECT all{0, 0, 32, 32};
        return FillRect(dc, &all, brush.Get());
    });
    testkit::RecordedCalls pickers;
    testkit::AnswerPickers(pickers, [](testkit::Picker) { return "C:\\picked.txt"; });
    Look("Стари", "C:\\d.txt\n", [&](Window dialog) {
        const HWND picture = dialog.Child(kIcon).Handle();
        UpdateWindow(picture);
        std::vector<HWND> painted;
        const auto invalidate =
            WATCH_CALL(InvalidateRect, [&](HWND window, const RECT*, BOOL) { painted.push_back(window); });
        dialog.Press(kSelectFile);
        EXPECT_EQ(std::count(painted.begin(), painted.end(), picture), 1);
    });
    ASSERT_EQ(before.size(), 2u);
    EXPECT_EQ(before[1], before[0]) << "nothing of the icon before is left";
}

TEST_F(EditShortcutTest, DrawsTheBrowsersIconForAUrl) {
    model::DefaultBrowserPath = "C:\\прегледач.exe";
    Open("Стари", "http://old/?q=1\n", Press(kCancel));
    EXPECT_TRUE(InOrder(calls_, {"associated C:\\прегледач.exe", "extract C:\\program.exe 0", "draw 0 0"}));
}

TEST_F(EditShortcutTest, TestsTheNameAtEveryChangeOfEitherBox) {
    constexpr COLORREF kRed = 255;
    constexpr COLORREF kBlue = 0xFF0000;
    Look("Стари", "x\n", [&](Window dialog) {
        const auto expect = [&](bool taken) {
            EXPECT_EQ(dialog.Child(kExists).IsVisible(), taken);
            EXPECT_EQ(ColorsOf(dialog, kName).first, taken ? kRed : kBlue);
        };
        expect(true);  // its own name counts as taken
        dialog.Child(kName).SetText("Нови");
        expect(false);
        dialog.Child(kName).SetText("ДРУГИ");
        expect(true);
        WritePrivateProfileStringA("Cuts", "Други", nullptr, folder_.IniPath().c_str());
        dialog.Child(kFile).SetText("y");
        expect(false);
        EXPECT_NE(ColorsOf(dialog, kFile).first, kBlue) << "the file keeps its colour";
    });
}

TEST_F(EditShortcutTest, ACommandOfNoControlDoesNothing) {
    Open("Стари", "http://new/\n", [](Window dialog) {
        dialog.Send(WM_COMMAND, IDOK);
        EXPECT_TRUE(dialog.IsVisible());
        dialog.Press(kCancel);
        EXPECT_FALSE(dialog.IsVisible());
    });
    EXPECT_EQ(folder_.IniValue("Cuts", "Стари"), "http://old/?q=1");
}

TEST_F(EditShortcutTest, SelectsTheNameAtAClickOnAnyLabel) {
    Look("Стари", "x\n", [](Window dialog) {
        for (const int id : {610, 611, 612, 613}) {
            SetFocus(dialog.Child(kFile).Handle());
            dialog.Child(kName).Send(EM_SETSEL, 1, 1);
            dialog.Send(WM_COMMAND, MAKEWPARAM(id, STN_CLICKED),
                        reinterpret_cast<LPARAM>(dialog.Child(id).Handle()));
            EXPECT_EQ(GetFocus(), dialog.Child(kName).Handle());
            EXPECT_EQ(dialog.Child(kName).Selection(), MAKELONG(0, 5)) << id;
            EXPECT_NE(dialog.Child(id).Style() & SS_NOTIFY, 0) << id;
        }
    });
}

TEST_F(EditShortcutTest, TakesWhatIsPickedAndNothingFromACancelledPicker) {
    std::string picked = "C:\\изабрано.txt";
    testkit::RecordedCalls pickers;
    testkit::AnswerPickers(pickers, [&](testkit::Picker) { return picked; });
    Look("Стари", "C:\\old\n", [&](Window dialog) {
        calls_.Clear();
        dialog.Press(kSelectFile);
        EXPECT_EQ(dialog.Child(kFile).Text(), picked);
        EXPECT_EQ(calls_.Lines().front(), "associated " + picked);
        EXPECT_EQ(calls_.Lines().back(), "draw 0 0 true");
        picked = "C:\\windows";
        dialog.Press(kSelectFolder);
        EXPECT_EQ(dialog.Child(kFile).Text(), "C:\\windows");
        picked.clear();
        calls_.Clear();
        dialog.Press(kSelectFile);
        dialog.Press(kSelectFolder);
        EXPECT_EQ(dialog.Child(kFile).Text(), "C:\\windows");
        EXPECT_TRUE(calls_.Lines().empty());
    });
}

TEST_F(EditShortcutTest, MovesTheShortcutItsButtonsAndItsSwitchToTheNewName) {
    Edit("Стари", "Ново 文", "C:\\ново.txt");
    const IniText ini = folder_.Ini();
    EXPECT_EQ(ini.Value("Buttons", "23"), "Ново 文|07|x") << "all but the name byte for byte";
    EXPECT_EQ(context_.Records.At("23"), "Ново 文|07|x");
    EXPECT_EQ(ini.Value("Buttons", "10"), "Tab|Стари");
    EXPECT_EQ(ini.Value("Buttons", "12"), "Други|3");
    EXPECT_EQ(ini.Value("Buttons", "31"), "Ново 文|1");
    EXPECT_EQ(context_.Records.At("31"), "Ново 文|1");
    EXPECT_THAT(folder_.IniLines("Cuts"),
                ElementsAre("Први=C:\\a?b=c", "Други=C:\\d.txt", "Ново 文=C:\\ново.txt"));
    EXPECT_THAT(folder_.IniLines("Switch"), ElementsAre("Први=/p=1", "Ново 文=\"\"C:\\x y\"\""));
}

TEST_F(EditShortcutTest, TakesItsStepsInOrder) {
    testkit::CallLog log;
    const testkit::RecordedCalls writes = testkit::LogWrites(log);
    Edit("Стари", "Ново", "f");
    EXPECT_TRUE(InOrder(log, {"write Buttons 23 Ново|07|x", "empty Cuts", "write Cuts Ново f", "empty Switch",
                              "write Switch Ново"}));
}

TEST_F(EditShortcutTest, PassesOverAKeyThatIsNoButtons) {
    WritePrivateProfileStringA("Buttons", "99", "Први|2", folder_.IniPath().c_str());
    Apply("Први", "x\n", [&](Window dialog) { dialog.Child(kName).SetText("Ново"); });
    EXPECT_FALSE(folder_.IniValue("Cuts", "Први"));
    EXPECT_EQ(folder_.IniValue("Cuts", "Ново"), "x");
    EXPECT_EQ(folder_.IniValue("Buttons", "99"), "Први|2");
}

TEST_F(EditShortcutTest, LeavesTheButtonsAloneForAShortcutOnNone) {
    Edit("Први", "Ново", "C:\\n");
    EXPECT_EQ(folder_.IniValue("Buttons", "23"), "Стари|07|x");
    EXPECT_EQ(folder_.IniValue("Switch", "Ново"), "/p=1");
    Edit("Други", "Без", "C:\\n");
    EXPECT_EQ(folder_.IniValue("Buttons", "12"), "Без|3");
    EXPECT_FALSE(folder_.IniValue("Switch", "Без"));
}

TEST_F(EditShortcutTest, WritesTheSameNameAgainWithTheNewFile) {
    Edit("Стари", "Стари", "C:\\ново");
    EXPECT_EQ(folder_.IniValue("Cuts", "Стари"), "C:\\ново");
    EXPECT_EQ(folder_.IniValue("Buttons", "23"), "Стари|07|x");
    EXPECT_EQ(folder_.IniValue("Switch", "Стари"), "\"\"C:\\x y\"\"");
    EXPECT_EQ(CutsKeys().size(), 3u);
}

TEST_F(EditShortcutTest, AppliesATakenNameAndOverwritesItsShortcut) {
    WritePrivateProfileStringA("Cuts", "Other", "C:\\o", folder_.IniPath().c_str());
    Edit("Стари", "OTHER", "C:\\ново");
    EXPECT_THAT(CutsKeys(), ElementsAre("Први", "Други", "Other"));
    EXPECT_EQ(folder_.IniValue("Cuts", "Other"), "C:\\ново");
    EXPECT_EQ(folder_.IniValue("Buttons", "23"), "OTHER|07|x");
}

TEST_F(EditShortcutTest, MakesNamesStorable) {
    const std::vector<std::pair<std::string, std::string>> cases{
        {"a=b|c", "a-b-c"}, {" [;x ", "x"}, {"Empty", "Empty_"}, {"a\tb", "a b"}};
    std::string old = "Стари";
    for (const auto& [typed, stored] : cases) {
        Edit(old, typed, "C:\\f");
        EXPECT_EQ(folder_.IniValue("Cuts", stored), "C:\\f") << typed;
        EXPECT_EQ(folder_.IniValue("Buttons", "23"), stored + "|07|x") << typed;
        old = stored;
    }
    // Nothing of these can be stored: the shortcut keeps its name.
    for (const std::string typed : {" ", "[;", "\t"}) {
        Edit(old, typed, "C:\\g");
        EXPECT_EQ(folder_.IniValue("Cuts", old), "C:\\g") << typed;
        EXPECT_EQ(folder_.IniValue("Buttons", "23"), old + "|07|x");
    }
    EXPECT_EQ(CutsKeys().size(), 3u);
}

TEST_F(EditShortcutTest, WritesAnEmptyNameAndAnEmptyFileAsTheyStand) {
    Edit("Други", "Други", "");
    EXPECT_EQ(folder_.IniValue("Cuts", "Други"), "");
    Edit("Стари", "", "C:\\f");
    EXPECT_EQ(folder_.IniValue("Buttons", "23"), "|07|x");
    EXPECT_EQ(folder_.IniValue("Cuts", ""), "C:\\f");
    EXPECT_FALSE(folder_.IniValue("Cuts", "Стари"));
    // It can be edited again.
    Edit("", "Стари", "C:\\f");
    EXPECT_EQ(folder_.IniValue("Cuts", "Стари"), "C:\\f");
    EXPECT_FALSE(folder_.IniValue("Cuts", ""));
}

TEST_F(EditShortcutTest, KeepsALongTextWhole) {
    const std::string file = "C:\\" + std::string(8000, 'w') + "\\文.txt";
    Apply("Први", file + "\n", [&](Window dialog) {
        EXPECT_EQ(dialog.Child(kFile).Text(), file);
        dialog.Child(kName).SetText("Ново");
    });
    EXPECT_EQ(folder_.IniValue("Cuts", "Ново"), file);
}

TEST_F(EditShortcutTest, TakesNoLongerTextThanCanBeReadBack) {
    const std::string longest = "C:\\" + std::string(551, 'x');
    Apply("Први", "C:\\a\n", [&](Window dialog) {
        dialog.Child(kFile).SetText(longest);
        dialog.Child(kFile).SetText(longest + "x");
        EXPECT_EQ(dialog.Child(kFile).Text(), longest);
        dialog.Child(kName).SetText(std::string(540, 'n'));
        dialog.Child(kName).SetText(std::string(541, 'n'));
        EXPECT_EQ(dialog.Child(kName).Text(), std::string(540, 'n'));
    });
    EXPECT_EQ(config::ReadIni("Cuts", std::string(540, 'n')), longest);
}

TEST_F(EditShortcutTest, AUrlWithABarStaysOneTarget) {
    Edit("Први", "Први", "http://a/b|c");
    EXPECT_EQ(folder_.IniValue("Cuts", "Први"), "http://a/b%7Cc");
}

TEST_F(EditShortcutTest, RefusesAControlCharacterInTheFile) {
    const std::string before = folder_.IniBytes();
    ModalAnswers user({[](Window dialog) {
                           dialog.Child(kFile).SetText("C:\\a\tb");
                           dialog.PostPress(kApply);
                       },
                       [](Window box) {
                           box.Owner().PostPress(kCancel);
                           box.Press(frmMsg::b1);
                       }});
    frmEdit editor(context_);
    editor.PrepareWindow("Први", "C:\\a\n", kColor);
    editor.Show(owner_.Handle());
    EXPECT_EQ(folder_.IniBytes(), before);
}

TEST_F(EditShortcutTest, RenamingOntoATakenNameDropsItsOldSwitch) {
    Edit("Други", "Први", "C:\\d.txt");
    EXPECT_EQ(folder_.IniValue("Cuts", "Први"), "C:\\d.txt");
    EXPECT_FALSE(folder_.IniValue("Switch", "Први"));
}

TEST_F(EditShortcutTest, WritesNothingWhenItIsCancelled) {
    const std::string before = folder_.IniBytes();
    const std::vector<ModalAnswers::Step> ways{Press(kCancel),
                                               [](Window dialog) { dialog.Send(WM_SYSCOMMAND, SC_CLOSE); },
                                               [](Window) { PressInFocus(VK_ESCAPE); }};
    for (const ModalAnswers::Step& close : ways)
        Open("Стари", "x\n", [&](Window dialog) {
            dialog.Child(kName).SetText("Ново");
            close(dialog);
        });
    EXPECT_EQ(folder_.IniBytes(), before);
}

TEST_F(EditShortcutTest, GoesByTheKeyboard) {
    Open("Стари", "C:\\f\n", [](Window dialog) {
        EXPECT_EQ(GetFocus(), dialog.Child(kName).Handle());
        EXPECT_EQ(dialog.Child(kName).Selection(), MAKELONG(0, 5));
        EXPECT_THAT(TabOrder(dialog, kName),
                    ElementsAre(kName, kFile, kSelectFile, kSelectFolder, kApply, kCancel));
        PressInFocus(VK_RETURN);
    });
    EXPECT_EQ(folder_.IniValue("Cuts", "Стари"), "C:\\f") << "Enter applies";
}

}  // namespace
}  // namespace dialogs
