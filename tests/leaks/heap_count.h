#pragma once

#include <cstddef>

namespace leaks {

/// What this program's own code has on the heap: this test program replaces operator new and delete.
struct HeapCount {
    std::size_t blocks = 0;
    std::size_t bytes = 0;  ///< as they were asked for
};

/// The heap as it is now.
HeapCount CountHeap() noexcept;

}  // namespace leaks
