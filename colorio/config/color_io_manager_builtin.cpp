#include <cmath>
#include <string>

#include "colorio/color_io_constants.h"
#include "colorio/color_io_manager.h"
#include "colorio/facade/color_io_log.h"
#include "colorio/ocio/color_space.h"
#include "colorio/ocio/config.h"
#include "colorio/ocio/transform.h"
#include "host/of/of_app.h"
#include "host/sys/sys_file.h"
#include "host/sys/sys_filesystem.h"

namespace {

constexpr unsigned int LUT_LENGTH = 4101;
constexpr float LUT_FROM = -0.125f;
constexpr float LUT_TO = 1.125f;

/// IEC 61966-2-1 decoding of x = t * 1.25 / 4100 - 0.125, with the step folded into the constants:
/// ((x + 0.055) / 1.055)^2.4 from x = 0.04045 on, x / 12.92 below.
float decode_srgb(float t) {
    if (t * 0.00030487805f >= 0.16545f)
        return std::pow(t * 0.00028898395f - 0.06635071f, 2.4f);
    return t * 2.3597371e-5f - 0.009674923f;
}

/// Linear value of the 10-bit Cineon printing density 1023 * x, 300 codes per decade, white at 685, black at
/// 95: (10^((code - 685) / 300) - black) / (1 - black), black = 10^((95 - 685) / 300).
float decode_cineon(float t) {
    constexpr float CINEON_BLACK = 0.010797751f;
    constexpr float CINEON_GAIN = 1.0109156f;
    return (std::pow(10.0f, t * 0.0010396341f - 2.7095833f) - CINEON_BLACK) * CINEON_GAIN;
}

struct BuiltinSpace {
    const CoreStringView& name;
    const char* description;
    const char* lut_file;
    float (*decode)(float t);
};

const BuiltinSpace BUILTIN_SPACES[] = {
    {ColorIOManager::BUILTIN_SRGB, "Standard RGB Display Space.", "srgb.spi1d", decode_srgb},
    {ColorIOManager::BUILTIN_CINEON, "Cineon (Log Film Scan).", "cineon.spi1d", decode_cineon},
};

CoreArray<float> sample(float (*decode)(float t)) {
    CoreArray<float> values(LUT_LENGTH);
    for (unsigned int i = 0; i < LUT_LENGTH; ++i)
        values[i] = decode(static_cast<float>(i));
    return values;
}

ocio::ColorSpaceRcPtr make_color_space(const BuiltinSpace& builtin) {
    ocio::ColorSpaceRcPtr space = ocio::create_color_space();
    ocio::set_name(space, builtin.name.data);
    ocio::set_family(space, ColorIOManager::BUILTIN_FAMILY.data);
    ocio::set_description(space, builtin.description);
    ocio::set_bit_depth(space, ocio::BIT_DEPTH_F32);
    ocio::set_allocation(space, ocio::ALLOCATION_UNIFORM);
    const float variables[] = {LUT_FROM, LUT_TO};
    ocio::set_allocation_vars(space, 2, variables);

    ocio::FileTransformRcPtr transform = ocio::create_file_transform();
    ocio::set_src(transform, builtin.lut_file);
    ocio::set_interpolation(transform, ocio::INTERP_LINEAR);
    ocio::set_transform(space, transform, ocio::COLORSPACE_DIR_TO_REFERENCE);
    return space;
}

} // namespace

bool ColorIOManager::init_default_tavelion_config() {
    tavelion_config_ready = false;
    CoreString folder;
    const bool has_folder = app && app->create_temp_folder(LUT_FOLDER, folder);
    if (!has_folder) {
        log_message(LOG_ERROR,
                    "Color Management: failed to create the temporary folder for the built-in LUT files.\n");
        report(LOG_ERROR, diagnostics::Code::CONFIG_BUILTIN, CoreString(),
               "the temporary folder for the built-in LUTs cannot be created");
    }
    bool files_written = true;
    const bool made = log_config_errors([&] {
        tavelion_config = ocio::create_config();
        if (has_folder)
            files_written = fill_builtin_config(folder);
    });
    tavelion_config_ready = made && has_folder && validate_builtin_config();
    return tavelion_config_ready && files_written;
}

bool ColorIOManager::fill_builtin_config(CoreString folder) {
    ocio::set_working_dir(tavelion_config, folder.get_data());
    bool files_written = true;
    CoreVector<ColorSpaceDef> records;
    for (const BuiltinSpace& builtin : BUILTIN_SPACES) {
        if (app->create_temp_folder(LUT_FOLDER, folder)) {
            const CoreString path = folder + "/" + builtin.lut_file;
            if (!SysFilesystem::file_exists(path) &&
                !write_lut_to_disk(path, sample(builtin.decode), LUT_FROM, LUT_TO)) {
                log_message(LOG_ERROR, "Color Management: failed to write built-in LUT file '", path, "'.\n");
                report_file(LOG_ERROR, diagnostics::Code::LUT_UNWRITABLE, path,
                            "cannot write the built-in LUT '" + std::string(path.view()) + "'");
                files_written = false;
            }
        }
        const ocio::ColorSpaceRcPtr space = make_color_space(builtin);
        ocio::add_color_space(tavelion_config, space);
        records.append({ocio::get_name(space),
                        "",
                        "",
                        "",
                        ocio::BIT_DEPTH_F32,
                        ocio::ALLOCATION_UNIFORM,
                        {LUT_FROM, LUT_TO, 0.0f},
                        true});
    }
    for (const BuiltinSpace& builtin : BUILTIN_SPACES)
        ocio::add_display(tavelion_config, BUILTIN_FAMILY.data, builtin.name.data, builtin.name.data, "");
    for (const ColorSpaceDef& record : records)
        tavelion_color_spaces.append(record);
    return files_written;
}

bool ColorIOManager::write_lut_to_disk(const CoreString& path, const CoreArray<float>& values, float from,
                                       float to) {
    SysFile file(path, SysFile::MODE_WRITE, 0);
    if (!file.is_opened())
        return false;
    constexpr char INDENT[] = "        ";
    constexpr std::size_t LINE_LENGTH = 24;
    std::string text;
    text.reserve(values.get_count() * LINE_LENGTH);
    const auto append = [&text](const CoreBasicString& part) { text += part.view(); };
    text += "Version 1\nFrom ";
    append(CoreString::from_float(from));
    text += ' ';
    append(CoreString::from_float(to));
    text += "\nLength ";
    append(CoreString::from_unsigned(values.get_count()));
    text += "\nComponents 1\n{\n";
    for (const float value : values) {
        text += INDENT;
        append(CoreString::from_float(value));
        text += '\n';
    }
    text += "}\n";
    const long long written = file.write(CoreString(std::string_view(text)));
    return file.close() && written > 0;
}
