#include <iostream>

#include "programs/image_program.h"
#include "programs/process.h"
#include "tool/program.h"

namespace {

int run_here(const std::vector<std::string>& arguments) {
    const tool::InterruptWatch watch;
    const int code = tool::run(arguments, std::cout, std::cerr, tool::detect_console_traits());
    if (code != tool::EXIT_CODE_NOT_HERE) // the other program warns itself
        watch.warn();
    return code;
}

} // namespace

int main(int count, char* arguments[]) {
    return tool::run_process([&] {
        const int code = run_here(tool::get_arguments(count, arguments));
        if (code == tool::EXIT_CODE_NOT_HERE)
            tool::become_image_program(arguments);
        return code;
    });
}
