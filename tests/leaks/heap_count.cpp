#include "tests/leaks/heap_count.h"

#include <malloc.h>

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

std::atomic<std::size_t> g_blocks = 0;
std::atomic<std::size_t> g_bytes = 0;

void* Allocate(std::size_t size) {
    void* block = std::malloc(size == 0 ? 1 : size);
    if (block == nullptr) throw std::bad_alloc();
    ++g_blocks;
    g_bytes += _msize(block);
    return block;
}

void Free(void* block) noexcept {
    if (block == nullptr) return;
    --g_blocks;
    g_bytes -= _msize(block);
    std::free(block);
}

}  // namespace

void* operator new(std::size_t size) { return Allocate(size); }
void* operator new[](std::size_t size) { return Allocate(size); }
void operator delete(void* block) noexcept { Free(block); }
void operator delete[](void* block) noexcept { Free(block); }
void operator delete(void* block, std::size_t) noexcept { Free(block); }
void operator delete[](void* block, std::size_t) noexcept { Free(block); }

namespace leaks {

HeapCount CountHeap() noexcept { return {g_blocks, g_bytes}; }

}  // namespace leaks
