#pragma once

#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "diagnostics/diagnostic.h"
#include "viewer/image.h"

namespace viewer {

/// Image files, shown one at a time. Each is read when it is first needed; the last few stay in memory while
/// there is enough.
class ImageList {
public:
    using Handle = std::shared_ptr<const Image>;

    /// Refuses images with more pixels than that a side from now on.
    void set_max_side(int pixels) { max_side = pixels; }
    /// Lists a file, if it is not listed yet, without reading it.
    void add(const std::string& path);
    /// Goes to a file, and lists it if it is new. Throws diagnostics::Failure, and changes nothing, when it
    /// cannot be read.
    void open(const std::string& path);
    /// Moves by so many files, wrapping around. A file that cannot be read becomes the current one too: the
    /// error is shown, and the image stays the previous one.
    void step(int by);
    /// Reads a changed file again: at once if it is the current one, else when it is needed.
    void refresh(const std::string& path);

    const std::vector<std::string>& get_paths() const { return paths; }
    /// The file gone to last; empty before.
    const std::string& get_current_path() const { return current; }
    /// The image read last; null before the first.
    const Handle& get_image() const { return image; }
    /// The error of the current file; empty without one.
    const std::optional<diagnostics::Diagnostic>& get_error() const { return error; }

private:
    Handle load(const std::string& path);
    void forget(const std::string& path);
    void show_current();

    int max_side = std::numeric_limits<int>::max();
    std::vector<std::string> paths;
    std::string current;
    Handle image;
    std::optional<diagnostics::Diagnostic> error;
    std::vector<Handle> held; ///< The last ones wanted, the latest behind.
};

/// True when both paths name one place, whether or not there is a file.
bool is_same_path(const std::string& a, const std::string& b);

} // namespace viewer
