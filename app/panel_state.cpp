#include "app/panel_state.h"

#include <string>

#include "win/errors.h"

namespace app {
namespace {

size_t Slot(int index, int count, const char* what) {
    if (index < 1 || index > count)
        throw win::SubscriptError("There is no " + std::string(what) + " " + std::to_string(index));
    return static_cast<size_t>(index) - 1;
}

}  // namespace

model::CButtonShortcut& PanelState::Button(int index) {
    auto& button = buttons_.at(Slot(index, model::kButtonCount, "button"));
    if (!button) button = std::make_unique<model::CButtonShortcut>(Context, RefillList);
    return *button;
}

model::clsTab& PanelState::Tab(int number) {
    auto& tab = tabs_.at(Slot(number, model::kTabCount, "tab"));
    if (!tab) tab = std::make_unique<model::clsTab>(number);
    return *tab;
}

}  // namespace app
