#include "tool/json_output.h"

#include "workflow/config_source.h"

namespace tool {

Json to_json(const workflow::ConfigSource& source) {
    return {{"source", source.get_kind_name()}, {"path", source.path}};
}

Json to_json(const diagnostics::Diagnostic& diagnostic) {
    return {{"code", get_name(diagnostic.code)}, {"severity", get_name(diagnostic.severity)},
            {"subject", diagnostic.subject},     {"file", diagnostic.file},
            {"line", diagnostic.line},           {"column", diagnostic.column},
            {"message", diagnostic.message},     {"hint", diagnostic.hint}};
}

} // namespace tool
