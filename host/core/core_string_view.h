#pragma once

#include "host/core/core_hash.h"

/// A constant text: NUL-terminated characters, their count without the NUL, and their Jenkins hash.
/// Constant-initialized from a literal, so it is usable before any start-up code runs.
struct CoreStringView {
    const char* data;    ///< NUL-terminated; not owned.
    unsigned int length; ///< Bytes without the NUL.
    unsigned int hash;   ///< CoreHash::generate_jenkins of the bytes.

    /// View of a string literal.
    template <unsigned int N>
    static constexpr CoreStringView from_literal(const char (&text)[N]) {
        return {text, N - 1, CoreHash::generate_jenkins(text, N - 1)};
    }
};
