#pragma once

#include "host/core/core_string.h"

class ParserGroup;
class StandaloneApp;

/// Whether the application's own preferences have an entry of that name.
bool is_preference_field(const CoreString& name);

/// Gives `app` the preferences found in `group`. An entry whose value makes no sense is named in a message at
/// level 2 that begins with `path`, and its preference stays.
void load_preference_fields(const ParserGroup& group, const CoreString& path, StandaloneApp& app);

/// Appends one entry per preference of `app` to `group`.
void save_preference_fields(const StandaloneApp& app, ParserGroup& group);
