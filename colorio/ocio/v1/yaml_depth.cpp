#include "colorio/ocio/v1/yaml_depth.h"

#include <algorithm>
#include <fstream>

#include "colorio/ocio/file_state.h"
#include "colorio/ocio/types.h"

namespace ocio {

namespace {

/// Real configurations nest some ten levels, indented by two columns each.
constexpr long MAX_DEPTH = 500;

/// Bounds the depth of a YAML text from above, without telling what is quoted.
class DepthGauge {
public:
    /// Each block lies in a column of its own, but for a list that may start in the column of its key.
    long add_line(const std::string& line) {
        const std::size_t columns = std::min(line.find_first_not_of(" \t-?:"), line.size());
        long deepest = depth_;
        for (const char c : line) {
            if (c == '[' || c == '{')
                deepest = std::max(deepest, ++depth_);
            else if (c == ']' || c == '}')
                depth_ = std::max(depth_ - 1, 0L);
        }
        return deepest + static_cast<long>(columns);
    }

private:
    long depth_ = 0;
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
            throw Exception(("'" + path + "' nests too deep").c_str());
}

} // namespace ocio
