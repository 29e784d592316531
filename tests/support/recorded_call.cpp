#include "tests/support/recorded_call.h"

#include <cstring>
#include <stdexcept>
#include <string>
#include <utility>

#include "tests/support/text.h"

namespace testkit::recorded_call_internal {
namespace {

/// The running executable, by offsets from its start as its headers give them.
class Image {
  public:
    Image() : base_(reinterpret_cast<BYTE*>(GetModuleHandleW(nullptr))) {}

    template <class Record>
    Record* At(DWORD offset) const {
        return reinterpret_cast<Record*>(base_ + offset);
    }

    IMAGE_IMPORT_DESCRIPTOR* Imports() const {
        const auto* dos = At<IMAGE_DOS_HEADER>(0);
        const auto* headers = At<IMAGE_NT_HEADERS>(static_cast<DWORD>(dos->e_lfanew));
        const auto& directory = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
        if (directory.VirtualAddress == 0) throw std::runtime_error("testkit: a program without imports");
        return At<IMAGE_IMPORT_DESCRIPTOR>(directory.VirtualAddress);
    }

  private:
    BYTE* base_;
};

/// All places in this program's import table that hold `name`, from whichever library.
/// Throws std::runtime_error when there is none.
std::vector<AnyFunction*> ImportSlots(const char* name) {
    const Image image;
    std::vector<AnyFunction*> slots;
    for (auto* library = image.Imports(); library->Name != 0; ++library) {
        // The loader has put addresses into the second table; the names survive in the first one only.
        if (library->OriginalFirstThunk == 0) continue;
        const auto* names = image.At<IMAGE_THUNK_DATA>(library->OriginalFirstThunk);
        auto* addresses = image.At<IMAGE_THUNK_DATA>(library->FirstThunk);
        for (; names->u1.AddressOfData != 0; ++names, ++addresses) {
            if (IMAGE_SNAP_BY_ORDINAL(names->u1.Ordinal)) continue;
            const auto* import = image.At<IMAGE_IMPORT_BY_NAME>(static_cast<DWORD>(names->u1.AddressOfData));
            if (std::strcmp(reinterpret_cast<const char*>(import->Name), name) != 0) continue;
            slots.push_back(reinterpret_cast<AnyFunction*>(&addresses->u1.Function));
        }
    }
    if (slots.empty()) {
        throw std::runtime_error(std::string("testkit: nothing in this test program imports ") + name +
                                 ", so it cannot be faked. Is the code that calls it linked in?");
    }
    return slots;
}

/// Writes `function` into a place of the import table, which is read-only otherwise.
void WriteSlot(AnyFunction* slot, AnyFunction function) {
    DWORD before = 0;
    if (!VirtualProtect(slot, sizeof *slot, PAGE_READWRITE, &before)) ThrowWindowsError("VirtualProtect");
    *slot = function;
    VirtualProtect(slot, sizeof *slot, before, &before);
}

}  // namespace

RecordedCall FakeStack::Add(std::unique_ptr<Fake> fake, AnyFunction enter) {
    const std::shared_ptr<Fake> shared = std::move(fake);
    const std::scoped_lock lock(mutex_);
    if (fakes_.empty()) {
        const std::vector<AnyFunction*> slots = ImportSlots(name_);
        original_ = *slots.front();
        for (AnyFunction* slot : slots)
            WriteSlot(slot, enter);
    }
    fakes_.push_back(shared);
    return RecordedCall([this, shared] { Remove(shared); });
}

std::shared_ptr<Fake> FakeStack::Top() {
    const std::scoped_lock lock(mutex_);
    return fakes_.empty() ? nullptr : fakes_.back();
}

AnyFunction FakeStack::Original() {
    const std::scoped_lock lock(mutex_);
    // A call may still be on its way through a fake that has gone meanwhile.
    return original_ != nullptr ? original_ : *ImportSlots(name_).front();
}

void FakeStack::Remove(const std::shared_ptr<Fake>& fake) {
    const std::scoped_lock lock(mutex_);
    std::erase(fakes_, fake);
    if (!fakes_.empty()) return;
    for (AnyFunction* slot : ImportSlots(name_))
        WriteSlot(slot, original_);
}

}  // namespace testkit::recorded_call_internal
