#pragma once

#include <cstring>
#include <sstream>
#include <string>

#include "host/parser/parser_entry.h"
#include "host/parser/parser_group.h"

/// Entries as one line of text that shows names, order, kinds and exact values: `name=s"text" i5 d<bits>
/// {...}`.
inline std::string describe(const ParserGroup& group) {
    std::ostringstream out;
    for (unsigned int i = 0; i < group.get_entry_count(); ++i) {
        const ParserEntry& entry = *group.get_entry(i);
        out << (i ? "; " : "") << entry.get_name().view() << "=";
        for (unsigned int j = 0; j < entry.get_value_count(); ++j) {
            out << (j ? " " : "");
            if (const ParserGroup* inner = entry.get_group(j)) {
                out << "{" << describe(*inner) << "}";
            } else if (entry.is_value_string(j)) {
                out << "s\"" << entry.get_string(j).view() << "\"";
            } else if (entry.is_value_int(j)) {
                out << "i" << entry.get_int(j);
            } else {
                const double real = entry.get_double(j);
                unsigned long long bits;
                std::memcpy(&bits, &real, sizeof bits);
                out << "d" << std::hex << bits << std::dec;
            }
        }
    }
    return out.str();
}
