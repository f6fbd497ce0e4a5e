#include "workflow/icc_profile.h"

#include <algorithm>
#include <cmath>
#include <memory>

#include <lcms2.h>

#include "workflow/colorimetry.h"

namespace workflow {

namespace {

/// Those of displays and cameras have some kilobytes, those of printers some megabytes.
constexpr std::size_t MAX_PROFILE_BYTES = 16u << 20;
constexpr std::size_t CURVE_SAMPLES = 33;
/// Rounding of 16-bit tables.
constexpr double SAME_CURVE = 1e-3;

template <class Handle, void (*CLOSE)(Handle)>
struct Closer {
    using pointer = Handle;
    void operator()(Handle handle) const { CLOSE(handle); }
};
void close_profile(cmsHPROFILE profile) {
    cmsCloseProfile(profile);
}
using Context = std::unique_ptr<void, Closer<cmsContext, cmsDeleteContext>>;
using Profile = std::unique_ptr<void, Closer<cmsHPROFILE, close_profile>>;
using Curve = std::unique_ptr<void, Closer<cmsToneCurve*, cmsFreeToneCurve>>;
using Text = std::unique_ptr<void, Closer<cmsMLU*, cmsMLUfree>>;

using Bytes = std::vector<unsigned char>;

/// Every context ignores errors until a handler is set.
Context make_context() {
    return Context(cmsCreateContext(nullptr, nullptr));
}

Profile open_profile(const Context& context, const Bytes& bytes) {
    return Profile(
        cmsOpenProfileFromMemTHR(context.get(), bytes.data(), static_cast<cmsUInt32Number>(bytes.size())));
}

std::vector<double> sample(const cmsToneCurve& curve) {
    std::vector<double> values;
    for (std::size_t i = 0; i < CURVE_SAMPLES; ++i)
        values.push_back(
            cmsEvalToneCurveFloat(&curve, static_cast<float>(i) / static_cast<float>(CURVE_SAMPLES - 1)));
    return values;
}

/// False for values that are not finite, too.
bool is_same(const std::vector<double>& a, const std::vector<double>& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](double x, double y) { return std::fabs(x - y) <= SAME_CURVE; });
}

// Layout of the header: ISO 15076-1:2010, 7.2.
constexpr std::size_t DATE_OFFSET = 24;
/// Six big-endian numbers of 16 bits: midnight on January 1, 2000.
constexpr unsigned char FIXED_DATE[] = {0x07, 0xd0, 0, 1, 0, 1, 0, 0, 0, 0, 0, 0};
/// That of ISO 15076-1:2010.
constexpr double VERSION = 4.3;

/// lcms2's parametric types: 1 is x^g; 4 is (a x + b)^g where x >= d, else c x. (ISO 15076-1:2010, 10.15.)
struct ProfileOfColors {
    const char* colors;
    const char* description;
    const char* primaries;
    int curve_type;
    double parameters[5];
};
constexpr ProfileOfColors PROFILES[] = {
    // IEC 61966-2-1
    {"srgb_rec709", "sRGB", "rec709", 4, {2.4, 1 / 1.055, 0.055 / 1.055, 1 / 12.92, 0.04045}},
    {"srgb_p3d65", "Display P3", "p3d65", 4, {2.4, 1 / 1.055, 0.055 / 1.055, 1 / 12.92, 0.04045}},
    // ITU-R BT.709, the inverse of 1.2
    {"itu709_rec709", "Rec.709", "rec709", 4, {1 / 0.45, 1 / 1.099, 0.099 / 1.099, 1 / 4.5, 0.081}},
    // ITU-R BT.1886, with a black of 0
    {"g24_rec709", "Rec.1886", "rec709", 1, {2.4}},
};

bool set_text(const Profile& profile, cmsTagSignature tag, const char* text) {
    const Text words(cmsMLUalloc(cmsGetProfileContextID(profile.get()), 1));
    return words && cmsMLUsetASCII(words.get(), "en", "US", text) &&
           cmsWriteTag(profile.get(), tag, words.get());
}

Bytes save(const Profile& profile) {
    cmsUInt32Number size = 0;
    if (!profile || !cmsSaveProfileToMem(profile.get(), nullptr, &size))
        return {};
    Bytes bytes(size);
    return cmsSaveProfileToMem(profile.get(), bytes.data(), &size) ? bytes : Bytes();
}

/// lcms2 writes the time of the day; the profile ID covers it.
Bytes fix_date(const Context& context, Bytes bytes) {
    if (bytes.size() < DATE_OFFSET + std::size(FIXED_DATE))
        return {};
    std::copy(std::begin(FIXED_DATE), std::end(FIXED_DATE), bytes.begin() + DATE_OFFSET);
    const Profile dated = open_profile(context, bytes);
    return dated && cmsMD5computeID(dated.get()) ? save(dated) : Bytes();
}

Profile build_profile(const Context& context, const ProfileOfColors& wanted) {
    const std::array<double, 8>& xy = *get_chromaticities(wanted.primaries);
    const cmsCIExyY white = {xy[6], xy[7], 1};
    const cmsCIExyYTRIPLE primaries = {{xy[0], xy[1], 1}, {xy[2], xy[3], 1}, {xy[4], xy[5], 1}};
    const Curve curve(cmsBuildParametricToneCurve(context.get(), wanted.curve_type, wanted.parameters));
    cmsToneCurve* const curves[] = {curve.get(), curve.get(), curve.get()};
    Profile profile(curve ? cmsCreateRGBProfileTHR(context.get(), &white, &primaries, curves) : nullptr);
    if (!profile || !set_text(profile, cmsSigProfileDescriptionTag, wanted.description))
        return nullptr;
    cmsSetProfileVersion(profile.get(), VERSION);
    return profile;
}

} // namespace

std::optional<IccProfile> parse_icc_profile(const Bytes& bytes) {
    constexpr cmsTagSignature COLORANTS[] = {cmsSigRedColorantTag, cmsSigGreenColorantTag,
                                             cmsSigBlueColorantTag};
    constexpr cmsTagSignature CURVES[] = {cmsSigRedTRCTag, cmsSigGreenTRCTag, cmsSigBlueTRCTag};
    if (bytes.size() > MAX_PROFILE_BYTES)
        return std::nullopt;
    const Context context = make_context();
    const Profile profile = open_profile(context, bytes);
    if (!profile || cmsGetColorSpace(profile.get()) != cmsSigRgbData)
        return std::nullopt;
    IccProfile result;
    for (std::size_t channel = 0; channel < 3; ++channel) {
        const auto* xyz = static_cast<const cmsCIEXYZ*>(cmsReadTag(profile.get(), COLORANTS[channel]));
        const auto* curve = static_cast<const cmsToneCurve*>(cmsReadTag(profile.get(), CURVES[channel]));
        if (!xyz || !curve)
            return std::nullopt;
        result.colorants[channel] = {xyz->X, xyz->Y, xyz->Z};
        const std::vector<double> values = sample(*curve);
        if (channel == 0)
            result.curve = values;
        if (!is_same(values, result.curve))
            return std::nullopt;
    }
    return result;
}

std::vector<unsigned char> make_icc_profile(const std::string& colors) {
    for (const ProfileOfColors& known : PROFILES)
        if (colors == known.colors) {
            const Context context = make_context();
            return fix_date(context, save(build_profile(context, known)));
        }
    return {};
}

} // namespace workflow
