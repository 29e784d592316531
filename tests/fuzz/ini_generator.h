// Contents for Quon.ini as no sensible program writes them: a file of ours with strange records, doubled and
// cut sections, huge values, control characters and halves of characters, then bytes changed at random.
//
//     IniGenerator generator(seed, {"C:\\folder\\a.txt"});
//     folder.WriteIniText(generator.Next());
//
// The same seed gives the same contents.
#pragma once

#include <cstdint>
#include <random>
#include <string>
#include <vector>

namespace testkit {

class IniGenerator {
  public:
    /// `targets` are paths that exist, for records to lead to.
    IniGenerator(std::uint32_t seed, std::vector<std::string> targets)
        : random_(seed), targets_(std::move(targets)) {}

    std::string Next();

  private:
    /// True once in `times`.
    bool Once(unsigned times) { return random_() % times == 0; }
    std::size_t Below(std::size_t limit) { return random_() % limit; }
    template <class Choices>
    const auto& OneOf(const Choices& choices) {
        return choices[Below(std::size(choices))];
    }

    std::string Noise(std::size_t longest);
    std::string Name();
    std::string Target();
    std::string Value();
    std::string ButtonRecord();
    std::string Settings();
    std::string Line(const std::string& key, const std::string& value);
    std::string Section(const std::string& name);
    void Damage(std::string& text);

    std::mt19937 random_;
    std::vector<std::string> targets_;
    /// Some of them are used twice, so that records find each other.
    std::vector<std::string> names_;
};

}  // namespace testkit
