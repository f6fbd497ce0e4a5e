// In place of the commands that only the program with all commands can run: this one knows their options
// alone.
#include <chrono>
#include <exception>

#include "diagnostics/failure.h"
#include "programs/image_program.h"
#include "tool/convert_command.h"
#include "tool/explain_command.h"
#include "tool/image_setup.h"
#include "tool/shader_command.h"
#include "tool/view_command.h"
#include "workflow/program_output.h"

namespace tool {

workflow::SetupReport examine_image_libraries() {
    constexpr std::chrono::seconds PATIENCE(30);
    try {
        return workflow::parse_report(
            workflow::read_program_output(get_image_program(), {EXAMINE_IMAGES}, PATIENCE));
    } catch (const std::exception& error) {
        return {{"libraries", {{"OpenImageIO", "", diagnostics::describe(error)}}}};
    }
}

ExitCode ConvertCommand::run(Console&) {
    return EXIT_CODE_NOT_HERE;
}

ExitCode ExplainCommand::run(Console&) {
    return EXIT_CODE_NOT_HERE;
}

ExitCode ShaderCommand::run(Console&) {
    return EXIT_CODE_NOT_HERE;
}

ExitCode ViewCommand::run(Console&) {
    return EXIT_CODE_NOT_HERE;
}

} // namespace tool
