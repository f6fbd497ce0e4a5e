#include "colorio/ocio/v1/yaml_depth.h"

#include <algorithm>
#include <fstream>
#include <string_view>

#include "colorio/ocio/error.h"
#include "colorio/ocio/file_state.h"
#include "colorio/ocio/types.h"

namespace ocio {

namespace {

/// Real configs nest some ten levels, indented by two columns each.
constexpr std::size_t MAX_DEPTH = 500;

/// True when a value may begin at `at`: first on the line, or behind a mark, a tag or an anchor.
bool may_begin_value(std::string_view line, std::size_t at) {
    const std::size_t last = at == 0 ? std::string_view::npos : line.find_last_not_of(" \t", at - 1);
    if (last == std::string_view::npos ||
        std::string_view(":,-?[{").find(line[last]) != std::string_view::npos)
        return true;
    const std::size_t blank = line.find_last_of(" \t", last);
    const char first_of_word = line[blank == std::string_view::npos ? 0 : blank + 1];
    return first_of_word == '!' || first_of_word == '&';
}

/// Estimates the depth of a YAML text from its brackets and columns.
class DepthGauge {
public:
    /// The depth of the line. Each block has a separate column, except that a list may start in the column of
    /// its key.
    std::size_t add_line(std::string_view line) {
        const std::size_t columns = std::min(line.find_first_not_of(" \t-?:"), line.size());
        std::size_t deepest = brackets_;
        for (std::size_t i = 0; i < line.size(); ++i) {
            if ((line[i] == '[' || line[i] == '{') && may_begin_value(line, i))
                deepest = std::max(deepest, ++brackets_);
            else if ((line[i] == ']' || line[i] == '}') && brackets_ > 0)
                --brackets_;
        }
        return deepest + columns;
    }

private:
    std::size_t brackets_ = 0; ///< open ones
};

} // namespace

void require_shallow_yaml(const std::string& path) {
    if (!file_state(path))
        return;
    std::ifstream file(path, std::ios::binary);
    DepthGauge gauge;
    std::string line;
    while (std::getline(file, line))
        if (gauge.add_line(line) > MAX_DEPTH)
            throw_file_error(diagnostics::Code::CONFIG_TOO_COMPLEX, "'" + path + "' is nested too deeply",
                             path);
}

} // namespace ocio
