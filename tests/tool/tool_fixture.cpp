#include "tests/tool/tool_fixture.h"

#include <sstream>

#include "tests/support/image_readers.h"
#include "tool/program.h"

ToolRun ToolTest::run(const std::vector<std::string>& arguments, const tool::ConsoleTraits& traits) {
    std::ostringstream out, err;
    const int code = tool::run(arguments, out, err, traits);
    return {code, out.str(), err.str()};
}

size_t ToolTest::count_files() const {
    return folder.count_entries() - (folder.exists("cache") ? 1 : 0);
}
