#include "tests/tool/pictures.h"

#include <algorithm>
#include <stdexcept>

namespace {

[[noreturn]] void fail(const std::string& path, const std::string& reason) {
    throw std::runtime_error("'" + path + "': " + reason);
}

} // namespace

float Picture::get(const std::string& channel, int x, int y) const {
    const int index = spec.channelindex(channel);
    if (index < 0)
        throw std::runtime_error("no channel " + channel);
    return values.at(static_cast<std::size_t>((y * spec.width + x) * spec.nchannels + index));
}

Picture make_picture(int width, int height, int channels, OIIO::TypeDesc depth, std::vector<float> values) {
    Picture picture{OIIO::ImageSpec(width, height, channels, depth), std::move(values)};
    picture.values.resize(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) *
                          static_cast<std::size_t>(channels));
    return picture;
}

void write_picture(const std::string& path, const std::vector<Picture>& parts) {
    const auto output = OIIO::ImageOutput::create(path);
    if (!output)
        fail(path, OIIO::geterror());
    std::vector<OIIO::ImageSpec> specs;
    for (const Picture& part : parts)
        specs.push_back(part.spec);
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

void write_picture(const std::string& path, const Picture& picture) {
    write_picture(path, std::vector<Picture>{picture});
}

Picture read_picture(const std::string& path, int subimage, int level) {
    OIIO::ImageSpec hints;
    hints.attribute("oiio:UnassociatedAlpha", 1);
    const auto input = OIIO::ImageInput::open(path, &hints);
    if (!input)
        fail(path, OIIO::geterror());
    if (!input->seek_subimage(subimage, level))
        fail(path, "no such part");
    Picture picture{input->spec(), {}};
    picture.values.resize(picture.spec.image_pixels() * static_cast<std::size_t>(picture.spec.nchannels));
    if (!input->read_image(subimage, level, 0, picture.spec.nchannels, OIIO::TypeFloat,
                           picture.values.data()))
        fail(path, input->geterror());
    return picture;
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
