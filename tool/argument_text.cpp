#include "tool/argument_text.h"

#include <cstddef>

namespace tool {

namespace {

std::string trim(const std::string& text) {
    constexpr char BLANKS[] = " \t";
    const std::size_t begin = text.find_first_not_of(BLANKS);
    return begin == std::string::npos ? "" : text.substr(begin, text.find_last_not_of(BLANKS) + 1 - begin);
}

} // namespace

std::vector<std::string> split_list(const std::string& text) {
    std::vector<std::string> values;
    std::size_t begin = 0;
    for (std::size_t comma = text.find(','); comma != std::string::npos; comma = text.find(',', begin)) {
        values.push_back(trim(text.substr(begin, comma - begin)));
        begin = comma + 1;
    }
    values.push_back(trim(text.substr(begin)));
    return values;
}

std::vector<std::string> separate_empty_values(const std::vector<std::string>& arguments) {
    std::vector<std::string> separated;
    for (const std::string& argument : arguments) {
        const bool has_empty_value = argument.rfind("--", 0) == 0 && argument.back() == '=' &&
                                     argument.find('=') == argument.size() - 1;
        separated.push_back(has_empty_value ? argument.substr(0, argument.size() - 1) : argument);
        if (has_empty_value)
            separated.emplace_back();
    }
    return separated;
}

} // namespace tool
