#include "tool/command.h"
#include "tool/console.h"
#include "workflow/user_preferences.h"

namespace tool {

namespace {

constexpr char EXAMPLES[] = R"(  colorio prefs path
  cat $(colorio prefs path))";

class PrefsPathCommand : public Command {
public:
    explicit PrefsPathCommand(Options& program)
        : Command(program, "path", "Print the path of the preferences file, even if it does not exist yet",
                  EXAMPLES) {}

    ExitCode run(Console& console) override {
        console.print(workflow::get_default_preferences_path());
        return EXIT_CODE_DONE;
    }
};

} // namespace

const MakeCommand make_prefs_path_command = make_command<PrefsPathCommand>;

} // namespace tool
