#include "app/panel_state.h"

#include <algorithm>
#include <utility>

#include "config/settings.h"
#include "model/storable_name.h"
#include "win/errors.h"
#include "win/text.h"

namespace app {
namespace {

size_t Slot(int index, int count, const char* what) {
    if (index < 1 || index > count)
        throw win::SubscriptError("There is no " + std::string(what) + " " + std::to_string(index));
    return static_cast<size_t>(index) - 1;
}

}  // namespace

model::CButtonShortcut& PanelState::Button(int index) {
    auto& button = ButtonShortcuts.at(Slot(index, model::kButtonCount, "button"));
    if (!button) button = std::make_unique<model::CButtonShortcut>(Context, RefillList);
    return *button;
}

model::clsTab& PanelState::Tab(int number) {
    auto& tab = tabs_.at(Slot(number, model::kTabCount, "tab"));
    if (!tab) tab = std::make_unique<model::clsTab>(number);
    return *tab;
}

model::ButtonPlace PanelState::CurrentPlace() const {
    static_cast<void>(Slot(Context.CurrentButtonIndex, model::kButtonCount, "button"));
    return model::ButtonPlace::Parse(Context.CurrentButtonKey);
}

model::ButtonPlace PanelState::ShownPlace(int index) {
    static_cast<void>(Slot(index, model::kButtonCount, "button"));
    return {config::Settings.CurrentTab, index};
}

void PanelState::Select(const model::ButtonPlace& place) {
    if (place.tab == config::Settings.CurrentTab) Context.Select(place.slot);
}

model::CButtonShortcut* PanelState::ShownAt(const model::ButtonPlace& place) {
    return place.tab == config::Settings.CurrentTab ? &Button(place.slot) : nullptr;
}

bool PanelState::Follow(model::MovedFile file) {
    std::erase_if(Context.Moved, [&](const auto& moved) { return moved.place == file.place; });
    if (Store().Follow(file)) return true;
    // That would fail as often as it is tried.
    if (!model::IsStorableTarget(file.path)) return false;
    Context.Moved.push_back(std::move(file));
    if (StoreAgainSoon) StoreAgainSoon();
    return false;
}

void PanelState::StoreMoved() {
    std::vector<std::string> changed;
    for (model::MovedFile& file : std::exchange(Context.Moved, {})) {
        if (Context.Records.At(file.place.Key()) != file.record) continue;
        const std::vector<std::string> names{file.name, file.path};
        if (Follow(std::move(file))) changed.insert(changed.end(), names.begin(), names.end());
    }
    if (!changed.empty()) ShowChanged(changed);
}

void PanelState::RefreshNamed(const std::vector<std::string>& names,
                              const std::optional<model::ButtonPlace>& place) {
    TipButton = 0;
    std::vector<model::CButtonShortcut::Refresh> refreshes;
    for (int slot = 1; slot <= model::kButtonCount; ++slot) {
        const model::ButtonPlace here{config::Settings.CurrentTab, slot};
        model::CButtonShortcut& button = Button(slot);
        const bool carries =
            !button.IsFree() && std::any_of(names.begin(), names.end(), [&](const auto& name) {
                return win::EqualIgnoringCase(button.Naziv, name);
            });
        if (carries || here == place) refreshes.push_back({&button, here.Key()});
    }
    model::CButtonShortcut::RefreshButtons(refreshes);
}

void PanelState::ShowChanged(const std::vector<std::string>& names,
                             const std::optional<model::ButtonPlace>& place) {
    RefreshNamed(names, place);
    if (RefillList) RefillList();
}

}  // namespace app
