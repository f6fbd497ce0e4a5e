#pragma once

#include <string>

#include "tool/command.h"
#include "tool/conversion_options.h"
#include "tool/sequence_options.h"
#include "tool/source_space.h"
#include "workflow/frame_jobs.h"
#include "workflow/image_conversion.h"

namespace tool {

/// colorio convert.
class ConvertCommand : public SessionCommand {
public:
    explicit ConvertCommand(Options& program);
    ExitCode run(Console& console) override;

private:
    void add_layer_options();
    void check_usage();
    void settle_source(const workflow::Session& session, Console& console);
    void settle_parts(const workflow::Session& session, const workflow::Conversion& conversion,
                      Console& console);
    void explain(const workflow::Session& session, const workflow::Conversion& conversion,
                 Console& console) const;

    ConversionChoice request;
    workflow::FileSpace file_space; ///< Empty when the user named the source.
    SourceSpaceChoice source_choice;
    std::string input;
    std::string output;
    SequenceChoice sequence;
    workflow::FrameJobs found;
    workflow::ImageOptions image_options;
    bool divides_by_alpha = false;
    bool leaves_alpha = false;
};

} // namespace tool
