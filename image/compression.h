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

/// Throws diagnostics::Failure about the file at `path`, with the valid choices, when `format` does not have
/// the method, or the method does not have the quality. Without a method, the quality must be valid for one
/// of the methods of the format.
void check_compression(const Compression& wanted, const std::string& format, const std::string& path);

/// Makes the writer of `format` use that compression. `spec` is complete but for it. Throws like
/// `check_compression`, and when the method cannot compress such pixels.
void set_compression(const Compression& wanted, const std::string& format, const std::string& path,
                     OIIO::ImageSpec& spec);

} // namespace image
