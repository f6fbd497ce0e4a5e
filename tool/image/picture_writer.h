#pragma once

#include <memory>
#include <string>
#include <vector>

#include <OpenImageIO/imageio.h>

#include "tool/image/picture_reader.h"
#include "tool/image/pixel_layout.h"

namespace tool {

struct FormatAbilities;

/// A picture file being written, part by part in order. Throws CommandError with `name` and the reason.
class PictureWriter {
public:
    /// Writes to `path`; messages speak of `name`.
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
    void fail(const std::string& fallback) const;

    std::string path;
    std::string name;
    std::unique_ptr<OIIO::ImageOutput> output;
};

} // namespace tool
