// Measures Quon beside floors that no program of its kind can get below, and prints one table.
//
//     quon_bench            everything, as the figures in docs/performance.md are made
//     quon_bench --quick    a short run, to see that all of it works
//     quon_bench start      only that: start, switch, dock, list, records, dialogs, processes, size or memory

#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <exception>
#include <string>
#include <vector>

#include "bench/benchmarks.h"

namespace {

void Run(const std::vector<std::string>& arguments) {
    bench::Effort effort;
    std::vector<std::string> wanted;
    for (const std::string& argument : arguments) {
        if (argument == "--quick")
            effort = {.starts = 3,
                      .tabSwitches = 20,
                      .longRun = 100,
                      .hovers = 3,
                      .idleSeconds = 2,
                      .listFills = 5,
                      .typedNames = 2,
                      .dialogs = 3};
        else
            wanted.push_back(argument);
    }
    const auto wants = [&](const char* name) {
        return wanted.empty() || std::find(wanted.begin(), wanted.end(), name) != wanted.end();
    };
    const bench::Scene scene;
    bench::Table table;
    if (wants("start")) bench::MeasureStart(scene, effort, table);
    if (wants("switch")) bench::MeasureTabSwitch(scene, effort, table);
    if (wants("dock")) bench::MeasureDock(effort, table);
    if (wants("list")) bench::MeasureShortcutList(effort, table);
    if (wants("records")) bench::MeasureRecords(effort, table);
    if (wants("dialogs")) bench::MeasureDialogs(scene, effort, table);
    if (wants("processes")) bench::MeasureProcessList(effort, table);
    if (wants("size")) bench::MeasureSize(scene, table);
    if (wants("memory")) bench::MeasureMemory(scene, effort, table);
    table.Print();
}

}  // namespace

int main(int count, char** arguments) {
    try {
        Run({arguments + 1, arguments + count});
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
