#include <fstream>
#include <set>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "diagnostics/code.h"

using diagnostics::Code;
using diagnostics::CodeInfo;
using diagnostics::get_codes;

TEST(Codes, StandInTheOrderOfTheEnumeration) {
    int position = 0;
    for (const CodeInfo& info : get_codes())
        EXPECT_EQ(static_cast<int>(info.code), position++) << info.name;
    EXPECT_EQ(position, static_cast<int>(Code::LIBRARY_FAILURE) + 1);
}

TEST(Codes, HaveNamesOfTheirOwn) {
    std::set<std::string_view> names;
    for (const CodeInfo& info : get_codes())
        EXPECT_TRUE(names.insert(info.name).second) << info.name;
}

TEST(Codes, ConsistOfSmallLettersAndDashes) {
    for (const CodeInfo& info : get_codes())
        EXPECT_EQ(info.name.find_first_not_of("abcdefghijklmnopqrstuvwxyz-"), std::string_view::npos)
            << info.name;
}

// Programs compare them, so none of these may ever change.
TEST(Codes, KeepTheirNames) {
    EXPECT_EQ(get_name(Code::FILE_MISSING), "file-missing");
    EXPECT_EQ(get_name(Code::LUT_MISSING), "lut-missing");
    EXPECT_EQ(get_name(Code::CONFIG_CYCLE), "config-cycle");
    EXPECT_EQ(get_name(Code::CDL_ID_MISSING), "cdl-id-missing");
    EXPECT_EQ(get_name(Code::DISPLAY_MISSING), "display-missing");
    EXPECT_EQ(get_name(Code::GPU_UNAVAILABLE), "gpu-unavailable");
    EXPECT_EQ(get_name(Code::GPU_LIMIT), "gpu-limit");
    EXPECT_EQ(get_name(Code::SHADER_INVALID), "shader-invalid");
    EXPECT_EQ(get_name(Code::LIBRARY_FAILURE), "library-failure");
}

TEST(Codes, AreDocumentedWithTheirMeanings) {
    std::ifstream file(QB_CODES_DOCUMENT);
    std::stringstream document;
    document << file.rdbuf();
    for (const CodeInfo& info : get_codes()) {
        const std::string row = "| `" + std::string(info.name) + "` | " + std::string(info.meaning) + " |";
        EXPECT_NE(document.str().find(row), std::string::npos) << row;
    }
}
