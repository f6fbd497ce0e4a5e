#pragma once

namespace pixel {

/// Name of the instruction set that the kernels run on here: "AVX2", "NEON".
const char* vector_target();

} // namespace pixel
