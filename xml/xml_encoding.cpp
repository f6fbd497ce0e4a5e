#include "xml/xml_encoding.h"

namespace {

constexpr XmlLengthTable single_byte_lengths() {
    XmlLengthTable table{};
    for (std::size_t byte = 1; byte < table.size(); ++byte)
        table[byte] = 1;
    return table;
}

constexpr void set_lengths(XmlLengthTable& table, std::size_t first, std::size_t last, std::uint8_t length) {
    for (std::size_t byte = first; byte <= last; ++byte)
        table[byte] = length;
}

constexpr XmlLengthTable utf8_lengths() {
    XmlLengthTable table = single_byte_lengths();
    set_lengths(table, 0xC2, 0xDF, 2);
    set_lengths(table, 0xE0, 0xEF, 3);
    set_lengths(table, 0xF0, 0xF4, 4);
    return table;
}

constexpr XmlLengthTable two_byte_lengths(std::size_t first, std::size_t last) {
    XmlLengthTable table = single_byte_lengths();
    set_lengths(table, first, last, 2);
    return table;
}

constexpr XmlLengthTable shift_jis_lengths() {
    XmlLengthTable table = two_byte_lengths(0x81, 0x9F);
    set_lengths(table, 0xE0, 0xEF, 2);
    return table;
}

constexpr XmlLengthTable SINGLE_BYTE_LENGTHS = single_byte_lengths();
constexpr XmlLengthTable UTF_8_LENGTHS = utf8_lengths();
constexpr XmlLengthTable SHIFT_JIS_LENGTHS = shift_jis_lengths();
constexpr XmlLengthTable GB2312_LENGTHS = two_byte_lengths(0xA1, 0xF7);
constexpr XmlLengthTable GBK_LENGTHS = two_byte_lengths(0x81, 0xFE);

} // namespace

const XmlLengthTable& get_length_table(XmlEncoding encoding) {
    switch (encoding) {
    case XmlEncoding::UTF_8:
        return UTF_8_LENGTHS;
    case XmlEncoding::SHIFT_JIS:
        return SHIFT_JIS_LENGTHS;
    case XmlEncoding::GB2312:
        return GB2312_LENGTHS;
    case XmlEncoding::BIG5:
    case XmlEncoding::GBK:
        return GBK_LENGTHS;
    default:
        return SINGLE_BYTE_LENGTHS;
    }
}
