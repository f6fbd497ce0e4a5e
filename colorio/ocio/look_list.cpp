#include "colorio/ocio/look_list.h"

#include <algorithm>

#include "colorio/ocio/trimmed_text.h"

namespace ocio {

namespace {

/// The pieces of `text` between separators, trimmed.
std::vector<std::string_view> split(std::string_view text, std::string_view separators) {
    std::vector<std::string_view> pieces;
    while (true) {
        const std::size_t end = text.find_first_of(separators);
        pieces.push_back(trim(text.substr(0, end)));
        if (end == std::string_view::npos)
            return pieces;
        text.remove_prefix(end + 1);
    }
}

std::vector<LookStep> steps_of(std::string_view alternative) {
    std::vector<LookStep> steps;
    for (std::string_view piece : split(alternative, ",:")) {
        const bool inverse = !piece.empty() && piece.front() == '-';
        if (inverse || (!piece.empty() && piece.front() == '+'))
            piece.remove_prefix(1);
        if (!piece.empty())
            steps.push_back({std::string(trim(piece)), inverse});
    }
    return steps;
}

} // namespace

std::vector<std::vector<LookStep>> look_alternatives(std::string_view list) {
    std::vector<std::vector<LookStep>> alternatives;
    for (const std::string_view alternative : split(list, "|"))
        alternatives.push_back(steps_of(alternative));
    return alternatives;
}

std::vector<LookStep> all_look_steps(std::string_view list) {
    std::vector<LookStep> all;
    if (list.empty())
        return all;
    for (std::vector<LookStep>& steps : look_alternatives(list))
        std::move(steps.begin(), steps.end(), std::back_inserter(all));
    return all;
}

} // namespace ocio
