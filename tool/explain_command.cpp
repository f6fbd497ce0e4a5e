#include "tool/command.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <string_view>

#include <fmt/format.h>

#include "tool/console.h"
#include "tool/conversion_options.h"
#include "tool/correction_cells.h"
#include "tool/json_output.h"
#include "tool/source_space.h"
#include "tool/text_table.h"
#include "tool/tool_session.h"
#include "workflow/conversion.h"
#include "workflow/correction_text.h"
#include "workflow/explanation.h"

namespace tool {

namespace {

constexpr char EXAMPLES[] = R"(  colorio explain sRGB linear
  colorio explain linear --view Tavelion.sRGB --pixel 0.18,0.18,0.18
  colorio explain ACEScg ACEScct --config aces.ocio --cdl grades.ccc:shot_010 --json
  colorio explain --image scan.dpx linear --why

With COLORIO_FAST_PATH=0 in the environment everything is converted by OpenColorIO.)";

using Pixel = std::array<float, 4>;

/// Parses "R,G,B" or "R,G,B,A". Throws UsageError.
Pixel parse_pixel(const std::string& text) {
    Pixel pixel = {0, 0, 0, 1};
    std::size_t count = 0;
    for (std::string_view rest = text; count < pixel.size(); ++count) {
        const std::size_t comma = std::min(rest.find(','), rest.size());
        const std::optional<float> number = workflow::parse_number(rest.substr(0, comma));
        if (!number)
            break;
        pixel[count] = *number;
        if (comma == rest.size()) {
            if (count + 1 >= 3)
                return pixel;
            break;
        }
        rest.remove_prefix(comma + 1);
    }
    throw UsageError(fmt::format("invalid --pixel '{}'", text), "examples: 0.18,0.18,0.18 or 1,0.5,0,1");
}

Json pixel_to_json(const GMathVec4<float>& pixel) {
    return Json(std::vector<Json>{pixel[0], pixel[1], pixel[2], pixel[3]});
}

const char* get_path_name(ColorIOEvaluation::Path path) {
    switch (path) {
    case ColorIOEvaluation::PATH_NONE:
        return "none";
    case ColorIOEvaluation::PATH_VECTOR:
        return "vector";
    case ColorIOEvaluation::PATH_LIBRARY:
        break;
    }
    return "library";
}

class ExplainCommand : public Command {
public:
    explicit ExplainCommand(Options& program);
    ExitCode run(Console& console) override;

private:
    void settle_usage();
    void print_part(const workflow::ExplainedStage& part, Console& console) const;
    void print_steps(const ColorIOEvaluation::Explanation& how, Console& console) const;
    Json part_to_json(const workflow::ExplainedStage& part) const;

    SessionChoice session_options;
    ConversionChoice request;
    std::string image; ///< Whose color space is the source; empty when it is named.
    workflow::FileSpace file_space;
    SourceSpaceChoice source_choice;
    std::string pixel_text; ///< Empty when no pixel was given.
    bool as_json = false;
};

/// Heading of the operations that are carried out.
std::string describe_simplification(const ColorIOEvaluation::Explanation& how) {
    const unsigned int before = how.operations.get_count(), after = how.steps.get_count();
    if (after < before)
        return fmt::format("simplified from {} to {}:", before, after);
    for (unsigned int i = 0; i < before; ++i)
        if (how.operations[i] != how.steps[i].operation)
            return "simplified to:";
    return "carried out one by one:";
}

ExplainCommand::ExplainCommand(Options& program)
    : Command(program, "explain",
              "Show the operations of a conversion, and the values of a pixel after each of them", EXAMPLES) {
    options.add("source", request.from, "source color space; omit it with --image or --inverse-view");
    options.add("destination", request.to, "color space of the result, unless --view is given");
    options.add("--image", image, "image that determines the source color space").value("FILE");
    add_view_options(options, request);
    add_inverse_view_option(options, request);
    add_step_options(options, request);
    add_source_space_options(options, source_choice);
    options.add("--pixel", pixel_text, "pixel to show after each operation").value("R,G,B[,A]");
    add_session_options(options, session_options);
    options.add_flag("--json", as_json, "print JSON");
}

/// The first color space is the destination where an image or a view is the source.
void ExplainCommand::settle_usage() {
    const bool has_other_source = !image.empty() || !request.inverse_view.empty();
    if (!image.empty() && !request.inverse_view.empty())
        throw UsageError("--image and --inverse-view exclude each other");
    if (has_other_source && !request.to.empty())
        throw UsageError(fmt::format("two color spaces and {}: the source is given twice",
                                     image.empty() ? "--inverse-view" : "--image"));
    if (has_other_source)
        std::swap(request.from, request.to);
    else if (request.from.empty())
        throw UsageError("no source; name a color space, --image or --inverse-view");
    check_conversion(request, "a second color space");
}

ExitCode ExplainCommand::run(Console& console) {
    settle_usage();
    const bool shows_pixel = !pixel_text.empty();
    const Pixel pixel = shows_pixel ? parse_pixel(pixel_text) : Pixel{};
    const ToolSession session(session_options, console);
    if (!image.empty()) {
        file_space = find_source_space(session, image, source_choice, console);
        request.from = file_space.color_space;
    }
    const workflow::Conversion conversion(session, request);
    console.report(conversion.get_notes());
    const std::vector<workflow::ExplainedStage> parts = workflow::explain_conversion(conversion, pixel);
    if (as_json) {
        Json list = Json::array();
        for (const workflow::ExplainedStage& part : parts)
            list.push(part_to_json(part));
        Json answer = {{"config", to_json(session.get_source())},
                       {"source", conversion.get_source()},
                       {"destination", conversion.get_destination()}};
        if (!image.empty()) {
            Json steps = Json::array();
            for (const workflow::FileSpaceStep& step : file_space.steps)
                steps.push({{"step", step.name}, {"answer", step.answer}});
            answer.set("source_reason", file_space.reason);
            answer.set("source_assumed", file_space.is_assumed);
            answer.set("source_steps", steps);
        }
        if (shows_pixel)
            answer.set("pixel", Json(std::vector<Json>(pixel.begin(), pixel.end())));
        answer.set("parts", list);
        console.print_text(Json(answer).format());
        return EXIT_CODE_DONE;
    }
    console.print(fmt::format("config:        {}", describe(session.get_source())));
    console.print(fmt::format("source:        {}", conversion.get_source()));
    if (source_choice.explains && !file_space.steps.empty())
        print_source_steps(file_space, console);
    console.print(fmt::format("destination:   {}", conversion.get_destination()));
    if (parts.empty())
        console.print("Source and destination are the same: colors are unchanged.");
    for (const workflow::ExplainedStage& part : parts)
        print_part(part, console);
    return EXIT_CODE_DONE;
}

void ExplainCommand::print_part(const workflow::ExplainedStage& part, Console& console) const {
    console.print("");
    console.print_heading(part.title);
    console.print(workflow::describe_path(part.how));
    if (part.how.operations.get_count() > 0) {
        console.print("");
        TextTable given({"#", "operation of the config"});
        for (const CoreString& operation : part.how.operations)
            given.add_row({std::to_string(given.count_rows() + 1), operation.get_data()});
        given.print(console);
    }
    if (part.how.steps.get_count() > 0)
        print_steps(part.how, console);
}

void ExplainCommand::print_steps(const ColorIOEvaluation::Explanation& how, Console& console) const {
    console.print("");
    console.print(describe_simplification(how));
    const bool shows_pixel = !pixel_text.empty();
    TextTable table(
        shows_pixel ? std::vector<std::string>{"#", "red", "green", "blue", "alpha", "after the operation"}
                    : std::vector<std::string>{"#", "operation"});
    for (const ColorIOEvaluation::Step& step : how.steps) {
        std::vector<std::string> cells{std::to_string(table.count_rows() + 1)};
        for (unsigned int c = 0; shows_pixel && c < 4; ++c)
            cells.push_back(workflow::format_number(step.pixel[c]));
        cells.push_back(step.operation.get_data());
        table.add_row(std::move(cells));
    }
    table.print(console);
}

Json ExplainCommand::part_to_json(const workflow::ExplainedStage& part) const {
    Json operations = Json::array(), steps = operations;
    for (const CoreString& operation : part.how.operations)
        operations.push(operation.get_data());
    for (const ColorIOEvaluation::Step& step : part.how.steps) {
        Json item = {{"operation", step.operation.get_data()}};
        if (!pixel_text.empty())
            item.set("pixel", pixel_to_json(step.pixel));
        steps.push(item);
    }
    Json answer = {
        {"title", part.title}, {"operations", std::move(operations)}, {"path", get_path_name(part.how.path)}};
    if (part.how.path == ColorIOEvaluation::PATH_LIBRARY)
        answer.set("reason", part.how.reason.get_data());
    if (part.how.path == ColorIOEvaluation::PATH_VECTOR)
        answer.set("vector_target", part.how.vector_target.get_data());
    answer.set("steps", steps);
    return answer;
}

} // namespace

std::unique_ptr<Command> make_explain_command(Options& program) {
    return std::make_unique<ExplainCommand>(program);
}

} // namespace tool
