#include <filesystem>
#include <string>

#include <fmt/format.h>

#include "colorio/color_io.h"
#include "colorio/color_io_converter.h"
#include "colorio/color_io_diagnostics.h"
#include "host/sys/sys_filesystem.h"
#include "tool/cdl_command.h"
#include "tool/console.h"
#include "tool/correction_cells.h"
#include "tool/tool_session.h"
#include "workflow/correction_file.h"
#include "workflow/correction_text.h"

namespace tool {

namespace {

using diagnostics::Code;

using ColorDecisionListDef = ColorIOManager::ColorDecisionListDef;

constexpr char EXAMPLES[] = R"(  colorio cdl add warm --values 1.1,1,0.9/0,0,0/1,1,1/1
  colorio cdl add shot grades.ccc:shot_010

A CDL added from a file is a reference to it: later edits of the file take effect.)";

/// The module looks up color corrections by id in files with this extension only.
constexpr char COLLECTION_EXTENSION[] = "ccc";

class CdlAddCommand : public Command {
public:
    explicit CdlAddCommand(Options& program)
        : Command(program, "add", "Add a CDL to the preferences", EXAMPLES) {
        options.add("name", name, "name of the CDL").required();
        const Option file =
            options.add("file", source, "color correction in a .cc, .ccc or .cdl file: FILE or FILE:ID");
        options
            .add("--values", values,
                 "numbers instead of a file: SLOPE/OFFSET/POWER/SATURATION, with red,green,blue for the "
                 "first three")
            .excludes(file);
        add_preference_options(options, session_options);
        session_options.builtin_only = true;
    }

    ExitCode run(Console& console) override {
        if (source.empty() == values.empty())
            throw UsageError("a CDL needs a file or --values");
        const ColorDecisionListDef record = make_record(console);
        ToolSession session(session_options, console, workflow::PreferenceUse::CHANGE);
        add(record);
        console.report(session.save_preferences());
        const std::vector<std::string> cells = make_cells(workflow::make_correction(record));
        console.print(fmt::format("{}: slope {}, offset {}, power {}, saturation {}", cells[0], cells[1],
                                  cells[2], cells[3], cells[4]));
        return EXIT_CODE_DONE;
    }

private:
    ColorDecisionListDef make_record(Console& console) const;
    void add(const ColorDecisionListDef& record) const;

    SessionChoice session_options;
    std::string name;
    std::string source;
    std::string values;
};

ColorDecisionListDef CdlAddCommand::make_record(Console& console) const {
    if (name.empty())
        throw UsageError("a CDL needs a name");
    if (!values.empty())
        return workflow::make_cdl_record(workflow::parse_numbers(values), name);
    const workflow::CorrectionSource found = workflow::parse_correction_source(source);
    const workflow::Correction correction = workflow::read_valid_correction(found);
    report_unread_elements(correction, console);
    ColorDecisionListDef record = workflow::make_cdl_record(correction, name);
    const bool is_collection = SysFilesystem::get_file_extension(found.path.c_str()) == COLLECTION_EXTENSION;
    if (is_collection && found.id.empty())
        throw UsageError(fmt::format("'{}' is a collection", found.path),
                         fmt::format("choose a color correction: {}:ID", found.path));
    if (!correction.has_usual_names) {
        console.report(diagnostics::make_note(
            Code::CDL_COPIED,
            fmt::format("OpenColorIO does not accept the element names in '{}': the numbers are "
                        "copied, and later edits of the file have no effect",
                        found.path)));
        return record;
    }
    if (!is_collection && !found.id.empty()) {
        console.report(diagnostics::make_note(
            Code::CDL_COPIED,
            fmt::format("ids are looked up in .ccc files only: the numbers are copied, and later "
                        "edits of '{}' have no effect",
                        found.path)));
        return record;
    }
    record.file = std::filesystem::absolute(found.path).c_str();
    record.cccid = found.id.c_str();
    return record;
}

/// Throws diagnostics::Failure, and leaves the preferences unsaved, for a record that the module would store
/// but cannot use.
void CdlAddCommand::add(const ColorDecisionListDef& record) const {
    ColorIOManager& manager = *ColorIOManager::get_instance();
    CoreVector<ColorDecisionListDef> records = manager.get_tavelion_color_decision_lists();
    for (const ColorDecisionListDef& known : records)
        if (known.name.get_lower_case() == record.name.get_lower_case())
            diagnostics::fail(Code::NAME_DUPLICATE,
                              fmt::format("a CDL named '{}' already exists", known.name.view()),
                              known.is_builtin ? "" : "remove it with 'colorio cdl remove'");
    records.append(record);
    ColorIODiagnostics collector;
    manager.set_tavelion_config(records);
    ColorIOConverter converter;
    if (!converter.configure_CDL(ColorIO::get_default_CDL_name(), record.name))
        throw diagnostics::Failure(add_context(fmt::format("cannot use the CDL '{}'", name),
                                               select(collector.take(), name), Code::CDL_INVALID));
}

} // namespace

std::unique_ptr<Command> make_cdl_add_command(Options& program) {
    return std::make_unique<CdlAddCommand>(program);
}

} // namespace tool
