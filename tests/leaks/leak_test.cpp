#include "tests/leaks/leak_test.h"

#include <psapi.h>
#include <winternl.h>

#include <iostream>

#include "tests/leaks/heap_count.h"
#include "tests/support/gdi_table.h"
#include "win/window.h"

namespace leaks {
namespace {

constexpr int kOrdinaryRounds = 3;
constexpr int kLongForm = 1000;     // rounds from which on the process's memory means something
constexpr int kShortestWarmUp = 2;  // rounds
/// Wine's own side keeps some twenty bytes for each window that there has been.
constexpr long kBytesPerRound = 400;
/// Windows enlarges a cache now and then, and then not again for a long time. A leak grows in every stretch.
constexpr int kStretches = 3;
/// Other threads of Windows let go of their handles in their own time.
constexpr std::chrono::seconds kSettleTime{1};

int Rounds() {
    const std::string rounds = testkit::EnvironmentValue("QUON_LEAK_ROUNDS");
    return rounds.empty() ? kOrdinaryRounds : std::stoi(rounds);
}

BOOL CALLBACK CountWindow(HWND, LPARAM count) {
    ++*reinterpret_cast<long*>(count);
    return TRUE;
}

BOOL CALLBACK CountWithChildren(HWND window, LPARAM count) {
    CountWindow(window, count);
    EnumChildWindows(window, &CountWindow, count);
    return TRUE;
}

/// This thread's windows, those among them that only get messages too.
long CountWindows() {
    long count = 0;
    EnumThreadWindows(GetCurrentThreadId(), &CountWithChildren, reinterpret_cast<LPARAM>(&count));
    for (HWND window = FindWindowExW(HWND_MESSAGE, nullptr, nullptr, nullptr); window != nullptr;
         window = FindWindowExW(HWND_MESSAGE, window, nullptr, nullptr))
        if (GetWindowThreadProcessId(window, nullptr) == GetCurrentThreadId()) ++count;
    return count;
}

/// Wine does not count a process's handles, but lists those of all processes.
long CountKernelHandles() {
    DWORD counted = 0;
    if (GetProcessHandleCount(GetCurrentProcess(), &counted) != FALSE && counted != 0)
        return static_cast<long>(counted);
    constexpr auto kTooShort = static_cast<NTSTATUS>(0xC0000004);
    std::vector<char> bytes(1 << 16);
    while (NtQuerySystemInformation(SystemHandleInformation, bytes.data(), static_cast<ULONG>(bytes.size()),
                                    nullptr) == kTooShort)
        bytes.resize(bytes.size() * 2);
    const auto* list = reinterpret_cast<const SYSTEM_HANDLE_INFORMATION*>(bytes.data());
    // Not GetCurrentProcessId, which a test may have replaced.
    const DWORD own = GetProcessId(GetCurrentProcess());
    long count = 0;
    for (ULONG index = 0; index < list->Count; ++index)
        count += list->Handle[index].OwnerPid == own;
    return count;
}

std::size_t ProcessMemory() {
    PROCESS_MEMORY_COUNTERS memory{};
    GetProcessMemoryInfo(GetCurrentProcess(), &memory, sizeof memory);
    return memory.WorkingSetSize;
}

/// The blocks on the heaps that Windows' libraries allocate from, ours among them.
long CountHeapBlocks() {
    std::vector<HANDLE> heaps(GetProcessHeaps(0, nullptr));
    heaps.resize(GetProcessHeaps(static_cast<DWORD>(heaps.size()), heaps.data()));
    long blocks = 0;
    for (HANDLE heap : heaps) {
        PROCESS_HEAP_ENTRY entry{};
        while (HeapWalk(heap, &entry) != FALSE)
            blocks += (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0;
    }
    return blocks;
}

void AddHeap(const HeapCount& heap, Ledger::Counts& counts) {
    counts["block on the heap"] = static_cast<long>(heap.blocks);
    counts["byte on the heap"] = static_cast<long>(heap.bytes);
}

/// "icon: 0, then 10", a line each.
std::string Difference(const Ledger::Counts& before, const Ledger::Counts& after) {
    Ledger::Counts all = before;
    all.insert(after.begin(), after.end());
    std::string text;
    for (const auto& [kind, unused] : all) {
        const auto in = [&kind = kind](const Ledger::Counts& counts) {
            const auto found = counts.find(kind);
            return found == counts.end() ? 0L : found->second;
        };
        if (in(before) != in(after))
            text += kind + ": " + std::to_string(in(before)) + ", then " + std::to_string(in(after)) + "\n";
    }
    return text;
}

}  // namespace

Ledger::Counts LeakTest::Count() {
    Ledger::Counts counts = ledger_->Held();
    counts["window"] = CountWindows();
    counts["drawing object of the process"] =
        static_cast<long>(testkit::CountDrawingObjects(GetCurrentProcess()));
    counts["kernel handle of the process"] = CountKernelHandles();
    return counts;
}

void LeakTest::Run(const std::function<void()>& round, int rounds) {
    for (int index = 0; index < rounds && !HasFatalFailure(); ++index) {
        round();
        win::ProcessPendingMessages();
        ledger_->Settle();
        EndRound();
    }
}

LeakTest::Growth LeakTest::GrowthOf(const std::function<void()>& round, int rounds) {
    if (!round) return {};
    const auto memory = static_cast<long>(ProcessMemory());
    const long blocks = CountHeapBlocks();
    Run(round, rounds);
    return {static_cast<long>(ProcessMemory()) - memory, CountHeapBlocks() - blocks};
}

std::string LeakTest::Stretch(const std::function<void()>& round, int rounds) {
    Ledger::Counts before = Count();
    // What the test has written down so far counts, what it will write down below does not.
    const HeapCount heapBefore = CountHeap();
    const Growth growth = GrowthOf(round, rounds);
    // A timer that is about to end has an entry in the ledger.
    testkit::HappensWithin(kSettleTime, [&] { return Count() == before; });
    const HeapCount heapAfter = CountHeap();
    Ledger::Counts after = Count();
    AddHeap(heapBefore, before);
    AddHeap(heapAfter, after);
    std::cout << rounds << " rounds: " << after["window"] << " windows, "
              << after["drawing object of the process"] << " drawing objects, "
              << after["kernel handle of the process"] << " kernel handles, " << after["block on the heap"]
              << " blocks of " << after["byte on the heap"] << " bytes; memory grown by "
              << growth.memory / 1024 << " KB, the process's heaps by " << growth.blocks << " blocks\n";
    std::string difference = Difference(before, after);
    if (rounds < kLongForm) return difference;
    const Growth bare = GrowthOf(bare_, rounds);
    const auto add = [&](const char* what, long grown, long without) {
        difference += std::string(what) + ": grown by " + std::to_string(grown) + ", by " +
                      std::to_string(without) + " of them without the product\n";
    };
    if (growth.memory - std::max(0L, bare.memory) >= kBytesPerRound * rounds)
        add("bytes of memory", growth.memory, bare.memory);
    if (growth.blocks - bare.blocks >= rounds) add("blocks on heaps", growth.blocks, bare.blocks);
    return difference;
}

void LeakTest::Repeat(const std::function<void()>& round, int times) {
    const int rounds = Rounds() * (Rounds() >= kLongForm ? times : 1);
    Run(round, std::max(kShortestWarmUp, rounds / 10));
    std::string difference;
    for (int stretch = 0; stretch < kStretches; ++stretch) {
        difference = Stretch(round, rounds);
        if (difference.empty()) return;
    }
    ADD_FAILURE() << "In each of " << kStretches << " times " << rounds << " rounds, lastly:\n" << difference;
}

}  // namespace leaks
