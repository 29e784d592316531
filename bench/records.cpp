#include <windows.h>

#include <algorithm>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "bench/benchmarks.h"
#include "config/ini.h"
#include "tests/support/program_folder.h"
#include "tests/support/scoped_ini_path.h"

namespace bench {
namespace {

constexpr const char* kSection = "Cuts";
constexpr int kRecords = 1000;
constexpr int kRemovals = 11;

using Records = std::vector<std::pair<std::string, std::string>>;

Records ManyRecords() {
    Records records;
    for (int number = 0; number < kRecords; ++number)
        records.emplace_back("App" + std::to_string(number), "C:\\a");
    return records;
}

void WriteRecords(const testkit::ProgramFolder& folder, const Records& records) {
    std::string text = "[Cuts]\r\n";
    for (const auto& [key, value] : records)
        text.append(key).append("=").append(value).append("\r\n");
    folder.WriteIniText(text);
}

/// The floor of a removal: the section emptied, and every other record written again.
void RemoveBare(const Records& records, size_t doomed, const std::string& path) {
    WritePrivateProfileSectionA(kSection, "\0", path.c_str());
    for (size_t index = 0; index < records.size(); ++index)
        if (index != doomed)
            WritePrivateProfileStringA(kSection, records[index].first.c_str(), records[index].second.c_str(),
                                       path.c_str());
}

}  // namespace

void MeasureRecords(const Effort& effort, Table& table) {
    const Records records = ManyRecords();
    const testkit::ProgramFolder quon;
    const testkit::ProgramFolder bare;
    const testkit::ScopedIniPath path(quon.IniPath());
    WriteRecords(quon, records);
    WriteRecords(bare, records);
    const std::string barePath = bare.IniPath();

    std::vector<double> quonStores;
    std::vector<double> bareStores;
    for (int store = 0; store < effort.listFills; ++store) {
        const std::string value = std::to_string(store);
        quonStores.push_back(Time([&] { config::WriteIni(kSection, "App500", value); }));
        bareStores.push_back(
            Time([&] { WritePrivateProfileStringA(kSection, "App500", value.c_str(), barePath.c_str()); }));
    }
    const std::string others = std::to_string(kRecords) + " records";
    table.Add("storing one of " + others + ", median", "ms", Median(quonStores), Median(bareStores), "");

    std::vector<double> quonRemovals;
    std::vector<double> bareRemovals;
    for (int removal = 0; removal < std::min(effort.dialogs, kRemovals); ++removal) {
        WriteRecords(quon, records);
        WriteRecords(bare, records);
        quonRemovals.push_back(Time([&] { config::RemoveRecord(kSection, "App500"); }));
        bareRemovals.push_back(Time([&] { RemoveBare(records, kRecords / 2, barePath); }));
        if (quon.IniBytes() != bare.IniBytes())
            throw std::runtime_error("The floor leaves another file: it does not do the same work");
    }
    table.Add("removing one of " + others + ", median", "ms", Median(quonRemovals), Median(bareRemovals), "");
}

}  // namespace bench
