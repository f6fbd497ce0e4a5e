// In place of the commands that only the program with all commands can run: this one knows their options
// alone.
#include "tool/convert_command.h"
#include "tool/explain_command.h"
#include "tool/shader_command.h"
#include "tool/view_command.h"

namespace tool {

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
