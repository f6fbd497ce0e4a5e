#pragma once

#include <cstdint>
#include <string>
#include <vector>

/// A TIFF file of 4 x 4 pixels of 8 bits whose XMP packet nests elements so deep that OpenImageIO 2.4, which
/// calls itself for each, runs out of stack and is ended by a signal.
inline std::string make_tiff_of_nested_metadata() {
    std::string nested;
    for (int i = 0; i < 200000; ++i)
        nested += "<rdf:Seq>";
    for (int i = 0; i < 200000; ++i)
        nested += "</rdf:Seq>";
    const std::string xmp = "<x:xmpmeta xmlns:x=\"adobe:ns:meta/\"><rdf:RDF "
                            "xmlns:rdf=\"http://www.w3.org/1999/02/22-rdf-syntax-ns#\"><rdf:Description>" +
                            nested + "</rdf:Description></rdf:RDF></x:xmpmeta>";

    constexpr std::uint32_t COUNT = 10, SHORT = 3, LONG = 4, BYTE = 1;
    constexpr std::uint32_t PIXELS_AT = 8 + 2 + 12 * COUNT + 4, XMP_AT = PIXELS_AT + 16;
    std::string file("II*\0\x08\0\0\0", 8);
    const auto add = [&](std::uint32_t value, int bytes) {
        for (int i = 0; i < bytes; ++i)
            file += static_cast<char>(value >> (8 * i));
    };
    add(COUNT, 2);
    const auto entry = [&](std::uint32_t tag, std::uint32_t type, std::uint32_t count, std::uint32_t value) {
        add(tag, 2);
        add(type, 2);
        add(count, 4);
        add(value, 4);
    };
    entry(256, SHORT, 1, 4);        // width
    entry(257, SHORT, 1, 4);        // height
    entry(258, SHORT, 1, 8);        // bits per sample
    entry(259, SHORT, 1, 1);        // no compression
    entry(262, SHORT, 1, 1);        // black is 0
    entry(273, LONG, 1, PIXELS_AT); // strip
    entry(277, SHORT, 1, 1);        // samples per pixel
    entry(278, LONG, 1, 4);         // rows per strip
    entry(279, LONG, 1, 16);        // bytes of the strip
    entry(700, BYTE, static_cast<std::uint32_t>(xmp.size()), XMP_AT);
    add(0, 4); // no further image
    return file + std::string(16, '\x7f') + xmp;
}

/// A DPX file of 21048 bytes whose header announces 60000 x 60000 pixels of three channels in 10 bits.
inline std::string make_dpx_that_announces_too_much() {
    std::string file(21048, '\0');
    const auto put = [&](std::size_t place, std::uint32_t value, int bytes) {
        for (int i = 0; i < bytes; ++i)
            file[place + static_cast<std::size_t>(i)] = static_cast<char>(value >> (8 * (bytes - 1 - i)));
    };
    file.replace(0, 4, "SDPX");
    put(4, 2048, 4); // where the pixels begin
    file.replace(8, 4, "V2.0");
    put(16, 21048, 4);  // bytes of the file
    put(24, 1664, 4);   // bytes of the generic header
    put(28, 384, 4);    // and of that of the industry
    put(770, 1, 2);     // one element
    put(772, 60000, 4); // width
    put(776, 60000, 4); // height
    file[800] = 50;     // red, green, blue
    file[801] = file[802] = 2;
    file[803] = 10;    // bits
    put(804, 1, 2);    // filled to 32 bits
    put(808, 2048, 4); // where its pixels begin
    return file;
}
