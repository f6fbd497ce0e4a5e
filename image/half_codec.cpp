#include "image/half_codec.h"

#include <cstring>

#include <OpenImageIO/half.h>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "image/half_codec.cpp"
#include <hwy/foreach_target.h>

#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace image {
namespace HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

// Below AVX2 Highway's conversion does not handle infinities, so the scalar code is used.
#if HWY_TARGET == HWY_AVX2 || HWY_TARGET == HWY_AVX3 || HWY_TARGET == HWY_AVX3_DL

/// Calls `convert` with the position of each whole vector, and returns the count of values in them.
template <class Convert>
std::size_t for_whole_vectors(std::size_t count, const Convert& convert) {
    const std::size_t lanes = hn::Lanes(hn::ScalableTag<float>());
    std::size_t i = 0;
    for (; i + lanes <= count; i += lanes)
        convert(i);
    return i;
}

const hn::ScalableTag<float> FLOATS;
const hn::Rebind<hwy::float16_t, hn::ScalableTag<float>> HALFS;
const hn::Rebind<std::uint16_t, hn::ScalableTag<float>> HALF_BITS;

std::size_t decode_vectors(const std::uint16_t* halfs, float* floats, std::size_t count) {
    return for_whole_vectors(count, [=](std::size_t i) HWY_ATTR {
        const auto bits = hn::LoadU(HALF_BITS, halfs + i);
        hn::StoreU(hn::PromoteTo(FLOATS, hn::BitCast(HALFS, bits)), FLOATS, floats + i);
    });
}

std::size_t encode_vectors(const float* floats, std::uint16_t* halfs, std::size_t count) {
    return for_whole_vectors(count, [=](std::size_t i) HWY_ATTR {
        const auto values = hn::DemoteTo(HALFS, hn::LoadU(FLOATS, floats + i));
        hn::StoreU(hn::BitCast(HALF_BITS, values), HALF_BITS, halfs + i);
    });
}

#else

std::size_t decode_vectors(const std::uint16_t*, float*, std::size_t) {
    return 0;
}
std::size_t encode_vectors(const float*, std::uint16_t*, std::size_t) {
    return 0;
}

#endif

} // namespace HWY_NAMESPACE
} // namespace image
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace image {

HWY_EXPORT(decode_vectors);
HWY_EXPORT(encode_vectors);

void decode_halfs(const std::uint16_t* halfs, float* floats, std::size_t count) {
    for (std::size_t i = HWY_DYNAMIC_DISPATCH(decode_vectors)(halfs, floats, count); i < count; ++i) {
        half value;
        value.setBits(halfs[i]);
        floats[i] = value;
    }
}

void encode_halfs(const float* floats, std::uint16_t* halfs, std::size_t count) {
    for (std::size_t i = HWY_DYNAMIC_DISPATCH(encode_vectors)(floats, halfs, count); i < count; ++i)
        halfs[i] = half(floats[i]).bits();
}

} // namespace image

#endif // HWY_ONCE
