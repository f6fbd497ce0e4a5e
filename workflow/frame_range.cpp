#include "workflow/frame_range.h"

#include <algorithm>
#include <charconv>
#include <numeric>
#include <unordered_set>

#include <fmt/format.h>

#include "diagnostics/failure.h"

namespace workflow {

namespace {

struct Range {
    int first;
    int last;
    int step;
};

/// Reads numbers and separators from the front of a text.
class Scanner {
public:
    explicit Scanner(std::string_view text) : rest(text) {}

    bool read_number(int& number) {
        const auto [end, error] = std::from_chars(rest.data(), rest.data() + rest.size(), number);
        if (error != std::errc())
            return false;
        rest.remove_prefix(static_cast<std::size_t>(end - rest.data()));
        return true;
    }

    bool skip(char character) {
        if (rest.empty() || rest.front() != character)
            return false;
        rest.remove_prefix(1);
        return true;
    }

    bool is_at_end() const { return rest.empty(); }

private:
    std::string_view rest;
};

bool parse_range(std::string_view piece, Range& range) {
    Scanner scanner(piece);
    if (!scanner.read_number(range.first))
        return false;
    range.last = range.first;
    range.step = 1;
    if (scanner.skip('-')) {
        if (!scanner.read_number(range.last))
            return false;
        if (scanner.skip('x') && !scanner.read_number(range.step))
            return false;
    }
    return scanner.is_at_end() && range.step >= 1;
}

} // namespace

std::vector<int> parse_frames(std::string_view text) {
    std::vector<int> frames;
    std::unordered_set<int> seen;
    for (std::size_t start = 0; start <= text.size();) {
        const std::size_t end = std::min(text.find(',', start), text.size());
        const std::string_view piece = text.substr(start, end - start);
        start = end + 1;

        Range range;
        if (!parse_range(piece, range))
            diagnostics::fail(diagnostics::Code::USAGE, fmt::format("invalid frame range '{}'", piece),
                              "examples: 1-100, 1-100x2, 1,5,10-20");
        const long long direction = range.first <= range.last ? 1 : -1;
        const long long length = (static_cast<long long>(range.last) - range.first) * direction;
        if (length / range.step + static_cast<long long>(frames.size()) >= MAX_FRAMES)
            diagnostics::fail(diagnostics::Code::USAGE,
                              fmt::format("invalid frame range '{}': more than {} frames", text, MAX_FRAMES));
        for (long long offset = 0; offset <= length; offset += range.step) {
            const int frame = static_cast<int>(range.first + offset * direction);
            if (seen.insert(frame).second)
                frames.push_back(frame);
        }
    }
    return frames;
}

namespace {

long long get_distance(const std::vector<int>& frames, std::size_t index) {
    return static_cast<long long>(frames[index + 1]) - frames[index];
}

} // namespace

std::string format_frames(const std::vector<int>& frames) {
    std::string text;
    for (std::size_t first = 0; first < frames.size();) {
        const long long step = first + 1 < frames.size() ? get_distance(frames, first) : 1;
        std::size_t last = first;
        while (last + 1 < frames.size() && get_distance(frames, last) == step)
            ++last;
        if (step > 1 && last - first < 2) // two frames are not a range with a step
            last = first;
        text += fmt::format("{}{}", text.empty() ? "" : ",", frames[first]);
        if (last > first)
            text += fmt::format("-{}", frames[last]);
        if (last > first && step > 1)
            text += fmt::format("x{}", step);
        first = last + 1;
    }
    return text;
}

std::vector<int> find_gaps(const std::vector<int>& frames) {
    long long step = 0;
    for (std::size_t i = 0; i + 1 < frames.size(); ++i)
        step = std::gcd(step, get_distance(frames, i));
    std::vector<int> gaps;
    for (std::size_t i = 0; i + 1 < frames.size(); ++i) {
        if (get_distance(frames, i) / step > MAX_FRAMES)
            return {};
        for (long long frame = frames[i] + step; frame < frames[i + 1]; frame += step)
            gaps.push_back(static_cast<int>(frame));
        if (gaps.size() > MAX_FRAMES)
            return {};
    }
    return gaps;
}

} // namespace workflow
