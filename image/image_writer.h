#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <OpenImageIO/imageio.h>

#include "files/replacement.h"
#include "image/deep_pixels.h"
#include "image/image_reader.h"
#include "image/output_file.h"
#include "image/pixel_layout.h"

namespace image {

struct FormatAbilities;

/// Throws diagnostics::Failure when no file can be written at `path`, as ImageWriter does; leaves nothing
/// there.
void check_output_path(const std::string& path);

/// Writes an image file part by part, in order, to a temporary file; `close` replaces the target. Throws
/// diagnostics::Failure with the file and the reason. For one thread at a time.
class ImageWriter {
public:
    /// Creates the temporary file beside `path`, whose extension selects the format.
    explicit ImageWriter(const std::string& path);
    ~ImageWriter();

    /// Opens part `index` of `parts`. Returns its spec as changed by the format, which may support other
    /// types only; valid until the next part is opened.
    const OIIO::ImageSpec& open_part(const std::vector<PartHeader>& parts, unsigned int index,
                                     const FormatAbilities& abilities);
    /// Writes the pixels of the open part, in the layout of that spec.
    void write_part(const PixelBuffer& pixels);
    /// Writes the pixels of the open part, whose channels all have `type`, and converts them to that spec.
    void write_part_as(OIIO::TypeDesc type, const PixelBuffer& pixels);
    /// Writes the samples of the open part, which is deep, in the layout of that spec.
    void write_deep_part(const DeepPixels& pixels);
    /// Finishes the file and replaces the target. Without it the target stays unchanged.
    void close();

private:
    bool open_first_part(const std::vector<PartHeader>& parts, const FormatAbilities& abilities);
    [[noreturn]] void fail(std::string reason) const;
    [[noreturn]] void fail_with_format(const std::string& fallback) const;

    files::Replacement place;
    std::string name;                          ///< Path of the target, for messages.
    std::string path;                          ///< Path of the temporary file.
    std::optional<OutputFile> file;            ///< Empty for formats whose writers open `path` themselves.
    std::unique_ptr<OIIO::ImageOutput> output; ///< Destroyed before `file`, which it uses.
    std::size_t part_count = 0;
};

} // namespace image
