#include <cmath>
#include <functional>
#include <limits>
#include <random>

#include "library_agreement.h"

using namespace pixel_test;

namespace {

/// `f(position in [0, 1], channel)` for every entry.
library::Lut1DTransformRcPtr table(unsigned long length, const std::function<double(double, int)>& f) {
    const auto transform = library::Lut1DTransform::Create(length, false);
    for (unsigned long i = 0; i < length; ++i) {
        const double x = static_cast<double>(i) / static_cast<double>(length - 1);
        transform->setValue(i, static_cast<float>(f(x, 0)), static_cast<float>(f(x, 1)),
                            static_cast<float>(f(x, 2)));
    }
    return transform;
}

void expect_both_directions(const library::Lut1DTransformRcPtr& transform, const char* words) {
    transform->setDirection(library::TRANSFORM_DIR_FORWARD);
    EXPECT_TRUE(agrees(transform)) << words;
    transform->setDirection(library::TRANSFORM_DIR_INVERSE);
    EXPECT_TRUE(agrees(transform)) << words << ", inverse";
}

TEST(LibraryTableAgreement, CurvesOfAllShapesAndLengths) {
    std::mt19937 generator(5);
    std::uniform_real_distribution<double> uniform(-2, 2);
    for (const unsigned long length : {2ul, 3ul, 17ul, 1024ul, 4101ul, 65536ul}) {
        expect_both_directions(table(length, [](double x, int) { return std::pow(x, 2.2); }), "power");
        expect_both_directions(table(length, [](double x, int c) { return 2 * std::pow(x, 1.5 + c) - 0.3; }),
                               "powers");
        expect_both_directions(table(length, [](double x, int) { return 1 - x; }), "falling");
        expect_both_directions(table(length, [&](double, int) { return uniform(generator); }), "noise");
        expect_both_directions(table(length, [](double x, int) { return x < 0.2   ? 0.1
                                                                        : x > 0.7 ? 0.8
                                                                                  : x; }),
                               "flat ends");
        expect_both_directions(table(length,
                                     [](double x, int c) {
                                         return c == 0 ? 0.5 : c == 1 ? std::floor(x * 8) / 8 : 100 * x * x;
                                     }),
                               "constant, stairs, high");
        expect_both_directions(table(length, [](double x, int) { return std::pow(10, 60 * x - 30); }),
                               "1e-30 to 1e30");
    }
}

TEST(LibraryTableAgreement, CurvesThatKeepTheHue) {
    for (const bool half : {false, true}) {
        const auto transform = library::Lut1DTransform::Create(half ? 65536 : 1024, half);
        for (unsigned long i = 0; i < transform->getLength(); ++i) {
            float v[3];
            transform->getValue(i, v[0], v[1], v[2]); // a new table holds the numbers themselves
            for (int c = 0; c < 3; ++c) {
                v[c] =
                    std::isfinite(v[c])
                        ? std::copysign(std::pow(std::fabs(v[c]), 2.2f + 0.3f * static_cast<float>(c)), v[c])
                        : v[c];
            }
            transform->setValue(i, v[0], v[1], v[2]);
        }
        transform->setHueAdjust(library::HUE_DW3);
        expect_both_directions(transform, half ? "half domain" : "unit domain");
    }
}

TEST(LibraryTableAgreement, InterpolationSettingsMakeNoDifference) {
    for (const auto interpolation :
         {library::INTERP_NEAREST, library::INTERP_LINEAR, library::INTERP_DEFAULT}) {
        const auto transform = table(33, [](double x, int) { return x * x; });
        transform->setInterpolation(interpolation);
        EXPECT_TRUE(agrees(transform));
    }
}

TEST(LibraryTableAgreement, EntriesThatAreNotFinite) {
    const auto transform = table(9, [](double x, int c) {
        return x == 0.25  ? std::nan("")
               : x == 0.5 ? (c == 0 ? -1 : 1) * std::numeric_limits<double>::infinity()
                          : x;
    });
    EXPECT_TRUE(agrees(transform));
}

/// Number of a 16-bit float; infinity counts as the largest, NaN as 0.
double half_number(unsigned long bits) {
    const double sign = bits & 0x8000 ? -1 : 1;
    const int exponent = static_cast<int>((bits >> 10) & 31);
    const auto mantissa = static_cast<double>(bits & 1023);
    if (exponent == 31) {
        return mantissa == 0 ? sign * 65504 : 0;
    }
    return sign * (exponent == 0 ? std::ldexp(mantissa, -24) : std::ldexp(1024 + mantissa, exponent - 25));
}

library::Lut1DTransformRcPtr half_table(const std::function<double(double)>& f) {
    const auto transform = library::Lut1DTransform::Create(65536, true);
    for (unsigned long i = 0; i < 65536; ++i) {
        const auto v = static_cast<float>(f(half_number(i)));
        transform->setValue(i, v, 2 * v, 0.5f * v);
    }
    return transform;
}

TEST(LibraryTableAgreement, CurvesOverTheHalfFloats) {
    std::mt19937 generator(5);
    std::uniform_real_distribution<double> uniform(-2, 2);
    expect_both_directions(half_table([](double x) { return std::copysign(std::pow(std::fabs(x), 0.6), x); }),
                           "odd");
    expect_both_directions(half_table([](double x) { return -x; }), "falling");
    expect_both_directions(half_table([](double x) { return x > 0 ? std::sqrt(x) : 0; }), "flat negatives");
    expect_both_directions(half_table([](double x) { return std::min(1.0, std::max(0.0, x)); }), "clamp");
    // ACEScct (S-2016-001): a logarithm with a linear toe.
    expect_both_directions(half_table([](double x) {
                               return x > 0.0078125 ? (std::log2(x) + 9.72) / 17.52
                                                    : 10.5402377416545 * x + 0.0729055341958355;
                           }),
                           "camera");
    EXPECT_TRUE(agrees(half_table([&](double) { return uniform(generator); })));
}

TEST(LibraryTableAgreement, HalfCurvesThatSendInfinityToInfinity) {
    const auto transform = library::Lut1DTransform::Create(65536, true); // the identity
    for (unsigned long i = 0; i < 65536; ++i) {
        float r = 0, g = 0, b = 0;
        transform->getValue(i, r, g, b);
        transform->setValue(i, 2 * r, 0.5f * g, 4 * b);
    }
    expect_both_directions(transform, "scaled");
}

/// `f(position of red, green, blue in [0, 1], result)`.
library::Lut3DTransformRcPtr inverse_cube(unsigned long edge,
                                          const std::function<void(const float*, float*)>& f) {
    const auto cube = library::Lut3DTransform::Create(edge);
    const auto at = [&](unsigned long i) { return static_cast<float>(i) / static_cast<float>(edge - 1); };
    for (unsigned long r = 0; r < edge; ++r) {
        for (unsigned long g = 0; g < edge; ++g) {
            for (unsigned long b = 0; b < edge; ++b) {
                const float in[3] = {at(r), at(g), at(b)};
                float out[3];
                f(in, out);
                cube->setValue(r, g, b, out[0], out[1], out[2]);
            }
        }
    }
    cube->setDirection(library::TRANSFORM_DIR_INVERSE);
    return cube;
}

TEST(LibraryTableAgreement, InverseCubes) {
    EXPECT_TRUE(agrees(inverse_cube(9, [](const float* in, float* out) {
        out[0] = 0.9f * in[0] * in[0] + 0.05f * in[1];
        out[1] = std::sqrt(in[1]);
        out[2] = 0.8f * in[2] + 0.2f * in[0];
    })));
    EXPECT_TRUE(agrees(inverse_cube(17, [](const float* in, float* out) {
        out[0] = std::pow(in[0], 2.2f);
        out[1] = in[1] * in[1];
        out[2] = 0.9f * std::pow(in[2], 1.8f) + 0.1f * in[1];
    })));
    std::mt19937 generator(6);
    std::uniform_real_distribution<float> noise(-0.03f, 0.03f);
    EXPECT_TRUE(agrees(inverse_cube(5, [&](const float* in, float* out) {
        for (int c = 0; c < 3; ++c) {
            out[c] = in[c] + noise(generator);
        }
    })));
}

TEST(LibraryTableAgreement, InverseCubesWithSeveralOrNoSolutions) {
    EXPECT_TRUE(agrees(inverse_cube(9, [](const float* in, float* out) {
        out[0] = std::min(1.0f, 1.5f * in[0]);
        out[1] = std::max(0.0f, 1.4f * in[1] - 0.2f);
        out[2] = in[2];
    }))) << "clipped";
    EXPECT_TRUE(agrees(inverse_cube(9, [](const float* in, float* out) {
        out[0] = std::fabs(2 * in[0] - 1);
        out[1] = in[1];
        out[2] = in[2];
    }))) << "folded";
    EXPECT_TRUE(agrees(inverse_cube(5, [](const float* in, float* out) {
        out[0] = 0.2f + 0.5f * in[0];
        out[1] = 0.5f;
        out[2] = in[2];
    }))) << "flat";
}

library::Lut3DTransformRcPtr random_cube(unsigned long edge, library::Interpolation interpolation) {
    std::mt19937 generator(static_cast<unsigned>(edge));
    std::uniform_real_distribution<float> uniform(-1, 2);
    const auto cube = library::Lut3DTransform::Create(edge);
    for (unsigned long r = 0; r < edge; ++r) {
        for (unsigned long g = 0; g < edge; ++g) {
            for (unsigned long b = 0; b < edge; ++b) {
                cube->setValue(r, g, b, uniform(generator), uniform(generator), uniform(generator));
            }
        }
    }
    cube->setInterpolation(interpolation);
    return cube;
}

TEST(LibraryTableAgreement, CubesInEveryInterpolation) {
    for (const unsigned long edge : {2ul, 5ul, 33ul}) {
        for (const auto interpolation :
             {library::INTERP_LINEAR, library::INTERP_TETRAHEDRAL, library::INTERP_BEST,
              library::INTERP_DEFAULT, library::INTERP_NEAREST}) {
            EXPECT_TRUE(agrees(random_cube(edge, interpolation))) << edge << ", " << interpolation;
        }
    }
}

TEST(LibraryTableAgreement, CubesWithEntriesThatAreNotFinite) {
    for (const auto interpolation : {library::INTERP_LINEAR, library::INTERP_TETRAHEDRAL}) {
        const auto cube = random_cube(3, interpolation);
        constexpr float INF = std::numeric_limits<float>::infinity();
        cube->setValue(1, 1, 1, std::nanf(""), INF, -INF);
        EXPECT_TRUE(agrees(cube));
    }
}

} // namespace
