#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <OpenImageIO/imageio.h>

namespace image {

/// One subimage at one resolution level of an image file.
struct PartHeader {
    int subimage;
    int level;
    OIIO::ImageSpec spec;
};

/// An image file opened in this process. Colors come as the file holds them: straight alpha stays straight
/// and is marked by the attribute "oiio:UnassociatedAlpha". Throws diagnostics::Failure with the file and the
/// reason. What OpenImageIO does on a hostile file may end the process: see ImageReader.
class ImageFile {
public:
    /// Reads all headers, and refuses those that announce more pixels than the file or the machine can hold.
    explicit ImageFile(const std::string& path);
    ~ImageFile();

    /// OpenImageIO's name of the format, for example "openexr".
    std::string get_format() const;
    const std::vector<PartHeader>& get_parts() const { return parts; }
    /// Reads the pixels of a part in the layout of its spec, channels of different types included, to
    /// `pixels`, which has room for `spec.image_bytes(true)` bytes.
    void read_part(std::size_t index, std::byte* pixels);

private:
    void read_headers(std::uint64_t file_bytes);

    std::string path;
    std::unique_ptr<OIIO::ImageInput> input;
    std::vector<PartHeader> parts;
};

/// Throws diagnostics::Failure: "cannot read 'path': reason", without blanks and line ends behind the reason.
[[noreturn]] void fail_to_read(const std::string& path, std::string reason);

} // namespace image
