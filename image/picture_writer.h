#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <OpenImageIO/imageio.h>

#include "image/output_file.h"
#include "image/picture_reader.h"
#include "image/pixel_layout.h"

namespace tool {

struct FormatAbilities;

/// A picture file being written, part by part in order. Throws CommandError with `name` and the reason.
class PictureWriter {
public:
    /// Writes to `path`, a file that exists; messages speak of `name`.
    PictureWriter(const std::string& path, const std::string& name);
    ~PictureWriter();

    /// Opens part `index` of `parts`, and answers its spec as the format took it.
    const OIIO::ImageSpec& open_part(const std::vector<PartHeader>& parts, unsigned int index,
                                     const FormatAbilities& abilities);
    /// Pixels in the layout of that spec.
    void write_part(const PixelBuffer& pixels);
    /// Finishes the file; without it the file is not whole.
    void close();

private:
    bool open_first_part(const std::vector<PartHeader>& parts, const FormatAbilities& abilities);
    [[noreturn]] void fail(std::string reason) const;
    [[noreturn]] void fail_with_format(const std::string& fallback) const;

    std::string path;
    std::string name;
    std::optional<OutputFile> file; ///< Of formats that write through it; the others open `path` themselves.
    std::unique_ptr<OIIO::ImageOutput> output; ///< Goes before the file.
    std::size_t part_count = 0;
};

} // namespace tool
