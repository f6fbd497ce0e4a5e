#pragma once

#include <optional>
#include <string>
#include <vector>

namespace workflow {

/// The path of an image sequence: "shot.%04d.exr", "shot.%d.exr", "shot.$F4.exr", "shot.$F.exr",
/// "shot.####.exr" or "shot.@@@@.exr", where each '#' and '@' is one digit. The frame number replaces the
/// last such pattern in the file name, in this order of preference; folder names have no pattern. "$F" and a
/// single '@' before a letter, a digit or a '_' are not patterns ("$FOO.exr", "icon@2x.png").
class FramePattern {
public:
    explicit FramePattern(const std::string& path);

    /// False for the name of a single file.
    bool is_pattern() const { return has_place; }
    /// Path of one frame; the path itself if it is not a pattern. The sign of a negative number precedes the
    /// zeros and counts as a digit.
    std::string get_path(int frame) const;
    /// The number in a path that `get_path` gives; nothing for all other paths.
    std::optional<int> find_frame(const std::string& path) const;
    /// The frames whose files exist, in ascending order. Empty when the folder does not exist; throws
    /// diagnostics::Failure when it cannot be read.
    std::vector<int> find_existing_frames() const;

private:
    bool find_printf_place(const std::string& path, std::size_t name_start);
    bool find_dollar_place(const std::string& path, std::size_t name_start);
    bool find_run_place(const std::string& path, std::size_t name_start, char digit);
    void set_place(const std::string& path, std::size_t begin, std::size_t end, unsigned int digits);

    std::string before;
    std::string after;
    unsigned int width = 0;
    char fill = '0';
    bool has_place = false;
};

} // namespace workflow
