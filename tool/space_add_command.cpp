#include <filesystem>
#include <string>

#include <fmt/format.h>

#include "colorio/color_io.h"
#include "colorio/color_io_converter.h"
#include "colorio/color_io_diagnostics.h"
#include "files/diagnosis.h"
#include "files/input_file.h"
#include "host/sys/sys_filesystem.h"
#include "tool/console.h"
#include "tool/correction_cells.h"
#include "tool/space_command.h"
#include "tool/tool_session.h"
#include "workflow/correction_file.h"
#include "workflow/correction_text.h"
#include "workflow/custom_spaces.h"
#include "workflow/published_names.h"

namespace tool {

namespace {

using diagnostics::Code;

using ColorSpaceDef = ColorIOManager::ColorSpaceDef;

constexpr char EXAMPLES[] = R"(  colorio space add film --lut film.cube
  colorio space add graded --cdl grades.ccc:shot_010 --lut film.cube
  colorio space add log --lut log.spi1d --allocation lg2 --range -8,5,0.01)";

/// The module looks up color corrections by id in files with this extension only.
constexpr char COLLECTION_EXTENSION[] = "ccc";

class SpaceAddCommand : public Command {
public:
    explicit SpaceAddCommand(Options& program);
    ExitCode run(Console& console) override;

private:
    ColorSpaceDef make_record() const;
    void take_lut(ColorSpaceDef& record) const;
    void take_cdl(ColorSpaceDef& record) const;
    void take_range(ColorSpaceDef& record) const;
    void add(const ColorSpaceDef& record) const;

    SessionChoice session_options;
    std::string name;
    std::string lut;
    std::string cdl;
    std::string depth = "32f";
    std::string allocation = "uniform";
    std::vector<std::string> range;
};

SpaceAddCommand::SpaceAddCommand(Options& program)
    : Command(program, "add", "Add a custom color space made from a LUT, a color correction, or both",
              EXAMPLES) {
    options.add("name", name, "name of the color space and of its view").required();
    options.add("--lut", lut, "LUT file that converts from scene-linear to the color space");
    options.add("--cdl", cdl, "color correction before the LUT: FILE, or FILE:ID for a .ccc file");
    options.add("--depth", depth, "bit depth that the color space is meant for (default: 32f)")
        .choices(workflow::get_depth_names());
    options.add("--allocation", allocation, "allocation of values in a GPU LUT (default: uniform)")
        .choices({"uniform", "lg2"});
    options
        .add("--range", range,
             "range of the allocation: MINIMUM,MAXIMUM, for lg2 also MINIMUM,MAXIMUM,OFFSET (default: 0,1)")
        .separator(',')
        .one_value_each();
    add_preference_options(options, session_options);
    session_options.builtin_only = true;
}

ExitCode SpaceAddCommand::run(Console& console) {
    const ColorSpaceDef record = make_record();
    ToolSession session(session_options, console, workflow::PreferenceUse::CHANGE);
    add(record);
    console.report(session.save_preferences());
    console.print(fmt::format("{}: {}", workflow::get_label(record), workflow::describe_origin(record)));
    return EXIT_CODE_DONE;
}

ColorSpaceDef SpaceAddCommand::make_record() const {
    if (name.empty() || name.find(ColorIOManager::FAMILY_SEPARATOR) != std::string::npos)
        throw UsageError(
            fmt::format("invalid color space name '{}': names are not empty and do not contain '{}'", name,
                        ColorIOManager::FAMILY_SEPARATOR));
    if (lut.empty() && cdl.empty())
        throw UsageError("a color space needs --lut or --cdl");
    ColorSpaceDef record{};
    record.name = name.c_str();
    if (!lut.empty())
        take_lut(record);
    if (!cdl.empty())
        take_cdl(record);
    record.bit_depth = workflow::parse_depth(depth);
    record.allocation = workflow::parse_allocation(allocation);
    take_range(record);
    return record;
}

void SpaceAddCommand::take_lut(ColorSpaceDef& record) const {
    if (const auto opened = files::open_for_reading(lut); !opened)
        throw diagnostics::Failure(files::to_diagnostic(opened.get_failure()));
    record.lut_file = std::filesystem::absolute(lut).c_str();
}

void SpaceAddCommand::take_cdl(ColorSpaceDef& record) const {
    const workflow::CorrectionSource source = workflow::parse_correction_source(cdl);
    if (!workflow::read_correction(source).has_usual_names)
        diagnostics::fail_file(
            Code::CDL_INVALID,
            fmt::format("OpenColorIO does not accept the element names in '{}'; it requires SOPNode",
                        source.path),
            source.path);
    const bool is_collection = SysFilesystem::get_file_extension(source.path.c_str()) == COLLECTION_EXTENSION;
    if (is_collection && source.id.empty())
        throw UsageError(fmt::format("'{}' is a collection", source.path),
                         fmt::format("choose a color correction: {}:ID", source.path));
    if (!is_collection && !source.id.empty())
        throw UsageError(fmt::format("ids are looked up in .ccc files only, not in '{}'", source.path));
    record.cdl_file = std::filesystem::absolute(source.path).c_str();
    record.cccid = source.id.c_str();
}

void SpaceAddCommand::take_range(ColorSpaceDef& record) const {
    const std::size_t most = allocation == "lg2" ? 3 : 2;
    if (!range.empty() && (range.size() < 2 || range.size() > most))
        throw UsageError(
            fmt::format("--range takes {} numbers for {}", most == 2 ? "2" : "2 or 3", allocation));
    record.allocation_vars[1] = 1.0f;
    for (std::size_t i = 0; i < range.size(); ++i) {
        const auto value = workflow::parse_number(range[i]);
        if (!value)
            throw UsageError(fmt::format("'{}' is not a number", range[i]));
        record.allocation_vars[i] = *value;
    }
}

/// Throws diagnostics::Failure, and leaves the preferences unsaved, for a record that the module would store
/// but cannot use.
void SpaceAddCommand::add(const ColorSpaceDef& record) const {
    ColorIOManager& manager = *ColorIOManager::get_instance();
    CoreVector<ColorSpaceDef> records = manager.get_tavelion_color_spaces();
    for (const ColorSpaceDef& known : records)
        if (known.name.get_lower_case() == record.name.get_lower_case())
            diagnostics::fail(Code::NAME_DUPLICATE,
                              fmt::format("a color space named '{}' already exists", known.name.view()),
                              known.is_builtin ? "" : "remove it with 'colorio space remove'");
    records.append(record);
    ColorIODiagnostics collector;
    manager.set_tavelion_config(records);
    ColorIOConverter converter;
    if (!ColorIO::color_space_exists(workflow::get_label(record).c_str()) ||
        !converter.configure(ColorIO::get_ROLE_SCENE_LINEAR(), record.name))
        throw diagnostics::Failure(add_context(fmt::format("cannot add the color space '{}'", name),
                                               select(collector.take(), name),
                                               Code::CUSTOM_COLOR_SPACE_INVALID));
}

} // namespace

std::unique_ptr<Command> make_space_add_command(Options& program) {
    return std::make_unique<SpaceAddCommand>(program);
}

} // namespace tool
