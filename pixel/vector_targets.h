#pragma once

/// Included before every Highway header: kernels keep vectors in structs and assemble them from 128-bit
/// parts, which vectors of unknown length cannot do; processors that have those also have NEON.
#ifndef HWY_DISABLED_TARGETS
#define HWY_DISABLED_TARGETS (HWY_SVE | HWY_SVE2 | HWY_SVE_256 | HWY_SVE2_128 | HWY_RVV)
#endif

/// Scalar code is compiled even where every processor of the family has vectors: tests compare the other
/// instruction sets with it.
#ifndef HWY_COMPILE_ALL_ATTAINABLE
#define HWY_COMPILE_ALL_ATTAINABLE
#endif
