#include "colorio/ocio/config_location.h"

#include <yaml-cpp/eventhandler.h>
#include <yaml-cpp/exceptions.h>
#include <yaml-cpp/parser.h>

#include <algorithm>
#include <iterator>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include <strings.h>

#include "colorio/ocio/config_text.h"
#include "colorio/ocio/look_list.h"
#include "colorio/ocio/unset_variables.h"

namespace ocio {

namespace {

using diagnostics::Code;

bool is_same_name(const std::string& a, const std::string& b) {
    return strcasecmp(a.c_str(), b.c_str()) == 0;
}

/// Visits the scalar values of a YAML text, each with its key and that of the map around it.
class ScalarVisitor : public YAML::EventHandler {
public:
    void OnDocumentStart(const YAML::Mark&) override {}
    void OnDocumentEnd() override {}
    void OnNull(const YAML::Mark&, YAML::anchor_t) override { take_key({}); }
    void OnAlias(const YAML::Mark&, YAML::anchor_t) override { take_key({}); }
    void OnScalar(const YAML::Mark& mark, const std::string&, YAML::anchor_t,
                  const std::string& text) override {
        if (!take_key(text) && !open_.empty())
            visit(mark, text, open_.back());
    }
    void OnSequenceStart(const YAML::Mark&, const std::string& tag, YAML::anchor_t,
                         YAML::EmitterStyle::value) override {
        begin(tag, false);
    }
    void OnSequenceEnd() override { open_.pop_back(); }
    void OnMapStart(const YAML::Mark&, const std::string& tag, YAML::anchor_t,
                    YAML::EmitterStyle::value) override {
        begin(tag, true);
    }
    void OnMapEnd() override { open_.pop_back(); }

protected:
    struct Collection {
        std::string tag;
        std::string own_key; ///< of the collection in the map around it
        std::string key;     ///< of the value that comes next; in a list, of the list
        bool is_map;
        bool expects_key;
    };

    virtual void visit(const YAML::Mark& mark, const std::string& value, const Collection& parent) = 0;

private:
    /// True for the key of a map.
    bool take_key(const std::string& text) {
        if (open_.empty() || !open_.back().is_map)
            return false;
        Collection& map = open_.back();
        const bool is_key = map.expects_key;
        if (is_key)
            map.key = text;
        map.expects_key = !is_key;
        return is_key;
    }

    void begin(const std::string& tag, bool is_map) {
        take_key({});
        const std::string key = open_.empty() ? "" : open_.back().key;
        open_.push_back({tag, key, is_map ? "" : key, is_map, is_map});
    }

    std::vector<Collection> open_;
};

class NamePlace : public ScalarVisitor {
public:
    NamePlace(Code code, std::string name) : code_(code), name_(std::move(name)) {}

    void set(diagnostics::Diagnostic& error) const {
        const bool is_certain = is_about_element() ? count_ == 1 : count_ > 0;
        if (!is_certain || first_.is_null())
            return;
        error.line = static_cast<unsigned int>(first_.line + 1);
        error.column = static_cast<unsigned int>(first_.column + 1);
    }

private:
    void visit(const YAML::Mark& mark, const std::string& value, const Collection& parent) override {
        if (is_place(value, parent) && count_++ == 0)
            first_ = mark;
    }

    bool is_place(const std::string& value, const Collection& parent) const {
        const bool has_look = parent.key == "looks" && names_look(value);
        if (code_ == Code::LOOK_UNKNOWN)
            return has_look;
        if (code_ == Code::CONFIG_VARIABLE)
            return has_variable(value);
        if (is_about_element())
            return parent.key == "name" && parent.tag != "View" && is_same_name(value, name_);
        const bool is_space_name =
            parent.own_key == "roles" || parent.key == "colorspace" || parent.key == "process_space";
        return has_look || (is_space_name && is_same_name(value, name_));
    }

    bool is_about_element() const { return code_ == Code::CONFIG_CYCLE || code_ == Code::MATRIX_SINGULAR; }

    bool has_variable(const std::string& text) const {
        const std::vector<std::string> names = find_variables(text);
        return std::find(names.begin(), names.end(), name_) != names.end();
    }

    bool names_look(const std::string& list) const {
        const std::vector<LookStep> steps = all_look_steps(list);
        return std::any_of(steps.begin(), steps.end(),
                           [&](const LookStep& step) { return is_same_name(step.name, name_); });
    }

    const Code code_;
    const std::string name_;
    unsigned int count_ = 0;
    YAML::Mark first_ = YAML::Mark::null_mark();
};

bool has_place(Code code) {
    constexpr Code KNOWN[] = {Code::CONFIG_INVALID, Code::LOOK_UNKNOWN, Code::CONFIG_CYCLE,
                              Code::MATRIX_SINGULAR, Code::CONFIG_VARIABLE};
    return std::find(std::begin(KNOWN), std::end(KNOWN), code) != std::end(KNOWN);
}

} // namespace

void locate_in_config(diagnostics::Diagnostic& error) {
    if (!has_place(error.code) || error.line != 0 || error.file.empty() || error.subject.empty())
        return;
    const std::optional<std::string> text = read_config_text(error.file);
    if (!text)
        return;
    try {
        std::istringstream stream(*text);
        YAML::Parser parser(stream);
        NamePlace place(error.code, error.subject);
        parser.HandleNextDocument(place);
        place.set(error);
    } catch (const YAML::Exception&) {
        // An error of syntax has its own place.
    }
}

} // namespace ocio
