#include <filesystem>
#include <string>

#include <fmt/format.h>

#include "colorio/color_io.h"
#include "colorio/color_io_converter.h"
#include "host/sys/sys_filesystem.h"
#include "tool/cdl/correction_text.h"
#include "tool/console.h"
#include "tool/settings/space_command.h"
#include "workflow/cdl/correction_file.h"
#include "workflow/custom_spaces.h"
#include "workflow/published_names.h"
#include "workflow/session.h"

namespace tool {

namespace {

using ColorSpaceDef = ColorIOManager::ColorSpaceDef;

constexpr char EXAMPLES[] = R"(  colorio space add film --lut film.cube
  colorio space add graded --cdl grades.ccc:shot_010 --lut film.cube
  colorio space add log --lut log.spi1d --allocation lg2 --range -8,5,0.01)";

/// The one extension whose documents the module searches for an id.
constexpr char COLLECTION_EXTENSION[] = "ccc";

class SpaceAddCommand : public Command {
public:
    explicit SpaceAddCommand(CLI::App& program);
    ExitCode run(Console& console) override;

private:
    ColorSpaceDef make_record() const;
    void take_cdl(ColorSpaceDef& record) const;
    void take_range(ColorSpaceDef& record) const;
    void add(const ColorSpaceDef& record, ColorSession& session) const;

    SessionOptions session_options;
    std::string name;
    std::string lut;
    std::string cdl;
    std::string depth = "32f";
    std::string allocation = "uniform";
    std::vector<std::string> range;
};

SpaceAddCommand::SpaceAddCommand(CLI::App& program)
    : Command(program, "add", "Add a colour space made from a LUT file, a correction, or both", EXAMPLES) {
    options->add_option("name", name, "Name of the colour space, and of its view")->required();
    options->add_option("--lut", lut, "LUT that leads from scene-linear to the colour space");
    options->add_option("--cdl", cdl,
                        "Correction before the LUT: FILE, or FILE:ID for one of a .ccc collection");
    options->add_option("--depth", depth, "Depth that the colour space is meant for; 32f without it")
        ->check(CLI::IsMember(get_depth_names()));
    options->add_option("--allocation", allocation, "uniform (the default) or lg2")
        ->check(CLI::IsMember({"uniform", "lg2"}));
    options
        ->add_option("--range", range,
                     "MINIMUM,MAXIMUM of the allocation, and for lg2 an OFFSET; 0,1 without it")
        ->delimiter(',')
        ->allow_extra_args(false);
    add_preference_options(*options, session_options);
    session_options.builtin_only = true;
}

ExitCode SpaceAddCommand::run(Console& console) {
    const ColorSpaceDef record = make_record();
    ColorSession session(session_options, console, PreferenceUse::CHANGE);
    add(record, session);
    session.save_preferences();
    console.print(fmt::format("{}: {}", get_label(record), describe_origin(record)));
    return EXIT_CODE_DONE;
}

ColorSpaceDef SpaceAddCommand::make_record() const {
    if (name.empty() || name.find(ColorIOManager::FAMILY_SEPARATOR) != std::string::npos)
        throw UsageError(fmt::format("'{}' cannot name a colour space: names have letters, and no '{}'", name,
                                     ColorIOManager::FAMILY_SEPARATOR));
    if (lut.empty() && cdl.empty())
        throw UsageError("say what the colour space is made of, with --lut or --cdl");
    ColorSpaceDef record{};
    record.name = name.c_str();
    if (!lut.empty() && !SysFilesystem::file_exists(lut.c_str()))
        throw CommandError(fmt::format("cannot read '{}': no such file", lut));
    if (!lut.empty())
        record.lut_file = std::filesystem::absolute(lut).c_str();
    if (!cdl.empty())
        take_cdl(record);
    record.bit_depth = parse_depth(depth);
    record.allocation = parse_allocation(allocation);
    take_range(record);
    return record;
}

void SpaceAddCommand::take_cdl(ColorSpaceDef& record) const {
    const CorrectionSource source = parse_correction_source(cdl);
    if (!read_correction(source).has_usual_names)
        throw CommandError(fmt::format(
            "the colour library does not read how '{}' is spelled: it wants SOPNode", source.path));
    const bool is_collection = SysFilesystem::get_file_extension(source.path.c_str()) == COLLECTION_EXTENSION;
    if (is_collection && source.id.empty())
        throw UsageError(fmt::format("'{0}' is a collection; name a correction as {0}:ID", source.path));
    if (!is_collection && !source.id.empty())
        throw UsageError(fmt::format("only a .ccc collection is searched for an id, not '{}'", source.path));
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
        const auto value = parse_number(range[i]);
        if (!value)
            throw UsageError(fmt::format("'{}' is no number", range[i]));
        record.allocation_vars[i] = *value;
    }
}

/// The module keeps what it cannot use; the user is told instead, and nothing is saved.
void SpaceAddCommand::add(const ColorSpaceDef& record, ColorSession& session) const {
    ColorIOManager& manager = *ColorIOManager::get_instance();
    CoreVector<ColorSpaceDef> records = manager.get_tavelion_color_spaces();
    for (const ColorSpaceDef& known : records)
        if (known.name.get_lower_case() == record.name.get_lower_case())
            throw CommandError(
                fmt::format("there is a colour space '{}'{}", known.name.view(),
                            known.is_builtin ? "" : "; remove it with 'colorio space remove'"));
    records.append(record);
    session.take_messages();
    manager.set_tavelion_config(records);
    ColorIOConverter converter;
    if (!ColorIO::color_space_exists(get_label(record).c_str()) ||
        !converter.configure(ColorIO::get_ROLE_SCENE_LINEAR(), record.name))
        throw CommandError(fmt::format("cannot make the colour space '{}': {}", name,
                                       explain_failure(session.take_messages())));
}

} // namespace

std::unique_ptr<Command> make_space_add_command(CLI::App& program) {
    return std::make_unique<SpaceAddCommand>(program);
}

} // namespace tool
