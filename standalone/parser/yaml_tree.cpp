#include "standalone/parser/yaml_tree.h"

#include <yaml-cpp/eventhandler.h>
#include <yaml-cpp/exceptions.h>
#include <yaml-cpp/parser.h>

#include <algorithm>
#include <optional>
#include <sstream>
#include <unordered_map>

#include "standalone/parser/base64.h"
#include "standalone/parser/yaml_error.h"
#include "standalone/parser/yaml_limits.h"

namespace {

constexpr std::string_view STANDARD_TAGS = "tag:yaml.org,2002:";

YamlError error_at(const YAML::Mark& mark, const std::string& reason) {
    if (mark.is_null())
        return {0, 0, reason};
    return {static_cast<unsigned int>(mark.line) + 1, static_cast<unsigned int>(mark.column) + 1, reason};
}

// The name of a standard tag; empty for every other one.
std::string_view get_standard_tag(std::string_view tag) {
    return tag.substr(0, STANDARD_TAGS.size()) == STANDARD_TAGS ? tag.substr(STANDARD_TAGS.size())
                                                                : std::string_view();
}

std::string decode_binary(const YAML::Mark& mark, const std::string& base64) {
    const std::optional<std::string> bytes = decode_base64(base64);
    if (!bytes)
        throw error_at(mark, "binary data that is not base64");
    return *bytes;
}

// "?" marks an unquoted scalar without a tag, "!" a quoted one.
YamlScalar resolve_scalar(const YAML::Mark& mark, const std::string& tag, const std::string& text) {
    const std::string_view standard = get_standard_tag(tag);
    if (standard == "binary")
        return decode_binary(mark, text);
    if (tag == "?" || standard == "null" || standard == "int" || standard == "float")
        return resolve_plain_scalar(text);
    return text;
}

// Builds the tree from the parser's events.
class TreeBuilder : public YAML::EventHandler {
public:
    YamlNodePtr get_root() const { return root; }

    void OnDocumentStart(const YAML::Mark& mark) override {
        if (document_seen)
            throw error_at(mark, "a second document in the file");
        document_seen = true;
    }
    void OnDocumentEnd() override {}

    void OnNull(const YAML::Mark& mark, YAML::anchor_t anchor) override {
        if (is_after_empty_name())
            open_nodes.back().empty_name = EmptyName::NONE;
        else if (expects_name())
            set_name(mark, {});
        else
            add_scalar(mark, anchor, {});
    }
    void OnScalar(const YAML::Mark& mark, const std::string& tag, YAML::anchor_t anchor,
                  const std::string& text) override {
        begin_pair_without_name(mark);
        if (expects_name())
            set_name(mark, get_standard_tag(tag) == "binary" ? decode_binary(mark, text) : text);
        else
            add_scalar(mark, anchor, resolve_scalar(mark, tag, text));
    }
    void OnAlias(const YAML::Mark& mark, YAML::anchor_t anchor) override {
        begin_pair_without_name(mark);
        refuse_as_name(mark, "an alias in the place of a name");
        const auto found = anchored.find(anchor);
        if (found == anchored.end())
            throw error_at(mark, "an alias of a value that contains it");
        add(mark, found->second);
    }

    void OnSequenceStart(const YAML::Mark& mark, const std::string& tag, YAML::anchor_t anchor,
                         YAML::EmitterStyle::value) override {
        begin_pair_without_name(mark);
        const std::string_view standard = get_standard_tag(tag);
        open(mark, anchor, YamlList{{}, standard == "pairs" || standard == "omap"});
    }
    void OnSequenceEnd() override { close(); }
    void OnMapStart(const YAML::Mark& mark, const std::string&, YAML::anchor_t anchor,
                    YAML::EmitterStyle::value style) override {
        begin_pair_without_name(mark);
        if (style == YAML::EmitterStyle::Default && expects_name())
            open_nodes.back().empty_name = EmptyName::OPEN;
        else
            open(mark, anchor, YamlMap{});
    }
    void OnMapEnd() override {
        EmptyName& empty_name = open_nodes.back().empty_name;
        if (empty_name == EmptyName::OPEN)
            empty_name = EmptyName::CLOSED;
        else
            close();
    }

private:
    // yaml-cpp reports a pair that begins with an empty "?" line as a map of that pair in the place of the
    // name, and a null value for it. Only such maps have no style. The pair goes to the map around them.
    enum class EmptyName {
        NONE,
        OPEN,   // between the start and the end of the reported map
        CLOSED, // the null value comes next, or the value of another pair without a name
    };

    // A list or map whose end was not met yet.
    struct OpenNode {
        std::shared_ptr<YamlNode> node;
        YAML::Mark mark;
        YAML::anchor_t anchor;
        bool has_name; // a map's pair waits for its value
        EmptyName empty_name = EmptyName::NONE;
    };

    bool expects_name() const {
        return !open_nodes.empty() && !open_nodes.back().has_name &&
               std::holds_alternative<YamlMap>(open_nodes.back().node->content);
    }

    bool is_after_empty_name() const {
        return !open_nodes.empty() && open_nodes.back().empty_name == EmptyName::CLOSED;
    }

    void begin_pair_without_name(const YAML::Mark& mark) {
        if (!is_after_empty_name())
            return;
        open_nodes.back().empty_name = EmptyName::NONE;
        set_name(mark, {});
    }

    void refuse_as_name(const YAML::Mark& mark, const char* reason) const {
        if (expects_name())
            throw error_at(mark, reason);
    }

    void set_name(const YAML::Mark& mark, std::string name) {
        const YamlError place = error_at(mark, {});
        OpenNode& top = open_nodes.back();
        std::get<YamlMap>(top.node->content)
            .pairs.push_back({std::move(name), place.line, place.column, nullptr});
        top.has_name = true;
    }

    void open(const YAML::Mark& mark, YAML::anchor_t anchor,
              std::variant<YamlScalar, YamlList, YamlMap> content) {
        // The parser below also takes a bracket for a name when the file ends before it is closed.
        refuse_as_name(mark, "a list or map in the place of a name; is a bracket not closed?");
        open_nodes.push_back({make_node(mark, std::move(content)), mark, anchor, false});
        refuse_depth(mark, 0);
    }

    void close() {
        const OpenNode closed = std::move(open_nodes.back());
        open_nodes.pop_back();
        add(closed.mark, closed.node);
        remember(closed.anchor, closed.node);
    }

    void add_scalar(const YAML::Mark& mark, YAML::anchor_t anchor, YamlScalar scalar) {
        const std::shared_ptr<YamlNode> node = make_node(mark, std::move(scalar));
        add(mark, node);
        remember(anchor, node);
    }

    // Gives a complete node to the list or map around it.
    void add(const YAML::Mark& mark, const YamlNodePtr& node) {
        if (open_nodes.empty()) {
            root = node;
            return;
        }
        refuse_depth(mark, node->height);
        OpenNode& top = open_nodes.back();
        if (auto* list = std::get_if<YamlList>(&top.node->content))
            list->items.push_back(node);
        else
            std::get<YamlMap>(top.node->content).pairs.back().value = node;
        top.has_name = false;
        top.node->height = std::max(top.node->height, node->height + 1);
    }

    void refuse_depth(const YAML::Mark& mark, unsigned int height) const {
        if (open_nodes.size() + height > MAX_YAML_DEPTH)
            throw error_at(mark,
                           "lists and maps nested deeper than " + std::to_string(MAX_YAML_DEPTH) + " levels");
    }

    void remember(YAML::anchor_t anchor, const YamlNodePtr& node) {
        if (anchor != YAML::NullAnchor)
            anchored[anchor] = node;
    }

    static std::shared_ptr<YamlNode> make_node(const YAML::Mark& mark,
                                               std::variant<YamlScalar, YamlList, YamlMap> content) {
        const YamlError place = error_at(mark, {});
        return std::make_shared<YamlNode>(YamlNode{place.line, place.column, std::move(content)});
    }

    bool document_seen = false;
    YamlNodePtr root;
    std::vector<OpenNode> open_nodes;
    std::unordered_map<YAML::anchor_t, YamlNodePtr> anchored;
};

// YAML texts hold no control characters but tabs and line ends, and the library below takes one of them for
// the end of the text.
void refuse_control_characters(std::string_view text) {
    const auto is_refused = [](unsigned char character) {
        return character < 0x20 && character != '\t' && character != '\n' && character != '\r';
    };
    const auto found = std::find_if(text.begin(), text.end(), is_refused);
    if (found == text.end())
        return;
    const std::string_view before = text.substr(0, static_cast<size_t>(found - text.begin()));
    const auto line = static_cast<unsigned int>(std::count(before.begin(), before.end(), '\n')) + 1;
    const auto column = static_cast<unsigned int>(before.size() - (before.rfind('\n') + 1)) + 1;
    throw YamlError(line, column, "a control character; this is not a YAML text in UTF-8");
}

// The library below does not notice a quoted text that the end of the file cuts off right after a line end. A
// comment in the last line makes it notice, and is nothing to every other text.
std::string end_with_comment(std::string_view text) {
    const std::string_view last_line = text.substr(text.find_last_of("\r\n") + 1);
    const bool is_blank = last_line.find_first_not_of(" \t") == std::string_view::npos;
    return std::string(text) + (last_line.empty() ? "#" : is_blank ? "\n#" : "");
}

} // namespace

YamlNodePtr read_yaml_tree(std::string_view text) {
    refuse_control_characters(text);
    std::istringstream stream(end_with_comment(text));
    TreeBuilder builder;
    try {
        YAML::Parser parser(stream);
        while (parser.HandleNextDocument(builder)) {
        }
    } catch (const YAML::Exception& error) {
        throw error_at(error.mark, error.msg);
    }
    return builder.get_root();
}
