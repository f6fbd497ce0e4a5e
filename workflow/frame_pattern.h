#pragma once

#include <string>

namespace workflow {

/// The path of an image sequence: "shot.%04d.exr", "shot.%d.exr" or "shot.####.exr", where each '#' is one
/// digit. The frame number replaces the last such pattern in the file name; folders have none.
class FramePattern {
public:
    explicit FramePattern(const std::string& path);

    /// False for the name of a single file.
    bool is_pattern() const { return has_place; }
    /// Path of one frame; the path itself if it is not a pattern. The sign of a negative number precedes the
    /// zeros and counts as a digit.
    std::string get_path(int frame) const;

private:
    bool find_printf_place(const std::string& path, std::size_t name_start);
    bool find_hash_place(const std::string& path, std::size_t name_start);

    std::string before;
    std::string after;
    unsigned int width = 0;
    char fill = '0';
    bool has_place = false;
};

} // namespace workflow
