#include "xml/xml_settings.h"

namespace {

XmlSettings current_settings;

} // namespace

const XmlSettings& get_xml_settings() {
    return current_settings;
}

void set_xml_settings(const XmlSettings& settings) {
    const XmlEncoding previous = current_settings.encoding;
    current_settings = settings;
    if (settings.encoding == XmlEncoding::UNKNOWN)
        current_settings.encoding = previous;
}
