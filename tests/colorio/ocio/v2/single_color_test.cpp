#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "colorio/ocio/v2/evaluator.h"
#include "tests/colorio/library_differences.h"
#include "tests/colorio/ocio/fast_path_guard.h"

namespace {

namespace library = ocio::library;

constexpr auto LOSSLESS = static_cast<library::OptimizationFlags>(
    library::OPTIMIZATION_LOSSLESS | library::OPTIMIZATION_NO_DYNAMIC_PROPERTIES);

using Operations = std::vector<std::pair<std::string, library::ConstTransformRcPtr>>;

library::ConstTransformRcPtr curve(bool for_halfs) {
    const unsigned long length = for_halfs ? 65536 : 200;
    const auto table = library::Lut1DTransform::Create(length, for_halfs);
    for (unsigned long i = 0; i < 200; ++i) {
        const float x = static_cast<float>(i) / 199.0f;
        if (!for_halfs)
            table->setValue(i, x * x, 0.9f * x * x + 0.1f * x, x);
    }
    return table;
}

library::ConstTransformRcPtr cube(library::Interpolation interpolation) {
    constexpr unsigned long EDGE = 5;
    const auto table = library::Lut3DTransform::Create(EDGE);
    const auto at = [](unsigned long i) { return static_cast<float>(i) / (EDGE - 1.0f); };
    for (unsigned long r = 0; r < EDGE; ++r)
        for (unsigned long g = 0; g < EDGE; ++g)
            for (unsigned long b = 0; b < EDGE; ++b)
                table->setValue(r, g, b, at(r) * at(r), 0.7f * at(g) + 0.3f * at(r), at(b) * at(g));
    table->setInterpolation(interpolation);
    return table;
}

template <class Transform>
library::ConstTransformRcPtr with(std::shared_ptr<Transform> transform,
                                  void (*change)(Transform& transform)) {
    change(*transform);
    return transform;
}

Operations known_operations() {
    return {
        {"CDL",
         with<library::CDLTransform>(library::CDLTransform::Create(),
                                     [](library::CDLTransform& cdl) {
                                         const double slope[] = {1.1, 0.9, 1.2}, power[] = {1.2, 0.8, 1};
                                         cdl.setSlope(slope);
                                         cdl.setPower(power);
                                         cdl.setSat(1.3);
                                     })},
        {"exponent", with<library::ExponentTransform>(library::ExponentTransform::Create(),
                                                      [](library::ExponentTransform& exponent) {
                                                          const double value[] = {2.2, 1, 0.5, 1};
                                                          exponent.setValue(value);
                                                      })},
        {"linear toe", with<library::ExponentWithLinearTransform>(
                           library::ExponentWithLinearTransform::Create(),
                           [](library::ExponentWithLinearTransform& toe) {
                               const double gamma[] = {2.4, 2.4, 3, 1}, offset[] = {0.055, 0.055, 0.1, 0};
                               toe.setGamma(gamma);
                               toe.setOffset(offset);
                           })},
        {"matrix", with<library::MatrixTransform>(library::MatrixTransform::Create(),
                                                  [](library::MatrixTransform& matrix) {
                                                      const double m[] = {0.6, 0.3, 0.1, 0, 0.2, 0.7, 0.1, 0,
                                                                          0.1, 0.1, 0.8, 0, 0,   0,   0,   1};
                                                      matrix.setMatrix(m);
                                                  })},
        {"range", with<library::RangeTransform>(library::RangeTransform::Create(),
                                                [](library::RangeTransform& range) {
                                                    range.setMinInValue(0.1);
                                                    range.setMinOutValue(0);
                                                    range.setMaxInValue(0.9);
                                                    range.setMaxOutValue(1);
                                                })},
        {"log", library::LogTransform::Create()},
        {"log affine", with<library::LogAffineTransform>(library::LogAffineTransform::Create(),
                                                         [](library::LogAffineTransform& log) {
                                                             const double slope[] = {0.3, 0.4, 0.5};
                                                             log.setLogSideSlopeValue(slope);
                                                         })},
        {"1D LUT", curve(false)},
        {"1D LUT for half floats", curve(true)},
        {"trilinear 3D LUT", cube(library::INTERP_LINEAR)},
        {"tetrahedral 3D LUT", cube(library::INTERP_TETRAHEDRAL)},
    };
}

library::ConstTransformRcPtr graded(library::GradingStyle style) {
    const auto transform = library::GradingPrimaryTransform::Create(style);
    library::GradingPrimary values(style);
    values.m_contrast.m_red = 1.3;
    values.m_saturation = 1.2;
    transform->setValue(values);
    return transform;
}

Operations further_operations() {
    Operations operations;
    for (const auto style : {library::FIXED_FUNCTION_ACES_RED_MOD_10, library::FIXED_FUNCTION_ACES_GLOW_10,
                             library::FIXED_FUNCTION_ACES_DARK_TO_DIM_10, library::FIXED_FUNCTION_RGB_TO_HSV,
                             library::FIXED_FUNCTION_XYZ_TO_xyY, library::FIXED_FUNCTION_XYZ_TO_LUV})
        operations.emplace_back("fixed function " + std::to_string(style),
                                library::FixedFunctionTransform::Create(style));
    for (const auto style : {library::GRADING_LOG, library::GRADING_LIN, library::GRADING_VIDEO})
        operations.emplace_back("grading " + std::to_string(style), graded(style));
    operations.emplace_back("exposure", with<library::ExposureContrastTransform>(
                                            library::ExposureContrastTransform::Create(),
                                            [](library::ExposureContrastTransform& transform) {
                                                transform.setExposure(0.5);
                                                transform.setContrast(1.1);
                                                transform.setPivot(0.18);
                                            }));
    for (const auto& lut : {curve(false), cube(library::INTERP_TETRAHEDRAL), cube(library::INTERP_LINEAR)}) {
        const auto group = library::GroupTransform::Create();
        group->appendTransform(
            library::FixedFunctionTransform::Create(library::FIXED_FUNCTION_ACES_RED_MOD_10));
        group->appendTransform(lut->createEditableCopy());
        operations.emplace_back("fixed function and LUT", group);
    }
    return operations;
}

constexpr long COUNT = 777;

std::vector<float> colors() {
    std::mt19937 generator(11);
    std::uniform_real_distribution<float> uniform(-0.5f, 1.5f);
    std::vector<float> values(4 * COUNT);
    std::generate(values.begin(), values.end(), [&] { return uniform(generator); });
    return values;
}

ocio::PackedImageDesc row_of(std::vector<float>& pixels) {
    return {pixels.data(), COUNT, 1, 4};
}

ocio::PackedImageDesc column_of(std::vector<float>& pixels) {
    return {pixels.data(), 1, COUNT, 4};
}

std::vector<float> converted(const ocio::Evaluator& evaluator,
                             ocio::PackedImageDesc (*shape)(std::vector<float>&)) {
    std::vector<float> pixels = colors();
    evaluator.apply(shape(pixels));
    return pixels;
}

template <class Convert>
std::vector<float> converted_alone(const Convert& convert) {
    std::vector<float> pixels = colors();
    for (std::size_t i = 0; i < pixels.size(); i += 4)
        convert(pixels.data() + i);
    return pixels;
}

bool have_same_bits(const std::vector<float>& a, const std::vector<float>& b) {
    return std::memcmp(a.data(), b.data(), a.size() * sizeof(float)) == 0;
}

float largest_difference(const std::vector<float>& a, const std::vector<float>& b) {
    float largest = 0;
    for (std::size_t i = 0; i < a.size(); ++i)
        largest = std::max(largest, std::fabs(a[i] - b[i]));
    return largest;
}

bool is_forward_table(const library::Transform& transform) {
    switch (transform.getTransformType()) {
    case library::TRANSFORM_TYPE_LUT1D:
        return true;
    case library::TRANSFORM_TYPE_LUT3D:
        return dynamic_cast<const library::Lut3DTransform&>(transform).getInterpolation() ==
               library::INTERP_TETRAHEDRAL;
    default:
        return false;
    }
}

/// Whether newer libraries have SIMD code for it that they do not use for rows of one pixel: for forward 1D
/// tables and tetrahedral cubes.
bool has_forward_table(const library::Transform& transform) {
    if (transform.getTransformType() != library::TRANSFORM_TYPE_GROUP)
        return is_forward_table(transform);
    const auto& group = dynamic_cast<const library::GroupTransform&>(transform);
    for (int i = 0; i < group.getNumTransforms(); ++i)
        if (is_forward_table(*group.getTransform(i)))
            return true;
    return false;
}

/// `expect` gets an evaluator of each operation in both directions.
template <class Expect>
void for_each_operation(const Expect& expect) {
    const library::ConstConfigRcPtr config = library::Config::CreateRaw();
    for (const Operations& operations : {known_operations(), further_operations()})
        for (const auto& [name, transform] : operations)
            for (const auto direction : {library::TRANSFORM_DIR_FORWARD, library::TRANSFORM_DIR_INVERSE}) {
                const library::ConstProcessorRcPtr processor = config->getProcessor(transform, direction);
                const ocio::Evaluator evaluator(processor, LOSSLESS);
                SCOPED_TRACE(name + ", direction " + std::to_string(direction) + ", by " +
                             (evaluator.get_program() ? "SIMD code" : "OpenColorIO"));
                expect(evaluator, *processor,
                       direction == library::TRANSFORM_DIR_FORWARD && has_forward_table(*transform));
            }
}

TEST(SingleColors, HaveTheBitsOfAnImageUnderEveryOperation) {
    for_each_operation([](const ocio::Evaluator& evaluator, const library::Processor&, bool) {
        const auto alone = converted_alone([&](float* rgba) { evaluator.apply_rgba(rgba); });
        EXPECT_TRUE(have_same_bits(alone, converted(evaluator, row_of)));
        EXPECT_TRUE(have_same_bits(alone, converted(evaluator, column_of)));
    });
}

TEST(SingleColors, HaveTheBitsOfAnImageWhereOpenColorIOConverts) {
    const FastPathGuard off(false);
    const std::string behind_tables = library_differences::expected("a color alone behind a forward table");
    const bool tables_differ = behind_tables == "rounded otherwise";
    for_each_operation([&](const ocio::Evaluator& evaluator, const library::Processor&, bool has_table) {
        const auto alone = converted_alone([&](float* rgba) { evaluator.apply_rgba(rgba); });
        EXPECT_TRUE(have_same_bits(alone, converted(evaluator, column_of)));
        const std::vector<float> row = converted(evaluator, row_of);
        if (tables_differ && has_table)
            EXPECT_LE(largest_difference(alone, row), 2.5e-7f);
        else
            EXPECT_TRUE(have_same_bits(alone, row));
    });
}

TEST(SingleColors, AreOpenColorIOsOwnWhereItConverts) {
    const FastPathGuard off(false);
    for_each_operation([](const ocio::Evaluator& evaluator, const library::Processor& processor, bool) {
        const library::ConstCPUProcessorRcPtr cpu = processor.getOptimizedCPUProcessor(LOSSLESS);
        EXPECT_TRUE(have_same_bits(converted_alone([&](float* rgba) { evaluator.apply_rgba(rgba); }),
                                   converted_alone([&](float* rgba) { cpu->applyRGBA(rgba); })));
    });
}

} // namespace
