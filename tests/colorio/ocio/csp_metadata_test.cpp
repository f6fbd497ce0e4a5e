#include "colorio/ocio/csp_metadata.h"

#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "colorio/ocio/lut_words.h"
#include "tests/colorio/ocio/test_configs.h"

namespace {

constexpr const char* POINTS = "2\n0 1\n0 1\n2\n0 1\n0 1\n2\n0 1\n0 1\n\n2\n0 0 0\n1 1 1\n";

std::string csp(const std::string& metadata) {
    return "CSPLUTV100\n1D\n\n" + metadata + "\n" + POINTS;
}

bool is_endless(const std::string& text) {
    std::istringstream file(text);
    return ocio::has_endless_csp_metadata(file);
}

TEST(CspMetadata, MustEnd) {
    EXPECT_FALSE(is_endless(csp("BEGIN METADATA\ntaken on set\nEND METADATA")));
    EXPECT_FALSE(is_endless(csp("begin metadata\n\t end metadata of the day\r")));
    EXPECT_TRUE(is_endless(csp("BEGIN METADATA\ntaken on set")));
    EXPECT_TRUE(is_endless(csp("  begin metadata\nEND  METADATA")));
    EXPECT_TRUE(is_endless(csp("BEGIN METADATA\nthe END METADATA")));
    EXPECT_TRUE(is_endless(csp("BEGIN METADATA\nEND METADAT")));
}

TEST(CspMetadata, NeedNotBeThere) {
    EXPECT_FALSE(is_endless(csp("")));
    EXPECT_FALSE(is_endless(""));
    EXPECT_FALSE(is_endless("Version 1\nBEGIN METADATA\n"));
}

TEST(CspMetadata, WithoutAnEndRefuseTheFileAsALut) {
    const TempDir folder;
    const std::string path = folder.write("film.csp", csp("BEGIN METADATA"));
    EXPECT_EQ(test_configs::refusal_of([&] { ocio::require_readable_lut(path); }),
              "'" + path + "' cannot be read as a LUT: its metadata block is not closed");
}

} // namespace
