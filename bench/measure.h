#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace bench {

/// How often things are repeated.
struct Effort {
    int starts = 41;        ///< starts of each program
    int tabSwitches = 400;  ///< switches of each kind that are timed
    int longRun = 10000;    ///< switches between two looks at the memory
    int hovers = 21;        ///< times that the panel comes out and docks again
    int idleSeconds = 60;   ///< how long nothing happens
    int listFills = 101;    ///< times that the full drop-down is filled
    int typedNames = 20;    ///< names typed into it
    int dialogs = 21;       ///< times that each dialog is opened
};

/// Wall time in milliseconds since some fixed moment.
double WallTime();

/// How long an action takes, in milliseconds.
template <class Action>
double Time(Action&& action) {
    const double begin = WallTime();
    action();
    return WallTime() - begin;
}

/// The processor time that this process has used so far, in milliseconds. Wine counts it in steps of 10 ms,
/// so only the sum over many runs means something; asked about another process, it answers with this one's.
double ProcessorTime();

/// The middle one of the values; there must be at least one.
double Median(std::vector<double> values);

/// The smallest of the values: what is left when nothing else kept the machine busy.
double Fastest(const std::vector<double>& values);

/// The figures, each beside the floor that was measured in the same run.
class Table {
  public:
    /// `aim` is what the figure should stay below; "" when there is no aim.
    void Add(std::string what, std::string unit, double figure, double floor, std::string aim);
    /// A figure that has no floor.
    void Add(std::string what, std::string unit, double figure, std::string aim);

    /// Prints the table in Markdown on the standard output.
    void Print() const;

  private:
    struct Row {
        std::string what;
        std::string unit;
        double figure;
        double floor;
        bool hasFloor;
        std::string aim;
    };
    std::vector<Row> rows_;
};

}  // namespace bench
