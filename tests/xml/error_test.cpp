#include "xml/xml_error.h"

#include <gtest/gtest.h>

namespace {

TEST(XmlErrorTexts, EveryCodeHasItsText) {
    const char* const texts[] = {
        "No error",
        "Warning: Unmatched end tag",
        "Warning: No XML tag found",
        "Error: No XML data",
        "Error: Missing start tag name",
        "Error: Missing end tag name",
        "Error: Unmatched end tag",
        "Error: Unmatched clear tag end",
        "Error: Unexpected token found",
        "Error: No elements found",
        "Error: File not found",
        "Error: First Tag not found",
        "Error: Unknown character entity",
        "Error: Character code above 255 is forbidden in MultiByte char mode.",
        "Error: unable to convert between WideChar and MultiByte chars",
        "Error: unable to open file for writing",
        "Error: cannot write into file",
        "Warning: Base64-string length is not a multiple of 4",
        "Error: Base64-string contains an illegal character",
        "Warning: Base64-string is truncated",
        "Error: Base64 decode output buffer is too small",
    };
    for (int code = 0; code <= 20; ++code)
        EXPECT_STREQ(get_error_text(static_cast<XmlError>(code)), texts[code]) << code;
}

TEST(XmlErrorTexts, ANumberOutsideTheTableIsUnknown) {
    EXPECT_STREQ(get_error_text(static_cast<XmlError>(21)), "Unknown");
    EXPECT_STREQ(get_error_text(static_cast<XmlError>(-1)), "Unknown");
    EXPECT_STREQ(get_error_text(static_cast<XmlError>(0x7FFFFFFF)), "Unknown");
}

TEST(XmlErrorTexts, ResultsBeginWithoutErrorOrPlace) {
    const XmlResults results;
    EXPECT_EQ(results.error, XmlError::NONE);
    EXPECT_EQ(results.line, 0);
    EXPECT_EQ(results.column, 0);
}

} // namespace
