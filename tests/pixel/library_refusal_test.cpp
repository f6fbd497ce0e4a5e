#include <cmath>
#include <string>

#include "colorio/ocio/v2/pixel_bridge.h"
#include "library_agreement.h"
#include "tests/support/env_guard.h"

using namespace pixel_test;

namespace {

std::string why_not(const library::ConstTransformRcPtr& transform) {
    std::string words;
    EXPECT_FALSE(ocio::translate(processor_of(transform), &words).has_value());
    return words;
}

library::Lut3DTransformRcPtr inverse_cube() {
    const auto cube = library::Lut3DTransform::Create(3);
    cube->setValue(1, 1, 1, 0.4f, INFINITY, 0.6f);
    cube->setDirection(library::TRANSFORM_DIR_INVERSE);
    return cube;
}

TEST(LibraryRefusal, OneUnknownOperationIsEnough) {
    const auto group = library::GroupTransform::Create();
    group->appendTransform(library::LogTransform::Create());
    group->appendTransform(inverse_cube());
    EXPECT_EQ(why_not(group),
              "the inverse of a 3D LUT with NaN or infinity is not supported by the SIMD code");
}

TEST(LibraryRefusal, InverseCubesWithInfinityAreNotTaken) {
    EXPECT_EQ(why_not(inverse_cube()),
              "the inverse of a 3D LUT with NaN or infinity is not supported by the SIMD code");
}

TEST(LibraryRefusal, DynamicGradingsThatTheLibraryFixesAreTaken) {
    const auto exposure = library::ExposureContrastTransform::Create();
    exposure->setExposure(1);
    exposure->makeExposureDynamic();
    EXPECT_TRUE(ocio::translate(processor_of(exposure), nullptr).has_value());
}

TEST(LibraryRefusal, InversesOfTablesWithInfinityAreNotTaken) {
    const auto table = library::Lut1DTransform::Create(3, false);
    table->setValue(2, 1.0f, INFINITY, 1.0f);
    table->setDirection(library::TRANSFORM_DIR_INVERSE);
    EXPECT_EQ(why_not(table),
              "the inverse of a 1D LUT with NaN or infinity is not supported by the SIMD code");
}

TEST(LibraryRefusal, InverseHalfCurvesInDifferentDirectionsAreNotTaken) {
    const auto table = library::Lut1DTransform::Create(65536, true);
    for (unsigned long i = 0; i < 65536; ++i) {
        float r = 0, g = 0, b = 0;
        table->getValue(i, r, g, b);
        table->setValue(i, r, g, -b);
    }
    table->setDirection(library::TRANSFORM_DIR_INVERSE);
    EXPECT_EQ(why_not(table), "the inverse of a 1D LUT over the 16-bit floats with curves of different "
                              "directions is not supported by the SIMD code");
}

TEST(LibraryRefusal, ReasonsMayBeLeftOut) {
    EXPECT_FALSE(ocio::translate(processor_of(inverse_cube()), nullptr).has_value());
}

TEST(LibraryRefusal, FlagsFromTheEnvironmentKeepTheLibraryInCharge) {
    const EnvGuard flags("OCIO_OPTIMIZATION_FLAGS", "0");
    EXPECT_EQ(why_not(library::LogTransform::Create()), "OCIO_OPTIMIZATION_FLAGS is set");
}

} // namespace
