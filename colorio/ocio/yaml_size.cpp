#include "colorio/ocio/yaml_size.h"

#include <yaml-cpp/eventhandler.h>
#include <yaml-cpp/exceptions.h>
#include <yaml-cpp/parser.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <optional>
#include <sstream>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "colorio/ocio/config_text.h"
#include "colorio/ocio/error.h"
#include "colorio/ocio/file_state.h"
#include "colorio/ocio/types.h"

namespace ocio {

namespace {

/// The biggest configs in use have some 20,000 nodes.
constexpr std::size_t MAX_REPEATED_NODES = 200000;

/// Thrown out of the parser.
struct TooManyNodes {};

/// Counts the nodes of a document after its aliases were expanded.
class RepetitionCounter : public YAML::EventHandler {
public:
    void OnDocumentStart(const YAML::Mark&) override { sizes_.clear(); }
    void OnDocumentEnd() override {}

    void OnNull(const YAML::Mark&, YAML::anchor_t anchor) override { add_leaf(anchor); }
    void OnScalar(const YAML::Mark&, const std::string&, YAML::anchor_t anchor, const std::string&) override {
        add_leaf(anchor);
    }
    void OnSequenceStart(const YAML::Mark&, const std::string&, YAML::anchor_t anchor,
                         YAML::EmitterStyle::value) override {
        open_.push_back({anchor, 1});
    }
    void OnSequenceEnd() override { close(); }
    void OnMapStart(const YAML::Mark&, const std::string&, YAML::anchor_t anchor,
                    YAML::EmitterStyle::value) override {
        open_.push_back({anchor, 1});
    }
    void OnMapEnd() override { close(); }

    void OnAlias(const YAML::Mark&, YAML::anchor_t anchor) override {
        const std::size_t size = sizes_[anchor];
        repeated_ += size;
        if (repeated_ > MAX_REPEATED_NODES)
            throw TooManyNodes();
        add_to_parent(size);
    }

private:
    struct OpenNode {
        YAML::anchor_t anchor;
        std::size_t size; ///< with everything in it, repetitions included
    };

    void add_leaf(YAML::anchor_t anchor) {
        sizes_[anchor] = 1;
        add_to_parent(1);
    }

    void close() {
        const OpenNode closed = open_.back();
        open_.pop_back();
        sizes_[closed.anchor] = closed.size;
        add_to_parent(closed.size);
    }

    void add_to_parent(std::size_t size) {
        if (!open_.empty())
            open_.back().size += size;
    }

    std::vector<OpenNode> open_;
    std::unordered_map<YAML::anchor_t, std::size_t> sizes_;
    std::size_t repeated_ = 0;
};

/// For documents whose syntax alone matters.
class Ignorer : public YAML::EventHandler {
public:
    void OnDocumentStart(const YAML::Mark&) override {}
    void OnDocumentEnd() override {}
    void OnNull(const YAML::Mark&, YAML::anchor_t) override {}
    void OnAlias(const YAML::Mark&, YAML::anchor_t) override {}
    void OnScalar(const YAML::Mark&, const std::string&, YAML::anchor_t, const std::string&) override {}
    void OnSequenceStart(const YAML::Mark&, const std::string&, YAML::anchor_t,
                         YAML::EmitterStyle::value) override {}
    void OnSequenceEnd() override {}
    void OnMapStart(const YAML::Mark&, const std::string&, YAML::anchor_t,
                    YAML::EmitterStyle::value) override {}
    void OnMapEnd() override {}
};

/// True when the text contains what could be an alias: "*name" where a node may begin.
bool may_hold_aliases(std::string_view text) {
    constexpr std::string_view BEFORE = " \t\r\n[{,:-?";
    constexpr std::string_view BLANKS = " \t\r\n*";
    for (std::size_t at = text.find('*'); at != std::string_view::npos; at = text.find('*', at + 1)) {
        const bool begins = at == 0 || BEFORE.find(text[at - 1]) != std::string_view::npos;
        const bool named = at + 1 < text.size() && BLANKS.find(text[at + 1]) == std::string_view::npos;
        if (begins && named)
            return true;
    }
    return false;
}

} // namespace

void require_bounded_yaml(const std::string& path) {
    if (!file_state(path))
        return;
    std::ifstream file(path, std::ios::binary);
    const std::string text((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    if (!may_hold_aliases(text))
        return;
    try {
        std::istringstream stream(text);
        YAML::Parser parser(stream);
        RepetitionCounter counter;
        parser.HandleNextDocument(counter);
    } catch (const TooManyNodes&) {
        throw_file_error(diagnostics::Code::CONFIG_TOO_COMPLEX,
                         "'" + path + "' contains aliases that expand beyond the limit", path);
    } catch (const YAML::Exception&) {
        return;
    }
}

std::optional<YamlError> find_yaml_error(const std::string& path) {
    const std::optional<std::string> text = read_config_text(path);
    if (!text)
        return std::nullopt;
    try {
        std::istringstream stream(*text);
        YAML::Parser parser(stream);
        Ignorer ignorer;
        // OpenColorIO reads one. The parser would find documents without end in the text ",".
        parser.HandleNextDocument(ignorer);
    } catch (const YAML::Exception& error) {
        if (!error.mark.is_null())
            return YamlError{static_cast<unsigned int>(error.mark.line + 1),
                             static_cast<unsigned int>(error.mark.column + 1), error.msg};
    }
    return std::nullopt;
}

} // namespace ocio
