#include <cmath>
#include <random>

#include "colorio/ocio/v2/pixel_bridge.h"
#include "library_agreement.h"

using namespace pixel_test;

namespace {

constexpr unsigned long BUILTIN_LENGTH = 4101;

/// A built-in space of the module: a table over [-0.125, 1.125], as the matrix and the table that the library
/// makes of a file with that domain.
library::GroupTransformRcPtr builtin_space(double (*decode)(double), library::TransformDirection direction) {
    const library::MatrixTransformRcPtr fit = library::MatrixTransform::Create();
    double m[16], offset[4];
    const double low[4] = {-0.125, -0.125, -0.125, 0}, high[4] = {1.125, 1.125, 1.125, 1};
    const double zero[4] = {0, 0, 0, 0}, one[4] = {1, 1, 1, 1};
    library::MatrixTransform::Fit(m, offset, low, high, zero, one);
    fit->setMatrix(m);
    fit->setOffset(offset);
    const auto table = library::Lut1DTransform::Create(BUILTIN_LENGTH, false);
    for (unsigned long i = 0; i < BUILTIN_LENGTH; ++i) {
        const auto v = static_cast<float>(decode(static_cast<double>(i) * 1.25 / 4100 - 0.125));
        table->setValue(i, v, v, v);
    }
    const library::GroupTransformRcPtr group = library::GroupTransform::Create();
    group->appendTransform(fit);
    group->appendTransform(table);
    group->setDirection(direction);
    return group;
}

/// IEC 61966-2-1.
double srgb(double x) {
    return x >= 0.04045 ? std::pow((x + 0.055) / 1.055, 2.4) : x / 12.92;
}

/// The Cineon 10-bit log curve: black at 95, white at 685, 300 code values to a factor of 10.
double cineon(double x) {
    const double black = std::pow(10.0, (95 - 685) / 300.0);
    return (std::pow(10.0, (1023 * x - 685) / 300) - black) / (1 - black);
}

TEST(LibraryChainAgreement, EveryPairOfBuiltinSpaces) {
    for (const auto& decode : {srgb, cineon}) {
        EXPECT_TRUE(agrees(builtin_space(decode, library::TRANSFORM_DIR_FORWARD)));
        EXPECT_TRUE(agrees(builtin_space(decode, library::TRANSFORM_DIR_INVERSE)));
        for (const auto& encode : {srgb, cineon}) {
            const library::GroupTransformRcPtr pair = library::GroupTransform::Create();
            pair->appendTransform(builtin_space(decode, library::TRANSFORM_DIR_FORWARD));
            pair->appendTransform(builtin_space(encode, library::TRANSFORM_DIR_INVERSE));
            EXPECT_TRUE(agrees(pair));
        }
    }
}

library::CDLTransformRcPtr random_grade(std::mt19937& generator) {
    std::uniform_real_distribution<double> slope(0.5, 2), offset(-0.1, 0.1), power(0.5, 2),
        saturation(0.5, 1.5);
    const library::CDLTransformRcPtr cdl = library::CDLTransform::Create();
    const double s[3] = {slope(generator), slope(generator), slope(generator)};
    const double o[3] = {offset(generator), offset(generator), offset(generator)};
    const double p[3] = {power(generator), power(generator), power(generator)};
    cdl->setSlope(s);
    cdl->setOffset(o);
    cdl->setPower(p);
    cdl->setSat(saturation(generator));
    return cdl;
}

/// One CDL applied and another undone, as the module's CDL conversions do.
/// Colors of 1e25 that an undone saturation makes of nothing but rounding, and a power magnifies: the
/// library is off by up to six tolerances there.
constexpr double MAGNIFIED_ROUNDING = 4;

TEST(LibraryChainAgreement, CdlConversions) {
    std::mt19937 generator(8);
    for (int i = 0; i < 20; ++i) {
        const library::GroupTransformRcPtr pair = library::GroupTransform::Create();
        pair->appendTransform(random_grade(generator));
        const library::CDLTransformRcPtr undone = random_grade(generator);
        undone->setDirection(library::TRANSFORM_DIR_INVERSE);
        pair->appendTransform(undone);
        EXPECT_TRUE(agrees(pair, 1, MAGNIFIED_ROUNDING));
        EXPECT_TRUE(agrees(pair, 2, MAGNIFIED_ROUNDING));
    }
}

TEST(LibraryChainAgreement, ProcessorsThatDoNothingGiveEmptyChains) {
    const auto matrix = library::MatrixTransform::Create();
    const auto chain = ocio::translate(processor_of(matrix), nullptr);
    ASSERT_TRUE(chain);
    EXPECT_TRUE(pixel::Program(*chain).is_identity());
    EXPECT_TRUE(lossless(processor_of(matrix))->isNoOp());
}

TEST(LibraryChainAgreement, ImagesWithoutAlphaReadAsAlphaZero) {
    const library::MatrixTransformRcPtr matrix = library::MatrixTransform::Create();
    const double m[16] = {1, 0.5, 0, 0.25, 0, 1, 0.5, -3, 0.25, 0, 1, 7, 0, 0, 0, 1};
    matrix->setMatrix(m);
    const auto processor = processor_of(matrix);
    const pixel::Program program(*ocio::translate(processor, nullptr));
    std::vector<float> ours = ramp(3 * 40, -1.0f, 2.0f), theirs = ours;
    program.apply_packed(ours.data(), 40, 1, 3);
    library::PackedImageDesc packed(theirs.data(), 40, 1, 3);
    lossless(processor)->apply(packed);
    EXPECT_EQ(ours, theirs);
    program.apply_planar(ours.data(), ours.data() + 40, ours.data() + 80, nullptr, 40, 1);
    library::PlanarImageDesc planar(theirs.data(), theirs.data() + 40, theirs.data() + 80, nullptr, 40, 1);
    lossless(processor)->apply(planar);
    EXPECT_EQ(ours, theirs);
}

} // namespace
