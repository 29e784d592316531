// What lies around the panel for a random user: drop targets that have registered, a clipboard, pickers that
// answer, and a shell that moves, renames and deletes files.
//
//     DesktopAround desktop;                       // before the panel is loaded
//     DataObject data;
//     data.OfferText("http://a.example/");
//     desktop.Drop(panel.Window().Child(201), data);
//     desktop.Pick("C:\\folder");                   // what the next pickers answer; "" cancels
#pragma once

#include <objidl.h>
#include <oleidl.h>

#include "tests/support/data_object.h"
#include "tests/support/unit_test.h"
#include "win/com.h"

namespace testkit {

class DesktopAround {
  public:
    DesktopAround();
    ~DesktopAround();
    DesktopAround(const DesktopAround&) = delete;
    DesktopAround& operator=(const DesktopAround&) = delete;

    /// Drops data on a window; nothing happens on one that takes none.
    void Drop(Window window, DataObject& data);
    /// Puts what is offered in this format on the clipboard.
    void Copy(CLIPFORMAT format, DataObject& data);
    /// What the pickers answer from now on.
    void Pick(const std::string& path) { picked_ = path; }

  private:
    void PlayDrops();
    void PlayClipboard();
    void PlayPickers();
    void PlayFileOperations();

    win::OleThread ole_;
    std::map<HWND, IDropTarget*> targets_;
    CLIPFORMAT format_ = 0;
    STGMEDIUM clipboard_{};
    std::string picked_;
    RecordedCalls fakes_;
};

}  // namespace testkit
