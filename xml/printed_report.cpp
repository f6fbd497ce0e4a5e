#include "xml/printed_report.h"

#include <cstdio>

namespace xml {

void print_report(const char* path, const char* first_tag, const XmlResults& results) {
    const bool tag_missing = results.error == XmlError::FIRST_TAG_NOT_FOUND;
    std::printf("XML Parsing error inside file '%s'.\n%s\nAt line %i, column %i.\n%s%s%s",
                path != nullptr ? path : "", get_error_text(results.error), results.line, results.column,
                tag_missing ? "First Tag should be '" : "", tag_missing ? first_tag : "",
                tag_missing ? "'.\n" : "");
}

} // namespace xml
