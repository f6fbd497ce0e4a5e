#pragma once

#include "diagnostics/diagnostic.h"
#include "tool/json.h"

namespace workflow {
struct ConfigSource;
} // namespace workflow

namespace tool {

/// {"source": "builtin", "file", "environment" or "preferences", "path": ...}.
Json to_json(const workflow::ConfigSource& source);

/// {"code": ..., "severity": ..., "subject": ..., "file": ..., "line": ..., "column": ..., "message": ...,
/// "hint": ...}.
Json to_json(const diagnostics::Diagnostic& diagnostic);

} // namespace tool
