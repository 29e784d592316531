// Keeps the books on what this program takes from Windows and has to give back.
//
//     ResourceLedger ledger;
//     ...
//     EXPECT_THAT(ledger.Open(), IsEmpty());           // "CreateSolidBrush 2": two brushes are still there
//
// It replaces the functions that hand out and take back icons, menus, drawing objects, device contexts,
// kernel objects, listings, registry keys, locked and shell memory. What Windows itself takes over on success
// (a submenu, a window's region) counts as given back. No process is started: it gets two other handles.
// Of several fakes of one function only the last one made is reached, so make this one last.
#pragma once

#include "tests/support/unit_test.h"

namespace faults {

class ResourceLedger {
  public:
    ResourceLedger();

    /// The functions whose results are still open, each with their number.
    std::vector<std::string> Open() const;

  private:
    enum class Kind { kGdi, kDc, kMenu, kIcon, kKernel, kListing, kKey, kLock, kMemory };

    template <class Handle>
    Handle Take(Kind kind, const char* function, Handle handle);
    template <class Handle>
    void GiveBack(Kind kind, Handle handle);
    void RecordDrawing();
    void RecordDeviceContexts();
    void RecordMenus();
    void RecordIcons();
    void RecordKernel();
    void RecordShell();

    std::map<std::pair<Kind, std::uintptr_t>, std::vector<std::string>> open_;
    testkit::RecordedCalls fakes_;
};

}  // namespace faults
