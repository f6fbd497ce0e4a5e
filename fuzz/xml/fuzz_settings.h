#pragma once

#include <cstdint>

/// Chooses the encoding and the flags by the bits of `choice`, so that a fuzzer reaches them all.
void select_fuzz_settings(std::uint8_t choice);
