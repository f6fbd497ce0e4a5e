#pragma once

#include "diagnostics/diagnostic.h"
#include "host/core/core_string.h"

class ParserGroup;
class StandaloneApp;

/// The entry that holds what the module keeps.
inline constexpr const char* MODULE_ENTRY = "color_management";

/// Whether the module itself writes an entry of that name into its group; it drops all others when it saves.
bool is_module_entry(const CoreString& name);

/// Whether the application's own preferences have an entry of that name.
bool is_preference_field(const CoreString& name);

/// Gives `app` the preferences found in `group`, read from `path`. An entry with an invalid value is reported
/// by a message at level 2 and a warning in `warnings`, and its preference stays.
void load_preference_fields(const ParserGroup& group, const CoreString& path, StandaloneApp& app,
                            diagnostics::Diagnostics& warnings);

/// Appends one entry per preference of `app` to `group`.
void save_preference_fields(const StandaloneApp& app, ParserGroup& group);
