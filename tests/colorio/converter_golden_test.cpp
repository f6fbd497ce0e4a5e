#include <algorithm>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "colorio/color_io_converter.h"
#include "tests/colorio/converter_fixture.h"
#include "tests/data/golden_1x.h"

namespace {

/// The module's conversions beside what the 1.x library made of the same colors.
class RecordedValues : public ConverterTest {
protected:
    void expect_recorded(const golden::Pair& pair) {
        SCOPED_TRACE(std::string(pair.source) + " to " + pair.destination);
        const size_t count = golden::INPUT_COUNT;
        std::vector<float> pixels, planes[4];
        for (const auto& input : golden::INPUTS)
            for (int channel = 0; channel < 4; ++channel) {
                pixels.push_back(input[channel]);
                planes[channel].push_back(input[channel]);
            }
        std::vector<float> interleaved = pixels;
        EXPECT_TRUE(converter->convert_buffer(interleaved.data(), count / 2, 2, 4));
        EXPECT_TRUE(converter->convert_buffers(planes[0].data(), planes[1].data(), planes[2].data(),
                                               planes[3].data(), 1, count));
        for (size_t i = 0; i < count; ++i) {
            const float* input = golden::INPUTS[i];
            GMathVec4<float> pixel(input[0], input[1], input[2], input[3]);
            EXPECT_TRUE(converter->convert_pixel(pixel));
            for (unsigned int channel = 0; channel < 4; ++channel) {
                const float expected = channel < 3 ? pair.outputs[i][channel] : input[3];
                EXPECT_TRUE(is_near(pixel[channel], expected)) << "pixel " << i;
                EXPECT_TRUE(is_near(interleaved[i * 4 + channel], expected)) << "interleaved pixel " << i;
                EXPECT_TRUE(is_near(planes[channel][i], expected)) << "pixel " << i << " of planes";
            }
        }
    }
};

TEST_F(RecordedValues, OfTheBuiltInPairsAreKept) {
    for (const golden::Pair& pair : golden::BUILT_IN_PAIRS) {
        ASSERT_TRUE(converter->configure(pair.source, pair.destination));
        expect_recorded(pair);
    }
}

TEST_F(RecordedValues, OfCdlsAreKept) {
    std::vector<ColorIOManager::ColorDecisionListDef> records;
    for (const golden::Correction& correction : golden::CORRECTIONS) {
        ColorIOManager::ColorDecisionListDef record = cdl_record(correction.name, {});
        std::copy_n(correction.slope, 3, record.slope);
        std::copy_n(correction.offset, 3, record.offset);
        std::copy_n(correction.power, 3, record.power);
        record.saturation = correction.saturation;
        records.push_back(record);
    }
    use_cdls(records);
    for (const golden::Pair& pair : golden::CORRECTION_PAIRS) {
        ASSERT_TRUE(converter->configure_CDL(pair.source, pair.destination));
        expect_recorded(pair);
    }
}

} // namespace
