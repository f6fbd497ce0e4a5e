#include "tool/explain_command.h"

#include <utility>

#include <fmt/format.h>

#include "diagnostics/failure.h"
#include "tool/console.h"
#include "tool/json_output.h"
#include "tool/row_model.h"
#include "workflow/conversion.h"
#include "workflow/correction_text.h"

namespace tool {

namespace {

using Step = ColorIOEvaluation::Step;

/// Operations that are carried out; with the values of the pixel after each of them.
RowModel<Step> make_step_rows(bool shows_pixel) {
    constexpr const char* COMPONENTS[] = {"red", "green", "blue", "alpha"};
    RowModel<Step> rows(RowModel<Step>::NUMBERED_IN_TABLES, 1);
    for (unsigned int c = 0; shows_pixel && c < 4; ++c)
        rows.add(COMPONENTS[c], nullptr,
                 [c](const Step& step) { return workflow::format_number(step.pixel[c]); });
    rows.add(shows_pixel ? "after the operation" : "operation", "operation",
             [](const Step& step) { return step.operation.get_data(); });
    if (shows_pixel)
        rows.add(nullptr, "pixel", [](const Step& step) {
            const GMathVec4<float>& pixel = step.pixel;
            return Cell("", Json(std::vector<Json>{pixel[0], pixel[1], pixel[2], pixel[3]}));
        });
    return rows;
}

} // namespace

/// The first color space is the destination where an image or a view is the source.
void ExplainCommand::settle_usage() {
    const bool has_other_source = !image.empty() || !request.inverse_view.empty();
    if (!image.empty() && !request.inverse_view.empty())
        throw UsageError("--image and --inverse-view cannot be combined");
    if (has_other_source && !request.to.empty())
        throw UsageError(fmt::format("two color spaces and {}: the source is given twice",
                                     image.empty() ? "--inverse-view" : "--image"));
    if (has_other_source)
        std::swap(request.from, request.to);
    else if (request.from.empty())
        throw UsageError("no source; name a color space, --image or --inverse-view");
    check_conversion(request, "a second color space");
    if (pixel_text.empty())
        return;
    const auto parsed = workflow::parse_color(pixel_text);
    if (!parsed)
        throw UsageError(fmt::format("invalid --pixel '{}'", pixel_text),
                         "examples: 0.18,0.18,0.18 or 1,0.5,0,1");
    pixel = *parsed;
}

ExitCode ExplainCommand::run(Console& console) {
    settle_usage();
    const ToolSession session(session_options, console);
    if (!image.empty()) {
        file_space = workflow::find_file_space(session, image);
        if (file_space.unread)
            throw diagnostics::Failure(*file_space.unread);
        report_source_space(image, file_space, source_choice, console);
        request.from = file_space.color_space;
    }
    const workflow::Conversion conversion(session, request);
    console.report(conversion.get_notes());
    const std::vector<workflow::ExplainedStage> parts = workflow::explain_conversion(conversion, pixel);
    if (as_json)
        console.print_text(to_json(session, conversion, parts).format());
    else
        print(session, conversion, parts, console);
    return EXIT_CODE_DONE;
}

void ExplainCommand::print(const workflow::Session& session, const workflow::Conversion& conversion,
                           const std::vector<workflow::ExplainedStage>& parts, Console& console) const {
    print_decision("config", describe(session.get_source()), console);
    print_decision("source", conversion.get_source(), console);
    if (source_choice.explains)
        print_source_steps(file_space, console);
    print_decision("destination", conversion.get_destination(), console);
    if (parts.empty())
        console.print("Source and destination are the same: colors are unchanged.");
    for (const workflow::ExplainedStage& part : parts)
        print_part(part, console);
}

void ExplainCommand::print_part(const workflow::ExplainedStage& part, Console& console) const {
    console.print("");
    console.print_heading(part.title);
    console.print(workflow::describe_path(part.how));
    if (part.how.operations.get_count() > 0) {
        console.print("");
        RowModel<CoreString> given(RowModel<CoreString>::NUMBERED_IN_TABLES, 1);
        given.add("operation of the config", nullptr, &CoreString::get_data);
        given.make_table(part.how.operations).print(console);
    }
    if (part.how.steps.get_count() > 0) {
        console.print("");
        console.print(workflow::describe_simplification(part.how));
        make_step_rows(!pixel_text.empty()).make_table(part.how.steps).print(console);
    }
}

Json ExplainCommand::to_json(const workflow::Session& session, const workflow::Conversion& conversion,
                             const std::vector<workflow::ExplainedStage>& parts) const {
    Json answer = {{"config", tool::to_json(session.get_source())},
                   {"source", conversion.get_source()},
                   {"destination", conversion.get_destination()}};
    if (!image.empty()) {
        RowModel<workflow::FileSpaceStep> steps;
        steps.add(nullptr, "step", &workflow::FileSpaceStep::name)
            .add(nullptr, "answer", &workflow::FileSpaceStep::answer);
        answer.set("source_reason", file_space.reason);
        answer.set("source_assumed", file_space.is_assumed);
        answer.set("source_steps", steps.make_array(file_space.steps));
        RowModel<workflow::PartSpace> parts;
        parts.add(nullptr, "part", &workflow::PartSpace::part)
            .add(nullptr, "color_space", &workflow::PartSpace::color_space)
            .add(nullptr, "reason", &workflow::PartSpace::reason);
        answer.set("source_parts", parts.make_array(file_space.parts));
    }
    if (!pixel_text.empty())
        answer.set("pixel", Json(std::vector<Json>(pixel.begin(), pixel.end())));
    Json list = Json::array();
    for (const workflow::ExplainedStage& part : parts)
        list.push(part_to_json(part));
    return answer.set("parts", list);
}

Json ExplainCommand::part_to_json(const workflow::ExplainedStage& part) const {
    Json operations = Json::array();
    for (const CoreString& operation : part.how.operations)
        operations.push(operation.get_data());
    Json answer = {{"title", part.title},
                   {"operations", std::move(operations)},
                   {"path", workflow::get_path_name(part.how.path)}};
    if (part.how.path == ColorIOEvaluation::PATH_LIBRARY)
        answer.set("reason", part.how.reason.get_data());
    if (part.how.path == ColorIOEvaluation::PATH_VECTOR)
        answer.set("vector_target", part.how.vector_target.get_data());
    return answer.set("steps", make_step_rows(!pixel_text.empty()).make_array(part.how.steps));
}

} // namespace tool
