#include "fuzz/xml/tree_text.h"

#include <vector>

namespace {

// Quotes what may be null, so that a null, an empty string and a separator all differ.
void add(std::string& text, char kind, const char* value) {
    text += kind;
    if (value != nullptr) {
        for (; *value != '\0'; ++value) {
            text += *value;
            text += *value == '\x1F' ? "\x1F" : "";
        }
    } else {
        text += "\x1Fnull";
    }
    text += "\x1F;";
}

void add_opening(std::string& text, const XmlNode& node) {
    add(text, node.is_declaration() ? '?' : '<', node.get_name());
    for (int i = 0; i < node.count_attributes(); ++i) {
        add(text, '@', node.get_attribute_name(i));
        add(text, '=', node.get_attribute_value(i));
    }
}

} // namespace

std::string tree_text(const XmlNode& top) {
    struct Frame {
        XmlNode node;
        int next;
    };
    std::string text;
    add_opening(text, top);
    std::vector<Frame> frames = {{top, 0}};
    while (!frames.empty()) {
        Frame& frame = frames.back();
        const XmlContent content = frame.node.get_content(frame.next++);
        if (content.kind == XmlContentKind::NONE) {
            text += '>';
            frames.pop_back();
        } else if (content.kind == XmlContentKind::CHILD) {
            const XmlNode child = frame.node.get_child(content.index);
            add_opening(text, child);
            frames.push_back({child, 0});
        } else if (content.kind == XmlContentKind::CLEAR) {
            add(text, '!', frame.node.get_clear(content.index).open_tag);
            add(text, '!', frame.node.get_clear(content.index).value);
        } else if (*frame.node.get_text(content.index) != '\0') {
            add(text, '"', frame.node.get_text(content.index));
        }
    }
    return text;
}
