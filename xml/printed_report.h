#pragma once

#include "xml/xml_error.h"

namespace xml {

/// Prints on standard output why the file at `path` cannot be parsed. Only parse_file_or_report does so.
void print_report(const char* path, const char* first_tag, const XmlResults& results);

} // namespace xml
