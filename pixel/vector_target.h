#pragma once

namespace pixel {

/// Name of the instruction set in use: "AVX2", "NEON".
const char* vector_target();

} // namespace pixel
