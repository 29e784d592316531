// The rows of the group editor: where they are drawn and what becomes one.

#include "dialogs/edit_group.h"
#include "res/resource.h"
#include "tests/support/paint_log.h"
#include "tests/support/unit_test.h"
#include "win/handles.h"

namespace dialogs {
namespace {

using ::testing::Contains, ::testing::ElementsAre, ::testing::HasSubstr;
using testkit::ModalAnswers, testkit::Window;

class GroupRowsTest : public ::testing::Test {
  protected:
    void Edit(const std::string& members, const ModalAnswers::Step& step) {
        folder_.WriteIniText("[Cuts]\r\nWork=" + members + "\r\n");
        const ModalAnswers user({step});
        editor_.PrepareWindow("Work");
        editor_.Show(owner_.Handle());
    }
    /// What a list draws of its first 200 pixels, the lines of one kind.
    static std::vector<std::string> Draw(Window list, const std::string& kind) {
        constexpr int kSize = 200;
        const win::WindowDc screen(nullptr);
        const win::Bitmap bitmap(CreateCompatibleBitmap(screen.Get(), kSize, kSize));
        const win::MemoryDc dc(CreateCompatibleDC(screen.Get()));
        SelectObject(dc.Get(), bitmap.Get());
        testkit::CallLog log;
        const testkit::RecordedCalls painting = testkit::LogPainting(log, list.Handle(), dc.Get());
        const testkit::RecordedCall image =
            FAKE_CALL(ImageList_Draw, [&](HIMAGELIST, int, HDC, int x, int y, UINT) -> WINBOOL {
                log.Add("Image", x, y);
                return TRUE;
            });
        list.Send(WM_PRINTCLIENT, reinterpret_cast<WPARAM>(dc.Get()), PRF_CLIENT);
        std::vector<std::string> lines;
        for (const std::string& line : log.Lines())
            if (line.starts_with(kind)) lines.push_back(line);
        return lines;
    }

    testkit::ProgramFolder folder_;
    testkit::ScopedIniPath ini_{folder_.IniPath()};
    testkit::HiddenWindow owner_;
    model::ButtonContext context_;
    frmEditB editor_{context_};
};

TEST_F(GroupRowsTest, IconPathAndBarStandAtTheirOffsets) {
    Edit("C:\\windows|C:\\gone.txt", [](Window dialog) {
        const Window list = dialog.Child(frmEditB::pBasket);
        const std::string right = std::to_string(list.ClientRect().right - list.ClientRect().left);
        // The second row: the first one's top 4, its height 18 and the gap of 6 below. The icon's box is as
        // high as the row.
        EXPECT_THAT(Draw(list, "Image"), ElementsAre("Image 4 5", "Image 4 29"));
        EXPECT_THAT(Draw(list, "Text"),
                    ElementsAre(HasSubstr("C:\\windows in 26 5 "), HasSubstr("C:\\gone.txt in 26 29 ")));
        list.SendClick(60, 35);
        EXPECT_THAT(Draw(list, "Fill"), Contains("Fill 22 28 " + right + " 46"));
        dialog.Post(WM_COMMAND, IDCANCEL);
    });
}

TEST_F(GroupRowsTest, ThePartsBetweenSeparatorsAreRowsEvenIfEmpty) {
    Edit("C:\\a||C:\\b|", [](Window dialog) {
        EXPECT_EQ(dialog.Child(frmEditB::pBasket).ClientRect().bottom -
                      dialog.Child(frmEditB::pBasket).ClientRect().top,
                  4 + 4 * 18 + 3 * 6 + 5);
        dialog.PostPress(frmEditB::c1 + 2);
    });
    EXPECT_EQ(folder_.IniValue("Cuts", "Work"), "C:\\a||C:\\b|");
}

}  // namespace
}  // namespace dialogs
