#pragma once

#include "res/resource.h"
#include "tests/leaks/leak_test.h"
#include "tests/support/data_object.h"
#include "tests/unit/app/panel_harness.h"
#include "win/com.h"

namespace leaks {

/// The whole main window, loaded and on the screen. Targets are files of the test's own, and whatever would
/// open one only says that it has.
class PanelLeakTest : public LeakTest {
  protected:
    using Step = testkit::ModalAnswers::Step;

    PanelLeakTest();
    ~PanelLeakTest() override;

    void EndRound() override { panel_.Log().Clear(); }

    testkit::Window Panel() const { return panel_.Window(); }
    testkit::Window Child(int id) const { return Panel().Child(id); }
    testkit::Window Button(int index) const { return Child(IDC_BUTTON + index); }

    static void Click(testkit::Window picture, std::initializer_list<int> held = {});
    static void DoubleClick(testkit::Window picture, std::initializer_list<int> held = {});
    static void Hover(testkit::Window picture);
    /// Shows a tab by a click on its header, painted.
    void ShowTab(int tab) const;
    void Paint() const;

    /// Keys for the menu that is opened next. Escape closes one level of it.
    void PressInMenu(std::initializer_list<WORD> keys) const;
    void PressInMenu(int times, WORD key) const;

    /// Opens and closes dialogs of these templates with nothing of the product in them: see bare_.
    void OpenBare(std::initializer_list<int> templates) const;
    /// Shows and closes a window with as many children as the panel has, all of Windows' own classes: see
    /// bare_.
    void OpenBarePanel() const;

    /// The targets of the drops: the nine buttons, the hover picture, the drop-down and its edit field.
    IDropTarget& DropTarget(size_t index) const { return *dropTargets_.at(index); }
    void Drop(size_t target, const std::function<void(testkit::DataObject&)>& offer) const;

    const win::OleThread ole_;
    /// Has icons. Taken before the panel, which makes the program seem to lie elsewhere.
    const std::string program_;
    testkit::ProgramFolder targets_{"leaks"};
    std::string file_;
    std::string otherFile_;
    std::string link_;
    app::PanelHarness panel_;
    testkit::RecordedCalls fakes_;
    std::vector<IDropTarget*> dropTargets_;
};

using testkit::Press;

}  // namespace leaks
