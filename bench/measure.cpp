#include "bench/measure.h"

#include <algorithm>
#include <cstdio>
#include <utility>

namespace bench {
namespace {

double Milliseconds(const FILETIME& time) {
    constexpr double kTicksPerMillisecond = 10000;
    return static_cast<double>((static_cast<ULONGLONG>(time.dwHighDateTime) << 32) + time.dwLowDateTime) /
           kTicksPerMillisecond;
}

std::string Number(double value) {
    char text[32]{};
    // Times are small and broken, bytes and counts are large and whole.
    std::snprintf(text, sizeof text,
                  value == static_cast<double>(static_cast<long long>(value)) ? "%.0f" : "%.1f", value);
    return text;
}

}  // namespace

double WallTime() {
    LARGE_INTEGER frequency{};
    LARGE_INTEGER now{};
    QueryPerformanceFrequency(&frequency);
    QueryPerformanceCounter(&now);
    return static_cast<double>(now.QuadPart) * 1000 / static_cast<double>(frequency.QuadPart);
}

double ProcessorTime() {
    FILETIME created{};
    FILETIME ended{};
    FILETIME kernel{};
    FILETIME user{};
    GetProcessTimes(GetCurrentProcess(), &created, &ended, &kernel, &user);
    return Milliseconds(kernel) + Milliseconds(user);
}

double Median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

double Fastest(const std::vector<double>& values) { return *std::min_element(values.begin(), values.end()); }

void Table::Add(std::string what, std::string unit, double figure, double floor, std::string aim) {
    rows_.push_back({std::move(what), std::move(unit), figure, floor, true, std::move(aim)});
}

void Table::Add(std::string what, std::string unit, double figure, std::string aim) {
    rows_.push_back({std::move(what), std::move(unit), figure, 0, false, std::move(aim)});
}

void Table::Print() const {
    std::printf("| what | unit | Quon | floor | ratio | aim |\n|---|---|---:|---:|---:|---|\n");
    for (const Row& row : rows_) {
        char ratio[32]{};
        if (row.hasFloor && row.floor > 0) std::snprintf(ratio, sizeof ratio, "%.2f", row.figure / row.floor);
        std::printf("| %s | %s | %s | %s | %s | %s |\n", row.what.c_str(), row.unit.c_str(),
                    Number(row.figure).c_str(), row.hasFloor ? Number(row.floor).c_str() : "", ratio,
                    row.aim.c_str());
    }
}

}  // namespace bench
