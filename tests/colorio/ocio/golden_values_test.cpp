#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "colorio/ocio/processor.h"
#include "tests/colorio/ocio/test_configs.h"
#include "tests/data/golden_1x.h"

namespace {

double tolerance(float value) {
    return 2e-6 + 1e-5 * std::abs(static_cast<double>(value));
}

void expect_recorded_values(const ocio::ConstConfigRcPtr& config, const golden::Pair& pair) {
    SCOPED_TRACE(std::string(pair.source) + " to " + pair.destination);
    const auto processor = ocio::get_processor(config, pair.source, pair.destination);
    for (std::size_t i = 0; i < golden::INPUT_COUNT; ++i) {
        float pixel[4];
        std::copy_n(golden::INPUTS[i], 4, pixel);
        processor->apply_rgba(pixel);
        for (int channel = 0; channel < 3; ++channel) {
            const float expected = pair.outputs[i][channel];
            if (std::isfinite(expected))
                EXPECT_NEAR(pixel[channel], expected, tolerance(expected)) << "input " << i;
            else
                EXPECT_EQ(pixel[channel], expected) << "input " << i;
        }
        EXPECT_EQ(pixel[3], golden::INPUTS[i][3]) << "input " << i;
    }
}

TEST(GoldenValues, BuiltInPairsGiveWhatTheOldLibraryGave) {
    const TempDir folder;
    const auto config = test_configs::create_built_in_like(folder);
    for (const golden::Pair& pair : golden::BUILT_IN_PAIRS)
        expect_recorded_values(config, pair);
}

TEST(GoldenValues, CorrectionsGiveWhatTheOldLibraryGave) {
    const auto config = test_configs::create_corrections();
    for (const golden::Pair& pair : golden::CORRECTION_PAIRS)
        expect_recorded_values(config, pair);
}

} // namespace
