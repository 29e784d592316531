#include "tests/support/drag_source.h"

#include "tests/support/drag_source/protocol.h"
#include "tests/support/input.h"
#include "tests/support/paths.h"
#include "tests/support/text.h"
#include "tests/support/wait.h"

namespace testkit {
namespace {

constexpr char kOffer[] = "drag-offer.txt";

std::string Written(const DragOffer& offer) {
    std::string text = std::to_string(offer.effects) + "\n";
    for (const std::string& file : offer.files)
        text += "file " + file + "\n";
    if (offer.text) text += "text\n" + *offer.text;
    return text;
}

}  // namespace

DragSource::DragSource(const ProgramFolder& folder)
    : folder_(folder),
      program_(TestProgramFolder() + "\\quon_test_drag_source.exe",
               {.arguments = "\"" + folder.FullPath(kOffer) + "\"", .work_folder = folder.Path()}),
      window_(program_.WaitForWindow({.class_name = Utf8(drag_source::kClass)})) {}

DWORD DragSource::Drop(const DragOffer& offer, POINT target) {
    folder_.MakeFile(kOffer, Written(offer));
    mouse::MoveTo(window_.Centre());
    mouse::Press();
    WaitFor("the drag begins", [&] { return window_.Text() == Utf8(drag_source::kDragging); });
    mouse::Glide(target);
    mouse::Release();
    const std::string dropped = Utf8(drag_source::kDropped);
    WaitFor("the drag ends", [&] { return window_.Text().starts_with(dropped); });
    return std::stoul(window_.Text().substr(dropped.size()));
}

}  // namespace testkit
