#pragma once

#include <memory>
#include <string>
#include <vector>

#include <OpenImageIO/imageio.h>

#include "image/pixel_layout.h"

namespace tool {

/// One subimage at one resolution level of a picture file.
struct PartHeader {
    int subimage;
    int level;
    OIIO::ImageSpec spec;
};

/// A picture file opened for reading. Colours come as the file holds them: straight alpha stays straight and
/// is marked by the attribute "oiio:UnassociatedAlpha". Throws CommandError with the file and the reason.
class PictureReader {
public:
    explicit PictureReader(const std::string& path);
    ~PictureReader();

    const std::string& get_path() const { return path; }
    /// OpenImageIO's name of the format, for example "openexr".
    std::string get_format() const;
    const std::vector<PartHeader>& get_parts() const { return parts; }
    unsigned int count_subimages() const;
    /// Reads the pixels of a part as its spec tells them, channels of different types included.
    void read_part(unsigned int index, PixelBuffer& pixels);

private:
    void read_headers();

    std::string path;
    std::unique_ptr<OIIO::ImageInput> input;
    std::vector<PartHeader> parts;
};

} // namespace tool
