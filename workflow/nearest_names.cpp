#include "workflow/nearest_names.h"

#include <algorithm>
#include <utility>

namespace workflow {

namespace {

constexpr std::size_t MAX_SUGGESTIONS = 3;

std::string to_lower_case(std::string_view text) {
    std::string lower(text);
    for (char& c : lower)
        if (c >= 'A' && c <= 'Z')
            c = static_cast<char>(c - 'A' + 'a');
    return lower;
}

} // namespace

unsigned int get_edit_distance(std::string_view a, std::string_view b) {
    const std::string x = to_lower_case(a);
    const std::string y = to_lower_case(b);
    std::vector<unsigned int> before_last(y.size() + 1), last(y.size() + 1), current(y.size() + 1);
    for (std::size_t j = 0; j <= y.size(); ++j)
        current[j] = static_cast<unsigned int>(j);
    for (std::size_t i = 1; i <= x.size(); ++i) {
        std::swap(before_last, last);
        std::swap(last, current);
        current[0] = static_cast<unsigned int>(i);
        for (std::size_t j = 1; j <= y.size(); ++j) {
            const unsigned int replaced = last[j - 1] + (x[i - 1] == y[j - 1] ? 0 : 1);
            current[j] = std::min({last[j] + 1, current[j - 1] + 1, replaced});
            if (i > 1 && j > 1 && x[i - 1] == y[j - 2] && x[i - 2] == y[j - 1])
                current[j] = std::min(current[j], before_last[j - 2] + 1);
        }
    }
    return current[y.size()];
}

std::vector<std::string> find_nearest_names(std::string_view name,
                                            const std::vector<std::string>& candidates) {
    const std::string wanted = to_lower_case(name);
    std::vector<std::pair<unsigned int, const std::string*>> ranked;
    for (const std::string& candidate : candidates) {
        const unsigned int distance = get_edit_distance(name, candidate);
        const std::size_t longer = std::max(name.size(), candidate.size());
        const bool contains =
            wanted.size() >= 2 && to_lower_case(candidate).find(wanted) != std::string::npos;
        if (distance * 3 <= longer || contains)
            ranked.emplace_back(distance, &candidate);
    }
    std::stable_sort(ranked.begin(), ranked.end(),
                     [](const auto& a, const auto& b) { return a.first < b.first; });

    std::vector<std::string> nearest;
    for (const auto& [distance, candidate] : ranked) {
        if (nearest.size() == MAX_SUGGESTIONS || distance > ranked.front().first + 1)
            break;
        if (std::find(nearest.begin(), nearest.end(), *candidate) == nearest.end())
            nearest.push_back(*candidate);
    }
    return nearest;
}

std::string did_you_mean(std::string_view name, const std::vector<std::string>& candidates) {
    const std::vector<std::string> nearest = find_nearest_names(name, candidates);
    if (nearest.empty())
        return "";
    std::string text = "did you mean '" + nearest.front() + "'";
    for (std::size_t i = 1; i < nearest.size(); ++i)
        text += (i + 1 == nearest.size() ? " or '" : ", '") + nearest[i] + "'";
    return text + "?";
}

} // namespace workflow
