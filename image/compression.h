#pragma once

#include <optional>
#include <string>

#include <OpenImageIO/imageio.h>

namespace image {

/// Compression that the user asks for.
struct Compression {
    std::string method;         ///< "piz"; empty for that of the input or the format's default.
    std::optional<int> quality; ///< Quality or level of the method.
};

/// Throws diagnostics::Failure about the file at `path` when `format` has no such method, or the method (any,
/// when none is named) no such quality, with those that are valid.
void check_compression(const Compression& wanted, const std::string& format, const std::string& path);

/// Has the writer of `format` use that compression. `spec` is complete but for it. Throws like
/// `check_compression`, and when the method cannot compress such pixels.
void set_compression(const Compression& wanted, const std::string& format, const std::string& path,
                     OIIO::ImageSpec& spec);

} // namespace image
