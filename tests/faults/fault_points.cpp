#include "tests/faults/fault_points.h"

#include <atomic>

namespace {

/// One function of Windows. The stubs below know the place of the first two fields.
struct FaultPoint {
    const char* name;
    void* const* import;
    std::atomic<unsigned> calls;
};

}  // namespace

// For each function: its record, the pointer that the product takes for its import, and the stub that both
// this pointer and a direct call lead to. The stub says which function it is and goes through the gate.
#define QUON_FAULT_FUNCTION(function)                                       \
    asm(".section .rdata,\"dr\"\n"                                          \
        "1: .asciz \"" #function                                            \
        "\"\n"                                                              \
        ".data\n"                                                           \
        ".balign 8\n"                                                       \
        ".globl quon_fault_point_" #function                                \
        "\n"                                                                \
        "quon_fault_point_" #function ": .quad 1b, __imp_" #function        \
        ", 0\n"                                                             \
        ".globl quon_fault_import_" #function                               \
        "\n"                                                                \
        "quon_fault_import_" #function ": .quad quon_fault_call_" #function \
        "\n"                                                                \
        ".text\n"                                                           \
        ".globl quon_fault_call_" #function                                 \
        "\n"                                                                \
        "quon_fault_call_" #function ": leaq quon_fault_point_" #function   \
        "(%rip), %r10\n"                                                    \
        "jmp quon_fault_gate\n");                                           \
    extern "C" FaultPoint quon_fault_point_##function;
#include "fault_functions.inc"
#undef QUON_FAULT_FUNCTION

// Asks whether the call is to fail, with the caller's arguments kept aside: those in registers lie in the
// places that every caller leaves for them, those in floating-point registers below. Then it either goes on
// to the import as if nothing had been, or returns the answer; whoever calls clears the stack.
asm(".text\n"
    "quon_fault_gate:\n"
    "movq %rcx, 8(%rsp)\n"
    "movq %rdx, 16(%rsp)\n"
    "movq %r8, 24(%rsp)\n"
    "movq %r9, 32(%rsp)\n"
    "subq $0x78, %rsp\n"
    "movups %xmm0, 0x20(%rsp)\n"
    "movups %xmm1, 0x30(%rsp)\n"
    "movups %xmm2, 0x40(%rsp)\n"
    "movups %xmm3, 0x50(%rsp)\n"
    "movq %r10, 0x60(%rsp)\n"
    "movq %r10, %rcx\n"
    "leaq 0x68(%rsp), %rdx\n"
    "call quon_fault_ask\n"
    "movq 0x60(%rsp), %r10\n"
    "testl %eax, %eax\n"
    "jne 1f\n"
    "movups 0x20(%rsp), %xmm0\n"
    "movups 0x30(%rsp), %xmm1\n"
    "movups 0x40(%rsp), %xmm2\n"
    "movups 0x50(%rsp), %xmm3\n"
    "addq $0x78, %rsp\n"
    "movq 8(%rsp), %rcx\n"
    "movq 16(%rsp), %rdx\n"
    "movq 24(%rsp), %r8\n"
    "movq 32(%rsp), %r9\n"
    "movq 8(%r10), %rax\n"
    "jmp *(%rax)\n"
    "1:\n"
    "movq 0x68(%rsp), %rax\n"
    "addq $0x78, %rsp\n"
    "ret\n");

namespace faults {
namespace {

FaultPoint* const kPoints[] = {
#define QUON_FAULT_FUNCTION(function) &quon_fault_point_##function,
#include "fault_functions.inc"
#undef QUON_FAULT_FUNCTION
};

std::atomic<bool> g_counting = false;
std::atomic<bool> g_failed = false;
const FaultPoint* g_failing = nullptr;
unsigned g_failingCall = 0;
bool g_lasting = false;
Failure g_failure;

void Start(const FaultPoint* failing, unsigned call) {
    for (FaultPoint* point : kPoints)
        point->calls = 0;
    g_failing = failing;
    g_failingCall = call;
    g_failed = false;
    g_counting = true;
}

}  // namespace

/// Whether this call fails; its answer then.
extern "C" int quon_fault_ask(FaultPoint* point, std::uint64_t* answer) noexcept {
    if (!g_counting) return 0;
    const unsigned call = ++point->calls;
    if (point != g_failing || call < g_failingCall || (call > g_failingCall && !g_lasting)) return 0;
    g_failed = true;
    SetLastError(g_failure.lastError);
    *answer = g_failure.answer;
    return 1;
}

void FaultPoints::Count() { Start(nullptr, 0); }

void FaultPoints::Fail(const std::string& function, unsigned call, bool lasting) {
    g_lasting = lasting;
    const Failure* failure = FailureOf(function);
    for (const FaultPoint* point : kPoints) {
        if (failure == nullptr || point->name != function) continue;
        g_failure = *failure;
        Start(point, call);
        return;
    }
    throw std::runtime_error("The product has no call that can fail of " + function);
}

std::vector<CalledFunction> FaultPoints::Stop() {
    g_counting = false;
    std::vector<CalledFunction> called;
    for (const FaultPoint* point : kPoints)
        if (point->calls > 0) called.push_back({point->name, point->calls});
    return called;
}

bool FaultPoints::HasFailed() { return g_failed; }

std::vector<std::string> FaultPoints::Functions() {
    std::vector<std::string> names;
    for (const FaultPoint* point : kPoints)
        names.emplace_back(point->name);
    return names;
}

}  // namespace faults
