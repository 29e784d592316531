#include "win/dialog.h"

#include "dialogs/message_box.h"
#include "res/resource.h"
#include "tests/support/unit_test.h"
#include "win/errors.h"

namespace win {
namespace {

using ::testing::ElementsAre;

/// A dialog that does everything while it is being made and ends before it is shown.
class ProbeDialog : public Dialog {
  public:
    INT_PTR Run(HWND owner, std::function<void(ProbeDialog&)> act, int templateId = IDD_MESSAGE) {
        act_ = std::move(act);
        return ShowModal(owner, templateId);
    }

    using Dialog::End;

    testkit::CallLog log;
    std::function<INT_PTR(UINT)> onMessage;

  protected:
    bool OnInit() override {
        act_(*this);
        return true;
    }
    bool OnCommand(int id, int notification) override {
        log.Add("command", id, notification);
        if (id == IDCANCEL) End(7);
        return id == IDOK;
    }
    INT_PTR OnMessage(UINT message, WPARAM, LPARAM) override { return onMessage ? onMessage(message) : 0; }

  private:
    std::function<void(ProbeDialog&)> act_;
};

/// A dialog that only knows its commands.
class PlainDialog : public Dialog {
  public:
    using Dialog::ShowModal;

  protected:
    bool OnCommand(int id, int) override {
        if (id == IDCANCEL) End(7);
        return true;
    }
};

std::vector<std::string>& Reports() {
    static std::vector<std::string> reports;
    return reports;
}

class DialogTest : public ::testing::Test {
  protected:
    DialogTest() {
        Reports().clear();
        SetErrorReporter([](HWND, const char* message) noexcept { Reports().emplace_back(message); });
        SetMainWindow(owner_.Handle());
    }
    ~DialogTest() override {
        SetMainWindow(nullptr);
        SetHelpHandler(nullptr);
        SetErrorReporter(nullptr);
    }

    testkit::HiddenWindow owner_;
};

TEST_F(DialogTest, NeedsNothingButItsCommands) {
    const testkit::ModalAnswers user({[](testkit::Window dialog) {
        EXPECT_FALSE(GetFocus() == nullptr) << "Windows set the focus";
        dialog.Send(WM_COMMAND, IDCANCEL);
    }});
    EXPECT_EQ(PlainDialog().ShowModal(owner_.Handle(), IDD_DEFINE_TAB), 7);
}

TEST_F(DialogTest, RunsFromItsTemplateUntilItEnds) {
    ProbeDialog dialog;
    EXPECT_EQ(dialog.Handle(), nullptr);
    HWND handle = nullptr;
    const INT_PTR answer = dialog.Run(owner_.Handle(), [&](ProbeDialog& self) {
        handle = self.Handle();
        EXPECT_TRUE(IsWindow(handle));
        EXPECT_EQ(GetWindow(handle, GW_OWNER), owner_.Handle());
        EXPECT_EQ(GetDlgCtrlID(self.Item(dialogs::frmMsg::Text1)), dialogs::frmMsg::Text1);
        EXPECT_EQ(self.Item(9999), nullptr);
        self.End(42);
    });
    EXPECT_EQ(answer, 42);
    EXPECT_EQ(dialog.Handle(), nullptr);
    EXPECT_FALSE(IsWindow(handle));
}

TEST_F(DialogTest, ThatCannotBeMadeAnswersMinusOne) {
    EXPECT_EQ(ProbeDialog().Run(owner_.Handle(), [](ProbeDialog&) {}, 9999), -1);
    EXPECT_FALSE(AnyDialogOpen());
}

TEST_F(DialogTest, GetsItsCommandsWithTheirNotification) {
    ProbeDialog dialog;
    dialog.Run(owner_.Handle(), [](ProbeDialog& self) {
        EXPECT_EQ(SendMessageW(self.Handle(), WM_COMMAND, MAKEWPARAM(dialogs::frmMsg::Text1, EN_CHANGE), 0),
                  0);
        SendMessageW(self.Handle(), WM_COMMAND, IDCANCEL, 0);
    });
    EXPECT_EQ(dialog.log.Count("command " + std::to_string(dialogs::frmMsg::Text1) + " " +
                               std::to_string(EN_CHANGE)),
              1U);
    EXPECT_EQ(dialog.log.Lines().back(), "command 2 0");
}

TEST_F(DialogTest, LetsNoExceptionOut) {
    ProbeDialog dialog;
    dialog.onMessage = [](UINT message) -> INT_PTR {
        if (message == WM_APP) throw SubscriptError("Ред 文");
        return 0;
    };
    EXPECT_EQ(dialog.Run(owner_.Handle(),
                         [](ProbeDialog& self) {
                             SendMessageW(self.Handle(), WM_APP, 0, 0);
                             self.End(1);
                         }),
              1);
    EXPECT_THAT(Reports(), ElementsAre("Ред 文"));
}

TEST_F(DialogTest, ClosesAfterAnErrorWhileItIsBeingSetUp) {
    ProbeDialog dialog;
    EXPECT_EQ(dialog.Run(owner_.Handle(), [](ProbeDialog&) { throw OverflowError("init"); }), -1);
    EXPECT_THAT(Reports(), ElementsAre("init"));
    EXPECT_EQ(dialog.Handle(), nullptr);
    EXPECT_FALSE(AnyDialogOpen());
}

TEST_F(DialogTest, TheInnermostOpenDialogOwnsTheNext) {
    EXPECT_EQ(ModalOwner(), owner_.Handle());
    EXPECT_FALSE(AnyDialogOpen());
    ProbeDialog outer;
    ProbeDialog inner;
    outer.Run(owner_.Handle(), [&](ProbeDialog& first) {
        EXPECT_EQ(ModalOwner(), first.Handle());
        EXPECT_TRUE(AnyDialogOpen());
        inner.Run(ModalOwner(), [&](ProbeDialog& second) {
            EXPECT_EQ(GetWindow(second.Handle(), GW_OWNER), first.Handle());
            EXPECT_EQ(ModalOwner(), second.Handle());
            second.End(1);
        });
        EXPECT_EQ(ModalOwner(), first.Handle());
        first.End(1);
    });
    EXPECT_EQ(ModalOwner(), owner_.Handle());
    EXPECT_FALSE(AnyDialogOpen());
    SetMainWindow(nullptr);
    EXPECT_EQ(ModalOwner(), nullptr);
}

TEST_F(DialogTest, OpenDialogsAreCancelledFromTheInnermostOut) {
    std::vector<std::string> ended;
    ProbeDialog outer;
    ProbeDialog inner;
    const INT_PTR answer = outer.Run(owner_.Handle(), [&](ProbeDialog&) {
        EXPECT_EQ(inner.Run(ModalOwner(),
                            [&](ProbeDialog& second) {
                                const testkit::RecordedCall end =
                                    WATCH_CALL(EndDialog, [&](HWND window, INT_PTR) {
                                        ended.emplace_back(window == second.Handle() ? "inner" : "outer");
                                    });
                                CancelOpenDialogs();
                            }),
                  7);
    });
    EXPECT_EQ(answer, 7);
    EXPECT_THAT(ended, ElementsAre("inner", "outer"));
}

TEST_F(DialogTest, CancellingNothingIsHarmless) { EXPECT_NO_FATAL_FAILURE(CancelOpenDialogs()); }

TEST_F(DialogTest, F1AsksTheProgramForHelp) {
    static int asked = 0;
    asked = 0;
    ShowHelp();
    SetHelpHandler([] { ++asked; });
    HELPINFO info{};
    info.cbSize = sizeof info;
    ProbeDialog().Run(owner_.Handle(), [&](ProbeDialog& self) {
        SendMessageW(self.Handle(), WM_HELP, 0, reinterpret_cast<LPARAM>(&info));
        self.End(1);
    });
    EXPECT_EQ(asked, 1);
    ShowHelp();
    EXPECT_EQ(asked, 2);
}

}  // namespace
}  // namespace win
