#pragma once

#include <cstddef>

// What a file may ask for. Far above any real preference or mapping file; a hostile file ends in a message.

/// Bytes of a file. Reading one takes up to a hundred times as much memory, and some seconds.
constexpr size_t MAX_FILE_SIZE = 8 << 20;
/// Lists and maps inside one another, those reached through aliases included.
constexpr unsigned int MAX_YAML_DEPTH = 256;
/// Groups inside one another, the root included; each is written in three levels of lists and maps at most.
constexpr unsigned int MAX_GROUP_DEPTH = 64;
/// Entries and values in all, and bytes of their texts, after aliases were replaced by what they stand for.
constexpr size_t MAX_VALUE_COUNT = 500'000;
constexpr size_t MAX_TEXT_SIZE = 64 << 20;
