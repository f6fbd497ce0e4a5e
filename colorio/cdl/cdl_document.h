#pragma once

#include "colorio/color_io_manager.h"
#include "diagnostics/diagnostic.h"
#include "host/core/core_string.h"
#include "xml/xml_node.h"

/// The element that contains the color corrections: after declarations and comments, or below a top element
/// whose name starts with "xml".
XmlNode get_document_element(XmlNode top);

/// Whether a document that cannot be parsed is also reported on standard output, as hosts expect of the
/// documents that they have the module read.
enum class Printing { PRINTED, SILENT };

/// Parses an ASC CDL document into its document element. False, logged and reported, on failure.
bool parse_CDL_document(const CoreString& path, XmlNode& element, Printing printing = Printing::PRINTED);

/// Why the XML of the file at `path` is malformed, and where.
diagnostics::Diagnostic describe_malformed(const CoreString& path, const XmlResults& results);

/// Logs that `path` lacks an element.
void log_missing_node(const char* element, const CoreString& path);

/// The value of the first attribute "id"; empty when there is none.
CoreString get_correction_id(const XmlNode& correction);

/// What to do about an element that is missing; its absence has been logged.
enum class MissingElement { GO_ON, GIVE_UP };

/// Reads the numbers of a ColorCorrection element into `def`, the fields in order from the red component on.
/// A component without a number keeps its value; numbers after the third go into the next fields, up to the
/// saturation. False as soon as an element is missing and `missing` is GIVE_UP.
bool read_color_correction(const XmlNode& correction, const CoreString& path, MissingElement missing,
                           ColorIOManager::ColorDecisionListDef& def);

/// True for a complete ColorCorrection element: three numbers each and one saturation, all valid. Logs
/// nothing.
bool is_valid_correction(const XmlNode& correction);

/// A custom record with identity values and without a name.
ColorIOManager::ColorDecisionListDef make_identity_CDL();
