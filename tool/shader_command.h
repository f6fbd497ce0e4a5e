#pragma once

#include <string>
#include <vector>

#include "tool/command.h"
#include "tool/conversion_options.h"
#include "tool/json.h"

namespace workflow {
struct ShaderComparison;
} // namespace workflow

namespace tool {

/// colorio shader.
class ShaderCommand : public SessionCommand {
public:
    explicit ShaderCommand(Options& program);
    ExitCode run(Console& console) override;

private:
    static constexpr char CORE[] = "core";
    static constexpr char LEGACY[] = "legacy";

    Json to_json(const workflow::Conversion& conversion, const std::vector<std::string>& files,
                 const workflow::ShaderComparison& comparison) const;

    ConversionChoice request;
    std::string dialect = CORE; ///< CORE or LEGACY.
    std::string folder;
};

} // namespace tool
