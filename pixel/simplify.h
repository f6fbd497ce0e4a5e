#pragma once

#include "pixel/ops.h"

namespace pixel {

/// The chain with fewer operations and the same results: identities are dropped, neighboring matrices
/// multiplied (in double precision), neighboring clamps joined, and a clamp to [0, 1] before a LUT over [0,
/// 1] dropped, since the LUT clamps too. Pairs of curves are not joined, since that would change the
/// rounding.
OpChain simplify(const OpChain& chain);

/// True for an operation that changes no value.
bool is_identity(const Op& op);

} // namespace pixel
