#pragma once

class ParserEntry;
class ParserGroup;

/// Appends the values of `from` to `to`, an entry of the group `parent`, which may be null.
void copy_values(const ParserEntry& from, ParserEntry& to, ParserGroup* parent);

/// Appends a copy of `from` to `group`.
void copy_entry(const ParserEntry& from, ParserGroup& group);
