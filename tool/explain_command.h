#pragma once

#include <array>
#include <string>
#include <vector>

#include "tool/command.h"
#include "tool/conversion_options.h"
#include "tool/json.h"
#include "tool/source_space.h"
#include "workflow/explanation.h"

namespace tool {

/// colorio explain.
class ExplainCommand : public SessionCommand {
public:
    explicit ExplainCommand(Options& program);
    ExitCode run(Console& console) override;

private:
    void settle_usage();
    void print(const workflow::Session& session, const workflow::Conversion& conversion,
               const std::vector<workflow::ExplainedStage>& parts, Console& console) const;
    void print_part(const workflow::ExplainedStage& part, Console& console) const;
    Json to_json(const workflow::Session& session, const workflow::Conversion& conversion,
                 const std::vector<workflow::ExplainedStage>& parts) const;
    Json part_to_json(const workflow::ExplainedStage& part) const;

    ConversionChoice request;
    std::string image; ///< Whose color space is the source; empty when it is named.
    workflow::FileSpace file_space;
    SourceSpaceChoice source_choice;
    std::string pixel_text; ///< Empty when no pixel was given.
    std::array<float, 4> pixel = {};
};

} // namespace tool
