// A converter made while memory is short.

#include <new>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "colorio/color_io_converter.h"
#include "host/gmath/gmath_vec4.h"
#include "tests/colorio/running_module.h"

namespace {

bool memory_is_short = false;

using ConverterMemory = RunningModule;

} // namespace

// The form of `new` that returns null; the module makes a converter's state with it.
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    if (memory_is_short)
        return nullptr;
    try {
        return ::operator new(size);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

TEST_F(ConverterMemory, AConverterWithoutItsStateRefusesEverything) {
    memory_is_short = true;
    ColorIOConverter converter;
    memory_is_short = false;

    EXPECT_FALSE(converter.configure("sRGB", "linear"));
    EXPECT_FALSE(converter.configure("same", "same"));
    EXPECT_FALSE(converter.configure_CDL("No CDL", "other"));
    EXPECT_FALSE(converter.configure_for_display("linear", "Tavelion", "sRGB"));
    EXPECT_FALSE(converter.configure_for_display("linear", "Tavelion.sRGB"));
    EXPECT_FALSE(converter.is_configured());
    EXPECT_FALSE(converter.is_enabled());

    GMathVec4<float> pixel(0.5f, 0.25f, 2.0f, 1.0f);
    float plane[3] = {0.5f, 0.25f, 2.0f};
    EXPECT_FALSE(converter.convert_pixel(pixel));
    EXPECT_FALSE(converter.convert_buffer(plane, 1, 1, 3));
    EXPECT_FALSE(converter.convert_buffers(plane, plane + 1, plane + 2, nullptr, 1, 1));
    CoreString text = "as it was";
    CoreArray<float> table;
    EXPECT_FALSE(converter.get_gpu_shader_data(text, table, ColorIOConverter::GLSL_VERSION_CORE));
    EXPECT_EQ(str(text), "as it was");
    EXPECT_EQ(table.get_count(), 0u);
    EXPECT_TRUE(converter.get_color_space("linear").is_empty());
    EXPECT_EQ(converter.get_lut_3d_edge_size(), 32u);
    EXPECT_EQ(converter.get_memory_size(), 24u);
    EXPECT_EQ(plane[1], 0.25f);
    EXPECT_EQ(pixel[2], 2.0f);
}
