#include "workflow/icc_profile.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <lcms2.h>

#include "tests/tool/color_tag_files.h"

namespace {

using Bytes = std::vector<unsigned char>;
using Xyz = std::array<double, 3>;

/// A profile as another program reads it.
class ReadProfile {
public:
    explicit ReadProfile(const Bytes& bytes)
        : profile(cmsOpenProfileFromMem(bytes.data(), static_cast<cmsUInt32Number>(bytes.size()))),
          xyz(cmsCreateXYZProfile()) {}
    ~ReadProfile() {
        cmsCloseProfile(xyz);
        if (profile)
            cmsCloseProfile(profile);
    }
    ReadProfile(const ReadProfile&) = delete;
    ReadProfile& operator=(const ReadProfile&) = delete;

    cmsHPROFILE get() const { return profile; }

    std::string get_description() const {
        char text[64] = "";
        cmsGetProfileInfoASCII(profile, cmsInfoDescription, "en", "US", text, sizeof text);
        return text;
    }

    /// Relative to D50, as profiles are connected.
    Xyz transform(const Xyz& rgb) const {
        cmsHTRANSFORM transform = cmsCreateTransform(profile, TYPE_RGB_DBL, xyz, TYPE_XYZ_DBL,
                                                     INTENT_RELATIVE_COLORIMETRIC, cmsFLAGS_NOOPTIMIZE);
        Xyz result{};
        cmsDoTransform(transform, rgb.data(), result.data(), 1);
        cmsDeleteTransform(transform);
        return result;
    }

private:
    cmsHPROFILE profile;
    cmsHPROFILE xyz;
};

double srgb(double x) {
    return x <= 0.04045 ? x / 12.92 : std::pow((x + 0.055) / 1.055, 2.4);
}
double rec709(double x) {
    return x < 0.081 ? x / 4.5 : std::pow((x + 0.099) / 1.099, 1 / 0.45);
}
double rec1886(double x) {
    return std::pow(x, 2.4);
}

struct Case {
    const char* colors;
    const char* description;
    double (*to_linear)(double);
    std::array<double, 9> colorants; ///< As published by the ICC and by Apple, in 16-bit fixed point.
};
constexpr std::array<double, 9> P3_COLORANTS = {0.51512, 0.24120, -0.00105, 0.29198, 0.69225,
                                                0.04189, 0.15710, 0.06657,  0.78407};
constexpr Case CASES[] = {{"srgb_rec709", "sRGB", srgb, SRGB_COLORANTS},
                          {"srgb_p3d65", "Display P3", srgb, P3_COLORANTS},
                          {"itu709_rec709", "Rec.709", rec709, SRGB_COLORANTS},
                          {"g24_rec709", "Rec.1886", rec1886, SRGB_COLORANTS}};

TEST(IccProfiles, ConvertKnownColorsAsTheFormulasDo) {
    for (const Case& known : CASES) {
        const ReadProfile profile(workflow::make_icc_profile(known.colors));
        ASSERT_NE(profile.get(), nullptr) << known.colors;
        EXPECT_EQ(profile.get_description(), known.description);
        for (const Xyz& rgb : {Xyz{1, 1, 1}, Xyz{1, 0, 0}, Xyz{0, 1, 0}, Xyz{0, 0, 1}, Xyz{0.5, 0.5, 0.5},
                               Xyz{0.02, 0.05, 0.08}, Xyz{0.9, 0.4, 0.1}}) {
            const Xyz result = profile.transform(rgb);
            for (std::size_t i = 0; i < 3; ++i) {
                double expected = 0;
                for (std::size_t channel = 0; channel < 3; ++channel)
                    expected += known.colorants[3 * channel + i] * known.to_linear(rgb[channel]);
                EXPECT_NEAR(result[i], expected, 3e-4) << known.colors << " " << i;
            }
        }
    }
}

TEST(IccProfiles, AreTheSameBytesEveryTime) {
    const Bytes profile = workflow::make_icc_profile("srgb_rec709");
    EXPECT_EQ(workflow::make_icc_profile("srgb_rec709"), profile);
    ASSERT_GT(profile.size(), 128u);
    // ISO 15076-1:2010, 7.2: version 4.3, and the date, not that of today.
    EXPECT_EQ(profile[8], 4);
    EXPECT_EQ(profile[9], 0x30);
    EXPECT_THAT(std::vector<int>(profile.begin() + 24, profile.begin() + 36),
                testing::ElementsAre(2000 / 256, 2000 % 256, 0, 1, 0, 1, 0, 0, 0, 0, 0, 0));
}

TEST(IccProfiles, HaveTheIdThatTheirBytesGive) {
    const Bytes bytes = workflow::make_icc_profile("srgb_p3d65");
    const ReadProfile profile(bytes);
    ASSERT_TRUE(cmsMD5computeID(profile.get()));
    unsigned char id[16];
    cmsGetHeaderProfileID(profile.get(), id);
    EXPECT_TRUE(std::equal(id, id + 16, bytes.begin() + 84));
    EXPECT_TRUE(std::any_of(id, id + 16, [](unsigned char byte) { return byte != 0; }));
}

TEST(IccProfiles, AreNotMadeForOtherColors) {
    EXPECT_TRUE(workflow::make_icc_profile("lin_ap1").empty());
    EXPECT_TRUE(workflow::make_icc_profile("").empty());
}

TEST(IccProfiles, AreReadAgain) {
    const auto profile = workflow::parse_icc_profile(make_icc_profile(SRGB_COLORANTS, 0));
    ASSERT_TRUE(profile);
    for (std::size_t i = 0; i < 9; ++i)
        EXPECT_NEAR(profile->colorants[i / 3][i % 3], SRGB_COLORANTS[i], 1e-5);
    for (std::size_t i = 0; i < profile->curve.size(); ++i)
        EXPECT_NEAR(profile->curve[i],
                    srgb(static_cast<double>(i) / static_cast<double>(profile->curve.size() - 1)), 1e-4);
    const auto own = workflow::parse_icc_profile(workflow::make_icc_profile("itu709_rec709"));
    ASSERT_TRUE(own);
    EXPECT_NEAR(own->curve[own->curve.size() / 2], rec709(0.5), 1e-4);
}

TEST(IccProfiles, OfMoreThan16MebibytesAreNotRead) {
    Bytes profile = make_icc_profile(SRGB_COLORANTS, 0);
    profile.resize((16u << 20) + 1);
    EXPECT_FALSE(workflow::parse_icc_profile(profile));
}

/// Every byte of the header, of the table of tags and of the start of each tag, with the values that lengths
/// and offsets go wrong with; and every length.
TEST(IccProfiles, OfDamagedBytesAreReadOrRefused) {
    for (const Bytes& whole :
         {make_icc_profile(SRGB_COLORANTS, 2 * 256 + 51), workflow::make_icc_profile("srgb_rec709")}) {
        for (std::size_t i = 0; i < whole.size(); ++i)
            for (const unsigned char value : {0x00, 0x01, 0x7f, 0x80, 0xff}) {
                Bytes damaged = whole;
                damaged[i] = value;
                if (const auto profile = workflow::parse_icc_profile(damaged)) {
                    ASSERT_GE(profile->curve.size(), 2u);
                }
            }
        const auto expected = workflow::parse_icc_profile(whole);
        ASSERT_TRUE(expected);
        for (std::size_t size = 0; size < whole.size(); ++size) {
            const Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
            const auto profile = workflow::parse_icc_profile(cut);
            EXPECT_TRUE(!profile || profile->curve == expected->curve) << size << ": cut behind the curves";
        }
    }
}

} // namespace
