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

/// The floor of a removal: the section written once, with every other record.
void RemoveBare(const Records& records, size_t doomed, const std::string& path) {
    std::string list;
    for (size_t index = 0; index < records.size(); ++index)
        if (index != doomed)
            list.append(records[index].first).append("=").append(records[index].second).push_back('\0');
    WritePrivateProfileSectionA(kSection, list.c_str(), path.c_str());
}

/// Brings a file to the disk, as a unit of writes does.
void Flush(const std::string& path) {
    const HANDLE file = CreateFileA(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                    OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    FlushFileBuffers(file);
    CloseHandle(file);
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
    std::vector<double> flushedStores;
    for (int store = 0; store < effort.listFills; ++store) {
        const std::string value = std::to_string(store);
        quonStores.push_back(Time([&] { config::WriteIni(kSection, "App500", value); }));
        bareStores.push_back(
            Time([&] { WritePrivateProfileStringA(kSection, "App500", value.c_str(), barePath.c_str()); }));
    }
    for (int store = 0; store < effort.listFills; ++store) {
        const std::string value = std::to_string(store);
        flushedStores.push_back(Time([&] {
            WritePrivateProfileStringA(kSection, "App500", value.c_str(), barePath.c_str());
            Flush(barePath);
        }));
    }
    const std::string others = std::to_string(kRecords) + " records";
    const double stored = Median(quonStores);
    table.Add("storing one of " + others + ", median", "ms", stored, Median(bareStores), "ratio 2.5");
    table.Add("the same, beside the bare call and a flush to the disk", "ms", stored, Median(flushedStores),
              "");
    table.Add("storing one of " + others + ", fastest", "ms", Fastest(quonStores), Fastest(bareStores), "");
    table.Add("the same, beside the bare call and a flush to the disk", "ms", Fastest(quonStores),
              Fastest(flushedStores), "");

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
