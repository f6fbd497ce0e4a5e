#include "manual/value_kind.h"

#include <map>

namespace manual {

namespace {

/// Options by their long names; positional arguments by command and name.
const std::map<std::string, ValueKind> KINDS = {
    {"--from", ValueKind::COLOR_SPACE},
    {"--to", ValueKind::COLOR_SPACE},
    {"--space", ValueKind::COLOR_SPACE},
    {"--shaper", ValueKind::COLOR_SPACE},
    {"--view", ValueKind::VIEW},
    {"--second-view", ValueKind::VIEW},
    {"--inverse-view", ValueKind::VIEW},
    {"--display", ValueKind::DISPLAY},
    {"--look", ValueKind::LOOKS},
    {"--named-transform", ValueKind::NAMED_TRANSFORM},
    {"convert input", ValueKind::FILE},
    {"convert output", ValueKind::FILE},
    {"explain source", ValueKind::COLOR_SPACE},
    {"explain destination", ValueKind::COLOR_SPACE},
    {"bake output", ValueKind::FILE},
    {"view images", ValueKind::FILE},
    {"cdl list file", ValueKind::FILE},
    {"cdl show file", ValueKind::FILE},
    {"cdl write file", ValueKind::FILE},
    {"cdl add file", ValueKind::FILE},
    {"cdl remove name", ValueKind::CDL},
    {"formats set category", ValueKind::FORMAT},
    {"formats remove category", ValueKind::FORMAT},
    {"space remove name", ValueKind::CUSTOM_SPACE},
    {"legacy name", ValueKind::COLOR_SPACE},
    {"prefs set key", ValueKind::PREFERENCE},
    {"prefs set value", ValueKind::FILE},
};

/// The names of values in help texts that say what they are.
const std::map<std::string, ValueKind> KINDS_OF_VALUES = {{"FILE", ValueKind::FILE},
                                                          {"FILE[:ID]", ValueKind::FILE},
                                                          {"CONFIG", ValueKind::FILE},
                                                          {"FOLDER", ValueKind::FOLDER},
                                                          {"CDL", ValueKind::CDL}};

} // namespace

ValueKind get_value_kind(const std::string& command, const OptionDescription& option) {
    if (!option.choices.empty())
        return ValueKind::CHOICE;
    for (const std::string& name : option.names)
        if (const auto found = KINDS.find(option.is_positional ? command + " " + name : name);
            found != KINDS.end())
            return found->second;
    const auto found = KINDS_OF_VALUES.find(option.value);
    return found != KINDS_OF_VALUES.end() ? found->second : ValueKind::OTHER;
}

} // namespace manual
