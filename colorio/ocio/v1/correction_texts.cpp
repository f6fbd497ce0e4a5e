#include "colorio/ocio/v1/correction_texts.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "colorio/ocio/error.h"
#include "colorio/ocio/types.h"

namespace ocio {

namespace {

constexpr std::string_view CORRECTION = "ColorCorrection";
constexpr std::array<std::string_view, 3> ROOTS = {CORRECTION, "ColorCorrectionCollection",
                                                   "ColorDecisionList"};
/// OpenColorIO skips a saturation that is spelled in the first way.
constexpr std::string_view SATURATION_NODE = "SATNode";
constexpr std::string_view KNOWN_SATURATION_NODE = "SatNode";
/// Corrections of decision lists are nested three levels deep and have two levels themselves.
constexpr std::size_t MAX_DEPTH = 100;

[[noreturn]] void refuse(const std::string& reason) {
    throw_error(diagnostics::Code::CDL_INVALID, reason);
}

/// Goes through the tags of a text and collects the corrections.
class CorrectionSplitter {
public:
    explicit CorrectionSplitter(std::string_view xml) : xml_(xml) {}

    std::vector<std::string> run() {
        while (skip_to_markup()) {
            if (!skip_other_markup("<!--", "-->") && !skip_other_markup("<![CDATA[", "]]>") &&
                !skip_other_markup("<?", "?>") && !skip_document_type())
                read_tag();
        }
        if (!open_.empty())
            refuse("the element '" + std::string(open_.back()) + "' does not end");
        if (!any_)
            refuse("it contains no XML element");
        return std::move(corrections_);
    }

private:
    bool skip_to_markup() {
        const std::size_t markup = std::min(xml_.find('<', at_), xml_.size());
        keep(markup);
        return at_ < xml_.size();
    }

    /// Skips what `start` begins and `end` ends; false when something else comes next.
    bool skip_other_markup(std::string_view start, std::string_view end) {
        if (xml_.substr(at_, start.size()) != start)
            return false;
        const std::size_t found = xml_.find(end, at_ + start.size());
        if (found == std::string_view::npos)
            refuse("'" + std::string(start) + "' does not end");
        keep(found + end.size());
        return true;
    }

    /// Its declarations may stand in brackets.
    bool skip_document_type() {
        const std::size_t first = xml_.find_first_of("[>", at_);
        const bool has_brackets = first != std::string_view::npos && xml_[first] == '[';
        return skip_other_markup("<!", has_brackets ? "]>" : ">");
    }

    void read_tag() {
        const std::size_t end = end_of_tag();
        const bool closes = xml_.substr(at_, 2) == "</";
        const bool is_empty = !closes && xml_[end - 1] == '/';
        const std::size_t name_at = at_ + (closes ? 2 : 1);
        const std::string_view name =
            xml_.substr(name_at, xml_.find_first_of(" \t\r\n/>", name_at) - name_at);
        if (!closes)
            open(name);
        if (inside_) {
            keep(name_at);
            keep_as(name == SATURATION_NODE ? KNOWN_SATURATION_NODE : name, name.size());
        }
        keep(end + 1);
        if (closes || is_empty)
            close(name);
    }

    /// Position of its '>', which attributes may hold too.
    std::size_t end_of_tag() const {
        char quote = 0;
        for (std::size_t i = at_; i < xml_.size(); ++i) {
            if (quote == 0 && xml_[i] == '>')
                return i;
            if (quote == 0 && (xml_[i] == '"' || xml_[i] == '\''))
                quote = xml_[i];
            else if (xml_[i] == quote)
                quote = 0;
        }
        refuse("a tag does not end");
    }

    void open(std::string_view name) {
        if (open_.empty() && any_)
            refuse("it has more than one outermost element");
        if (open_.empty() && std::find(ROOTS.begin(), ROOTS.end(), name) == ROOTS.end())
            refuse("its outermost element, '" + std::string(name) + "', is not a color correction element");
        if (open_.size() == MAX_DEPTH)
            refuse("its elements are nested too deeply");
        any_ = true;
        open_.push_back(name);
        if (name == CORRECTION && !inside_) {
            inside_ = true;
            depth_ = open_.size();
            corrections_.emplace_back();
        }
    }

    void close(std::string_view name) {
        if (open_.empty() || open_.back() != name)
            refuse("the element '" + std::string(name) + "' ends but was not open");
        if (inside_ && open_.size() == depth_)
            inside_ = false;
        open_.pop_back();
    }

    /// Moves to `end`; inside a correction, the text before it belongs to the correction.
    void keep(std::size_t end) {
        if (inside_)
            corrections_.back() += xml_.substr(at_, end - at_);
        at_ = end;
    }

    /// Moves by `length`, and replaces the text there by `text`.
    void keep_as(std::string_view text, std::size_t length) {
        corrections_.back() += text;
        at_ += length;
    }

    std::string_view xml_;
    std::size_t at_ = 0;
    std::vector<std::string_view> open_; ///< names, from the outermost on
    bool any_ = false;
    bool inside_ = false; ///< a correction, whose element is open_[depth_ - 1]
    std::size_t depth_ = 0;
    std::vector<std::string> corrections_;
};

} // namespace

std::vector<std::string> split_corrections(const std::string& xml) {
    return CorrectionSplitter(xml).run();
}

} // namespace ocio
