/// Arithmetic on the entries of a 3D LUT, four floats each.
/// Included once per target, after hwy/highway.h.
#if defined(PIXEL_ENTRY_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef PIXEL_ENTRY_INL_H_
#undef PIXEL_ENTRY_INL_H_
#else
#define PIXEL_ENTRY_INL_H_
#endif

#include <hwy/highway.h>

#include "pixel/fused-inl.h"

HWY_BEFORE_NAMESPACE();
namespace pixel {
namespace HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

#if HWY_TARGET == HWY_SCALAR
/// An entry without vectors.
struct Entry {
    float v[4];
};
HWY_INLINE Entry load_entry(const float* p) {
    return {{p[0], p[1], p[2], p[3]}};
}
HWY_INLINE Entry weighted(const Entry& e, float w) {
    return {{e.v[0] * w, e.v[1] * w, e.v[2] * w, e.v[3] * w}};
}
HWY_INLINE Entry sum(const Entry& a, const Entry& b) {
    return {{a.v[0] + b.v[0], a.v[1] + b.v[1], a.v[2] + b.v[2], a.v[3] + b.v[3]}};
}
HWY_INLINE Entry difference(const Entry& a, const Entry& b) {
    return {{a.v[0] - b.v[0], a.v[1] - b.v[1], a.v[2] - b.v[2], a.v[3] - b.v[3]}};
}
HWY_INLINE Entry add_weighted(const Entry& total, const Entry& e, float w) {
    return {{fused_in_double(e.v[0], w, total.v[0]), fused_in_double(e.v[1], w, total.v[1]),
             fused_in_double(e.v[2], w, total.v[2]), fused_in_double(e.v[3], w, total.v[3])}};
}
HWY_INLINE void store_entry(const Entry& e, float* p) {
    for (int i = 0; i < 4; ++i) {
        p[i] = e.v[i];
    }
}
#else
using EntryTag = hn::CappedTag<float, 4>;
using Entry = hn::Vec<EntryTag>;
HWY_INLINE Entry load_entry(const float* p) {
    return hn::LoadU(EntryTag(), p);
}
HWY_INLINE Entry weighted(Entry e, float w) {
    return hn::Mul(e, hn::Set(EntryTag(), w));
}
HWY_INLINE Entry sum(Entry a, Entry b) {
    return hn::Add(a, b);
}
HWY_INLINE Entry difference(Entry a, Entry b) {
    return hn::Sub(a, b);
}
/// total + e * w, rounded once.
HWY_INLINE Entry add_weighted(Entry total, Entry e, float w) {
    return multiply_add_once(EntryTag(), e, hn::Set(EntryTag(), w), total);
}
HWY_INLINE void store_entry(Entry e, float* p) {
    hn::Store(e, EntryTag(), p);
}
#endif

} // namespace HWY_NAMESPACE
} // namespace pixel
HWY_AFTER_NAMESPACE();

#endif
