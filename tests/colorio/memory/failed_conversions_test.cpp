// Converters and format associations while memory is short; see failed_allocation_test.cpp.

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "colorio/color_io.h"
#include "colorio/color_io_auto_detection.h"
#include "colorio/color_io_converter.h"
#include "colorio/color_io_evaluation.h"
#include "colorio/color_io_inspection.h"
#include "colorio/color_io_manager.h"
#include "host/event/event_ids.h"
#include "host/gmath/gmath_vec4.h"
#include "host/of/of_enum.h"
#include "host/parser/parser_entry.h"
#include "host/parser/parser_group.h"
#include "tests/colorio/memory/failed_allocation_fixture.h"

namespace {

TEST_F(FailedAllocation, OfConfiguringAConverter) {
    manager().set_tavelion_config(own_cdls());
    ColorIOConverter converter;
    const CoreString srgb = "Tavelion|sRGB", linear = "linear", warm = "numbers", filed = "filed",
                     unknown = "a name that no string holds without memory", display = "Tavelion",
                     view = "sRGB", default_linear = ColorIO::s_default_scene_linear;
    expect_answered([&] { return converter.configure(srgb, linear); }, false);
    expect_answered([&] { return converter.configure(unknown, linear); }, false);
    expect_answered([&] { return converter.configure_CDL(warm, filed); }, false);
    expect_answered([&] { return converter.configure_CDL(unknown, filed); }, false);
    expect_answered([&] { return converter.configure_for_display(linear, display, view); }, false);
    expect_answered([&] { return converter.configure_for_display("linear", "Tavelion.sRGB"); }, false);
    expect_answered([&] { return converter.get_color_space(default_linear); }, CoreString());
    expect_answered([&] { return ColorIOConverter().configure(srgb, linear); }, false);
}

TEST_F(FailedAllocation, OfConfiguringLeavesNoOldConversion) {
    const CoreString srgb = "sRGB", cineon = "Cineon", linear = "linear";
    ColorIOConverter converter;
    const auto configure = [&] { converter.configure(cineon, linear); };
    for (const unsigned int number : record_allocations([] {}, configure)) {
        ASSERT_TRUE(converter.configure(srgb, linear));
        bool configured = true;
        {
            const FailingAllocation failing(number);
            configured = converter.configure(cineon, linear);
        }
        ASSERT_EQ(converter.is_configured(), configured) << number;
        take_log();
    }
}

TEST_F(FailedAllocation, OfConverting) {
    for (const bool own_code : {true, false}) {
        ColorIOEvaluation::set_vector_code(own_code);
        ColorIOConverter converter;
        ASSERT_TRUE(converter.configure("sRGB", "linear"));
        GMathVec4<float> pixel(0.5f, 0.5f, 0.5f, 1);
        std::vector<float> image(64 * 4, 0.5f);
        float* const plane = image.data();
        expect_answered([&] { return converter.convert_pixel(pixel); }, false);
        expect_answered([&] { return converter.convert_buffer(image.data(), 8, 8, 4); }, false);
        expect_answered(
            [&] { return converter.convert_buffers(plane, plane + 64, plane + 128, nullptr, 8, 8); }, false);
        expect_answered(
            [&] {
                CoreString text;
                CoreArray<float> table;
                ColorIOConverter fresh;
                return fresh.configure("sRGB", "linear") &&
                       fresh.get_gpu_shader_data(text, table, ColorIOConverter::GLSL_VERSION_CORE);
            },
            false);
        ColorIOEvaluation::Explanation explanation;
        expect_answered([&] { return ColorIOEvaluation::explain(converter, pixel, explanation); }, false);
    }
    ColorIOEvaluation::set_vector_code(true);
}

TEST_F(FailedAllocation, OfConvertingThroughTheFacade) {
    manager().set_tavelion_config(own_cdls());
    const CoreString srgb = "sRGB", linear = "linear", warm = "numbers", none = "No CDL";
    std::vector<float> image(64 * 4, 0.5f);
    float* const r = image.data();
    float *const g = r + 64, *const b = g + 64;
    expect_answered([&] { return ColorIO::convert_buffer(r, 8, 8, 4, linear, srgb); }, false);
    expect_answered([&] { return ColorIO::convert_buffers(r, g, b, nullptr, 8, 8, linear, srgb); }, false);
    expect_answered([&] { return ColorIO::convert_CDL_buffers(r, g, b, nullptr, 8, 8, warm, none); }, false);
}

TEST_F(FailedAllocation, OfTheFormats) {
    const CoreString extension = "EXR", format = "a format that no string holds without memory",
                     extensions = "first extension, second extension", space = "sRGB";
    expect_answered([&] { return ColorIO::get_instance()->get_default_color_space_from_ext(extension); },
                    CoreString());
    const auto state = [this] { return detector().get_categories_count() > 9u; };
    expect_survived([&] { detector().add_file_format(format, extensions, space); }, state);
    expect_answered([&] { return detector().get_file_format(9); }, CoreString());
    expect_answered([&] { return detector().get_extensions(9); }, CoreString());
    expect_answered([&] { return detector().get_color_space(9); }, CoreString());
    for (const CoreString& name : {format, CoreString("not listed")}) {
        expect_answered([&] { return detector().get_extension_from_file_format(name); }, CoreString());
        expect_answered([&] { return detector().get_default_color_space_from_file_format(name); },
                        CoreString());
    }
    for (const unsigned int row : {0u, 1000u, NOT_FOUND}) {
        expect_survived([&] { detector().set_file_format(row, format); }, state);
        expect_survived([&] { detector().set_extension_from_file_format(row, extensions); }, state);
        expect_survived([&] { detector().set_default_color_space_from_file_format(row, space); }, state);
    }
    expect_survived([&] { detector().init_default_color_spaces(); }, state);
    for (unsigned int row = 0; row < detector().get_categories_count(); ++row)
        EXPECT_FALSE(detector().get_color_space(row).is_empty()) << "rows are whole";
    expect_survived([this] { detector().remove_file_format(1); }, state);
}

TEST_F(FailedAllocation, OfTheMappingFile) {
    const CoreString path = app.color_space_by_extension_file_path;
    expect_answered([&] { return detector().build_from_file(path); }, false);
    expect_answered([&] { return detector().check_mappings(); }, false);
    for (const bool use : {true, false})
        expect_survived([&] { detector().use_file_config(use); },
                        [&] { return detector().is_file_config(); });
    const CoreString damaged = write_file("damaged.yaml", "a: [").c_str();
    expect_answered([&] { return detector().build_from_file(damaged); }, false);
}

} // namespace
