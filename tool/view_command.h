#pragma once

#include "tool/command.h"
#include "tool/conversion_options.h"
#include "tool/source_space.h"
#include "viewer/run.h"

namespace tool {

/// colorio view.
class ViewCommand : public SessionCommand {
public:
    explicit ViewCommand(Options& program);
    ExitCode run(Console& console) override;

private:
    void check_views() const;
    void report_source(const viewer::ViewModel& model, Console& console) const;

    ConversionChoice request; ///< Its steps alone.
    SourceSpaceChoice source_choice;
    viewer::RunOptions wanted;
    bool no_window = false;
};

} // namespace tool
