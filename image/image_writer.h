#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <OpenImageIO/imageio.h>

#include "files/replacement.h"
#include "image/image_reader.h"
#include "image/output_file.h"
#include "image/pixel_layout.h"

namespace image {

struct FormatAbilities;

/// An image file being written, part by part in order, and replaced whole or not at all. Throws
/// diagnostics::Failure with the file and the reason.
class ImageWriter {
public:
    explicit ImageWriter(const std::string& path);
    ~ImageWriter();

    /// Opens part `index` of `parts`, and answers its spec as the format took it.
    const OIIO::ImageSpec& open_part(const std::vector<PartHeader>& parts, unsigned int index,
                                     const FormatAbilities& abilities);
    /// Pixels in the layout of that spec.
    void write_part(const PixelBuffer& pixels);
    /// Pixels whose channels all have `type`; the format converts them to its own.
    void write_part_as(OIIO::TypeDesc type, const PixelBuffer& pixels);
    /// Finishes the file and puts it in its place; without it the old file, if any, stays.
    void close();

private:
    bool open_first_part(const std::vector<PartHeader>& parts, const FormatAbilities& abilities);
    [[noreturn]] void fail(std::string reason) const;
    [[noreturn]] void fail_with_format(const std::string& fallback) const;

    files::Replacement place;
    std::string name;               ///< As the user knows the file.
    std::string path;               ///< Where it is written until it is complete.
    std::optional<OutputFile> file; ///< Of formats that write through it; the others open `path` themselves.
    std::unique_ptr<OIIO::ImageOutput> output; ///< Goes before the file.
    std::size_t part_count = 0;
};

} // namespace image
