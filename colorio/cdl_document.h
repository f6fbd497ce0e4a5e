#pragma once

#include "colorio/color_io_manager.h"
#include "host/core/core_string.h"
#include "xml/xml_node.h"

/// The element that holds the corrections: the first one behind a declaration.
XmlNode get_document_element(XmlNode top);

/// Parses an ASC CDL document and answers its document element; empty, and reported, on failure.
XmlNode parse_CDL_document(const CoreString& path);

/// Says that `path` lacks an element.
void log_missing_node(const char* element, const CoreString& path);

/// The value of the first attribute "id"; empty when there is none.
CoreString get_correction_id(const XmlNode& correction);

/// What to do about an element that is missing; its absence has been logged.
enum class MissingElement { GO_ON, GIVE_UP };

/// Reads the numbers of a ColorCorrection element into `def`, the fields in order from the red component on.
/// A component without a number keeps its value; numbers after the third run on into the fields that follow,
/// up to the saturation. False as soon as an element is missing where `missing` says to give up.
bool read_color_correction(const XmlNode& correction, const CoreString& path, MissingElement missing,
                           ColorIOManager::ColorDecisionListDef& def);

/// Identity values, no name, custom.
ColorIOManager::ColorDecisionListDef make_identity_CDL();
