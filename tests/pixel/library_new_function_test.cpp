#include <vector>

#include "library_agreement.h"

using namespace pixel_test;

namespace {

/// Functions that OpenColorIO has since 2.4.
void expect_agreement(library::FixedFunctionStyle style, const std::vector<double>& parameters = {}) {
    const auto transform =
        parameters.empty()
            ? library::FixedFunctionTransform::Create(style)
            : library::FixedFunctionTransform::Create(style, parameters.data(), parameters.size());
    for (const auto direction : {library::TRANSFORM_DIR_FORWARD, library::TRANSFORM_DIR_INVERSE}) {
        transform->setDirection(direction);
        EXPECT_TRUE(agrees(transform)) << *transform;
    }
}

TEST(LibraryFunctionAgreement, Pq) {
    expect_agreement(library::FIXED_FUNCTION_LIN_TO_PQ);
}

TEST(LibraryFunctionAgreement, GammaAndLogarithm) {
    expect_agreement(library::FIXED_FUNCTION_LIN_TO_GAMMA_LOG,
                     {0, 0.25, 0.5, 1, 0.02, 2.718281828, 0.17, 0.55, 1, -0.2});
}

TEST(LibraryFunctionAgreement, TwoLogarithms) {
    expect_agreement(library::FIXED_FUNCTION_LIN_TO_DOUBLE_LOG,
                     {10, 0.1, 0.5, 0.2, 0.5, 1.2, 0.05, 0.25, 0.45, 1, 0.02, 1.1, 0.3});
}

} // namespace
