#include "workflow/frame_pattern.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <filesystem>
#include <string_view>
#include <system_error>

#include <fmt/format.h>

#include "diagnostics/failure.h"

namespace workflow {

namespace {

/// Widest field that is accepted; wider ones are not frame numbers.
constexpr unsigned int MAX_WIDTH = 32;

bool is_digit(char character) {
    return std::isdigit(static_cast<unsigned char>(character)) != 0;
}

bool is_word(char character) {
    return std::isalnum(static_cast<unsigned char>(character)) != 0 || character == '_';
}

/// Reads the digits at `position`, and moves it behind them. More than MAX_WIDTH for a too large number.
unsigned int read_width(const std::string& path, std::size_t& position) {
    unsigned int width = 0;
    while (position < path.size() && is_digit(path[position]) && width <= MAX_WIDTH)
        width = width * 10 + static_cast<unsigned int>(path[position++] - '0');
    return width;
}

/// The last position of `mark` at `from` or before it, but not before `start`.
std::size_t find_last(const std::string& path, char mark, std::size_t from, std::size_t start) {
    const std::size_t found = path.rfind(mark, from);
    return found == std::string::npos || found < start ? std::string::npos : found;
}

} // namespace

FramePattern::FramePattern(const std::string& path) : before(path) {
    const std::size_t slash = path.rfind('/');
    const std::size_t name_start = slash == std::string::npos ? 0 : slash + 1;
    has_place = find_printf_place(path, name_start) || find_dollar_place(path, name_start) ||
                find_run_place(path, name_start, '#') || find_run_place(path, name_start, '@');
}

void FramePattern::set_place(const std::string& path, std::size_t begin, std::size_t end,
                             unsigned int digits) {
    before = path.substr(0, begin);
    after = path.substr(end);
    width = digits;
}

bool FramePattern::find_printf_place(const std::string& path, std::size_t name_start) {
    for (std::size_t percent = find_last(path, '%', path.npos, name_start); percent != path.npos;
         percent = percent == 0 ? path.npos : find_last(path, '%', percent - 1, name_start)) {
        std::size_t end = percent + 1;
        const bool zeros = end < path.size() && path[end] == '0';
        const unsigned int digits = read_width(path, end);
        if (end >= path.size() || path[end] != 'd' || digits > MAX_WIDTH)
            continue;
        set_place(path, percent, end + 1, digits);
        fill = zeros ? '0' : ' ';
        return true;
    }
    return false;
}

bool FramePattern::find_dollar_place(const std::string& path, std::size_t name_start) {
    for (std::size_t dollar = find_last(path, '$', path.npos, name_start); dollar != path.npos;
         dollar = dollar == 0 ? path.npos : find_last(path, '$', dollar - 1, name_start)) {
        std::size_t end = dollar + 2;
        const unsigned int digits = read_width(path, end);
        const bool is_place = path.compare(dollar, 2, "$F") == 0 && digits <= MAX_WIDTH &&
                              (digits > 0 || end == path.size() || !is_word(path[end]));
        if (!is_place)
            continue;
        set_place(path, dollar, end, digits);
        return true;
    }
    return false;
}

bool FramePattern::find_run_place(const std::string& path, std::size_t name_start, char digit) {
    const std::size_t last = find_last(path, digit, path.npos, name_start);
    if (last == path.npos)
        return false;
    std::size_t first = last;
    while (first > name_start && path[first - 1] == digit)
        --first;
    if (digit == '@' && first == last && last + 1 < path.size() && is_word(path[last + 1]))
        return false;
    set_place(path, first, last + 1, static_cast<unsigned int>(last - first + 1));
    return true;
}

std::string FramePattern::get_path(int frame) const {
    if (!has_place)
        return before;
    return before + (fill == '0' ? fmt::format("{:0{}}", frame, width) : fmt::format("{:{}}", frame, width)) +
           after;
}

std::optional<int> FramePattern::find_frame(const std::string& path) const {
    if (!has_place || path.size() <= before.size() + after.size())
        return std::nullopt;
    std::string_view digits(path);
    digits.remove_prefix(before.size());
    digits.remove_suffix(after.size());
    digits.remove_prefix(std::min(digits.find_first_not_of(' '), digits.size()));
    int frame = 0;
    std::from_chars(digits.data(), digits.data() + digits.size(), frame);
    return get_path(frame) == path ? std::optional(frame) : std::nullopt;
}

std::vector<int> FramePattern::find_existing_frames() const {
    namespace fs = std::filesystem;
    const std::string prefix = before.substr(0, before.rfind('/') + 1);
    std::error_code error;
    fs::directory_iterator entries(prefix.empty() ? "." : prefix, error);
    if (error && error != std::errc::no_such_file_or_directory)
        diagnostics::fail_file(
            diagnostics::Code::FILE_UNREADABLE,
            fmt::format("cannot read the folder '{}': {}", prefix.empty() ? "." : prefix, error.message()),
            prefix);
    std::vector<int> frames;
    for (; entries != fs::directory_iterator(); entries.increment(error))
        if (const auto frame = find_frame(prefix + entries->path().filename().string()))
            frames.push_back(*frame);
    std::sort(frames.begin(), frames.end());
    return frames;
}

} // namespace workflow
