#include "tests/xml/xml_test.h"

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <vector>

#include "xml/utf16.h"

namespace {

std::string opening(const XmlNode& node) {
    if (node.get_name() == nullptr)
        return "#root";
    std::string text = (node.is_declaration() ? "?" : "") + std::string(node.get_name());
    for (int i = 0; i < node.count_attributes(); ++i) {
        text += (i == 0 ? "[" : " ") + std::string(node.get_attribute_name(i));
        if (node.get_attribute_value(i) != nullptr)
            text += "=" + std::string(node.get_attribute_value(i));
    }
    return text + (node.count_attributes() > 0 ? "]" : "");
}

} // namespace

void XmlTest::SetUp() {
    set_xml_settings(XmlSettings());
    xml::set_system_charset("");
}

void XmlTest::TearDown() {
    SetUp();
}

void XmlTest::use_encoding(XmlEncoding encoding) {
    XmlSettings settings = get_xml_settings();
    settings.encoding = encoding;
    set_xml_settings(settings);
}

TempDir::TempDir() {
    std::string pattern = (std::filesystem::temp_directory_path() / "xml-test-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr)
        throw std::runtime_error("no temporary folder");
    folder = pattern;
}

TempDir::~TempDir() {
    std::error_code ignored;
    std::filesystem::remove_all(folder, ignored);
}

std::string TempDir::file(const std::string& name, std::string_view content) const {
    std::ofstream stream(folder / name, std::ios::binary);
    stream.write(content.data(), static_cast<std::streamsize>(content.size()));
    return path(name);
}

std::size_t TempDir::count_entries() const {
    return static_cast<std::size_t>(
        std::distance(std::filesystem::directory_iterator(folder), std::filesystem::directory_iterator()));
}

std::string read_bytes(const std::string& path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

// An explicit stack instead of recursion, so that trees of any depth can be described.
std::string describe(const XmlNode& top) {
    if (top.is_empty())
        return "empty";
    struct Frame {
        XmlNode node;
        int next;
    };
    std::string text = opening(top);
    std::vector<Frame> frames = {{top, 0}};
    while (!frames.empty()) {
        Frame& frame = frames.back();
        const int count = frame.node.count_contents();
        if (frame.next == count) {
            text += count > 0 ? ")" : "";
            frames.pop_back();
            continue;
        }
        text += frame.next == 0 ? "(" : " ";
        const XmlContent content = frame.node.get_content(frame.next++);
        if (content.kind == XmlContentKind::TEXT) {
            text += "\"" + std::string(frame.node.get_text(content.index)) + "\"";
        } else if (content.kind == XmlContentKind::CLEAR) {
            const XmlClear clear = frame.node.get_clear(content.index);
            text += std::string(clear.open_tag) + clear.value + clear.close_tag;
        } else {
            const XmlNode child = frame.node.get_child(content.index);
            text += opening(child);
            frames.push_back({child, 0});
        }
    }
    return text;
}

std::string tree(const char* text, const char* first_tag) {
    return describe(XmlNode::parse_string(text, first_tag));
}

std::string outcome(const XmlResults& results) {
    if (results.error == XmlError::NONE && results.line == 0 && results.column == 0)
        return "none";
    return std::to_string(static_cast<int>(results.error)) + " at " + std::to_string(results.line) + ":" +
           std::to_string(results.column);
}

std::string fault(const char* text, const char* first_tag) {
    XmlResults results;
    XmlNode::parse_string(text, first_tag, &results);
    return outcome(results);
}
