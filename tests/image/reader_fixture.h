#pragma once

#include <string>
#include <vector>

#include <OpenImageIO/imageio.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "diagnostics/failure.h"
#include "image/reader_process.h"
#include "tests/support/env_guard.h"
#include "tests/support/temp_dir.h"

/// Images in a folder of the test's own.
class ImageTest : public testing::Test {
protected:
    /// Writes channels of floats that differ for each value.
    std::string write_image(const std::string& name, int width, int height, int channels = 3) const {
        const std::string path = folder.file(name);
        std::vector<float> values(static_cast<std::size_t>(width * height * channels));
        for (std::size_t i = 0; i < values.size(); ++i)
            values[i] = static_cast<float>(i % 65521) * 0.25f;
        const OIIO::ImageSpec spec(width, height, channels, OIIO::TypeFloat);
        const auto output = OIIO::ImageOutput::create(path);
        EXPECT_TRUE(output && output->open(path, spec) &&
                    output->write_image(OIIO::TypeFloat, values.data()) && output->close());
        return path;
    }

    /// The message of the Failure that `action` throws.
    template <class Action>
    static std::string failure_of(const Action& action) {
        try {
            action();
        } catch (const diagnostics::Failure& error) {
            return error.what();
        }
        return "no failure";
    }

    TempDir folder;

private:
    EnvGuard in_process{"COLORIO_READ_IN_PROCESS"};
};
