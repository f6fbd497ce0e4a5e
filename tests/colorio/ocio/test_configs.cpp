#include "tests/colorio/ocio/test_configs.h"

#include <cmath>
#include <functional>
#include <locale>
#include <sstream>

#include "colorio/ocio/color_space.h"
#include "tests/data/golden_1x.h"

namespace test_configs {

namespace {

constexpr int SAMPLES = 4101;
constexpr double FIRST = -0.125;
constexpr double LAST = 1.125;

/// IEC 61966-2-1, encoded value to linear light.
double decode_srgb(double x) {
    return x >= 0.04045 ? std::pow((x + 0.055) / 1.055, 2.4) : x / 12.92;
}

/// The 10-bit film curve: black at code 95, white at 685, 300 codes per decade.
double decode_cineon(double x) {
    const double black = std::pow(10.0, (95.0 - 685.0) / 300.0);
    return (std::pow(10.0, (1023.0 * x - 685.0) / 300.0) - black) / (1.0 - black);
}

void write_table(const TempDir& folder, const char* name, const std::function<double(double)>& curve) {
    std::ostringstream text;
    text.imbue(std::locale::classic());
    text.precision(9);
    text << "Version 1\nFrom " << FIRST << " " << LAST << "\nLength " << SAMPLES << "\nComponents 1\n{\n";
    for (int i = 0; i < SAMPLES; ++i)
        text << static_cast<float>(curve(FIRST + i * (LAST - FIRST) / (SAMPLES - 1))) << "\n";
    text << "}\n";
    folder.write(name, text.str());
}

ocio::ColorSpaceRcPtr make_fitted_space(const char* name, const char* table, ocio::Allocation allocation,
                                        float minimum, float maximum) {
    ocio::FileTransformRcPtr file;
    if (table) {
        file = ocio::create_file_transform();
        ocio::set_src(file, table);
        ocio::set_interpolation(file, ocio::INTERP_LINEAR);
    }
    const ocio::ColorSpaceRcPtr space = make_space(name, file);
    const float variables[] = {minimum, maximum};
    ocio::set_allocation(space, allocation);
    ocio::set_allocation_vars(space, 2, variables);
    return space;
}

} // namespace

void write_built_in_tables(const TempDir& folder) {
    write_table(folder, "srgb.spi1d", decode_srgb);
    write_table(folder, "cineon.spi1d", decode_cineon);
}

ocio::ConfigRcPtr create_built_in_like(const TempDir& folder) {
    write_built_in_tables(folder);
    const ocio::ConfigRcPtr config = ocio::create_config();
    ocio::set_working_dir(config, folder.get_path().c_str());
    ocio::add_color_space(config,
                          make_fitted_space("sRGB", "srgb.spi1d", ocio::ALLOCATION_UNIFORM, -0.125f, 1.125f));
    ocio::add_color_space(
        config, make_fitted_space("Cineon", "cineon.spi1d", ocio::ALLOCATION_UNIFORM, -0.125f, 1.125f));
    ocio::add_color_space(config, make_fitted_space("linear", nullptr, ocio::ALLOCATION_LG2, -15.0f, 6.0f));
    for (const char* name : {"sRGB", "Cineon", "linear"})
        ocio::add_display(config, "Tavelion", name, name, "");
    return config;
}

ocio::ConfigRcPtr create_corrections() {
    const ocio::ConfigRcPtr config = ocio::create_config();
    const auto add = [&](const golden::Correction& correction) {
        const ocio::CDLTransformRcPtr transform = ocio::create_CDL_transform();
        ocio::set_id(transform, correction.name);
        ocio::set_slope(transform, correction.slope);
        ocio::set_offset(transform, correction.offset);
        ocio::set_power(transform, correction.power);
        ocio::set_sat(transform, correction.saturation);
        const ocio::ColorSpaceRcPtr space = make_space(correction.name);
        ocio::set_allocation(space, ocio::ALLOCATION_LG2);
        ocio::set_transform(space, transform, ocio::COLORSPACE_DIR_FROM_REFERENCE);
        ocio::add_color_space(config, space);
    };
    add({"No CDL", {1, 1, 1}, {0, 0, 0}, {1, 1, 1}, 1});
    for (const golden::Correction& correction : golden::CORRECTIONS)
        add(correction);
    return config;
}

ocio::ColorSpaceRcPtr make_space(const char* name, const ocio::ConstTransformRcPtr& transform) {
    const ocio::ColorSpaceRcPtr space = ocio::create_color_space();
    ocio::set_name(space, name);
    ocio::set_bit_depth(space, ocio::BIT_DEPTH_F32);
    if (transform)
        ocio::set_transform(space, transform, ocio::COLORSPACE_DIR_TO_REFERENCE);
    return space;
}

std::string ConfigText::str() const {
    return "ocio_profile_version: " + version + "\n" + settings + "roles:\n" + roles + "displays:\n" +
           displays +
           "colorspaces:\n"
           "  - !<ColorSpace>\n    name: lin\n"
           "  - !<ColorSpace>\n    name: srgb\n" +
           spaces;
}

ocio::ConstConfigRcPtr load(const TempDir& folder, const std::string& text) {
    return ocio::create_config_from_file(folder.write("config.ocio", text).c_str());
}

} // namespace test_configs
