#include "model/button_record.h"

#include "config/settings.h"
#include "win/errors.h"
#include "win/text.h"

namespace model {
namespace {

/// The number after the record's last "|"; 0 for one that is no index at all.
std::int32_t IconIndex(const std::string& text) {
    const size_t last = text.rfind('|');
    if (last == std::string::npos) return 0;
    try {
        return config::LeadingNumber(text.substr(last + 1), "an icon index");
    } catch (const win::OverflowError&) {
        return 0;
    }
}

}  // namespace

ButtonRecord ButtonRecord::Parse(const ButtonPlace& place, const std::string& text) {
    return {RecordName(place.Key(), text), IconIndex(text)};
}

std::string RecordName(const std::string& key, const std::string& recordText) {
    return recordText == "Group" ? key : win::Before(recordText, '|');
}

std::string WithName(const std::string& recordText, const std::string& name) {
    return name + "|" + win::After(recordText, '|');
}

}  // namespace model
