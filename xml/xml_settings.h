#pragma once

#include "xml/xml_encoding.h"

/// Process-wide state of the library; not thread-safe: callers must serialize their use of it. Only
/// parse_file_or_report changes it: the encoding that it guesses is used for every later file.
struct XmlSettings {
    /// Encoding in which texts are read and written.
    XmlEncoding encoding = XmlEncoding::UTF_8;
    /// UTF-16 files are recognized and converted; otherwise only their byte-order mark is skipped.
    bool guess_wide_characters = true;
    /// Blanks around a text run are removed, and a run of blanks only is not stored.
    bool drop_white_space = true;
    /// A text run after a comment continues the run before the comment, and the comment is discarded.
    bool join_text_around_comments = true;
};

/// The current settings.
const XmlSettings& get_xml_settings();

/// Replaces the settings; an UNKNOWN encoding leaves the current one.
void set_xml_settings(const XmlSettings& settings);
