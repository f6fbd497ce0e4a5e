#include "workflow/context_variables.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include <fmt/format.h>

#include "colorio/color_io_context.h"
#include "diagnostics/failure.h"

namespace workflow {

namespace {

using diagnostics::Code;

/// Name and value of "SHOT=sq010".
std::pair<std::string, std::string> parse_variable(const std::string& text) {
    const std::size_t sign = text.find('=');
    if (sign == std::string::npos || sign == 0)
        diagnostics::fail(Code::USAGE, fmt::format("'{}' is not a context variable KEY=VALUE", text),
                          "example: SHOT=sq010");
    return {text.substr(0, sign), text.substr(sign + 1)};
}

} // namespace

void set_context(const std::vector<std::string>& context) {
    CoreVector<ColorIOContext::Variable> variables;
    for (const std::string& text : context) {
        const auto [name, value] = parse_variable(text);
        variables.append({name.c_str(), value.c_str()});
    }
    ColorIOContext::set_variables(variables);
}

diagnostics::Diagnostics find_unused_variables(const std::vector<std::string>& context,
                                               const std::string& config_name) {
    diagnostics::Diagnostics warnings;
    for (const std::string& text : context) {
        const std::string name = parse_variable(text).first;
        if (!ColorIOContext::is_used(name.c_str()))
            warnings.push_back(diagnostics::make_warning(
                Code::CONFIG_VARIABLE,
                fmt::format("{} does not use the context variable '{}'", config_name, name), name));
    }
    return warnings;
}

std::vector<std::string> merge_contexts(const std::vector<std::string>& context,
                                        const std::vector<std::string>& others) {
    std::vector<std::string> merged;
    const auto is_replaced = [&](const std::string& text) {
        const std::string name = parse_variable(text).first;
        return std::any_of(others.begin(), others.end(),
                           [&](const std::string& other) { return parse_variable(other).first == name; });
    };
    std::remove_copy_if(context.begin(), context.end(), std::back_inserter(merged), is_replaced);
    merged.insert(merged.end(), others.begin(), others.end());
    return merged;
}

} // namespace workflow
