#include <string>
#include <vector>

#include <fmt/format.h>

#include "tool/command.h"
#include "tool/console.h"
#include "tool/option_hints.h"
#include "tool/tool_session.h"
#include "workflow/correction_text.h"
#include "workflow/custom_records.h"
#include "workflow/custom_spaces.h"

namespace tool {

namespace {

constexpr char EXAMPLES[] = R"(  colorio space add film --lut film.cube
  colorio space add graded --cdl grades.ccc:shot_010 --lut film.cube
  colorio space add log --lut log.spi1d --allocation lg2 --range -8,5,0.01)";

class SpaceAddCommand : public Command {
public:
    explicit SpaceAddCommand(Options& program);
    ExitCode run(Console& console) override;

private:
    std::vector<float> parse_range() const;

    SessionChoice session_options;
    workflow::CustomSpaceRequest request;
    std::vector<std::string> range;
};

SpaceAddCommand::SpaceAddCommand(Options& program)
    : Command(program, "add", "Add a custom color space made from a LUT, a color correction, or both",
              EXAMPLES) {
    options.add("name", request.name, "name of the color space and of its view").required();
    options.add("--lut", request.lut, "LUT file that converts from scene-linear to the color space")
        .value("FILE");
    options.add("--cdl", request.cdl, "color correction before the LUT; an ID selects one of a .ccc file")
        .value("FILE[:ID]");
    options.add("--depth", request.depth, "bit depth attribute of the color space (default: 32f)")
        .choices(workflow::get_depth_names());
    options.add("--allocation", request.allocation, "allocation of values in a GPU LUT (default: uniform)")
        .choices({"uniform", "lg2"});
    options.add("--range", range, "range of the allocation; an OFFSET only with lg2 (default: 0,1)")
        .value("MINIMUM,MAXIMUM[,OFFSET]")
        .separator(',')
        .one_value_each();
    add_preference_options(options, session_options);
    session_options.builtin_only = true;
}

ExitCode SpaceAddCommand::run(Console& console) {
    if (request.lut.empty() && request.cdl.empty())
        throw UsageError("a color space needs --lut or --cdl");
    request.range = parse_range();
    const ColorIOManager::ColorSpaceDef record = workflow::make_custom_space(request);
    ToolSession session(session_options, console, workflow::PreferenceUse::CHANGE);
    hint_at(diagnostics::Code::NAME_DUPLICATE, "remove it with 'colorio space remove'",
            [&] { workflow::add_custom_space(session, record); });
    console.report(session.save_preferences());
    console.print(fmt::format("{}: {}", workflow::get_label(record), workflow::describe_origin(record)));
    return EXIT_CODE_DONE;
}

std::vector<float> SpaceAddCommand::parse_range() const {
    const std::size_t most = request.allocation == "lg2" ? 3 : 2;
    if (!range.empty() && (range.size() < 2 || range.size() > most))
        throw UsageError(
            fmt::format("--range takes {} numbers for {}", most == 2 ? "2" : "2 or 3", request.allocation));
    std::vector<float> numbers;
    for (const std::string& text : range) {
        const auto value = workflow::parse_number(text);
        if (!value)
            throw UsageError(fmt::format("'{}' is not a number", text));
        numbers.push_back(*value);
    }
    return numbers;
}

} // namespace

std::unique_ptr<Command> make_space_add_command(Options& program) {
    return std::make_unique<SpaceAddCommand>(program);
}

} // namespace tool
