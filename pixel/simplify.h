#pragma once

#include "pixel/ops.h"

namespace pixel {

/// The chain with fewer operations and the same results: identities are dropped, neighboring matrices
/// multiplied (in double precision), neighboring clamps joined, and a clamp to [0, 1] before a table over
/// [0, 1] dropped, since the table clamps too. Pairs of curves are left alone: none composes without a change
/// in rounding.
OpChain simplify(const OpChain& chain);

/// True for an operation that changes no value.
bool is_identity(const Op& op);

} // namespace pixel
