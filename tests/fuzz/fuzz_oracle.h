// What may not change: the records of Quon.ini, read as Windows reads them, before and after a command.
//
//     const Content before = ReadContent();
//     ... the user frees button 12, which holds "Notes" ...
//     ExpectKept(before, ReadContent(), {.buttons = {"12"}, .shortcuts = {Folded("Notes")}});
//
// All records that the command did not name have to be there still. One more thing is allowed: a button whose
// record leads nowhere is freed when its tab is shown, together with a shortcut named by the record's whole
// text.
// A line without a name is no record in this sense, nor is anything in the second of two sections of one
// name, which Windows does not read.
#pragma once

#include "tests/support/unit_test.h"

namespace testkit {

/// By their keys in upper case, in which they are compared. Of two records of one key Windows reads the
/// first.
using Records = std::multimap<std::string, std::string>;

struct Content {
    Records buttons;
    Records cuts;
    Records switches;
    Records collected;
};

/// The keys that a command may change, in upper case.
struct Named {
    std::set<std::string> buttons = {};
    /// In "Cuts" and in "Switch".
    std::set<std::string> shortcuts = {};
    std::set<std::string> collected = {};
    /// Of these shortcuts the targets and the switches may get other names, and stay.
    std::set<std::string> kept = {};
    /// Whatever button the first of these shortcuts is on may get another record.
    bool with_button = false;

    void AddShortcut(const std::string& name);
};

/// A key as it is compared: in upper case, without outer blanks.
std::string Folded(const std::string& key);

/// The sections in full, however long they are.
Content ReadContent();

/// Fails the test for each record that is gone or changed without having been named.
void ExpectKept(const Content& before, const Content& after, const Named& named);

/// Whether "Buttons" has a line that is no record, or a key that is no button's. Work on a shortcut that
/// meets such a line ends with an error.
bool HasImpossibleButton();

}  // namespace testkit
