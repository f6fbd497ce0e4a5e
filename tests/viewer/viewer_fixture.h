#pragma once

#include <functional>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "diagnostics/diagnostic.h"
#include "tests/support/env_guard.h"
#include "tests/support/temp_dir.h"
#include "tool/console.h"
#include "viewer/image.h"
#include "workflow/live_config.h"

/// An RGB color, from 0 to 255 in images that were read from a file.
using Rgb = std::vector<float>;

/// Writes an RGBA float EXR, rows from the top.
void write_image(const std::string& path, int width, int height,
                 const std::function<Rgb(int x, int y)>& color_at);
/// An image of many colors: red rises to the right, green downwards, up to 1.5.
void write_ramps(const std::string& path, int width, int height);

/// The 8-bit RGB pixels of a file.
struct ShownImage {
    int width = 0;
    int height = 0;
    std::vector<unsigned char> pixels;

    Rgb at(int x, int y) const;
};
ShownImage read_shown(const std::string& path);

/// Each as the panels show it.
std::vector<std::string> format_all(const diagnostics::Diagnostics& list);

/// What an 8-bit screen shows of display values.
Rgb to_screen(const float* rgb);

/// A version 1 configuration of the spaces "lin" (scene-linear) and "shown", which is "lin" as the LUT file
/// "luts/shown.spi1d" has it, and of the views "Screen.Raw" and "Screen.Shown".
std::string write_config(const TempDir& folder, const std::string& name = "test.ocio");
/// Writes the LUT file: straight from 0 to `white` over the values 0 to 1.
void write_lut(const TempDir& folder, double white);

/// Everything that a viewer needs but the viewer.
class ViewerTest : public testing::Test {
protected:
    TempDir folder;
    EnvGuard variable{"OCIO"};
    EnvGuard no_driver_cache{"MESA_SHADER_CACHE_DISABLE", "true"};
    EnvGuard cache{"XDG_CACHE_HOME", folder.file("cache")};
    std::ostringstream out;
    std::ostringstream err;
    tool::Console console{out, err};
};
