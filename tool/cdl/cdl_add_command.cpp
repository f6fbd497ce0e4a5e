#include <filesystem>
#include <string>

#include <fmt/format.h>

#include "colorio/color_io.h"
#include "colorio/color_io_converter.h"
#include "host/sys/sys_filesystem.h"
#include "tool/cdl/cdl_command.h"
#include "tool/cdl/correction_text.h"
#include "tool/console.h"
#include "workflow/cdl/correction_file.h"
#include "workflow/session.h"

namespace tool {

namespace {

using ColorDecisionListDef = ColorIOManager::ColorDecisionListDef;

constexpr char EXAMPLES[] = R"(  colorio cdl add warm --values 1.1,1,0.9/0,0,0/1,1,1/1
  colorio cdl add shot grades.ccc:shot_010

A CDL made from a file follows that file: it has the numbers that the file holds when it is used.)";

/// The one extension whose documents the module searches for an id.
constexpr char COLLECTION_EXTENSION[] = "ccc";

class CdlAddCommand : public Command {
public:
    explicit CdlAddCommand(CLI::App& program) : Command(program, "add", "Add a CDL of your own", EXAMPLES) {
        options->add_option("name", name, "Name of the CDL")->required();
        auto* file = options->add_option("file", source, "FILE or FILE:ID of a .cc, .ccc or .cdl file");
        options->add_option("--values", values, "SLOPE/OFFSET/POWER/SATURATION instead of a file")
            ->excludes(file);
        add_preference_options(*options, session_options);
        session_options.builtin_only = true;
    }

    ExitCode run(Console& console) override {
        if (source.empty() == values.empty())
            throw UsageError("a CDL is made of a file or of --values");
        const ColorDecisionListDef record = make_record(console);
        ColorSession session(session_options, console, PreferenceUse::CHANGE);
        add(record, session);
        session.save_preferences();
        const std::vector<std::string> cells = make_cells(make_correction(record));
        console.print(fmt::format("{}: slope {}, offset {}, power {}, saturation {}", cells[0], cells[1],
                                  cells[2], cells[3], cells[4]));
        return EXIT_CODE_DONE;
    }

private:
    ColorDecisionListDef make_record(Console& console) const;
    void add(const ColorDecisionListDef& record, ColorSession& session) const;

    SessionOptions session_options;
    std::string name;
    std::string source;
    std::string values;
};

ColorDecisionListDef CdlAddCommand::make_record(Console& console) const {
    if (name.empty())
        throw UsageError("a CDL needs a name");
    if (!values.empty())
        return make_cdl_record(parse_numbers(values), name);
    const CorrectionSource found = parse_correction_source(source);
    const Correction correction = read_valid_correction(found);
    warn_of_unread_elements(correction, console);
    ColorDecisionListDef record = make_cdl_record(correction, name);
    const bool is_collection = SysFilesystem::get_file_extension(found.path.c_str()) == COLLECTION_EXTENSION;
    if (is_collection && found.id.empty())
        throw UsageError(fmt::format("'{0}' is a collection; name a correction as {0}:ID", found.path));
    if (!correction.has_usual_names) {
        console.note(
            fmt::format("the colour library does not read how '{}' is spelled: the numbers are copied, "
                        "and do not follow it",
                        found.path));
        return record;
    }
    if (!is_collection && !found.id.empty()) {
        console.note(
            fmt::format("only a .ccc collection is searched for an id: the numbers are copied, and do "
                        "not follow '{}'",
                        found.path));
        return record;
    }
    record.file = std::filesystem::absolute(found.path).c_str();
    record.cccid = found.id.c_str();
    return record;
}

/// The module keeps what it cannot use; the user is told instead, and nothing is saved.
void CdlAddCommand::add(const ColorDecisionListDef& record, ColorSession& session) const {
    ColorIOManager& manager = *ColorIOManager::get_instance();
    CoreVector<ColorDecisionListDef> records = manager.get_tavelion_color_decision_lists();
    for (const ColorDecisionListDef& known : records)
        if (known.name.get_lower_case() == record.name.get_lower_case())
            throw CommandError(fmt::format("there is a CDL '{}'{}", known.name.view(),
                                           known.is_builtin ? "" : "; remove it with 'colorio cdl remove'"));
    records.append(record);
    session.take_messages();
    manager.set_tavelion_config(records);
    ColorIOConverter converter;
    if (!converter.configure_CDL(ColorIO::get_default_CDL_name(), record.name))
        throw CommandError(
            fmt::format("cannot use the CDL '{}': {}", name, explain_failure(session.take_messages())));
}

} // namespace

std::unique_ptr<Command> make_cdl_add_command(CLI::App& program) {
    return std::make_unique<CdlAddCommand>(program);
}

} // namespace tool
