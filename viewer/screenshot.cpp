#include "viewer/screenshot.h"

#include <OpenImageIO/imageio.h>
#include <epoxy/gl.h>
#include <fmt/format.h>

#include "image/replaced_file.h"
#include "tool/exit_code.h"

namespace tool {

namespace {

constexpr int CHANNELS = 3;

[[noreturn]] void fail(const std::string& path, const std::string& reason) {
    throw CommandError(fmt::format("cannot write the screenshot '{}': {}", path, reason));
}

} // namespace

void write_screenshot(const std::string& path, Screen::Size size) {
    const auto row = static_cast<OIIO::stride_t>(size.width) * CHANNELS;
    std::vector<unsigned char> pixels(static_cast<std::size_t>(row * size.height));
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glReadPixels(0, 0, size.width, size.height, GL_RGB, GL_UNSIGNED_BYTE, pixels.data());

    ReplacedFile file(path);
    const auto output = OIIO::ImageOutput::create(file.get_temporary_path());
    if (!output)
        fail(path, OIIO::geterror());
    const OIIO::ImageSpec spec(size.width, size.height, CHANNELS, OIIO::TypeDesc::UINT8);
    // OpenGL's first row is the lowest.
    const unsigned char* top = pixels.data() + row * (size.height - 1);
    if (!output->open(file.get_temporary_path(), spec) ||
        !output->write_image(OIIO::TypeDesc::UINT8, top, OIIO::AutoStride, -row) || !output->close())
        fail(path, output->geterror());
    file.commit();
}

} // namespace tool
