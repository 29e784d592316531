// Does something again and again, and expects this program to hold afterwards what it held before.
//
//     class TabLeakTest : public PanelLeakTest {};
//     TEST_F(TabLeakTest, SwitchingKeepsNothing) { Repeat([this] { ShowTab(2); ShowTab(1); }); }
//
// The first rounds are warm-up: caches fill. After the last one every counter is what it was after them: what
// the ledger has recorded (ledger.h), this thread's windows, the process's drawing objects and kernel
// handles, and the blocks and bytes on the heap. A few rounds at every test; the long form is
//
//     QUON_LEAK_ROUNDS=1000 scripts/test -L leaks
//
// in which the memory of the process may not grow by a hundred bytes a round either.
#pragma once

#include "tests/leaks/ledger.h"
#include "tests/support/unit_test.h"

namespace leaks {

class LeakTest : public testing::Test {
  protected:
    /// Begins to record calls. Call it after all other fakes have been made: the ledger has to lie on top of
    /// them.
    void StartLedger() { ledger_ = std::make_unique<Ledger>(); }
    Ledger& Calls() { return *ledger_; }

    /// Runs `round` as often as wanted and compares; in the long form `times` times as often.
    void Repeat(const std::function<void()>& round, int times = 1);

    /// Windows' own part of a round, without the product: the memory that it costs is not the product's.
    /// Under Wine each text of a dialog (a static control of Common Controls 6) leaves a block behind.
    std::function<void()> bare_;

    /// Runs after each round: what a scenario's fakes have written down is thrown away here.
    virtual void EndRound() {}

  private:
    void Run(const std::function<void()>& round, int rounds);
    /// Compares once; returns what differs.
    std::string Stretch(const std::function<void()>& round, int rounds);
    struct Growth {
        long memory = 0;  ///< bytes
        long blocks = 0;  ///< on the process's heaps
    };
    Growth GrowthOf(const std::function<void()>& round, int rounds);
    Ledger::Counts Count();

    std::unique_ptr<Ledger> ledger_;
};

}  // namespace leaks
