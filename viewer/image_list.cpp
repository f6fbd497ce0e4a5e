#include "viewer/image_list.h"

#include <algorithm>
#include <filesystem>

#include "diagnostics/failure.h"

namespace viewer {

namespace {

/// The image shown, and those on both sides of it.
constexpr std::size_t MAX_HELD = 3;
constexpr std::size_t MAX_HELD_BYTES = std::size_t{1} << 30;

std::size_t count_bytes(const std::vector<ImageList::Handle>& images) {
    std::size_t bytes = 0;
    for (const ImageList::Handle& image : images)
        bytes += image->rgba.size() * sizeof(float);
    return bytes;
}

} // namespace

bool is_same_path(const std::string& a, const std::string& b) {
    std::error_code error;
    return std::filesystem::absolute(a, error).lexically_normal() ==
           std::filesystem::absolute(b, error).lexically_normal();
}

void ImageList::add(const std::string& path) {
    if (std::find(paths.begin(), paths.end(), path) == paths.end())
        paths.push_back(path);
}

void ImageList::open(const std::string& path) {
    image = load(path);
    add(path);
    current = path;
    error.reset();
}

void ImageList::step(int by) {
    if (paths.empty())
        return;
    const auto count = static_cast<std::ptrdiff_t>(paths.size());
    const auto position = std::find(paths.begin(), paths.end(), current) - paths.begin();
    current = paths[static_cast<std::size_t>(((position + by) % count + count) % count)];
    show_current();
}

void ImageList::refresh(const std::string& path) {
    forget(path);
    if (is_same_path(path, current))
        show_current();
}

void ImageList::show_current() {
    error.reset();
    try {
        image = load(current);
    } catch (const diagnostics::Failure& failure) {
        error = failure.get_worst();
    }
}

ImageList::Handle ImageList::load(const std::string& path) {
    const auto known = std::find_if(held.begin(), held.end(),
                                    [&](const Handle& candidate) { return candidate->path == path; });
    if (known != held.end())
        std::rotate(known, known + 1, held.end());
    else
        held.push_back(std::make_shared<const Image>(load_image(path, max_side)));
    while (held.size() > MAX_HELD || (held.size() > 1 && count_bytes(held) > MAX_HELD_BYTES))
        held.erase(held.begin());
    return held.back();
}

void ImageList::forget(const std::string& path) {
    held.erase(std::remove_if(held.begin(), held.end(),
                              [&](const Handle& candidate) { return is_same_path(candidate->path, path); }),
               held.end());
}

} // namespace viewer
