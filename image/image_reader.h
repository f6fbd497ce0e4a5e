#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "image/deep_pixels.h"
#include "image/image_file.h"
#include "image/pixel_layout.h"

namespace image {

class ReaderProcess;

/// An image file opened for reading in a separate process, or in this one if the user chose that
/// (reads_in_process). Colors are read as stored: straight alpha stays straight and is marked by the
/// attribute "oiio:UnassociatedAlpha". Throws diagnostics::Failure with the file and the reason. For one
/// thread at a time.
class ImageReader {
public:
    /// Reads all headers. `process` must outlive the reader, and must not open another image before the
    /// reader ends.
    ImageReader(const std::string& path, ReaderProcess& process);
    ~ImageReader();

    const std::string& get_path() const { return path; }
    /// OpenImageIO's name of the format, for example "openexr".
    const std::string& get_format() const { return format; }
    const std::vector<PartHeader>& get_parts() const { return parts; }
    unsigned int count_subimages() const;
    /// Reads the pixels of part `index` in the layout of its spec, including channels of different types.
    /// Throws for deep parts.
    void read_part(std::size_t index, PixelBuffer& pixels);
    /// Reads the samples of a deep part.
    void read_deep_part(std::size_t index, DeepPixels& pixels);

private:
    std::string path;
    ReaderProcess& process;
    std::unique_ptr<ImageFile> file; ///< Null unless images are read in this process.
    std::string format;
    std::vector<PartHeader> parts;
};

} // namespace image
