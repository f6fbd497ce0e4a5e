#pragma once

#include "diagnostics/diagnostic.h"
#include "host/core/core_string.h"

class ParserGroup;
class StandaloneApp;

/// Name of the entry for the module's preferences.
inline constexpr const char* MODULE_ENTRY = "color_management";

/// Whether the module writes an entry of that name into its group; it discards others when it saves.
bool is_module_entry(const CoreString& name);

/// Whether the application's own preferences have an entry of that name.
bool is_preference_field(const CoreString& name);

/// Sets the preferences of `app` from `group`, which was read from `path`. An entry with an invalid value is
/// reported as a message at level 2 and a warning in `warnings`; its preference is unchanged.
void load_preference_fields(const ParserGroup& group, const CoreString& path, StandaloneApp& app,
                            diagnostics::Diagnostics& warnings);

/// Appends one entry per preference of `app` to `group`.
void save_preference_fields(const StandaloneApp& app, ParserGroup& group);
