#include "workflow/correction_text.h"

#include <charconv>
#include <cmath>
#include <set>

#include <fmt/format.h>

#include "diagnostics/failure.h"

namespace workflow {

namespace {

using diagnostics::Code;
using diagnostics::fail;

std::vector<std::string_view> split(std::string_view text, char separator) {
    std::vector<std::string_view> parts;
    for (std::size_t end; (end = text.find(separator)) != std::string_view::npos; text.remove_prefix(end + 1))
        parts.push_back(text.substr(0, end));
    parts.push_back(text);
    return parts;
}

void parse_triple(std::string_view text, const char* name, float (&values)[3]) {
    const std::vector<std::string_view> parts = split(text, ',');
    if (parts.size() != std::size(values))
        fail(Code::USAGE, fmt::format("{} takes three comma-separated numbers, not '{}'", name, text));
    for (std::size_t i = 0; i < parts.size(); ++i)
        values[i] = require_number(parts[i]);
}

} // namespace

std::optional<float> parse_number(std::string_view text) {
    if (!text.empty() && text.front() == '+')
        text.remove_prefix(1);
    // Through double, so that numbers too small for a float become 0 instead of an error.
    double value = 0.0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size() || text.front() == '+')
        return std::nullopt;
    const float result = static_cast<float>(value);
    return std::isfinite(result) ? std::optional(result) : std::nullopt;
}

float require_number(std::string_view text) {
    if (const auto value = parse_number(text))
        return *value;
    fail(Code::USAGE, fmt::format("'{}' is not a number", text));
}

std::string format_number(float value) {
    return fmt::format("{}", value);
}

double shorten(float value) {
    double result = 0.0;
    const std::string text = format_number(value);
    std::from_chars(text.data(), text.data() + text.size(), result);
    return result;
}

std::string format_triple(const float (&values)[3]) {
    return fmt::format("{} {} {}", values[0], values[1], values[2]);
}

std::string format_numbers(const Correction& correction) {
    return fmt::format("slope {}, offset {}, power {}, saturation {}", format_triple(correction.slope),
                       format_triple(correction.offset), format_triple(correction.power),
                       correction.saturation);
}

Correction parse_numbers(const std::string& text) {
    const std::vector<std::string_view> parts = split(text, '/');
    if (parts.size() != 4)
        fail(Code::USAGE,
             fmt::format("invalid CDL values '{}'; expected SLOPE/OFFSET/POWER/SATURATION", text));
    Correction correction;
    parse_triple(parts[0], "slope", correction.slope);
    parse_triple(parts[1], "offset", correction.offset);
    parse_triple(parts[2], "power", correction.power);
    correction.saturation = require_number(parts[3]);
    if (const std::string problem = find_invalid_number(correction); !problem.empty())
        fail(Code::USAGE, fmt::format("invalid CDL '{}': {}", text, problem));
    return correction;
}

Correction parse_named_numbers(const std::string& text) {
    // The last '=': names may contain one, numbers cannot.
    const std::size_t sign = text.rfind('=');
    if (sign == std::string::npos || sign == 0)
        fail(Code::USAGE, fmt::format("invalid CDL '{}'; expected NAME=SLOPE/OFFSET/POWER/SATURATION", text));
    Correction correction = parse_numbers(text.substr(sign + 1));
    correction.id = text.substr(0, sign);
    return correction;
}

std::vector<Correction> parse_named_numbers(const std::vector<std::string>& texts) {
    const std::string reserved = ColorIOManager::s_default_CDL_name.get_data();
    std::vector<Correction> corrections;
    std::set<std::string> names;
    for (const std::string& text : texts) {
        const Correction& correction = corrections.emplace_back(parse_named_numbers(text));
        if (!names.insert(correction.id).second)
            fail(Code::USAGE, fmt::format("the color correction '{}' is given twice", correction.id));
        if (correction.id == reserved)
            fail(Code::USAGE,
                 fmt::format("the name '{}' is reserved for the CDL that changes nothing", reserved));
    }
    return corrections;
}

std::optional<std::array<float, 4>> parse_color(const std::string& text) {
    std::array<float, 4> color = {0, 0, 0, 1};
    const std::vector<std::string_view> parts = split(text, ',');
    if (parts.size() < 3 || parts.size() > color.size())
        return std::nullopt;
    for (std::size_t i = 0; i < parts.size(); ++i) {
        const std::optional<float> number = parse_number(parts[i]);
        if (!number)
            return std::nullopt;
        color[i] = *number;
    }
    return color;
}

} // namespace workflow
