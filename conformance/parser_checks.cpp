#include <fstream>

#include "conformance/app_fixture.h"
#include "conformance/check.h"
#include "conformance/temporary_folder.h"
#include "host/parser/parser_entry.h"
#include "host/parser/parser_file.h"
#include "host/parser/parser_group.h"

namespace conformance {

namespace {

CoreString text_of(const ParserGroup& group, const char* name) {
    const ParserEntry* const entry = group.find_entry(CoreString(name));
    return entry ? entry->get_string(0) : CoreString("(no entry)");
}

void check_values(Findings& findings) {
    ParserEntry entry(CoreString("space"));
    entry.add_string(CoreString("film"));
    entry.add_int(-3);
    entry.add_double(0.5);
    const bool group_added = entry.add_group(nullptr) != nullptr;
    findings.expect_text(entry.get_name().view(), "space", "the name");
    findings.expect_number(entry.get_value_count(), 4, "the count of values");
    findings.expect(entry.is_value_string(0) && !entry.is_value_string(1) && !entry.is_value_string(3),
                    "only the first value is a string");
    findings.expect(group_added && entry.is_value_group(3) && !entry.is_value_group(0) && entry.get_group(3),
                    "only the last value is a group");
    findings.expect(!entry.is_group(), "an entry is a group if its first value is one");
    findings.expect_text(entry.get_string(0).view(), "film", "the string");
    findings.expect(entry.get_int(1) == -3, "the integer");
    findings.expect(entry.get_double(2) == 0.5, "the real number");
}

void check_conversions(Findings& findings) {
    ParserEntry entry(CoreString("space"));
    entry.add_string(CoreString("7"));
    entry.add_int(-3);
    entry.add_double(0.5);
    findings.expect(entry.get_double(1) == -3, "an integer is read as a real number");
    findings.expect_text(entry.get_string(1).view(), "-3", "an integer as a string");
    findings.expect_text(entry.get_string(2).view(), "0.5", "a real number as a string");
    findings.expect(entry.get_int(0) == 0 && entry.get_double(0) == 0, "a string is not read as a number");
    findings.expect(entry.get_int(2) == 0, "a real number is not read as an integer");
}

void check_past_the_end(Findings& findings) {
    ParserEntry entry(CoreString("space"));
    findings.expect(!entry.is_group(), "an entry without values is not a group");
    entry.add_int(4);
    const ParserEntry& constant = entry;
    findings.expect(!entry.get_group(1) && !constant.get_group(0), "get_group returns null");
    findings.expect(!entry.is_value_string(1) && !entry.is_value_group(1),
                    "values past the end have no type");
    findings.expect_text(entry.get_string(1).view(), "", "the string past the end");
    findings.expect(entry.get_int(1) == 0 && entry.get_double(1) == 0, "numbers past the end are 0");
}

void check_reset(Findings& findings) {
    ParserEntry entry(CoreString("space"));
    entry.add_string(CoreString("film"));
    entry.add_group(nullptr);
    entry.reset();
    findings.expect_number(entry.get_value_count(), 0, "the count of values");
    findings.expect_text(entry.get_name().view(), "space", "the name");
    findings.expect(entry.add_group(nullptr) && entry.is_group(), "values can be added again");
}

void check_entries(Findings& findings) {
    ParserEntry root(CoreString("color_management"));
    ParserGroup& group = *root.add_group(nullptr);
    for (const char* name : {"space", "CDL", "space"})
        group.add_entry(CoreString(name), 0, 0)->add_string(CoreString(name));
    group.add_entry(CoreString("last"), 0, 0);
    const ParserGroup& constant = group;
    findings.expect_number(constant.get_entry_count(), 4, "the count of entries");
    if (constant.get_entry_count() != 4)
        return;
    findings.expect_text(constant.get_entry(1)->get_name().view(), "CDL", "the name of the second entry");
    findings.expect_text(constant.get_entry(2)->get_string(0).view(), "space",
                         "the value of the third entry");
    findings.expect(!constant.get_entry(4), "get_entry returns null past the end");
    findings.expect(constant.find_entry(CoreString("space")) == constant.get_entry(0),
                    "find_entry returns the first entry of a name");
    findings.expect(!constant.find_entry(CoreString("cdl")), "find_entry compares names exactly");
}

void check_addresses(Findings& findings) {
    ParserEntry root(CoreString("color_management"));
    ParserGroup& group = *root.add_group(nullptr);
    ParserEntry& first = *group.add_entry(CoreString("first"), 0, 0);
    ParserGroup& inner = *first.add_group(&group);
    for (int i = 0; i < 1000; ++i) {
        root.add_int(i);
        first.add_int(i);
        group.add_entry(CoreString("more"), 0, 0);
    }
    const ParserEntry& constant = first;
    const ParserGroup& entries = group;
    findings.expect(root.get_group(0) == &group && constant.get_group(0) == &inner,
                    "groups keep their addresses");
    findings.expect(entries.get_entry_count() == 1001 && entries.find_entry(CoreString("first")) == &first,
                    "entries keep their addresses");
}

void check_file(Findings& findings) {
    AppFixture app;
    const TemporaryFolder folder;
    const std::string path = folder.write("mapping", app.get_host().get_mapping_text());
    ParserFile file;
    const bool read = file.read(CoreString(path.c_str()), CoreString(), CoreString());
    findings.expect(read, "the file is read: " + std::string(file.get_error().view()));
    findings.expect_text(file.get_error().view(), "", "the error of a file that was read");
    const ParserGroup& root = file.get_root();
    std::string found;
    for (unsigned int i = 0; i < root.get_entry_count(); ++i) {
        const ParserEntry& entry = *root.get_entry(i);
        found.append(entry.get_name().view()).append(": ");
        if (const ParserGroup* const group = entry.is_group() ? entry.get_group(0) : nullptr)
            found.append(text_of(*group, "extensions").view())
                .append(" ")
                .append(text_of(*group, "color_space").view());
        found += "; ";
    }
    findings.expect_text(found, "Photo: jpg,png sRGB; Film: dpx Cineon; ", "the formats in the file");
}

void check_unreadable_file(Findings& findings) {
    AppFixture app;
    const TemporaryFolder folder;
    const std::string good = folder.write("mapping", app.get_host().get_mapping_text());
    const std::string path = folder.get_path() + "/missing";
    ParserFile file;
    file.read(CoreString(good.c_str()), CoreString(), CoreString());
    findings.expect(!file.read(CoreString(path.c_str()), CoreString(), CoreString()), "read returns false");
    findings.expect(file.get_error().view().find(path) != std::string_view::npos,
                    "the error names the file: '" + std::string(file.get_error().view()) + "'");
    findings.expect_number(file.get_root().get_entry_count(), 0, "the entries of a file that cannot be read");
}

} // namespace

Checks list_parser_checks() {
    return {
        {"parser.values", "an entry has a name and values of four types",
         "custom color spaces and CDLs of the preferences are lost", check_values},
        {"parser.conversions",
         "numbers are read as strings and integers as real numbers; nothing else converts",
         "slopes such as 1 are read as 0, and damaged preferences as numbers", check_conversions},
        {"parser.past-the-end", "values past the end are empty, 0 or null",
         "preferences of earlier versions, with fewer values, crash", check_past_the_end},
        {"parser.reset", "reset removes the values and keeps the name",
         "every save of the preferences repeats the old ones", check_reset},
        {"parser.entries", "a group keeps its entries in order and finds the first of a name",
         "formats of a mapping file and custom color spaces change their order or are lost", check_entries},
        {"parser.addresses", "entries and groups keep their addresses while more are added",
         "saving the preferences writes to memory that was freed", check_addresses},
        {"parser.file", "ParserFile reads the groups of a mapping file", "mapping files have no effect",
         check_file},
        {"parser.unreadable-file", "a file that cannot be read leaves no entries and an error that names it",
         "a missing mapping file is taken for the last one, and is not reported", check_unreadable_file},
    };
}

} // namespace conformance
