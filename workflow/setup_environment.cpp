#include "workflow/setup_environment.h"

#include <algorithm>
#include <cstdlib>
#include <string_view>

#include <unistd.h>

#include <fmt/format.h>

#include "diagnostics/failure.h"
#include "workflow/nearest_names.h"

namespace workflow {

namespace {

using diagnostics::Code;
using Problem = std::optional<diagnostics::Diagnostic>;

constexpr std::string_view PREFIXES[] = {"OCIO_", "COLORIO_", "XDG_"};
constexpr std::string_view OWN_PREFIX = "COLORIO_";
const std::vector<std::string> OTHERS = {
    "OCIO", "HOME", "TMPDIR", "LANG", "DISPLAY", "WAYLAND_DISPLAY", "LD_LIBRARY_PATH", "LD_PRELOAD"};
const std::vector<std::string> OWN = {"COLORIO_FAST_PATH", "COLORIO_READ_IN_PROCESS"};

bool begins_with(std::string_view text, std::string_view prefix) {
    return text.substr(0, prefix.size()) == prefix;
}

bool contains(const std::vector<std::string>& names, const std::string& name) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

bool is_relevant(const std::string& name) {
    return contains(OTHERS, name) || std::any_of(std::begin(PREFIXES), std::end(PREFIXES),
                                                 [&](auto prefix) { return begins_with(name, prefix); });
}

Problem find_problem(const std::string& name, const std::string& value) {
    if (begins_with(name, OWN_PREFIX) && !contains(OWN, name))
        return with_hint(make_warning(Code::USAGE, fmt::format("{} has no effect: unknown variable", name)),
                         did_you_mean(name, OWN));
    if (name == "COLORIO_FAST_PATH" && value == "0")
        return with_hint(
            make_warning(Code::USAGE, "the SIMD code is disabled; conversions are several times slower"),
            "unset COLORIO_FAST_PATH");
    if (name == "COLORIO_READ_IN_PROCESS" && value == "1")
        return with_hint(make_warning(Code::USAGE, "a damaged image can crash the program that reads it"),
                         "unset COLORIO_READ_IN_PROCESS");
    const bool is_folder = name == "XDG_CONFIG_HOME" || name == "XDG_CACHE_HOME";
    if (is_folder && !value.empty() && value.front() != '/')
        return with_hint(make_warning(Code::USAGE, fmt::format("{} is ignored: '{}' is not an absolute path",
                                                               name, value)),
                         fmt::format("set {} to an absolute path, or unset it", name));
    if (name == "OCIO" && value.empty())
        return with_hint(make_warning(Code::USAGE, "OCIO is empty, which means the same as not set"),
                         "unset OCIO");
    return {};
}

} // namespace

SetupSection examine_environment() {
    SetupSection section{"environment", {}};
    for (char** variable = environ; variable && *variable; ++variable) {
        const std::string text = *variable;
        const std::size_t end = std::min(text.find('='), text.size());
        const std::string name = text.substr(0, end), value = text.substr(std::min(end + 1, text.size()));
        if (is_relevant(name))
            section.items.push_back({name, value, find_problem(name, value)});
    }
    std::sort(section.items.begin(), section.items.end(),
              [](const SetupItem& a, const SetupItem& b) { return a.name < b.name; });
    return section;
}

} // namespace workflow
