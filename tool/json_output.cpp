#include "tool/json_output.h"

#include "workflow/config_source.h"
#include "workflow/published_names.h"

namespace tool {

namespace {

const char* get_source_name(workflow::ConfigSource::Kind kind) {
    switch (kind) {
    case workflow::ConfigSource::FILE:
        return "file";
    case workflow::ConfigSource::ENVIRONMENT:
        return "environment";
    case workflow::ConfigSource::PREFERENCES:
        return "preferences";
    default:
        return "builtin";
    }
}

} // namespace

Json to_json(const workflow::ConfigSource& source) {
    return {{"source", get_source_name(source.kind)}, {"path", source.path}};
}

void add_facts(const workflow::EntryFacts& facts, Json& item) {
    item.update({{"encoding", facts.encoding},
                 {"categories", facts.categories},
                 {"aliases", facts.aliases},
                 {"description", facts.description}});
}

Json to_json(const diagnostics::Diagnostic& diagnostic) {
    return {{"code", get_name(diagnostic.code)}, {"severity", get_name(diagnostic.severity)},
            {"subject", diagnostic.subject},     {"file", diagnostic.file},
            {"line", diagnostic.line},           {"column", diagnostic.column},
            {"message", diagnostic.message},     {"hint", diagnostic.hint}};
}

Json to_json(const diagnostics::Diagnostics& list) {
    Json items = Json::array();
    for (const diagnostics::Diagnostic& diagnostic : list)
        items.push(to_json(diagnostic));
    return items;
}

} // namespace tool
