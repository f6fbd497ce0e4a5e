// The program with all commands: `colorio` runs it for those that need OpenImageIO or OpenGL, because the
// libraries behind them take 0.2 s to load.
#include <cstdlib>
#include <iostream>
#include <string>
#include <vector>

#include <sys/prctl.h>

#include "image/reader_server.h"
#include "programs/process.h"
#include "tool/image_setup.h"
#include "tool/program.h"

int main(int count, char* arguments[]) {
    return tool::run_process([&] {
        const std::vector<std::string> words = tool::get_arguments(count, arguments);
        if (words == std::vector<std::string>{tool::EXAMINE_IMAGES}) {
            std::cout << workflow::format_report(tool::examine_image_libraries()) << std::flush;
            return EXIT_SUCCESS;
        }
        prctl(PR_SET_NAME, "colorio"); // as the user started it
        image::start_reader_server();  // first, before any thread starts
        const tool::InterruptWatch watch;
        watch.warn();
        return tool::run(words, std::cout, std::cerr, tool::detect_console_traits());
    });
}
