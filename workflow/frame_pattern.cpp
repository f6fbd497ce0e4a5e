#include "workflow/frame_pattern.h"

#include <cctype>

#include <fmt/format.h>

namespace workflow {

namespace {

/// Widest field that is accepted; wider ones are not frame numbers.
constexpr unsigned int MAX_WIDTH = 32;

} // namespace

FramePattern::FramePattern(const std::string& path) : before(path) {
    const std::size_t slash = path.rfind('/');
    const std::size_t name_start = slash == std::string::npos ? 0 : slash + 1;
    has_place = find_printf_place(path, name_start) || find_hash_place(path, name_start);
}

bool FramePattern::find_printf_place(const std::string& path, std::size_t name_start) {
    for (std::size_t percent = path.rfind('%'); percent != std::string::npos && percent >= name_start;
         percent = percent == 0 ? std::string::npos : path.rfind('%', percent - 1)) {
        std::size_t end = percent + 1;
        const bool zeros = end < path.size() && path[end] == '0';
        unsigned int digits = 0;
        while (end < path.size() && std::isdigit(static_cast<unsigned char>(path[end])) &&
               digits <= MAX_WIDTH)
            digits = digits * 10 + static_cast<unsigned int>(path[end++] - '0');
        if (end >= path.size() || path[end] != 'd' || digits > MAX_WIDTH)
            continue;
        before = path.substr(0, percent);
        after = path.substr(end + 1);
        width = digits;
        fill = zeros ? '0' : ' ';
        return true;
    }
    return false;
}

bool FramePattern::find_hash_place(const std::string& path, std::size_t name_start) {
    const std::size_t last = path.rfind('#');
    if (last == std::string::npos || last < name_start)
        return false;
    std::size_t first = last;
    while (first > name_start && path[first - 1] == '#')
        --first;
    before = path.substr(0, first);
    after = path.substr(last + 1);
    width = static_cast<unsigned int>(last - first + 1);
    fill = '0';
    return true;
}

std::string FramePattern::get_path(int frame) const {
    if (!has_place)
        return before;
    return before + (fill == '0' ? fmt::format("{:0{}}", frame, width) : fmt::format("{:{}}", frame, width)) +
           after;
}

} // namespace workflow
