// The chances of a fuzz run: the same seed throws the same, on every machine.
//
//     Dice dice(seed);
//     if (dice.Once(3)) text += dice.OneOf(kOddNames);
#pragma once

#include <random>

#include "tests/support/unit_test.h"

namespace testkit {

class Dice {
  public:
    explicit Dice(std::uint32_t seed) : random_(seed) {}

    std::uint32_t Throw() { return static_cast<std::uint32_t>(random_()); }
    /// True once in `times`.
    bool Once(unsigned times) { return random_() % times == 0; }
    /// 0 up to, but not including, `limit`.
    std::size_t Below(std::size_t limit) { return random_() % limit; }
    template <class Choices>
    const auto& OneOf(const Choices& choices) {
        return choices[Below(std::size(choices))];
    }

  private:
    std::mt19937 random_;
};

}  // namespace testkit
