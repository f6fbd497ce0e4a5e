// The content of written files. See file_replacement_test.cpp for how a file is replaced.

#include "tests/xml/xml_test.h"

namespace {

const std::string MARK = "\xEF\xBB\xBF";
const std::string UTF_8_LINE = "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n";

class WriteToFile : public XmlTest {
protected:
    std::string written(const XmlNode& node, const char* encoding_name = nullptr, bool format = true) {
        const std::string path = folder.path("out.xml");
        EXPECT_EQ(node.write_to_file(path.c_str(), encoding_name, format), XmlError::NONE);
        return read_bytes(path);
    }

    TempDir folder;
};

TEST_F(WriteToFile, AnElementHasMarkDeclarationAndIndentedTree) {
    const XmlNode top = XmlNode::parse_string("<a b='1'><c>text</c></a>");
    EXPECT_EQ(written(top), MARK + UTF_8_LINE + "<a b=\"1\">\n\t<c>\n\t\ttext\n\t</c>\n</a>\n");
}

TEST_F(WriteToFile, AColorCorrectionCollectionIsWrittenAsTheFormatAsks) {
    XmlNode top = XmlNode::create_top_node("ColorCorrectionCollection");
    top.add_attribute("xmlns", "urn:ASC:CDL:v1.2");
    XmlNode correction = top.add_child("ColorCorrection");
    correction.add_attribute("id", "grade");
    XmlNode sop = correction.add_child("SOPNode");
    sop.add_child("Slope").add_text("1.2 1.0 0.9");
    correction.add_child("SATNode").add_child("Saturation").add_text("0.8");
    EXPECT_EQ(written(top), MARK + UTF_8_LINE +
                                "<ColorCorrectionCollection xmlns=\"urn:ASC:CDL:v1.2\">\n"
                                "\t<ColorCorrection id=\"grade\">\n"
                                "\t\t<SOPNode>\n"
                                "\t\t\t<Slope>\n"
                                "\t\t\t\t1.2 1.0 0.9\n"
                                "\t\t\t</Slope>\n"
                                "\t\t</SOPNode>\n"
                                "\t\t<SATNode>\n"
                                "\t\t\t<Saturation>\n"
                                "\t\t\t\t0.8\n"
                                "\t\t\t</Saturation>\n"
                                "\t\t</SATNode>\n"
                                "\t</ColorCorrection>\n"
                                "</ColorCorrectionCollection>\n");
}

TEST_F(WriteToFile, ADeclarationNodeIsNotDeclaredTwice) {
    const XmlNode top = XmlNode::parse_string("<?xml version='1.0'?><a/>");
    EXPECT_EQ(written(top), MARK + "<?xml version=\"1.0\"?>\n<a/>\n");
}

TEST_F(WriteToFile, AnUnnamedRootIsDeclaredUnlessItsFirstChildDeclaresIt) {
    XmlNode root = XmlNode::create_top_node(nullptr);
    EXPECT_EQ(written(root), MARK + UTF_8_LINE);
    XmlNode declaration = root.add_child("xml", true);
    declaration.add_attribute("version", "1.0");
    EXPECT_EQ(written(root), MARK + "<?xml version=\"1.0\"?>\n");
    EXPECT_EQ(written(XmlNode::parse_string("<!--c--><a/>")), MARK + UTF_8_LINE + "<!--c-->\n<a/>\n");
}

TEST_F(WriteToFile, LayoutIsOffUnlessAskedForAndWhiteSpaceIsDropped) {
    const XmlNode top = XmlNode::parse_string("<a><b/></a>");
    EXPECT_EQ(written(top, nullptr, false), MARK + UTF_8_LINE + "<a><b/></a>");
    XmlSettings settings;
    settings.drop_white_space = false;
    set_xml_settings(settings);
    EXPECT_EQ(written(top), MARK + UTF_8_LINE + "<a><b/></a>");
}

TEST_F(WriteToFile, ShiftJisIsDeclaredWithoutAMark) {
    use_encoding(XmlEncoding::SHIFT_JIS);
    XmlNode top = XmlNode::create_top_node("a");
    top.add_text("\x83\x5D");
    EXPECT_EQ(written(top, "ignored"),
              "<?xml version=\"1.0\" encoding=\"SHIFT-JIS\"?>\n<a>\n\t\x83\x5D\n</a>\n");
}

TEST_F(WriteToFile, OtherEncodingsAreDeclaredByTheCallerOrAsLatin1) {
    const XmlNode top = XmlNode::create_top_node("a");
    for (XmlEncoding encoding :
         {XmlEncoding::SINGLE_BYTE, XmlEncoding::GB2312, XmlEncoding::BIG5, XmlEncoding::GBK}) {
        use_encoding(encoding);
        EXPECT_EQ(written(top), "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>\n<a/>\n");
        EXPECT_EQ(written(top, "x-name"), "<?xml version=\"1.0\" encoding=\"x-name\"?>\n<a/>\n");
    }
}

TEST_F(WriteToFile, TheCallersNameIsIgnoredForUtf8) {
    EXPECT_EQ(written(XmlNode::create_top_node("a"), "ISO-8859-1"), MARK + UTF_8_LINE + "<a/>\n");
}

TEST_F(WriteToFile, ADeclarationNodeWithoutUtf8HasNoMark) {
    use_encoding(XmlEncoding::SINGLE_BYTE);
    EXPECT_EQ(written(XmlNode::parse_string("<?xml version='1.0'?><a/>")), "<?xml version=\"1.0\"?>\n<a/>\n");
}

TEST_F(WriteToFile, AWideEncodingIsReplacedByTheOneWritten) {
    const XmlNode top =
        XmlNode::parse_string("<?xml version='1.0' encoding='UTF-16'?><a encoding='UTF-16'/>");
    EXPECT_EQ(written(top), MARK + UTF_8_LINE + "<a encoding=\"UTF-16\"/>\n");
    EXPECT_EQ(top.create_string(-1), "<?xml version=\"1.0\" encoding=\"UTF-16\"?><a encoding=\"UTF-16\"/>");
}

TEST_F(WriteToFile, TheEmptyNodeWritesNoFileAndSucceeds) {
    EXPECT_EQ(XmlNode().write_to_file(folder.path("none.xml").c_str()), XmlError::NONE);
    EXPECT_EQ(XmlNode::parse_string("<a>&x;</a>").write_to_file(folder.path("none.xml").c_str()),
              XmlError::NONE);
    EXPECT_EQ(folder.count_entries(), 0u);
}

} // namespace
