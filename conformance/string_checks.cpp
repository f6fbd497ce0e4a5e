#include <array>

#include "conformance/check.h"
#include "host/core/core_string.h"

namespace conformance {

namespace {

constexpr unsigned int ABSENT = 0xFFFFFFFF;
constexpr std::string_view WITH_NUL("a\0b\xFF", 4);

std::string join(const CoreVector<CoreString>& pieces) {
    std::string joined;
    for (const CoreString& piece : pieces)
        joined.append("[").append(piece.view()).append("]");
    return joined;
}

void check_null(Findings& findings) {
    const char* const null = nullptr;
    findings.expect_text(CoreString(null).view(), "", "a string made from a null pointer");
}

void check_characters(Findings& findings) {
    static constexpr CoreStringView NAME = CoreStringView::from_literal("sRGB");
    findings.expect_text(CoreString(NAME).view(), "sRGB", "a string made from a CoreStringView");
    findings.expect_number(NAME.hash, 0x2EF9EC0C, "the Jenkins hash of 'sRGB'");
    const CoreString bytes(WITH_NUL);
    findings.expect_text(bytes.view(), WITH_NUL, "a string made from bytes with a NUL");
    findings.expect_number(bytes.get_count(), 4, "its count of bytes");
    const CoreBasicString& base = bytes;
    findings.expect_text(CoreString(base).view(), WITH_NUL, "a string made from a CoreBasicString");
}

void check_comparison(Findings& findings) {
    findings.expect(CoreString("linear") == CoreString("linear"), "equal texts compare equal");
    findings.expect(CoreString("linear") != CoreString("Linear"), "case matters");
    findings.expect(CoreString(WITH_NUL) != CoreString("a"), "bytes behind a NUL matter");
    findings.expect(CoreString("Cineon") < CoreString("linear"), "texts are ordered by their bytes");
}

void check_find(Findings& findings) {
    const CoreString text("a|b|c");
    findings.expect_number(text.find('|', 0), 1, "find('|', 0) in 'a|b|c'");
    findings.expect_number(text.find('|', 1), 1, "find('|', 1) in 'a|b|c'");
    findings.expect_number(text.find('|', 2), 3, "find('|', 2) in 'a|b|c'");
    findings.expect_number(text.find('|', 4), ABSENT, "find('|', 4) in 'a|b|c'");
    findings.expect_number(text.find('|', 9), ABSENT, "find past the end");
    findings.expect_number(CoreString("sRGB").find('|', 0), ABSENT, "find('|', 0) in 'sRGB'");
}

void check_start_with(Findings& findings) {
    findings.expect(CoreString("xml-stylesheet").start_with("xml"), "'xml-stylesheet' starts with 'xml'");
    findings.expect(!CoreString("XML").start_with("xml"), "'XML' does not start with 'xml'");
    findings.expect(!CoreString("an xml").start_with("xml"), "'an xml' does not start with 'xml'");
    findings.expect(!CoreString("xm").start_with("xml"), "'xm' does not start with 'xml'");
    findings.expect(CoreString("xml").start_with(""), "every string starts with the empty one");
}

void check_lower_case(Findings& findings) {
    const CoreString text("ACEScg \xC3\x84 Z[@");
    findings.expect_text(text.get_lower_case().view(), "acescg \xC3\x84 z[@", "get_lower_case");
    findings.expect_text(text.view(), "ACEScg \xC3\x84 Z[@", "the string itself");
}

void check_split(Findings& findings) {
    findings.expect_text(join(CoreString("exr,hdr").split(',')), "[exr][hdr]", "'exr,hdr'");
    findings.expect_text(join(CoreString(",exr,,hdr,").split(',')), "[][exr][][hdr][]", "',exr,,hdr,'");
    findings.expect_text(join(CoreString("exr").split(',')), "[exr]", "'exr'");
    findings.expect_text(join(CoreString("").split(',')), "", "the empty string");
}

void check_split_word(Findings& findings) {
    findings.expect_text(join(CoreString(" \t1.0  0.5\r\n\n0.25\v\f").split_word(" ")), "[1.0][0.5][0.25]",
                         "words between runs of blanks, tabs and line ends");
    findings.expect_text(join(CoreString(" \n").split_word(" ")), "", "only blanks");
    findings.expect_text(join(CoreString(";a b,;c,").split_word(",;")), "[a b][c]", "other separators");
}

void check_first_separator(Findings& findings) {
    findings.expect_text(CoreString::after_first("Film|a|b", '|').view(), "a|b", "after_first of 'Film|a|b'");
    findings.expect_text(CoreString::before_first("Film|a|b", '|').view(), "Film",
                         "before_first of 'Film|a|b'");
    findings.expect_text(CoreString::after_first("Film|", '|').view(), "", "after_first of 'Film|'");
    findings.expect_text(CoreString::before_first("|a", '|').view(), "", "before_first of '|a'");
    findings.expect_text(CoreString::after_first("sRGB", '|').view(), "sRGB", "after_first of 'sRGB'");
    findings.expect_text(CoreString::before_first("sRGB", '|').view(), "sRGB", "before_first of 'sRGB'");
}

void check_replaced_character(Findings& findings) {
    CoreString text("a|b|c");
    text.replace('|', '.');
    findings.expect_text(text.view(), "a.b.c", "'|' replaced by '.' in 'a|b|c'");
}

void check_replaced_text(Findings& findings) {
    CoreString all("jpg, png, tif");
    all.replace(" ", "", true);
    findings.expect_text(all.view(), "jpg,png,tif", "every ' ' removed from 'jpg, png, tif'");
    CoreString one("a::b::c");
    one.replace("::", ".", false);
    findings.expect_text(one.view(), "a.b::c", "the first '::' replaced in 'a::b::c'");
    CoreString grown("x:");
    grown.replace(":", "::", true);
    findings.expect_text(grown.view(), "x::", "a replacement that holds the replaced text");
    CoreString kept("kept");
    kept.replace("", "x", true);
    findings.expect_text(kept.view(), "kept", "the empty text replaced");
}

void check_sum(Findings& findings) {
    findings.expect_text((CoreString("Use ") + "scene_linear").view(), "Use scene_linear", "text + text");
    findings.expect_text((CoreString("Use") + ' ').view(), "Use ", "text + character");
    findings.expect_text((CoreString(WITH_NUL) + CoreString(WITH_NUL)).view(),
                         std::string_view("a\0b\xFF"
                                          "a\0b\xFF",
                                          8),
                         "texts with a NUL");
}

} // namespace

Checks list_string_checks() {
    return {
        {"strings.null", "a string made from a null pointer is empty",
         "names that OpenColorIO and XML elements leave out are null pointers and crash", check_null},
        {"strings.characters", "strings keep every byte that they are made from, NUL included",
         "built-in color spaces get other names, and bytes of files are lost", check_characters},
        {"strings.comparison", "strings are compared byte by byte",
         "color spaces are mistaken for each other or not found", check_comparison},
        {"strings.find", "find returns the next position, or 0xFFFFFFFF",
         "names of earlier versions are not converted", check_find},
        {"strings.start-with", "start_with compares the first bytes exactly",
         "XML declarations are taken for CDL documents", check_start_with},
        {"strings.lower-case", "get_lower_case changes ASCII letters only",
         "color spaces, CDLs and file extensions are not found in another case", check_lower_case},
        {"strings.split", "split returns the pieces between separators, empty ones too",
         "file extensions of a format are not recognized", check_split},
        {"strings.split-word", "split_word takes any run of separators as one and returns no empty word",
         "the numbers of CDL documents are read into the wrong channels", check_split_word},
        {"strings.first-separator",
         "after_first and before_first split at the first separator, if there is one",
         "families, displays and views are cut off wrongly", check_first_separator},
        {"strings.replace-character", "replace changes every such character",
         "views stored by earlier versions are not found", check_replaced_character},
        {"strings.replace-text", "replace changes every such text, or the first one",
         "extensions listed with blanks are not recognized, and shader texts are invalid",
         check_replaced_text},
        {"strings.sum", "+ joins two strings, or a string and a character",
         "labels, paths and messages are incomplete", check_sum},
    };
}

} // namespace conformance
