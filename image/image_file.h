#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <OpenImageIO/deepdata.h>
#include <OpenImageIO/imageio.h>

namespace image {

/// One subimage at one mipmap level of an image file.
struct PartHeader {
    int subimage; ///< From 0.
    int level;    ///< 0 is the full resolution.
    OIIO::ImageSpec spec;
};

/// An image file opened in this process. Colors are read as stored: straight alpha stays straight and is
/// marked by the attribute "oiio:UnassociatedAlpha". Throws diagnostics::Failure with the file and the
/// reason. A damaged file can crash OpenImageIO and this process; see ImageReader. For one thread at a time.
class ImageFile {
public:
    /// Reads all headers. Throws for more pixels than the file can contain or the memory of the machine can
    /// hold.
    explicit ImageFile(const std::string& path);
    ~ImageFile();

    /// OpenImageIO's name of the format, for example "openexr".
    std::string get_format() const;
    const std::vector<PartHeader>& get_parts() const { return parts; }
    /// Reads the pixels of part `index` in the layout of its spec, including channels of different types, to
    /// `pixels`, which must have room for `spec.image_bytes(true)` bytes. Not for deep parts.
    void read_part(std::size_t index, std::byte* pixels);
    /// Reads the samples of a deep part. Throws std::bad_alloc.
    void read_deep_part(std::size_t index, OIIO::DeepData& pixels);

private:
    void read_headers(std::uint64_t file_bytes);

    std::string path;
    std::unique_ptr<OIIO::ImageInput> input;
    std::vector<PartHeader> parts;
};

/// Throws diagnostics::Failure: "cannot read 'path': reason". Removes spaces and line ends after the reason.
[[noreturn]] void fail_to_read(const std::string& path, std::string reason);

} // namespace image
