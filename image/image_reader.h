#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "image/image_file.h"
#include "image/pixel_layout.h"

namespace image {

class ReaderProcess;

/// An image file opened for reading, in a process of its own unless the user wants none (reads_in_process).
/// Colors come as the file holds them: straight alpha stays straight and is marked by the attribute
/// "oiio:UnassociatedAlpha". Throws diagnostics::Failure with the file and the reason.
class ImageReader {
public:
    /// `process` must outlive the reader, and opens no other image meanwhile.
    ImageReader(const std::string& path, ReaderProcess& process);
    ~ImageReader();

    const std::string& get_path() const { return path; }
    /// OpenImageIO's name of the format, for example "openexr".
    const std::string& get_format() const { return format; }
    const std::vector<PartHeader>& get_parts() const { return parts; }
    unsigned int count_subimages() const;
    /// Reads the pixels of a part in the layout of its spec, channels of different types included.
    void read_part(std::size_t index, PixelBuffer& pixels);

private:
    std::string path;
    ReaderProcess& process;
    std::unique_ptr<ImageFile> file; ///< When images are read in this process.
    std::string format;
    std::vector<PartHeader> parts;
};

} // namespace image
