#pragma once

#include "xml/xml_encoding.h"

/// Process-wide state of the library; not synchronised, the callers serialise their use of it. Only
/// parse_file_or_report changes it by itself: the encoding it guesses stays current for every later file.
struct XmlSettings {
    /// Encoding in which texts are read and written.
    XmlEncoding encoding = XmlEncoding::UTF_8;
    /// UTF-16 files are recognized and converted; otherwise their byte-order mark is skipped, no more.
    bool guess_wide_characters = true;
    /// Blanks around a text run are cut, and a run of blanks alone is not stored.
    bool drop_white_space = true;
    /// A run that follows a comment that follows a run continues that run, and the comment is dropped.
    bool join_text_around_comments = true;
};

const XmlSettings& get_xml_settings();

/// Replaces the settings; an UNKNOWN encoding leaves the current one.
void set_xml_settings(const XmlSettings& settings);
