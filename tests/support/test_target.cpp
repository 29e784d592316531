#include "tests/support/test_target.h"

#include <sstream>

#include "tests/support/paths.h"
#include "tests/support/wait.h"

namespace testkit {

std::vector<TargetLaunch> LaunchesFromRecord(const std::string& record_path) {
    std::vector<TargetLaunch> launches;
    if (!FileExists(record_path)) return launches;
    std::istringstream lines(FileBytes(record_path));
    std::string line;
    while (std::getline(lines, line)) {
        std::istringstream parts(line);
        std::string process, asked, state;
        TargetLaunch launch;
        std::getline(parts, process, '\t');
        std::getline(parts, asked, '\t');
        std::getline(parts, state, '\t');
        std::getline(parts, launch.work_folder, '\t');
        std::getline(parts, launch.command_line);
        launch.process_id = static_cast<DWORD>(std::stoul(process));
        if (asked == "1") launch.show_state = std::stoi(state);
        launches.push_back(launch);
    }
    return launches;
}

std::vector<TargetLaunch> TargetLaunches(const std::string& target_path) {
    return LaunchesFromRecord(target_path + ".record");
}

std::vector<TargetLaunch> WaitForTargetLaunches(const std::string& target_path, std::size_t count) {
    WaitFor(std::to_string(count) + " launches of " + target_path,
            [&] { return TargetLaunches(target_path).size() >= count; });
    return TargetLaunches(target_path);
}

}  // namespace testkit
