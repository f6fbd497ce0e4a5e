#pragma once

#include <cstddef>

// Limits for files, far above any real preferences or mapping file. Exceeding one is an error.

/// Bytes of a file. Reading it takes up to a hundred times as much memory, and some seconds.
constexpr size_t MAX_FILE_SIZE = 8 << 20;
/// Nesting of lists and maps, including those reached through aliases.
constexpr unsigned int MAX_YAML_DEPTH = 256;
/// Nesting of groups, including the root; each is written as three levels of lists and maps at most.
constexpr unsigned int MAX_GROUP_DEPTH = 64;
/// Count of all entries and values after aliases were expanded.
constexpr size_t MAX_VALUE_COUNT = 500'000;
/// Bytes of their texts.
constexpr size_t MAX_TEXT_SIZE = 64 << 20;
