// Every document of samples.tsv is read as an independent parser reads it, or is listed in
// known_deviations.tsv with what happens instead and why. A document that is not well-formed has "-" for its
// reading.

#include <algorithm>
#include <fstream>
#include <map>
#include <sstream>
#include <vector>

#include "tests/xml/xml_test.h"

namespace {

using Row = std::vector<std::string>;

std::vector<Row> read_table(const std::string& name) {
    std::ifstream stream(std::string(QB_XML_TEST_DATA) + "/" + name);
    std::vector<Row> rows;
    std::string line;
    std::getline(stream, line);
    while (std::getline(stream, line)) {
        Row row;
        std::istringstream fields(line);
        for (std::string field; std::getline(fields, field, '\t');)
            row.push_back(field);
        row.resize(3);
        rows.push_back(row);
    }
    return rows;
}

// Replaces \n, \r, \t, \\ and \xHH.
std::string unescape(const std::string& text) {
    std::string bytes;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\\') {
            bytes += text[i];
            continue;
        }
        const char kind = text[++i];
        if (kind == 'x') {
            bytes += static_cast<char>(std::stoi(text.substr(i + 1, 2), nullptr, 16));
            i += 2;
        } else {
            bytes += kind == 'n' ? '\n' : kind == 'r' ? '\r' : kind == 't' ? '\t' : kind;
        }
    }
    return bytes;
}

// The events of a tree: tags, instructions and comments with the text between them. A declaration node's
// content follows it; nothing outside the document element is text.
class Reading {
public:
    static std::string of(const XmlNode& node) {
        Reading reading;
        reading.add(node);
        return reading.events;
    }

private:
    void add(const XmlNode& node) {
        const std::string name = node.get_name() != nullptr ? node.get_name() : "";
        const bool is_element = !name.empty() && !node.is_declaration();
        if (is_element) {
            events += "<" + name;
            for (int i = 0; i < node.count_attributes(); ++i)
                events += std::string(" ") + node.get_attribute_name(i) + "=\"" +
                          node.get_attribute_value(i) + "\"";
            events += ">";
            ++depth;
        } else if (!name.empty() && name != "xml") {
            events += "<?" + name + "?>";
        }
        for (int i = 0; i < node.count_contents(); ++i)
            add_content(node, node.get_content(i));
        if (is_element) {
            events += "</" + name + ">";
            --depth;
        }
    }

    void add_content(const XmlNode& node, XmlContent content) {
        if (content.kind == XmlContentKind::CHILD) {
            add(node.get_child(content.index));
        } else if (content.kind == XmlContentKind::TEXT) {
            events += depth > 0 ? node.get_text(content.index) : "";
        } else {
            const XmlClear clear = node.get_clear(content.index);
            const std::string tag = clear.open_tag;
            if (tag == "<!--")
                events += tag + clear.value + clear.close_tag;
            else if (tag == "<![CDATA[")
                events += clear.value;
            else if (tag == "<PRE>")
                events += "{verbatim: " + std::string(clear.value) + "}";
        }
    }

    std::string events;
    int depth = 0;
};

class WellFormedness : public XmlTest {
protected:
    // What the sample's file becomes: its reading, or the code that refuses it.
    std::string read_sample(const std::string& document) {
        set_xml_settings({XmlEncoding::UTF_8, true, false, false});
        const std::string path = folder.file("sample.xml", document);
        use_encoding(guess_encoding(document.data(), std::min<std::size_t>(document.size(), 200), true));
        XmlResults results;
        const XmlNode top = XmlNode::parse_file(path.c_str(), nullptr, &results);
        if (results.error != XmlError::NONE)
            return "code " + std::to_string(static_cast<int>(results.error));
        return Reading::of(top);
    }

    // "agrees" with the table's reading, or how it deviates.
    std::string outcome_of(const Row& sample) {
        const std::string read = read_sample(unescape(sample[1]));
        const bool is_well_formed = sample[2] != "-";
        const bool is_refused = read.rfind("code ", 0) == 0;
        if (is_well_formed && is_refused)
            return read;
        if (is_well_formed)
            return read == unescape(sample[2]) ? "agrees" : "read otherwise";
        return is_refused ? "agrees" : "accepted";
    }

    TempDir folder;
};

TEST_F(WellFormedness, EverySampleAgreesWithAnIndependentParserOrIsAKnownDeviation) {
    std::map<std::string, std::string> known;
    for (const Row& row : read_table("known_deviations.tsv"))
        known[row[0]] = row[1];
    const std::vector<Row> samples = read_table("samples.tsv");
    ASSERT_GT(samples.size(), 200u);
    for (const Row& sample : samples) {
        const auto found = known.find(sample[0]);
        EXPECT_EQ(outcome_of(sample), found != known.end() ? found->second : "agrees")
            << sample[0] << ": " << sample[1];
        if (found != known.end())
            known.erase(found);
    }
    for (const auto& unused : known)
        ADD_FAILURE() << "no such sample: " << unused.first;
}

TEST_F(WellFormedness, EveryKnownDeviationHasItsReason) {
    const std::vector<Row> rows = read_table("known_deviations.tsv");
    ASSERT_FALSE(rows.empty());
    for (const Row& row : rows)
        EXPECT_GT(row[2].size(), 20u) << row[0];
}

} // namespace
