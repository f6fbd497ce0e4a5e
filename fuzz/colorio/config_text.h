#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

/// A config, and the environment variables that it needs.
struct ConfigText {
    std::string text;
    std::vector<std::pair<std::string, std::string>> process_variables;
};

/// A syntactically correct config of version 1 or 2 whose content `data` chooses.
ConfigText make_config_text(const std::uint8_t* data, std::size_t size);
