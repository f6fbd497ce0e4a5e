#include "colorio/ocio/config.h"

#include <cstdlib>
#include <optional>
#include <utility>

#include "colorio/ocio/config_side.h"
#include "colorio/ocio/config_structure.h"
#include "colorio/ocio/context_overrides.h"
#include "colorio/ocio/error.h"
#include "colorio/ocio/file_state.h"
#include "colorio/ocio/guarded.h"
#include "colorio/ocio/profile_version.h"
#include "colorio/ocio/variable_check.h"
#include "colorio/ocio/yaml_size.h"
#include "diagnostics/file_failure.h"

namespace ocio {

namespace {

using diagnostics::Diagnostic;

/// "ocio://default": a config that OpenColorIO contains.
bool names_built_in_config(const std::string& path) {
    return path.rfind("ocio://", 0) == 0;
}

/// The handles passed here were made by the caller, who is still their only owner.
template <typename Handle>
Handle without_processor_cache(const Handle& config) {
    turn_processor_cache_off(config);
    return config;
}

/// The first error of syntax or structure in the config file at `path`.
std::optional<YamlError> find_config_error(const std::string& path) {
    const std::optional<YamlError> malformed = find_yaml_error(path);
    return malformed ? malformed : find_structure_error(path);
}

/// Throws the exception being handled, of loading the config at `path`, with its cause.
[[noreturn]] void rethrow_load_failure(const std::string& path) {
    try {
        throw;
    } catch (const Error&) {
        throw;
    } catch (const std::exception& exception) {
        using diagnostics::Code;
        const std::string words = exception.what();
        Diagnostic cause =
            diagnostics::make_file_error(Code::CONFIG_INVALID, diagnostics::flatten(words), path);
        if (!path.empty() && !names_built_in_config(path) && !file_state(path)) {
            cause.code = Code::CONFIG_MISSING;
            cause.message = diagnostics::NO_SUCH_FILE;
        } else if (const std::optional<YamlError> error = find_config_error(path)) {
            cause.message = error->reason;
            cause.line = error->line;
            cause.column = error->column;
        }
        throw Error(std::move(cause), words.c_str());
    }
}

/// Reads the config at `path` with OpenColorIO's operation `read`. The message of a failure says what to
/// do, where that is known.
template <typename Read>
ConstConfigRcPtr load(const std::string& path, Read&& read) {
    return guarded([&] {
        require_readable_config(path);
        try {
            const ConstConfigRcPtr config = without_processor_cache(with_context_overrides(read()));
            require_bounded_variables(config, path);
            return config;
        } catch (const std::exception&) {
            const std::string newer = describe_newer_profile(path);
            if (newer.empty())
                rethrow_load_failure(path);
            throw_file_error(diagnostics::Code::CONFIG_NEWER, newer, path);
        }
    });
}

} // namespace

ConstConfigRcPtr create_config_from_file(const char* path) {
    return load(path, [&] { return library::Config::CreateFromFile(path); });
}

ConstConfigRcPtr create_config_from_env() {
    // Unset or empty means OpenColorIO's raw config.
    const char* path = std::getenv("OCIO");
    return load(path ? path : "", [] { return library::Config::CreateFromEnv(); });
}

ConfigRcPtr create_editable_copy(const ConstConfigRcPtr& config) {
    return guarded([&] { return without_processor_cache(copy_config(config)); });
}

void set_working_dir(const ConfigRcPtr& config, const char* folder) {
    config->setWorkingDir(folder);
}

const char* get_working_dir(const ConstConfigRcPtr& config) {
    return config->getWorkingDir();
}

} // namespace ocio
