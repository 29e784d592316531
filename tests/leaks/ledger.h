// What the code under test has got from Windows and not given back, counted at the calls themselves: Wine's
// own counters know nothing of icons, menus, registry keys or references.
//
//     Ledger ledger;                            // on top of all other fakes: it lets every call through
//     const Ledger::Counts before = ledger.Held();
//     ...
//     EXPECT_EQ(ledger.Held(), before);         // {{"icon", 2}, {"registry key", 1}}
//
// A fake that a test puts on top of the ledger hands out things of its own: it makes them by calls that the
// ledger sees, or says so with Take and Give.
// Besides what is missing at the end, it counts what Windows would forgive or keep silently: a thing that is
// given back twice, and a drawing object deleted while a device context holds it, which Windows does not
// delete at all.
#pragma once

#include <objidl.h>

#include "tests/support/unit_test.h"

namespace leaks {

/// Things of one sort, by the function that gives them back.
class Account {
  public:
    using Thing = std::uintptr_t;

    /// `exists` tells what has gone without having been given back, as a window's timers do with the window.
    explicit Account(const char* name, bool (*exists)(Thing) = nullptr) : name_(name), exists_(exists) {}

    void Take(const char* kind, Thing thing);
    /// The same for what can be there only once, like a timer that is set anew.
    void TakeOnce(const char* kind, Thing thing);
    /// The same where Wine may answer with one thing of its own again and again, which is never really given
    /// back.
    void TakeUnlessShared(const char* kind, Thing thing);
    void Give(Thing thing);
    bool Has(Thing thing) const { return held_.contains(thing); }
    /// Forgets what is gone without having been given back.
    void Prune();
    void AddTo(std::map<std::string, long>& counts) const;

  private:
    const char* name_;
    bool (*exists_)(Thing);
    std::multimap<Thing, const char*> held_;
    std::set<Thing> shared_;
    long strays_ = 0;
};

class Ledger {
  public:
    using Counts = std::map<std::string, long>;

    Ledger();
    ~Ledger();
    Ledger(const Ledger&) = delete;
    Ledger& operator=(const Ledger&) = delete;

    /// How many of each kind are held; a kind of which nothing is held is left out.
    Counts Held();

    /// Call it when everything should have been given back. Lets go of the COM objects that have been created
    /// since the last call; one that has other references stays counted for good.
    void Settle();

    /// For a test's own fakes: something of this kind has been handed out, or given back.
    void Take(const char* kind) { others_[kind] += 1; }
    void Give(const char* kind) { others_[kind] -= 1; }

  private:
    template <class Fakes>
    void Makes(Account& account, const char* kind);
    template <class Fakes, class Success>
    void Ends(Account& account, Success succeeded);
    template <class Fakes>
    void EndsUnlessNull(Account& account);
    template <class Fakes>
    void EndsWithZero(Account& account);

    void RecordIconsAndMenus();
    void RecordDrawing();
    void RecordDeviceContexts();
    void RecordKernelObjects();
    void RecordWindowParts();
    void RecordMemory();
    void RecordOle();
    HRESULT Create(REFCLSID type, LPUNKNOWN outer, DWORD context, REFIID id, LPVOID* object);
    void Select(HDC dc, HGDIOBJ object);
    bool IsSelected(HGDIOBJ object) const;
    Account icons_{"icon"};
    Account menus_;
    Account drawing_{"drawing object"};
    Account memoryDcs_{"memory device context"};
    Account windowDcs_{"window's device context"};
    Account paints_{"paint"};
    Account kernel_{"kernel object"};
    Account searches_{"file search"};
    Account keys_{"registry key"};
    Account timers_;
    Account subclasses_;
    Account hooks_{"hook"};
    Account eventHooks_{"event hook"};
    Account dropTargets_{"drop target"};
    Account shellMemory_{"shell memory"};
    Account global_{"global memory"};
    Account locks_{"lock on global memory"};
    Account texts_{"automation text"};
    Account dispatches_{"automation object"};
    std::map<const char*, long> others_;
    /// What each device context holds, by the object's type.
    std::map<HDC, std::map<DWORD, HGDIOBJ>> selected_;
    long deletedWhileSelected_ = 0;
    /// COM objects that the ledger has a reference to until it asks how many others there are.
    std::vector<IUnknown*> objects_;
    long objectsHeld_ = 0;
    testkit::RecordedCalls calls_;
};

}  // namespace leaks
