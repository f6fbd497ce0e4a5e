#pragma once

#include "diagnostics/diagnostic.h"
#include "tool/json.h"

namespace workflow {
struct ConfigSource;
struct EntryFacts;
} // namespace workflow

namespace tool {

/// {"source": "builtin", "file", "environment" or "preferences", "path": ...}.
Json to_json(const workflow::ConfigSource& source);

/// Adds "encoding", "categories", "aliases" and "description".
void add_facts(const workflow::EntryFacts& facts, Json& item);

/// {"code": ..., "severity": ..., "subject": ..., "file": ..., "line": ..., "column": ..., "message": ...,
/// "hint": ...}.
Json to_json(const diagnostics::Diagnostic& diagnostic);
Json to_json(const diagnostics::Diagnostics& list);

} // namespace tool
