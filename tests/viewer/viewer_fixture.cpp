#include "tests/viewer/viewer_fixture.h"

#include <algorithm>
#include <cmath>

#include <OpenImageIO/imageio.h>

#include "tests/support/image_readers.h"

void write_image(const std::string& path, int width, int height,
                 const std::function<Rgb(int x, int y)>& color_at) {
    std::vector<float> rgba;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            const Rgb color = color_at(x, y);
            rgba.insert(rgba.end(), color.begin(), color.end());
            rgba.push_back(1);
        }
    const auto output = OIIO::ImageOutput::create(path);
    ASSERT_TRUE(output) << OIIO::geterror();
    ASSERT_TRUE(output->open(path, OIIO::ImageSpec(width, height, 4, OIIO::TypeDesc::FLOAT)));
    ASSERT_TRUE(output->write_image(OIIO::TypeDesc::FLOAT, rgba.data()) && output->close())
        << output->geterror();
}

void write_ramps(const std::string& path, int width, int height) {
    write_image(path, width, height, [&](int x, int y) {
        const float right = 1.5f * static_cast<float>(x) / static_cast<float>(width - 1);
        const float down = 1.5f * static_cast<float>(y) / static_cast<float>(height - 1);
        return Rgb{right, down, 0.25f * (right + down)};
    });
}

Rgb ShownImage::at(int x, int y) const {
    const auto first = pixels.begin() + (std::ptrdiff_t{y} * width + x) * 3;
    return {first, first + 3};
}

ShownImage read_shown(const std::string& path) {
    ShownImage image;
    const auto input = OIIO::ImageInput::open(path);
    EXPECT_TRUE(input) << OIIO::geterror();
    if (!input)
        return image;
    image.width = input->spec().width;
    image.height = input->spec().height;
    EXPECT_EQ(input->spec().nchannels, 3);
    image.pixels.resize(static_cast<size_t>(input->spec().image_pixels()) * 3);
    EXPECT_TRUE(input->read_image(0, 0, 0, 3, OIIO::TypeDesc::UINT8, image.pixels.data()));
    return image;
}

std::vector<std::string> format_all(const diagnostics::Diagnostics& list) {
    std::vector<std::string> texts;
    for (const diagnostics::Diagnostic& diagnostic : list)
        texts.push_back(format_with_hint(diagnostic));
    return texts;
}

Rgb to_screen(const float* rgb) {
    Rgb shown;
    for (int channel = 0; channel < 3; ++channel)
        shown.push_back(std::round(255 * std::clamp(rgb[channel], 0.0f, 1.0f)));
    return shown;
}

std::string write_config(const TempDir& folder, const std::string& name) {
    return folder.write(name, R"(ocio_profile_version: 1
search_path: luts
strictparsing: true
roles: {default: lin, scene_linear: lin}
displays:
  Screen:
    - !<View> {name: Raw, colorspace: lin}
    - !<View> {name: Shown, colorspace: shown}
active_displays: [Screen]
active_views: [Raw, Shown]
colorspaces:
  - !<ColorSpace>
    name: lin
    bitdepth: 32f
    allocation: uniform
    allocationvars: [0, 2]
  - !<ColorSpace>
    name: shown
    bitdepth: 32f
    from_reference: !<FileTransform> {src: shown.spi1d, interpolation: linear}
)");
}

void write_lut(const TempDir& folder, double white) {
    folder.write("luts/shown.spi1d",
                 "Version 1\nFrom 0 2\nLength 2\nComponents 1\n{\n0\n" + std::to_string(2 * white) + "\n}\n");
}
