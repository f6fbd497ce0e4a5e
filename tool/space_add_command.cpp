#include <string>

#include <fmt/format.h>

#include "tool/command.h"
#include "tool/console.h"
#include "tool/option_hints.h"
#include "workflow/custom_records.h"
#include "workflow/custom_spaces.h"

namespace tool {

namespace {

constexpr char EXAMPLES[] = R"(  colorio space add film --lut film.cube
  colorio space add graded --cdl grades.ccc:shot_010 --lut film.cube
  colorio space add log --lut log.spi1d --allocation lg2 --range -8,5,0.01)";

class SpaceAddCommand : public SessionCommand {
public:
    explicit SpaceAddCommand(Options& program);
    ExitCode run(Console& console) override;

private:
    workflow::CustomSpaceRequest request;
};

SpaceAddCommand::SpaceAddCommand(Options& program)
    : SessionCommand(program, "add", "Add a custom color space made from a LUT, a color correction, or both",
                     EXAMPLES) {
    options.add("name", request.name, "name of the color space and of its view").required();
    options.add("--lut", request.lut, "LUT file that converts from scene-linear to the color space", "FILE");
    options.add("--cdl", request.cdl, "color correction before the LUT; an ID selects one of a .ccc file",
                "FILE[:ID]");
    options.add("--depth", request.depth, "bit depth attribute of the color space (default: 32f)")
        .choices(workflow::get_depth_names());
    options.add("--allocation", request.allocation, "allocation of values in a GPU LUT (default: uniform)")
        .choices({"uniform", "lg2"});
    options.add_list("--range", request.range,
                     "range of the allocation; an OFFSET only with lg2 (default: 0,1)",
                     "MINIMUM,MAXIMUM[,OFFSET]");
    add_preference_options();
}

ExitCode SpaceAddCommand::run(Console& console) {
    if (request.lut.empty() && request.cdl.empty())
        throw UsageError("a color space needs --lut or --cdl");
    const ColorIOManager::ColorSpaceDef record = workflow::make_custom_space(request);
    ToolSession session(session_options, console, workflow::PreferenceUse::CHANGE);
    hint_at(diagnostics::Code::NAME_DUPLICATE, "remove it with 'colorio space remove'",
            [&] { workflow::add_custom_space(session, record); });
    console.report(session.save_preferences());
    console.print(fmt::format("{}: {}", workflow::get_label(record), workflow::describe_origin(record)));
    return EXIT_CODE_DONE;
}

} // namespace

const MakeCommand make_space_add_command = make_command<SpaceAddCommand>;

} // namespace tool
