#include <vector>

#include "library_agreement.h"

using namespace pixel_test;

namespace {

constexpr library::TransformDirection DIRECTIONS[] = {library::TRANSFORM_DIR_FORWARD,
                                                      library::TRANSFORM_DIR_INVERSE};

library::FixedFunctionTransformRcPtr function(library::FixedFunctionStyle style,
                                              const std::vector<double>& parameters = {}) {
    return parameters.empty()
               ? library::FixedFunctionTransform::Create(style)
               : library::FixedFunctionTransform::Create(style, parameters.data(), parameters.size());
}

void expect_agreement(const library::FixedFunctionTransformRcPtr& transform) {
    for (const auto direction : DIRECTIONS) {
        transform->setDirection(direction);
        EXPECT_TRUE(agrees(transform)) << *transform;
    }
}

TEST(LibraryFunctionAgreement, AcesRedModifiers) {
    expect_agreement(function(library::FIXED_FUNCTION_ACES_RED_MOD_03));
    expect_agreement(function(library::FIXED_FUNCTION_ACES_RED_MOD_10));
}

TEST(LibraryFunctionAgreement, AcesGlow) {
    expect_agreement(function(library::FIXED_FUNCTION_ACES_GLOW_03));
    expect_agreement(function(library::FIXED_FUNCTION_ACES_GLOW_10));
}

TEST(LibraryFunctionAgreement, AcesDarkToDim) {
    expect_agreement(function(library::FIXED_FUNCTION_ACES_DARK_TO_DIM_10));
}

TEST(LibraryFunctionAgreement, AcesGamutCompression) {
    expect_agreement(function(library::FIXED_FUNCTION_ACES_GAMUT_COMP_13,
                              {1.147, 1.264, 1.312, 0.815, 0.803, 0.880, 1.2}));
    expect_agreement(
        function(library::FIXED_FUNCTION_ACES_GAMUT_COMP_13, {1.5, 2.5, 1.05, 0, 0.5, 0.95, 4.5}));
}

TEST(LibraryFunctionAgreement, Rec2100Surround) {
    for (const double gamma : {0.78, 1.2, 2.5, 0.05})
        expect_agreement(function(library::FIXED_FUNCTION_REC2100_SURROUND, {gamma}));
}

TEST(LibraryFunctionAgreement, HueSaturationValue) {
    expect_agreement(function(library::FIXED_FUNCTION_RGB_TO_HSV));
}

TEST(LibraryFunctionAgreement, CieConversions) {
    expect_agreement(function(library::FIXED_FUNCTION_XYZ_TO_xyY));
    expect_agreement(function(library::FIXED_FUNCTION_XYZ_TO_uvY));
    expect_agreement(function(library::FIXED_FUNCTION_XYZ_TO_LUV));
}

} // namespace
