#include "model/button_place.h"

#include "config/settings.h"
#include "win/errors.h"

namespace model {

ButtonPlace ButtonPlace::Parse(const std::string& key) {
    const int number = config::LeadingNumber(key, "a button key");
    const ButtonPlace place{number / 10, number % 10};
    if (place.tab < 1 || place.tab > kTabCount)
        throw win::SubscriptError("No button or tab has the key \"" + key + "\"");
    return place;
}

}  // namespace model
