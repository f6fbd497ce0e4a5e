#include <algorithm>
#include <cmath>
#include <utility>

#include "library_agreement.h"

using namespace pixel_test;

namespace {

constexpr library::TransformDirection DIRECTIONS[] = {library::TRANSFORM_DIR_FORWARD,
                                                      library::TRANSFORM_DIR_INVERSE};

library::MatrixTransformRcPtr matrix(const double (&m)[16], const double (&offset)[4]) {
    const library::MatrixTransformRcPtr transform = library::MatrixTransform::Create();
    transform->setMatrix(m);
    transform->setOffset(offset);
    return transform;
}

TEST(LibraryAgreement, Matrices) {
    const double full[16] = {1.2,  -0.3, 0.17, 0.21, 0.01, 0.9, 0.12, -0.3,
                             -0.5, 0.33, 1.1,  0.77, 0.1,  0.2, -0.3, 0.9};
    const double color[16] = {1.2, -0.3, 0.17, 0, 0.01, 0.9, 0.12, 0, -0.5, 0.33, 1.1, 0, 0, 0, 0, 1};
    const double diagonal[16] = {2, 0, 0, 0, 0, 0.7, 0, 0, 0, 0, 1.3, 0, 0, 0, 0, 1};
    for (const auto& m : {full, color, diagonal}) {
        for (const auto direction : DIRECTIONS) {
            double copy[16];
            std::copy(m, m + 16, copy);
            const auto with_offset = matrix(copy, {0.1, -0.2, 0.03, 0.5}),
                       without = matrix(copy, {0, 0, 0, 0});
            with_offset->setDirection(direction);
            without->setDirection(direction);
            EXPECT_TRUE(agrees(with_offset));
            EXPECT_TRUE(agrees(without));
        }
    }
}

TEST(LibraryAgreement, Ranges) {
    for (const int sides : {1, 2, 3}) {
        for (const auto direction : DIRECTIONS) {
            const library::RangeTransformRcPtr range = library::RangeTransform::Create();
            range->setDirection(direction);
            if (sides & 1) {
                range->setMinInValue(0.1);
                range->setMinOutValue(sides == 3 ? -0.2 : 0.1);
            }
            if (sides & 2) {
                range->setMaxInValue(0.9);
                range->setMaxOutValue(sides == 3 ? 1.3 : 0.9);
            }
            EXPECT_TRUE(agrees(range)) << sides;
        }
    }
}

TEST(LibraryAgreement, ExponentsOfBothConfigurationVersions) {
    for (const double e : {2.2, 1 / 2.4, 1.0, 0.5, 3.0, 8.0}) {
        for (const auto style :
             {library::NEGATIVE_CLAMP, library::NEGATIVE_MIRROR, library::NEGATIVE_PASS_THRU}) {
            for (const auto direction : DIRECTIONS) {
                const library::ExponentTransformRcPtr exponent = library::ExponentTransform::Create();
                exponent->setValue({e, e * 1.1, 1.0, 1.0});
                exponent->setNegativeStyle(style);
                exponent->setDirection(direction);
                EXPECT_TRUE(agrees(exponent, 2)) << e;
                EXPECT_TRUE(agrees(exponent, 1)) << e;
            }
        }
    }
}

TEST(LibraryAgreement, PowerCurvesWithALinearToe) {
    for (const auto& [gamma, offset] :
         {std::pair{2.4, 0.055}, std::pair{2.222, 0.099}, std::pair{3.0, 0.16}, std::pair{1.0, 0.1}}) {
        for (const auto style : {library::NEGATIVE_LINEAR, library::NEGATIVE_MIRROR}) {
            for (const auto direction : DIRECTIONS) {
                const auto curve = library::ExponentWithLinearTransform::Create();
                curve->setGamma({gamma, gamma, gamma, 1});
                curve->setOffset({offset, offset, offset, 0});
                curve->setNegativeStyle(style);
                curve->setDirection(direction);
                EXPECT_TRUE(agrees(curve)) << gamma << " " << offset;
            }
        }
    }
}

TEST(LibraryAgreement, Logarithms) {
    for (const double base : {2.0, 10.0, 2.718281828}) {
        for (const auto direction : DIRECTIONS) {
            const library::LogTransformRcPtr log = library::LogTransform::Create();
            log->setBase(base);
            log->setDirection(direction);
            EXPECT_TRUE(agrees(log)) << base;
        }
    }
}

template <class T>
void set_log_parameters(T& log, double base) {
    log.setBase(base);
    log.setLogSideSlopeValue({0.18, 0.2, 0.21});
    log.setLogSideOffsetValue({0.6, 0.61, 0.5});
    log.setLinSideSlopeValue({1.1, 2, 5.5});
    log.setLinSideOffsetValue({0.05, 0.01, 0.002});
}

TEST(LibraryAgreement, LogarithmsWithAffineSides) {
    for (const double base : {2.0, 10.0, 2.5}) {
        for (const auto direction : DIRECTIONS) {
            const auto log = library::LogAffineTransform::Create();
            set_log_parameters(*log, base);
            log->setDirection(direction);
            EXPECT_TRUE(agrees(log)) << base;
        }
    }
}

TEST(LibraryAgreement, CameraLogarithmsWithAndWithoutALinearSlope) {
    for (const double base : {2.0, 10.0, 2.5}) {
        for (const bool own_slope : {false, true}) {
            for (const auto direction : DIRECTIONS) {
                const auto log = library::LogCameraTransform::Create({0.01, 0.005, 0.0107});
                set_log_parameters(*log, base);
                if (own_slope) {
                    log->setLinearSlopeValue({3, 4, 5});
                }
                log->setDirection(direction);
                EXPECT_TRUE(agrees(log)) << base << ", own slope " << own_slope;
            }
        }
    }
}

struct Grade {
    double slope[3], offset[3], power[3], saturation;
};

const Grade GRADES[] = {
    {{1.1, 0.9, 1.05}, {0.01, -0.02, 0.03}, {1.2, 0.8, 1.1}, 1.3},
    {{1.1, 0.9, 1.05}, {0.01, -0.02, 0.03}, {1.2, 0.8, 1.1}, 1},
    {{1.1, 0.9, 1.05}, {0.01, -0.02, 0.03}, {1, 1, 1}, 0.7},
    {{1, 1, 1}, {0, 0, 0}, {1.2, 0.8, 1}, 1},
    {{1, 1, 1}, {0, 0, 0}, {1, 1, 1}, 0.5},
    {{1, 1, 1}, {0, 0, 0}, {1, 1, 1}, 1},
    {{0, 1, 1}, {0, 0, 0}, {1, 2, 1}, 1},
    {{1.1, 1.1, 1.1}, {0, 0, 0}, {1, 1, 1.2}, 0},
    {{1.37, 2.9, 0.05}, {0.51, -0.22, 0.033}, {1.7, 0.31, 3.1}, 0.77},
};

library::CDLTransformRcPtr cdl(const Grade& grade, library::CDLStyle style,
                               library::TransformDirection direction) {
    const library::CDLTransformRcPtr transform = library::CDLTransform::Create();
    transform->setSlope(grade.slope);
    transform->setOffset(grade.offset);
    transform->setPower(grade.power);
    transform->setSat(grade.saturation);
    transform->setStyle(style);
    transform->setDirection(direction);
    return transform;
}

TEST(LibraryAgreement, CdlOfBothStyles) {
    for (const Grade& grade : GRADES) {
        EXPECT_TRUE(agrees(cdl(grade, library::CDL_ASC, library::TRANSFORM_DIR_FORWARD)));
        EXPECT_TRUE(agrees(cdl(grade, library::CDL_NO_CLAMP, library::TRANSFORM_DIR_FORWARD)));
        if (grade.slope[0] == 0 || grade.saturation == 0) {
            continue; // the library refuses some of these inverses as singular
        }
        EXPECT_TRUE(agrees(cdl(grade, library::CDL_ASC, library::TRANSFORM_DIR_INVERSE)));
        EXPECT_TRUE(agrees(cdl(grade, library::CDL_NO_CLAMP, library::TRANSFORM_DIR_INVERSE)));
    }
}

TEST(LibraryAgreement, CdlOfVersionOneConfigurations) {
    for (const Grade& grade : GRADES) {
        EXPECT_TRUE(agrees(cdl(grade, library::CDL_NO_CLAMP, library::TRANSFORM_DIR_FORWARD), 1));
        if (grade.slope[0] != 0 && grade.saturation != 0) {
            EXPECT_TRUE(agrees(cdl(grade, library::CDL_NO_CLAMP, library::TRANSFORM_DIR_INVERSE), 1));
        }
    }
}

} // namespace
