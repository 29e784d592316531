#include "tests/leaks/leak_test.h"

#include <psapi.h>
#include <winternl.h>

#include <algorithm>
#include <chrono>
#include <iostream>
#include <string>
#include <vector>

#include "tests/leaks/heap_count.h"
#include "tests/support/gdi_table.h"
#include "tests/support/paths.h"
#include "tests/support/wait.h"
#include "win/window.h"

namespace leaks {
namespace {

constexpr int kOrdinaryRounds = 3;
constexpr int kLongForm = 1000;     // rounds from which on the process's memory means something
constexpr int kShortestWarmUp = 2;  // rounds
constexpr long kBytesPerRound = 100;
/// Windows makes a cache larger now and then, and no more for a long time. What leaks grows in every stretch.
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
    counts["drawing object of the process"] = static_cast<long>(testkit::CountGdiTable(GetCurrentProcess()));
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

long LeakTest::BareGrowth(int rounds) {
    if (!bare_) return 0;
    const auto before = static_cast<long>(ProcessMemory());
    Run(bare_, rounds);
    return std::max(0L, static_cast<long>(ProcessMemory()) - before);
}

std::string LeakTest::Stretch(const std::function<void()>& round, int rounds) {
    const auto memoryBefore = static_cast<long>(ProcessMemory());
    Ledger::Counts before = Count();
    // With what has been written down before, and without what will be afterwards.
    const HeapCount heapBefore = CountHeap();
    Run(round, rounds);
    const HeapCount heapAfter = CountHeap();
    const auto memoryAfter = static_cast<long>(ProcessMemory());
    Ledger::Counts after;
    testkit::HappensWithin(kSettleTime, [&] {
        after = Count();
        return after == before;
    });
    AddHeap(heapBefore, before);
    AddHeap(heapAfter, after);
    std::cout << rounds << " rounds: " << after["window"] << " windows, "
              << after["drawing object of the process"] << " drawing objects, "
              << after["kernel handle of the process"] << " kernel handles, " << after["block on the heap"]
              << " blocks of " << after["byte on the heap"] << " bytes; memory grown by "
              << (memoryAfter - memoryBefore) / 1024 << " KB to " << memoryAfter / 1024 << " KB\n";
    std::string difference = Difference(before, after);
    if (rounds < kLongForm) return difference;
    const long bare = BareGrowth(rounds);
    if (memoryAfter - memoryBefore - bare >= kBytesPerRound * rounds)
        difference += "memory: grown by " + std::to_string(memoryAfter - memoryBefore) + " bytes, " +
                      std::to_string(bare) + " of them without the product\n";
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
