#include "standalone/preferences.h"
#include "tool/command.h"
#include "tool/console.h"

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
        const CoreString path = PreferenceFile::get_default_path();
        if (path.is_empty())
            diagnostics::fail(diagnostics::Code::HOME_MISSING,
                              "cannot locate the preferences file: no home folder",
                              "set HOME or XDG_CONFIG_HOME, or use --prefs");
        console.print(path.get_data());
        return EXIT_CODE_DONE;
    }
};

} // namespace

const MakeCommand make_prefs_path_command = make_command<PrefsPathCommand>;

} // namespace tool
