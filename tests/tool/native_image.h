#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include <OpenImageIO/deepdata.h>
#include <OpenImageIO/imageio.h>

/// A part in memory bit for bit: its channels have their own types.
struct NativeImage {
    OIIO::ImageSpec spec;
    std::vector<std::byte> bytes;

    /// Sets a channel of all pixels to a number, in its type.
    void fill(const std::string& channel, float value);
    void set(const std::string& channel, int pixel, float value);
    float get(const std::string& channel, int pixel = 0) const;
    /// Sets a channel to bits that stand for anything: denormals, infinity, NaN, large integers.
    void fill_bits(const std::string& channel, std::uint32_t seed);
    /// The bits of a channel in all pixels.
    std::vector<std::byte> get_bits(const std::string& channel) const;

private:
    std::byte* at(const std::string& channel, std::size_t pixel);
    OIIO::TypeDesc get_type(const std::string& channel) const;
};

using ChannelTypes = std::vector<std::pair<std::string, OIIO::TypeDesc>>;

/// An image of zeros.
NativeImage make_native_image(int width, int height, const ChannelTypes& channels);

/// Writes the parts; throws std::runtime_error.
void write_native(const std::string& path, const std::vector<NativeImage>& parts);
NativeImage read_native(const std::string& path, int subimage = 0);

/// A part whose pixels have several samples each.
struct DeepImage {
    OIIO::ImageSpec spec;
    OIIO::DeepData pixels;
};

/// `counts` are the samples of each pixel; all values are 0.
DeepImage make_deep_image(int width, int height, const ChannelTypes& channels,
                          const std::vector<unsigned int>& counts);
void write_deep(const std::string& path, const std::vector<DeepImage>& parts);
DeepImage read_deep(const std::string& path, int subimage = 0);
