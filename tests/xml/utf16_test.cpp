#include "xml/utf16.h"

#include <cstdlib>

#include "tests/xml/xml_test.h"

namespace {

// ASCII as UTF-16.
std::string widen(const std::string& ascii, bool is_big_endian) {
    std::string wide;
    for (char c : ascii) {
        wide += is_big_endian ? '\0' : c;
        wide += is_big_endian ? c : '\0';
    }
    return wide;
}

const std::string LITTLE_MARK = "\xFF\xFE";
const std::string BIG_MARK = "\xFE\xFF";

class Utf16Files : public XmlTest {
protected:
    std::string read(const std::string& bytes, std::string* code = nullptr) {
        XmlResults results;
        const XmlNode node = XmlNode::parse_file(folder.file("wide.xml", bytes).c_str(), nullptr, &results);
        if (code != nullptr)
            *code = outcome(results);
        return describe(node);
    }
    std::string code_of(const std::string& bytes) {
        std::string code;
        read(bytes, &code);
        return code;
    }

    TempDir folder;
};

TEST_F(Utf16Files, AreKnownByTheirMarkAndConvertedToUtf8) {
    EXPECT_EQ(read(LITTLE_MARK + widen("<a b='1'>x", false) + "\xE9\x20" + widen("</a>", false)),
              "a[b=1](\"x\xE2\x83\xA9\")");
    EXPECT_EQ(read(BIG_MARK + widen("<a>", true) + "\x20\xAC" + widen("</a>", true)), "a(\"\xE2\x82\xAC\")");
}

TEST_F(Utf16Files, AreKnownByTheirDeclarationToo) {
    const std::string text = "<?xml version='1.0' encoding='UTF-16'?><a/>";
    const std::string expected = "?xml[version=1.0 encoding=UTF-16](a)";
    EXPECT_EQ(read(widen(text, false)), expected);
    EXPECT_EQ(read(widen(text, true)), expected);
    EXPECT_EQ(read(LITTLE_MARK + widen(text, false)), expected);
}

TEST_F(Utf16Files, SurrogatePairsMakeOneCharacter) {
    EXPECT_EQ(read(BIG_MARK + widen("<a>", true) + "\xD8\x3C\xDF\xA8" + widen("</a>", true)),
              "a(\"\xF0\x9F\x8E\xA8\")");
}

TEST_F(Utf16Files, APlaceIsCountedInTheConvertedText) {
    EXPECT_EQ(code_of(BIG_MARK + widen("<a>\n", true) + "\x20\xAC" + widen("&x;</a>", true)), "12 at 2:2");
}

TEST_F(Utf16Files, ThatAreNotWholeAreCode14) {
    EXPECT_EQ(code_of(LITTLE_MARK + widen("<a/>", false) + "x"), "14 at 0:0");
    EXPECT_EQ(code_of(BIG_MARK + widen("<a>", true) + "\xD8\x3C" + widen("</a>", true)), "14 at 0:0");
}

TEST_F(Utf16Files, OfNothingButTheMarkHaveNoTag) {
    EXPECT_EQ(code_of(LITTLE_MARK), "2 at 1:1");
    EXPECT_EQ(code_of(BIG_MARK), "2 at 1:1");
}

TEST_F(Utf16Files, AreConvertedToTheSystemCodePageUnlessUtf8IsCurrent) {
    use_encoding(XmlEncoding::SINGLE_BYTE);
    xml::set_system_charset("ISO-8859-1");
    const std::string text = BIG_MARK + widen("<a>", true) + std::string("\0\xE9", 2) + widen("</a>", true);
    EXPECT_EQ(read(text), "a(\"\xE9\")");
    use_encoding(XmlEncoding::SHIFT_JIS);
    xml::set_system_charset("SHIFT-JIS");
    EXPECT_EQ(read(BIG_MARK + widen("<a>", true) + "\x30\xBE" + widen("</a>", true)), "a(\"\x83\x5D\")");
}

TEST_F(Utf16Files, WithACharacterThatTheCodePageLacksAreCode14) {
    use_encoding(XmlEncoding::SINGLE_BYTE);
    xml::set_system_charset("ISO-8859-1");
    EXPECT_EQ(code_of(BIG_MARK + widen("<a>", true) + "\x20\xAC" + widen("</a>", true)), "14 at 0:0");
    xml::set_system_charset("no-such-code-page");
    EXPECT_EQ(code_of(BIG_MARK + widen("<a/>", true)), "14 at 0:0");
}

TEST_F(Utf16Files, OnlyLoseTheirMarkWhenWideCharactersAreNotGuessed) {
    XmlSettings settings;
    settings.guess_wide_characters = false;
    set_xml_settings(settings);
    EXPECT_EQ(read(LITTLE_MARK + "<a/>"), "a");
    EXPECT_EQ(code_of(LITTLE_MARK + widen("<a/>", false)), "2 at 1:2");
    EXPECT_EQ(code_of(BIG_MARK + "<a/>"), "8 at 1:1");
}

TEST_F(Utf16Files, ThatAreBytesInTruthAreReadAsBytes) {
    EXPECT_EQ(code_of("<?xml version='1.0' encoding='UTF-16'?><a/>"), "none");
    EXPECT_EQ(code_of("<?xml version='1.0' encoding='ucs-2'?><a/>"), "none");
    EXPECT_EQ(read("\xEF\xBB\xBF<?xml version='1.0' encoding='utf-16'?><a>\xC3\xA9</a>"),
              "?xml[version=1.0 encoding=utf-16](a(\"\xC3\xA9\"))");
    EXPECT_EQ(fault("<?xml version='1.0' encoding='UTF-16'?><a/>"), "none");
}

TEST_F(Utf16Files, ThatAreBytesInTruthAreReportedAsNoFault) {
    const std::string path =
        folder.file("bytes.xml", "<?xml version='1.0' encoding='utf-16'?><a>caf\xE9 au lait</a>");
    const XmlNode top = XmlNode::parse_file_or_report(path.c_str());
    EXPECT_EQ(describe(top.get_child(0)), "a(\"caf\xE9 au lait\")");
    EXPECT_EQ(get_xml_settings().encoding, XmlEncoding::SINGLE_BYTE);
}

TEST(Utf16Conversion, GrowsForAStatefulTarget) {
    std::string alternating;
    for (int i = 0; i < 200; ++i)
        alternating += std::string("\0a\x30\xBE", 4);
    xml::OwnedText converted;
    ASSERT_TRUE(xml::convert_utf16(alternating.data(), alternating.size(), true, "ISO-2022-JP", converted));
    std::string expected;
    for (int i = 0; i < 200; ++i)
        expected += "a\x1B$B%>\x1B(B";
    EXPECT_EQ(std::string(converted.buffer, converted.length), expected);
    std::free(converted.buffer);
}

TEST(Utf16Conversion, TheSystemCharsetComesFromTheEnvironmentUntilReplaced) {
    EXPECT_FALSE(xml::get_system_charset().empty());
    xml::set_system_charset("KOI8-R");
    EXPECT_EQ(xml::get_system_charset(), "KOI8-R");
    xml::set_system_charset("");
    EXPECT_NE(xml::get_system_charset(), "KOI8-R");
}

} // namespace
