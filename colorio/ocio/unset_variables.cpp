#include "colorio/ocio/unset_variables.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <set>

#include "colorio/ocio/config.h"
#include "colorio/ocio/config_side.h"
#include "colorio/ocio/context_variables.h"
#include "colorio/ocio/file_location.h"
#include "colorio/ocio/transform_graph.h"
#include "colorio/ocio/trimmed_text.h"
#include "diagnostics/failure.h"

namespace ocio {

namespace {

using diagnostics::Code;
using diagnostics::Diagnostic;
using Names = std::vector<std::string>;

/// Variables followed in search of an unset one.
constexpr std::size_t MAX_FOLLOWED = 256;

/// "context variable 'A'", "context variables 'A', 'B'".
std::string list_variables(const Names& names) {
    std::string list = names.size() == 1 ? "context variable " : "context variables ";
    for (const std::string& name : names)
        list += (&name == &names.front() ? "'" : ", '") + name + "'";
    return list;
}

/// Follows variables through the values of others.
class VariableChains {
public:
    explicit VariableChains(const ConstConfigRcPtr& config) : variables_(get_variables(config)) {}

    /// "A -> B" when `text` refers to A, whose value refers to B, which is `name`; empty when the text itself
    /// refers to it.
    std::string find(const std::string& text, const std::string& name) {
        const Names direct = find_variables(text);
        if (std::find(direct.begin(), direct.end(), name) != direct.end())
            return {};
        entered_.clear();
        return find_behind(direct, name);
    }

private:
    std::string find_behind(const Names& names, const std::string& wanted) {
        for (const std::string& name : names) {
            if (name == wanted)
                return name;
            const char* const value = variables_->getStringVar(name.c_str());
            if (!value || entered_.size() == MAX_FOLLOWED || !entered_.insert(name).second)
                continue;
            if (const std::string rest = find_behind(find_variables(value), wanted); !rest.empty())
                return name + " -> " + rest;
        }
        return {};
    }

    library::ConstContextRcPtr variables_;
    std::set<std::string> entered_;
};

/// " (A -> B, C -> D)" for the variables that the text refers to through others; empty for none.
std::string list_chains(const ConstConfigRcPtr& config, const Names& names, const std::string& text) {
    VariableChains chains(config);
    std::string list;
    for (const std::string& name : names)
        if (const std::string chain = chains.find(text, name); !chain.empty())
            list += (list.empty() ? " (" : ", ") + chain;
    return list.empty() ? list : list + ")";
}

/// The paths of every file transform, as they are written.
std::vector<std::string> list_sources(const ConstConfigRcPtr& config) {
    std::vector<std::string> sources;
    const TransformGraph graph(config);
    for (const GraphNode& node : graph.get_nodes())
        for (const FileUse& file : graph.dependencies_of(node).files)
            sources.push_back(file.source);
    return sources;
}

/// The path up to the last folder whose name looks like a variable, if it exists, shows that it is a name.
bool exists_literally(const std::filesystem::path& folder) {
    std::filesystem::path begin, literal;
    for (const std::filesystem::path& part : folder) {
        begin /= part;
        if (!find_variables(part.string()).empty())
            literal = begin;
    }
    std::error_code unreadable;
    return std::filesystem::exists(literal, unreadable);
}

} // namespace

Names find_variables(const std::string& text) {
    const auto is_name_character = [](char c) {
        return std::isalnum(static_cast<unsigned char>(c)) || c == '_';
    };
    Names names;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '$' && text[i] != '%')
            continue;
        const bool is_braced = text.compare(i, 2, "${") == 0;
        const std::size_t start = i + (is_braced ? 2 : 1);
        std::size_t end = start;
        while (end < text.size() && is_name_character(text[end]))
            ++end;
        const char close = text[i] == '%' ? '%' : is_braced ? '}' : '\0';
        if (end == start || (close != '\0' && (end == text.size() || text[end] != close)))
            continue;
        const std::string name = text.substr(start, end - start);
        if (std::find(names.begin(), names.end(), name) == names.end())
            names.push_back(name);
        i = close == '\0' ? end - 1 : end;
    }
    return names;
}

Names find_unset_variables(const ConstConfigRcPtr& config, const std::string& text) {
    return find_variables(resolve_variables(config, text));
}

std::string find_unset_search_entry(const ConstConfigRcPtr& config) {
    const std::filesystem::path own_folder = config->getWorkingDir();
    for (const std::string& entry : search_path_entries(config)) {
        const std::string resolved = resolve_variables(config, entry);
        if (!find_variables(resolved).empty() && !exists_literally(own_folder / trim(resolved)))
            return entry;
    }
    return {};
}

Diagnostic describe_unset_variables(const ConstConfigRcPtr& config, const std::string& text,
                                    const std::string& place) {
    const Names names = find_unset_variables(config, text);
    const bool is_one = names.size() == 1;
    Diagnostic cause =
        diagnostics::make_error(Code::CONFIG_VARIABLE,
                                "the " + list_variables(names) + " in the " + place + " '" + text + "' " +
                                    (is_one ? "is" : "are") + " not set" + list_chains(config, names, text),
                                names.front());
    cause.hint = std::string("set ") + (is_one ? "it" : "them") + " in the environment or in the config";
    return cause;
}

Diagnostic describe_unset_path(const ConstConfigRcPtr& config, const std::string& source) {
    return describe_unset_variables(config, source, "path");
}

std::optional<Diagnostic> find_unset_variable(const ConstConfigRcPtr& config) {
    for (const std::string& source : list_sources(config))
        if (!find_unset_variables(config, source).empty() && locate_file(config, source).empty())
            return describe_unset_path(config, source);
    if (const std::string entry = find_unset_search_entry(config); !entry.empty())
        return describe_unset_variables(config, entry, "search path");
    return std::nullopt;
}

ConfigRcPtr with_all_variables_set(const ConstConfigRcPtr& config) {
    std::vector<std::string> texts = list_sources(config);
    for (std::string& entry : search_path_entries(config))
        texts.push_back(std::move(entry));
    const ConfigRcPtr copy = create_editable_copy(config);
    for (const std::string& text : texts)
        for (const std::string& name : find_unset_variables(config, text))
            copy->addEnvironmentVar(name.c_str(), ".");
    return copy;
}

} // namespace ocio
