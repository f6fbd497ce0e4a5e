#include "colorio/ocio/icc_counts.h"

#include <cstdint>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "colorio/ocio/lut_words.h"
#include "tests/colorio/ocio/test_configs.h"

namespace {

std::string number(std::uint32_t value) {
    return {static_cast<char>(value >> 24), static_cast<char>(value >> 16), static_cast<char>(value >> 8),
            static_cast<char>(value)};
}

/// A header that claims `tags` tags, and `rest` behind the count.
std::string profile(std::uint32_t tags, const std::string& rest) {
    return std::string(36, '\0') + "acsp" + std::string(88, '\0') + number(tags) + rest;
}

std::string tag(std::uint32_t place, std::uint32_t size) {
    return "rTRC" + number(place) + number(size);
}

std::string curve(std::uint32_t entries) {
    return "curv" + number(0) + number(entries);
}

std::string overclaim_of(const std::string& bytes) {
    std::istringstream file(bytes);
    return ocio::find_icc_overclaim(file);
}

TEST(IccCounts, OfTagsMustFitIntoTheFile) {
    EXPECT_EQ(overclaim_of(profile(0, "")), "");
    EXPECT_EQ(overclaim_of(profile(2, tag(0, 4) + tag(0, 4))), "");
    EXPECT_EQ(overclaim_of(profile(2, tag(0, 4) + std::string(11, 'x'))),
              "it claims 2 tags and is 155 bytes long");
    EXPECT_EQ(overclaim_of(profile(0xFFFFFFFF, tag(0, 4))),
              "it claims 4294967295 tags and is 144 bytes long");
}

TEST(IccCounts, OfCurveEntriesMustFitIntoTheFile) {
    EXPECT_EQ(overclaim_of(profile(1, tag(144, 16) + curve(2) + "abcd")), "");
    EXPECT_EQ(overclaim_of(profile(1, tag(144, 16) + curve(2) + "abc")),
              "it claims a curve of 2 entries and is 159 bytes long");
    EXPECT_EQ(overclaim_of(profile(2, tag(0, 4) + tag(156, 12) + curve(0x7FFFFFFF))),
              "it claims a curve of 2147483647 entries and is 168 bytes long");
    EXPECT_EQ(overclaim_of(profile(1, tag(1000, 4))), "");
    EXPECT_EQ(overclaim_of(profile(1, tag(0xFFFFFFFF, 4))), "");
}

TEST(IccCounts, AreOnlyThoseOfProfiles) {
    EXPECT_EQ(overclaim_of(""), "");
    EXPECT_EQ(overclaim_of("Version 1\nFrom 0.0 1.0\n"), "");
    std::string other = profile(0xFFFFFFFF, "");
    other[36] = 'b';
    EXPECT_EQ(overclaim_of(other), "");
}

TEST(IccCounts, RefuseTheFileAsALut) {
    const TempDir folder;
    const std::string path = folder.write("monitor.icc", profile(0xFFFFFFFF, tag(0, 4)));
    EXPECT_EQ(test_configs::refusal_of([&] { ocio::require_readable_lut(path); }),
              "'" + path + "' cannot be read as a LUT: it claims 4294967295 tags and is 144 bytes long");
}

} // namespace
