#include "bench/benchmarks.h"
#include "res/resource.h"
#include "tests/support/paths.h"
#include "tests/support/running_program.h"

namespace bench {
namespace {

constexpr double kKilobyte = 1024;

/// What a program holds at one moment.
struct Holdings {
    explicit Holdings(const testkit::RunningProgram& program)
        : memory(static_cast<double>(program.WorkingSet()) / kKilobyte),
          gdi(static_cast<double>(program.GdiObjectCount())),
          user(static_cast<double>(program.UserObjectCount())) {}

    double memory;  // KB
    double gdi;
    double user;
};

void SwitchTabs(const testkit::Window& panel, int count) {
    const testkit::Window first = panel.Child(IDC_TAB_HEADER + 1);
    const testkit::Window second = panel.Child(IDC_TAB_HEADER + 2);
    for (int index = 0; index < count; ++index) {
        const testkit::Window& header = index % 2 == 0 ? second : first;
        header.Send(WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(9, 9));
        header.Send(WM_LBUTTONUP, 0, MAKELPARAM(9, 9));
    }
}

}  // namespace

void MeasureSize(const Scene& scene, Table& table) {
    table.Add("size of the executable", "bytes", static_cast<double>(testkit::FileBytes(scene.Quon()).size()),
              static_cast<double>(testkit::FileBytes(scene.Floor()).size()), "1048576");
}

void MeasureMemory(const Scene& scene, const Effort& effort, Table& table) {
    const testkit::RunningProgram floorProgram(scene.Floor());
    floorProgram.MainWindow();
    floorProgram.WaitUntilIdle();
    const double floor = static_cast<double>(floorProgram.WorkingSet()) / kKilobyte;

    const testkit::RunningProgram quon(scene.Quon());
    const testkit::Window panel = quon.WaitForWindow({.class_name = "QuonMain"});
    quon.WaitUntilIdle();
    const Holdings atStart(quon);
    SwitchTabs(panel, 10);
    quon.WaitUntilIdle();
    const Holdings early(quon);
    SwitchTabs(panel, effort.longRun);
    quon.WaitUntilIdle();
    const Holdings late(quon);

    const std::string run = std::to_string(effort.longRun) + " tab switches";
    table.Add("resident memory after the start", "KB", atStart.memory, floor, "");
    table.Add("resident memory after 10 tab switches", "KB", early.memory, floor, "");
    table.Add("resident memory after " + run + " more", "KB", late.memory, floor, "no growth");
    table.Add("drawing objects gained in " + run, "", late.gdi - early.gdi, "0");
    table.Add("windows, menus and icons gained in " + run, "", late.user - early.user, "0");
}

}  // namespace bench
