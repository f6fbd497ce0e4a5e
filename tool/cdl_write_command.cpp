#include <algorithm>
#include <cmath>
#include <set>
#include <string>

#include <fmt/format.h>

#include "colorio/color_io_diagnostics.h"
#include "colorio/color_io_manager.h"
#include "tool/cdl_command.h"
#include "tool/console.h"
#include "tool/correction_cells.h"
#include "workflow/correction_file.h"
#include "workflow/correction_text.h"
#include "workflow/exact_document.h"

namespace tool {

namespace {

constexpr char EXAMPLES[] = R"(  colorio cdl write warm.cc --cdl warm=1.1,1,0.9/0,0,0/1,1,1/1
  colorio cdl write warm.cc --cdl warm=1.125,1,0.9/0.01,0,0/1,1,1/0.85 --exact
  colorio cdl write all.ccc --collection --cdl a=1,1,1/0,0,0/1,1,1/0.8 --cdl b=2,2,2/0,0,0/1,1,1/1

Without --exact numbers are rounded to one decimal, as in documents written by the host application.)";

/// The largest change of a number by rounding.
struct Loss {
    float amount = 0.0f;
    float wanted = 0.0f;
    float written = 0.0f;
    std::string place;
};

float round_number(float value) {
    return workflow::parse_number(fmt::format("{:.1f}", value)).value();
}

void compare(const workflow::Correction& correction, const char* name, const float* wanted,
             const float* written, std::size_t count, Loss& largest) {
    for (std::size_t i = 0; i < count; ++i) {
        const float amount = std::fabs(wanted[i] - written[i]);
        if (amount > largest.amount)
            largest = {amount, wanted[i], written[i], fmt::format("{} of '{}'", name, correction.id)};
    }
}

Loss find_largest_loss(const std::vector<workflow::Correction>& wanted,
                       const std::vector<workflow::Correction>& written) {
    Loss largest;
    for (std::size_t i = 0; i < std::min(wanted.size(), written.size()); ++i) {
        const workflow::Correction& a = wanted[i];
        const workflow::Correction& b = written[i];
        compare(a, "slope", a.slope, b.slope, std::size(a.slope), largest);
        compare(a, "offset", a.offset, b.offset, std::size(a.offset), largest);
        compare(a, "power", a.power, b.power, std::size(a.power), largest);
        compare(a, "saturation", &a.saturation, &b.saturation, 1, largest);
    }
    return largest;
}

/// The color correction with its numbers rounded to one decimal.
workflow::Correction round_numbers(workflow::Correction correction) {
    for (float* values : {correction.slope, correction.offset, correction.power})
        std::transform(values, values + 3, values, round_number);
    correction.saturation = round_number(correction.saturation);
    return correction;
}

class CdlWriteCommand : public Command {
public:
    explicit CdlWriteCommand(Options& program)
        : Command(program, "write", "Write color corrections to a .cc or .ccc file", EXAMPLES) {
        options.add("file", path, "file to write; an existing one is replaced only when writing succeeds")
            .required();
        options
            .add("--cdl", texts,
                 "NAME=SLOPE/OFFSET/POWER/SATURATION; slope, offset and power: three comma-separated "
                 "numbers; saturation: one. Repeat to write a collection")
            .required()
            .one_value_each();
        options.add_flag("--collection", is_collection, "write a collection, even of one color correction");
        options.add_flag("--exact", is_exact, "write every digit (default: one decimal)");
    }

    ExitCode run(Console& console) override {
        const std::vector<workflow::Correction> corrections = parse_corrections();
        if (is_exact)
            workflow::write_exact_document(path, corrections, is_collection);
        else
            write_rounded(corrections, console);
        console.print(
            fmt::format("{}: {} correction{}", path, corrections.size(), corrections.size() == 1 ? "" : "s"));
        return EXIT_CODE_DONE;
    }

private:
    std::vector<workflow::Correction> parse_corrections() const;
    void write_rounded(const std::vector<workflow::Correction>& corrections, Console& console) const;

    std::string path;
    std::vector<std::string> texts;
    bool is_collection = false;
    bool is_exact = false;
};

std::vector<workflow::Correction> CdlWriteCommand::parse_corrections() const {
    std::vector<workflow::Correction> corrections;
    std::set<std::string> names;
    for (const std::string& text : texts) {
        corrections.push_back(workflow::parse_named_numbers(text));
        if (!names.insert(corrections.back().id).second)
            throw UsageError(fmt::format("--cdl names '{}' twice", corrections.back().id));
    }
    if (corrections.size() > 1 && !is_collection)
        throw UsageError("several color corrections need --collection");
    const std::string reserved = ColorIOManager::s_default_CDL_name.get_data();
    if (names.count(reserved) > 0)
        throw UsageError(
            fmt::format("'{}' is reserved for no color correction and cannot be written", reserved));
    return corrections;
}

void CdlWriteCommand::write_rounded(const std::vector<workflow::Correction>& corrections,
                                    Console& console) const {
    CoreVector<ColorIOManager::ColorDecisionListDef> records;
    for (const workflow::Correction& correction : corrections) {
        const std::string problem = workflow::find_invalid_number(round_numbers(correction));
        if (!problem.empty())
            diagnostics::fail(
                diagnostics::Code::CDL_INVALID,
                fmt::format("cannot write '{}': with one decimal, {} in '{}'", path, problem, correction.id),
                "--exact writes every digit");
        records.append(workflow::make_cdl_record(correction, correction.id));
    }
    ColorIOManager manager(nullptr);
    ColorIODiagnostics collector;
    if (!manager.create_XML_from_CDL(records, path.c_str(), is_collection))
        throw diagnostics::Failure(add_context({}, collector.take(), diagnostics::Code::FILE_UNWRITABLE));
    const Loss loss = find_largest_loss(corrections, workflow::read_corrections(path));
    if (loss.amount > 0.0f)
        console.report(
            with_hint(diagnostics::make_warning(
                          diagnostics::Code::CDL_ROUNDED,
                          fmt::format("numbers are written with one decimal: the largest loss is {:.3g}, {} "
                                      "({} became {})",
                                      loss.amount, loss.place, loss.wanted, loss.written)),
                      "--exact writes every digit"));
}

} // namespace

std::unique_ptr<Command> make_cdl_write_command(Options& program) {
    return std::make_unique<CdlWriteCommand>(program);
}

} // namespace tool
