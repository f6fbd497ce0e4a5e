// Saves a mapping file as a host does: save_mapping FILE VALUE.

#include <cstdio>

#include "host/parser/parser_entry.h"
#include "host/parser/parser_file.h"
#include "host/parser/parser_group.h"

int main(int count, char* arguments[]) {
    if (count != 3)
        return 2;
    ParserFile file;
    file.get_root().add_entry("jpg", 0, 0)->add_string(arguments[2]);
    if (file.write(arguments[1]))
        return 0;
    std::fprintf(stderr, "error: %s\n", file.get_error().get_data());
    return 1;
}
