#pragma once

#include <charconv>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

inline std::vector<std::string> lines_of(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}

/// The samples of a `.spi1d` text: the lines between the braces, each eight blanks and a number.
inline std::vector<float> samples_of(const std::string& text) {
    std::vector<float> samples;
    const std::vector<std::string> lines = lines_of(text);
    for (size_t i = 5; i + 1 < lines.size(); ++i) {
        const std::string& line = lines[i];
        EXPECT_EQ(line.substr(0, 8), "        ") << line;
        float value = 0;
        const char* end = line.data() + line.size();
        EXPECT_EQ(std::from_chars(line.data() + 8, end, value).ptr, end) << line;
        samples.push_back(value);
    }
    return samples;
}
