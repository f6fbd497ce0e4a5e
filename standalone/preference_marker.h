#pragma once

#include <string_view>

class ParserGroup;

/// What says that a file holds preferences of this program: the entry "file_type", which every save writes
/// first. Files of earlier versions, or written by hand, that lack it are recognized by what only preferences
/// have.

/// Appends the marker to `preferences`.
void add_preference_marker(ParserGroup& preferences);

/// Whether an entry of that name is the marker.
bool is_preference_marker(std::string_view name);

/// Whether `root`, read from a file, is preferences: it has the marker; or no "file_type" at all, and one of
/// the application's own preferences, or a "color_management" with one of the module's entries.
bool is_preferences(const ParserGroup& root);

/// The same for a text that cannot be parsed: a line of it begins with the marker; or none with "file_type:",
/// and one with the name of an application's preference.
bool is_damaged_preferences(std::string_view text);
