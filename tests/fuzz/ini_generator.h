// Contents for Quon.ini as no sensible program writes them: a file of ours with strange records, doubled and
// cut sections, huge values, control characters and halves of characters, then bytes changed at random.
//
//     Dice dice(seed);
//     IniGenerator generator(dice, {"C:\\folder\\a.txt"});
//     folder.WriteIniText(generator.Next());
//     SetText(box, generator.Typed());          // a name of the file's, or one as strange
#pragma once

#include "tests/fuzz/dice.h"

namespace testkit {

class IniGenerator {
  public:
    /// `targets` are paths that exist, for records to lead to.
    IniGenerator(Dice& dice, std::vector<std::string> targets) : dice_(dice), targets_(std::move(targets)) {}

    std::string Next();
    /// A text that a user may put into an edit field, from the clipboard if not by typing: without NULs and
    /// line breaks, and of whole characters.
    std::string Typed();

  private:
    std::string Noise(std::size_t longest);
    std::string Name();
    std::string Target();
    std::string Value();
    std::string ButtonRecord(bool ofTab);
    std::string Settings();
    std::string Line(const std::string& key, const std::string& value);
    std::string Comment();
    std::string Header(const std::string& name);
    std::string Section(const std::string& name);
    std::string HugeSection(const std::string& name);
    std::string Sections();
    void Damage(std::string& text);
    std::string Encoded(const std::string& text);

    Dice& dice_;
    std::vector<std::string> targets_;
    /// Some of them are used twice, so that records find each other.
    std::vector<std::string> names_;
};

}  // namespace testkit
