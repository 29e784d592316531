#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "bench/benchmarks.h"
#include "tests/support/paths.h"
#include "tests/support/running_program.h"
#include "tests/support/screen.h"
#include "tests/support/wait.h"

namespace bench {
namespace {

// Milliseconds.
constexpr double kPatience = 60000;
constexpr double kStill = 2000;

/// A program together with what the screen shows once it is painted.
struct Subject {
    explicit Subject(std::string program) : path(std::move(program)) {}

    std::string path;
    RECT place{};
    testkit::Picture painted;
    std::vector<double> times;  // milliseconds
};

bool StandsPainted(const Subject& subject) {
    return testkit::CaptureScreen(subject.place) == subject.painted;
}

/// Starts the program once without a clock and remembers how it looks when nothing changes any more.
void TakePicture(Subject& subject) {
    const testkit::RunningProgram program(subject.path);
    const testkit::Window window = program.MainWindow();
    subject.place = window.ClientRect();
    // A busy machine may let a half painted panel stand for a while.
    double since = WallTime();
    while (WallTime() - since < kStill) {
        if (!StandsPainted(subject)) {
            subject.painted = testkit::CaptureScreen(subject.place);
            since = WallTime();
        }
        Sleep(10);
    }
}

void StartOnce(Subject& subject) {
    testkit::WaitFor("the screen to be free", [&] { return !StandsPainted(subject); });
    const double begin = WallTime();
    const testkit::RunningProgram program(subject.path);
    // Rests about a millisecond between two looks: the clock is that fine, and the program gets its
    // processor.
    while (!StandsPainted(subject)) {
        if (WallTime() - begin > kPatience) throw std::runtime_error(subject.path + " never looks as before");
        Sleep(1);
    }
    subject.times.push_back(WallTime() - begin);
}

}  // namespace

void MeasureStart(const Scene& scene, const Effort& effort, Table& table) {
    // The pointer over the panel would bring up the hover picture.
    SetCursorPos(0, 0);
    Subject quon(scene.Quon());
    Subject floor(scene.Floor());
    TakePicture(quon);
    TakePicture(floor);
    for (int start = 0; start < effort.starts; ++start) {
        // The run before has written its settings when it ended.
        scene.AgeIni();
        StartOnce(quon);
        StartOnce(floor);
    }
    table.Add("start to painted panel, median", "ms", Median(quon.times), Median(floor.times), "ratio 2");
    table.Add("start to painted panel, fastest", "ms", Fastest(quon.times), Fastest(floor.times), "");
}

}  // namespace bench
