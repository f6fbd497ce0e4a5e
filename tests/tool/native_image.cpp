#include "tests/tool/native_image.h"

#include <stdexcept>

namespace {

[[noreturn]] void fail(const std::string& path, const std::string& reason) {
    throw std::runtime_error("'" + path + "': " + reason);
}

void set_channels(OIIO::ImageSpec& spec, const ChannelTypes& channels) {
    spec.channelnames.clear();
    for (const auto& [name, type] : channels) {
        spec.channelnames.push_back(name);
        spec.channelformats.push_back(type);
    }
    spec.alpha_channel = spec.channelindex("A");
    spec.z_channel = spec.channelindex("Z");
}

template <class Part, class Write>
void write_parts(const std::string& path, const std::vector<Part>& parts, const Write& write) {
    const auto output = OIIO::ImageOutput::create(path);
    if (!output)
        fail(path, OIIO::geterror());
    std::vector<OIIO::ImageSpec> specs;
    for (const Part& part : parts)
        specs.push_back(part.spec);
    if (!output->open(path, static_cast<int>(specs.size()), specs.data()))
        fail(path, output->geterror());
    for (std::size_t i = 0; i < parts.size(); ++i)
        if ((i > 0 && !output->open(path, specs[i], OIIO::ImageOutput::AppendSubimage)) ||
            !write(*output, parts[i]))
            fail(path, output->geterror());
    if (!output->close())
        fail(path, output->geterror());
}

std::unique_ptr<OIIO::ImageInput> open_part(const std::string& path, int subimage) {
    auto input = OIIO::ImageInput::open(path);
    if (!input)
        fail(path, OIIO::geterror());
    if (!input->seek_subimage(subimage, 0))
        fail(path, "no such part");
    return input;
}

} // namespace

std::byte* NativeImage::at(const std::string& channel, std::size_t pixel) {
    const int index = spec.channelindex(channel);
    if (index < 0)
        throw std::runtime_error("no channel " + channel);
    return bytes.data() + pixel * spec.pixel_bytes(true) +
           static_cast<std::size_t>(spec.pixel_bytes(0, index, true));
}

OIIO::TypeDesc NativeImage::get_type(const std::string& channel) const {
    return spec.channelformat(spec.channelindex(channel));
}

void NativeImage::set(const std::string& channel, int pixel, float value) {
    OIIO::convert_pixel_values(OIIO::TypeFloat, &value, get_type(channel),
                               at(channel, static_cast<std::size_t>(pixel)), 1);
}

void NativeImage::fill(const std::string& channel, float value) {
    for (int pixel = 0; pixel < spec.width * spec.height; ++pixel)
        set(channel, pixel, value);
}

float NativeImage::get(const std::string& channel, int pixel) const {
    const std::size_t size = get_type(channel).size();
    const std::vector<std::byte> bits = get_bits(channel);
    float value = 0;
    OIIO::convert_pixel_values(get_type(channel), bits.data() + static_cast<std::size_t>(pixel) * size,
                               OIIO::TypeFloat, &value, 1);
    return value;
}

void NativeImage::fill_bits(const std::string& channel, std::uint32_t seed) {
    for (std::size_t pixel = 0; pixel < spec.image_pixels(); ++pixel) {
        seed = seed * 1664525u + 1013904223u;
        std::memcpy(at(channel, pixel), &seed, get_type(channel).size());
    }
}

std::vector<std::byte> NativeImage::get_bits(const std::string& channel) const {
    std::vector<std::byte> bits;
    for (std::size_t pixel = 0; pixel < spec.image_pixels(); ++pixel) {
        const std::byte* begin = const_cast<NativeImage*>(this)->at(channel, pixel);
        bits.insert(bits.end(), begin, begin + get_type(channel).size());
    }
    return bits;
}

NativeImage make_native_image(int width, int height, const ChannelTypes& channels) {
    NativeImage image{
        OIIO::ImageSpec(width, height, static_cast<int>(channels.size()), channels.front().second), {}};
    set_channels(image.spec, channels);
    image.bytes.resize(image.spec.image_bytes(true));
    return image;
}

void write_native(const std::string& path, const std::vector<NativeImage>& parts) {
    write_parts(path, parts, [](OIIO::ImageOutput& output, const NativeImage& part) {
        return output.write_image(OIIO::TypeUnknown, part.bytes.data());
    });
}

NativeImage read_native(const std::string& path, int subimage) {
    const auto input = open_part(path, subimage);
    NativeImage image{input->spec(), {}};
    image.bytes.resize(image.spec.image_bytes(true));
    if (!input->read_image(subimage, 0, 0, image.spec.nchannels, OIIO::TypeUnknown, image.bytes.data()))
        fail(path, input->geterror());
    return image;
}

DeepImage make_deep_image(int width, int height, const ChannelTypes& channels,
                          const std::vector<unsigned int>& counts) {
    DeepImage image{
        OIIO::ImageSpec(width, height, static_cast<int>(channels.size()), channels.front().second), {}};
    set_channels(image.spec, channels);
    image.spec.deep = true;
    image.pixels.init(image.spec);
    image.pixels.set_all_samples(counts);
    return image;
}

void write_deep(const std::string& path, const std::vector<DeepImage>& parts) {
    write_parts(path, parts, [](OIIO::ImageOutput& output, const DeepImage& part) {
        return output.write_deep_image(part.pixels);
    });
}

DeepImage read_deep(const std::string& path, int subimage) {
    const auto input = open_part(path, subimage);
    DeepImage image{input->spec(), {}};
    if (!input->read_native_deep_image(subimage, 0, image.pixels))
        fail(path, input->geterror());
    return image;
}
