#include "colorio/ocio/csp_metadata.h"

#include <cctype>
#include <string>
#include <string_view>

namespace ocio {

namespace {

/// Whether the line begins with `word` (upper case), blanks before it and the case of letters not counted.
bool begins_with(std::string_view line, std::string_view word) {
    while (!line.empty() && std::isspace(static_cast<unsigned char>(line.front())))
        line.remove_prefix(1);
    if (line.size() < word.size())
        return false;
    for (std::size_t i = 0; i < word.size(); ++i)
        if (std::toupper(static_cast<unsigned char>(line[i])) != word[i])
            return false;
    return true;
}

} // namespace

bool has_endless_csp_metadata(std::istream& file) {
    std::string line;
    if (!std::getline(file, line) || !begins_with(line, "CSPLUTV100"))
        return false;
    bool is_open = false;
    while (std::getline(file, line))
        is_open = is_open ? !begins_with(line, "END METADATA") : begins_with(line, "BEGIN METADATA");
    return is_open;
}

} // namespace ocio
