#include "all_operations.h"
#include "every_target.h"
#include "pixel/vector_target.h"
#include "samples.h"

using namespace pixel;
using namespace pixel_test;

namespace {

TEST(VectorTargets, ScalarCodeIsTheLastOfThem) {
    ASSERT_FALSE(vector_targets().empty());
    EXPECT_TRUE(is_scalar(vector_targets().back())) << vector_targets().back();
}

/// The scalar code, the slowest and plainest, is what the others are held to.
class TargetAgreement : public EveryTarget {};
RUN_ON_EVERY_TARGET(TargetAgreement);

TEST_P(TargetAgreement, TheTestRunsOnTheInstructionSetItNames) {
    EXPECT_EQ(vector_target(), target_name(GetParam()));
}

TEST_P(TargetAgreement, EveryOperationIsWithinTwoUnitsOfTheScalarOne) {
    const std::vector<Pixel> pixels = mixed_pixels(1200, 31);
    for (const Op& op : all_operations()) {
        const Program program({op});
        std::vector<Pixel> vector = pixels, scalar = pixels;
        program.apply_packed(vector[0].data(), vector.size(), 1, 4);
        {
            const TargetGuard plain(vector_targets().back());
            program.apply_packed(scalar[0].data(), scalar.size(), 1, 4);
        }
        for (std::size_t i = 0; i < pixels.size(); ++i) {
            for (std::size_t c = 0; c < 4; ++c) {
                ASSERT_TRUE(within_units(vector[i][c], scalar[i][c], 2))
                    << program.describe().given[0] << ": " << pixels[i][c] << " gave " << vector[i][c]
                    << " and " << scalar[i][c];
            }
        }
    }
}

} // namespace
