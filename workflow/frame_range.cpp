#include "workflow/frame_range.h"

#include <charconv>
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

} // namespace workflow
