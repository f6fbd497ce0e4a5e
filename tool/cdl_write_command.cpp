#include <string>

#include <fmt/format.h>

#include "tool/command.h"
#include "tool/console.h"
#include "tool/option_hints.h"
#include "tool/text_table.h"
#include "workflow/correction_text.h"
#include "workflow/exact_document.h"
#include "workflow/rounded_document.h"

namespace tool {

namespace {

constexpr char EXAMPLES[] = R"(  colorio cdl write warm.cc --cdl warm=1.1,1,0.9/0,0,0/1,1,1/1
  colorio cdl write warm.cc --cdl warm=1.125,1,0.9/0.01,0,0/1,1,1/0.85 --exact
  colorio cdl write all.ccc --collection --cdl a=1,1,1/0,0,0/1,1,1/0.8 --cdl b=2,2,2/0,0,0/1,1,1/1

Without --exact numbers are rounded to one decimal, as in documents written by the host application.)";

constexpr char EXACT_HINT[] = "--exact writes every digit";

class CdlWriteCommand : public Command {
public:
    explicit CdlWriteCommand(Options& program)
        : Command(program, "write", "Write color corrections to a .cc or .ccc file", EXAMPLES) {
        options.add("file", path, "file to write; an existing one is replaced only when writing succeeds")
            .required();
        options
            .add("--cdl", texts,
                 "slope, offset and power: three comma-separated numbers; saturation: one. Repeat to write a "
                 "collection",
                 "NAME=SLOPE/OFFSET/POWER/SATURATION")
            .required()
            .one_value_each();
        options.add_flag("--collection", is_collection, "write a collection, even of one color correction");
        options.add_flag("--exact", is_exact, "write every digit (default: one decimal)");
    }

    ExitCode run(Console& console) override {
        const std::vector<workflow::Correction> corrections = workflow::parse_named_numbers(texts);
        if (corrections.size() > 1 && !is_collection)
            throw UsageError("several color corrections need --collection");
        if (is_exact)
            workflow::write_exact_document(path, corrections, is_collection);
        else
            write_rounded(corrections, console);
        console.print(fmt::format("{}: {}", path, count_things(corrections.size(), "color correction")));
        return EXIT_CODE_DONE;
    }

private:
    void write_rounded(const std::vector<workflow::Correction>& corrections, Console& console) const {
        hint_at(diagnostics::Code::CDL_INVALID, EXACT_HINT, [&] {
            for (const diagnostics::Diagnostic& loss :
                 workflow::write_rounded_document(path, corrections, is_collection))
                console.report(with_hint(loss, EXACT_HINT));
        });
    }

    std::string path;
    std::vector<std::string> texts;
    bool is_collection = false;
    bool is_exact = false;
};

} // namespace

const MakeCommand make_cdl_write_command = make_command<CdlWriteCommand>;

} // namespace tool
