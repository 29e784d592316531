// Another program on the desktop, to copy something in, to stand in the way, or to stop answering.
//
//     Neighbour neighbour(folder, "Сусед.exe", "its title");       // a copy of quon_test_target.exe
//     neighbour.CopyFiles({"C:\\a.txt", "C:\\b.txt"});
//     neighbour.HoldClipboard();
//     neighbour.Hang();
//
// It is ended at once, whatever it does, with this value.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "tests/support/program_folder.h"
#include "tests/support/running_program.h"
#include "tests/support/window.h"

namespace testkit {

class Neighbour {
  public:
    /// Copies the program into the folder under a name, starts it and waits for its window.
    explicit Neighbour(const ProgramFolder& folder, const std::string& name = "neighbour.exe",
                       const std::string& title = "Neighbour");
    ~Neighbour() { program_.Terminate(); }
    Neighbour(const Neighbour&) = delete;
    Neighbour& operator=(const Neighbour&) = delete;

    const std::string& Path() const { return path_; }
    Window MainWindow() const { return window_; }

    /// Puts a text on the clipboard, as often as wanted, one behind the other.
    void CopyText(const std::string& text, unsigned times = 1) const;
    void CopyFiles(const std::vector<std::string>& paths) const;
    /// Keeps the clipboard open until it lets it go.
    void HoldClipboard() const;
    void LetClipboardGo() const;
    /// Answers no message any more. Returns when it has stopped.
    void Hang() const;

  private:
    void Order(ULONG_PTR order, const std::wstring& data) const;

    std::string path_;
    RunningProgram program_;
    Window window_;
};

}  // namespace testkit
