// Reads any bytes as a YAML text. What was read must be written to a text that reads back to the same
// entries.

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "host/parser/parser_group.h"
#include "standalone/parser/yaml_reader.h"
#include "standalone/parser/yaml_writer.h"
#include "tests/standalone/described_entries.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    ParserGroup group(nullptr);
    if (read_yaml({reinterpret_cast<const char*>(data), size}, group))
        return 0;
    const YamlText yaml = write_yaml(group);
    // Expanded aliases may not fit into a file; everything else that was read can be written.
    if (yaml.reason.rfind("more than", 0) == 0)
        return 0;
    const std::string text = yaml.text.value_or("*nothing");
    ParserGroup group_again(nullptr);
    const auto error = read_yaml(text, group_again);
    if (error || describe(group) != describe(group_again)) {
        std::fprintf(stderr, "%s%s\nread back from:\n%s\n", yaml.reason.c_str(),
                     (error ? error->describe() : std::string(": other entries")).c_str(), text.c_str());
        std::abort();
    }
    return 0;
}
