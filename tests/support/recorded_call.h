// Replaces a function of Windows for the time of a test: in this test program alone, without any seam in the
// product's code, which is linked into the test program and calls Windows through its import table.
//
//     std::vector<std::string> opened;
//     RecordedCall shell = FAKE_CALL(ShellExecuteA, [&](HWND, LPCSTR, LPCSTR file, LPCSTR, LPCSTR, INT) {
//         opened.push_back(file);
//         return reinterpret_cast<HINSTANCE>(33);
//     });
//     model::Open("C:\\a.txt");                 // the product's call lands in the lambda
//
// A callable that looks at no argument may leave them out: FAKE_CALL(MoveFileExA, [] { return FALSE; }).
//
// The fake is in force until the RecordedCall is destroyed. Faking a function that is already faked puts the
// new fake on top of the old one; the old one is in force again when the new one goes.
//
// Inside a fake (and anywhere else) ORIGINAL_CALL calls the true function; calling it by its bare name would
// run the fake again:
//
//     RecordedCall read = FAKE_CALL(
//         GetPrivateProfileIntA, [&](LPCSTR section, LPCSTR key, INT value, LPCSTR file) {
//             ++reads;
//             return ORIGINAL_CALL(GetPrivateProfileIntA)(section, key, value, file);
//         });
//
// The commonest fakes have short forms, two of which write to a CallLog (call_log.h), arguments included:
//
//     RecordedCall tick = WATCH_CALL(SetTimer, [&](HWND, UINT_PTR id, UINT, TIMERPROC) { ids.push_back(id);
//     });
//                                                                         // looks and lets the call through
//     RecordedCall dpi = ANSWER_CALL(GetDpiForWindow, 192);               // answers 192, whatever is asked
//     RecordedCall write = LOG_CALL(log, WritePrivateProfileStringA);     // logs and lets the call through
//     RecordedCall box = STUB_CALL(log, MessageBoxA, IDYES);              // logs and answers IDYES
//
// To know before using it:
// - The name must be the exported one: ShellExecuteA, not ShellExecute.
// - A function that nothing in the test program imports cannot be faked: the constructor throws and the test
//   fails, saying so. Product code that uses the function must be linked in (call it from the test).
// - Only calls that go out of this program's own code are caught. What one system library calls in another
//   is not, nor what is fetched with GetProcAddress (fake GetProcAddress then).
// - The compiler may read an import's address once for several calls in one function body. Put the calls
//   under test into functions of their own; product code is that already.
// - Any thread may call a fake. Make and destroy RecordedCalls on one thread only, while nobody calls.
#pragma once

#include <windows.h>

#include <algorithm>
#include <cstddef>
#include <functional>
#include <memory>
#include <mutex>
#include <type_traits>
#include <utility>
#include <vector>

#include "tests/support/call_log.h"

namespace testkit {

/// Owns one fake; its destruction takes the fake away. Move-only; an empty one owns nothing.
class RecordedCall {
  public:
    RecordedCall() = default;
    explicit RecordedCall(std::function<void()> restore) : restore_(std::move(restore)) {}
    RecordedCall(RecordedCall&& other) noexcept : restore_(std::exchange(other.restore_, nullptr)) {}
    RecordedCall& operator=(RecordedCall&& other) noexcept {
        Restore();
        restore_ = std::exchange(other.restore_, nullptr);
        return *this;
    }
    ~RecordedCall() { Restore(); }

    /// Takes the fake away before the end of the scope.
    void Restore() {
        if (const std::function<void()> restore = std::exchange(restore_, nullptr)) restore();
    }

  private:
    std::function<void()> restore_;
};

/// Several fakes that live and go together.
using RecordedCalls = std::vector<RecordedCall>;

namespace recorded_call_internal {

using AnyFunction = void (*)();

/// What takes a function's calls, whatever its signature is.
class Fake {
  public:
    Fake() = default;
    Fake(const Fake&) = delete;
    Fake& operator=(const Fake&) = delete;
    Fake(Fake&&) = delete;
    Fake& operator=(Fake&&) = delete;
    virtual ~Fake() = default;
};

/// The fakes of one imported function, the one in force last. What needs no signature is here, so that the
/// compiler does not make it anew for each function that is faked.
class FakeStack {
  public:
    /// `name` has to live as long as the stack.
    explicit FakeStack(const char* name) noexcept : name_(name) {}

    /// Puts a fake on top. The import table leads to `enter` while there is one. Throws std::runtime_error
    /// when nothing in this program imports the function.
    RecordedCall Add(std::unique_ptr<Fake> fake, AnyFunction enter);

    /// The fake in force; none when all have gone.
    std::shared_ptr<Fake> Top();

    /// The function as Windows has it, whether it is faked now or not.
    AnyFunction Original();

  private:
    void Remove(const std::shared_ptr<Fake>& fake);

    const char* name_;
    std::mutex mutex_;
    std::vector<std::shared_ptr<Fake>> fakes_;
    AnyFunction original_ = nullptr;
};

template <std::size_t Size>
struct FunctionName {
    // NOLINTNEXTLINE(google-explicit-constructor): a text literal is to become a template argument.
    constexpr FunctionName(const char (&name)[Size]) { std::copy_n(name, Size, text); }
    char text[Size] = {};
};

/// The fakes of one imported function by its signature.
template <FunctionName Name, class Signature>
class Fakes;

template <FunctionName Name, class Result, class... Arguments>
class Fakes<Name, Result WINAPI(Arguments...)> {
  public:
    using Function = Result(WINAPI*)(Arguments...);

    template <class Callable>
    static RecordedCall Add(Callable callable) {
        return stack_.Add(std::make_unique<FakeBy<Callable>>(std::move(callable)),
                          reinterpret_cast<AnyFunction>(&Enter));
    }

    static Function Original() { return reinterpret_cast<Function>(stack_.Original()); }

    /// `watcher` sees the arguments before the call.
    template <class Watcher>
    static RecordedCall AddWatched(Watcher watcher) {
        return Add([watcher = std::move(watcher)](Arguments... arguments) mutable -> Result {
            Call(watcher, arguments...);
            return Original()(arguments...);
        });
    }

    template <class Answer>
    static RecordedCall AddAnswer(Answer answer) {
        return Add([answer]() -> Result { return static_cast<Result>(answer); });
    }

    static RecordedCall AddLogged(CallLog& log) {
        return Add([&log](Arguments... arguments) -> Result {
            log.Add(Name.text, arguments...);
            return Original()(arguments...);
        });
    }

    template <class Answer>
    static RecordedCall AddStub(CallLog& log, Answer answer) {
        return Add([&log, answer](Arguments... arguments) -> Result {
            log.Add(Name.text, arguments...);
            return static_cast<Result>(answer);
        });
    }

  private:
    class TypedFake : public Fake {
      public:
        virtual Result Run(Arguments... arguments) = 0;
    };

    template <class Callable>
    class FakeBy final : public TypedFake {
      public:
        explicit FakeBy(Callable callable) : callable_(std::move(callable)) {}
        Result Run(Arguments... arguments) override {
            return static_cast<Result>(Call(callable_, arguments...));
        }

      private:
        Callable callable_;
    };

    /// Calls a callable that takes the arguments, or one that takes none.
    template <class Callable>
    static auto Call(Callable& callable, Arguments... arguments) {
        if constexpr (std::is_invocable_v<Callable&, Arguments...>) {
            return callable(arguments...);
        } else {
            return callable();
        }
    }

    static Result WINAPI Enter(Arguments... arguments) {
        const std::shared_ptr<Fake> top = stack_.Top();
        return top ? static_cast<TypedFake&>(*top).Run(arguments...) : Original()(arguments...);
    }

    static inline FakeStack stack_{Name.text};
};

}  // namespace recorded_call_internal
}  // namespace testkit

#define TESTKIT_FAKES_OF(function) ::testkit::recorded_call_internal::Fakes<#function, decltype(function)>

// The outer brackets let each of these stand inside another macro's argument.
/// FAKE_CALL(function, callable): a RecordedCall that sends this program's calls of `function` to `callable`.
#define FAKE_CALL(function, ...) (TESTKIT_FAKES_OF(function)::Add(__VA_ARGS__))
/// ORIGINAL_CALL(function)(arguments): calls the function of Windows itself.
#define ORIGINAL_CALL(function) (TESTKIT_FAKES_OF(function)::Original())
/// WATCH_CALL(function, callable): calls `callable` with the arguments, then lets the call through.
#define WATCH_CALL(function, ...) (TESTKIT_FAKES_OF(function)::AddWatched(__VA_ARGS__))
/// ANSWER_CALL(function, answer): answers without calling.
#define ANSWER_CALL(function, answer) (TESTKIT_FAKES_OF(function)::AddAnswer(answer))
/// LOG_CALL(log, function): writes name and arguments to the log and lets the call through.
#define LOG_CALL(log, function) (TESTKIT_FAKES_OF(function)::AddLogged(log))
/// STUB_CALL(log, function, answer): writes name and arguments to the log and answers without calling.
#define STUB_CALL(log, function, answer) (TESTKIT_FAKES_OF(function)::AddStub(log, answer))
