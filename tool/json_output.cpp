#include "tool/json_output.h"

#include "workflow/config_source.h"

namespace tool {

namespace {

constexpr int INDENT = 2;

const char* get_source_name(ConfigSource::Kind kind) {
    switch (kind) {
    case ConfigSource::FILE:
        return "file";
    case ConfigSource::ENVIRONMENT:
        return "environment";
    case ConfigSource::PREFERENCES:
        return "preferences";
    default:
        return "builtin";
    }
}

} // namespace

nlohmann::ordered_json to_json(const ConfigSource& source) {
    return {{"source", get_source_name(source.kind)}, {"path", source.path}};
}

std::string format_json(const nlohmann::ordered_json& value) {
    return value.dump(INDENT, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
}

} // namespace tool
