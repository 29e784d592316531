// Another program that something is dragged from: quon_test_drag_source.exe.
//
//     DragSource source(folder);
//     EXPECT_EQ(source.Drop({.files = {path}}, quon.Button(3).Centre()), DROPEFFECT_COPY);
//
// It is a true drag: the mouse goes down in the source's window, glides to the target and is let go there,
// and the data are fetched out of the other process.
#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <vector>

#include "tests/support/program_folder.h"
#include "tests/support/running_program.h"
#include "tests/support/window.h"

namespace testkit {

/// What is dragged; with neither text nor files, something that only the source understands.
struct DragOffer {
    std::vector<std::string> files = {};
    std::optional<std::string> text = {};
    /// The DROPEFFECT_... that the source allows, added.
    DWORD effects = 7;
};

class DragSource {
  public:
    /// Starts the program; its window stands at the screen's lower left.
    explicit DragSource(const ProgramFolder& folder);

    /// Drags and drops; returns the effect that the target has answered as soon as the source goes on. A
    /// question that the target may ask is then still open.
    DWORD Drop(const DragOffer& offer, POINT target);

    Window SourceWindow() const { return window_; }

  private:
    const ProgramFolder& folder_;
    RunningProgram program_;
    Window window_;
};

}  // namespace testkit
