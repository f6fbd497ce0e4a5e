#include "tests/tool/images.h"

#include <algorithm>
#include <stdexcept>

namespace {

[[noreturn]] void fail(const std::string& path, const std::string& reason) {
    throw std::runtime_error("'" + path + "': " + reason);
}

} // namespace

float Image::get(const std::string& channel, int x, int y) const {
    const int index = spec.channelindex(channel);
    if (index < 0)
        throw std::runtime_error("no channel " + channel);
    return values.at(static_cast<std::size_t>((y * spec.width + x) * spec.nchannels + index));
}

Image make_image(int width, int height, int channels, OIIO::TypeDesc depth, std::vector<float> values) {
    Image image{OIIO::ImageSpec(width, height, channels, depth), std::move(values)};
    image.values.resize(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) *
                        static_cast<std::size_t>(channels));
    return image;
}

void write_image(const std::string& path, const std::vector<Image>& parts) {
    const auto output = OIIO::ImageOutput::create(path);
    if (!output)
        fail(path, OIIO::geterror());
    std::vector<OIIO::ImageSpec> specs;
    for (const Image& part : parts)
        specs.push_back(part.spec);
    // Newer versions of OpenImageIO state sRGB in PNG files of which nothing is said.
    if (path.size() > 4 && path.compare(path.size() - 4, 4, ".png") == 0)
        for (OIIO::ImageSpec& spec : specs)
            if (!spec.find_attribute("oiio:ColorSpace"))
                spec.attribute("oiio:ColorSpace", "unknown");
    const bool announced = parts.size() > 1 && !output->supports("appendsubimage");
    for (std::size_t i = 0; i < parts.size(); ++i) {
        bool opened;
        if (i == 0 && announced)
            opened = output->open(path, static_cast<int>(specs.size()), specs.data());
        else
            opened = output->open(path, specs[i],
                                  i == 0 ? OIIO::ImageOutput::Create : OIIO::ImageOutput::AppendSubimage);
        if (!opened || !output->write_image(OIIO::TypeFloat, parts[i].values.data()))
            fail(path, output->geterror());
    }
    if (!output->close())
        fail(path, output->geterror());
}

void write_image(const std::string& path, const Image& image) {
    write_image(path, std::vector<Image>{image});
}

Image read_image(const std::string& path, int subimage, int level) {
    OIIO::ImageSpec hints;
    hints.attribute("oiio:UnassociatedAlpha", 1);
    const auto input = OIIO::ImageInput::open(path, &hints);
    if (!input)
        fail(path, OIIO::geterror());
    if (!input->seek_subimage(subimage, level))
        fail(path, "no such part");
    Image image{input->spec(), {}};
    image.values.resize(image.spec.image_pixels() * static_cast<std::size_t>(image.spec.nchannels));
    if (!input->read_image(subimage, level, 0, image.spec.nchannels, OIIO::TypeFloat, image.values.data()))
        fail(path, input->geterror());
    return image;
}

int count_subimages(const std::string& path) {
    const auto input = OIIO::ImageInput::open(path);
    if (!input)
        fail(path, OIIO::geterror());
    int count = 0;
    while (input->seek_subimage(count, 0))
        ++count;
    return count;
}
