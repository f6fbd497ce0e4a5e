#include "fuzz/xml/fuzz_settings.h"

#include "xml/xml_settings.h"

void select_fuzz_settings(std::uint8_t choice) {
    constexpr XmlEncoding ENCODINGS[] = {
        XmlEncoding::UTF_8, XmlEncoding::SINGLE_BYTE, XmlEncoding::SHIFT_JIS, XmlEncoding::GB2312,
        XmlEncoding::GBK,   XmlEncoding::UTF_8,       XmlEncoding::UTF_8,     XmlEncoding::UTF_8};
    XmlSettings settings;
    settings.encoding = ENCODINGS[choice & 7];
    settings.guess_wide_characters = (choice & 8) == 0;
    settings.drop_white_space = (choice & 16) == 0;
    settings.join_text_around_comments = (choice & 32) == 0;
    set_xml_settings(settings);
}
