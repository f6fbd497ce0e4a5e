#include "standalone/parser/parser_copy.h"

#include "host/parser/parser_entry.h"
#include "host/parser/parser_group.h"

void copy_values(const ParserEntry& from, ParserEntry& to, ParserGroup* parent) {
    for (unsigned int i = 0; i < from.get_value_count(); ++i) {
        if (const ParserGroup* group = from.get_group(i)) {
            ParserGroup& copy = *to.add_group(parent);
            for (unsigned int j = 0; j < group->get_entry_count(); ++j)
                copy_entry(*group->get_entry(j), copy);
        } else if (from.is_value_string(i)) {
            to.add_string(from.get_string(i));
        } else if (from.is_value_int(i)) {
            to.add_int(from.get_int(i));
        } else {
            to.add_double(from.get_double(i));
        }
    }
}

void copy_entry(const ParserEntry& from, ParserGroup& group) {
    copy_values(from, *group.add_entry(from.get_name(), from.get_line(), 0), &group);
}
