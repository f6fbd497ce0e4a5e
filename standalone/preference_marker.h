#pragma once

#include <string_view>

class ParserGroup;

// The marker of a preferences file of this program: the entry "file_type", which every save writes first.
// Files without it (of earlier versions, or written by hand) are recognized by their entries.

/// Appends the marker to `preferences`.
void add_preference_marker(ParserGroup& preferences);

/// Whether an entry of that name is the marker.
bool is_preference_marker(std::string_view name);

/// Whether `root`, read from a file, contains preferences: it has the marker; or it has no "file_type", and
/// has one of the application's preferences or a "color_management" with one of the module's entries.
bool is_preferences(const ParserGroup& root);

/// The same for a text that cannot be parsed: a line begins with the marker; or none begins with "file_type:"
/// and one begins with the name of an application's preference.
bool is_damaged_preferences(std::string_view text);
