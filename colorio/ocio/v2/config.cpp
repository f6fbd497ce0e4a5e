#include "colorio/ocio/config.h"

#include "colorio/ocio/guarded.h"
#include "colorio/ocio/profile_version.h"
#include "colorio/ocio/yaml_size.h"

namespace ocio {

namespace {

/// Turns the library's processor cache off: with it on, a processor would be handed out again after its files
/// changed. The handles given here were made by the caller, who still holds them alone.
ConfigRcPtr without_processor_cache(const ConfigRcPtr& config) {
    config->setProcessorCacheFlags(library::PROCESSOR_CACHE_OFF);
    return config;
}

ConstConfigRcPtr without_processor_cache(const ConstConfigRcPtr& config) {
    return without_processor_cache(std::const_pointer_cast<library::Config>(config));
}

/// Reads the configuration at `path` with the library's operation `read`. A failure is told in words that
/// name the remedy, where one is known.
template <typename Read>
ConstConfigRcPtr load(const std::string& path, Read&& read) {
    return guarded([&] {
        require_bounded_yaml(path);
        try {
            return without_processor_cache(read());
        } catch (const std::exception&) {
            const std::string newer = describe_newer_profile(path);
            if (newer.empty())
                throw;
            throw Exception(newer.c_str());
        }
    });
}

} // namespace

ConfigRcPtr create_config() {
    ConfigRcPtr config = library::Config::Create();
    config->setMajorVersion(1);
    config->addSearchPath(".");
    return without_processor_cache(config);
}

ConstConfigRcPtr create_config_from_file(const char* path) {
    return load(path, [&] { return library::Config::CreateFromFile(path); });
}

ConstConfigRcPtr create_config_from_env() {
    // The library's own reading of the environment decides; empty stands for its raw configuration.
    const std::string path = library::GetEnvVariable("OCIO");
    return load(path, [] { return library::Config::CreateFromEnv(); });
}

ConfigRcPtr create_editable_copy(const ConstConfigRcPtr& config) {
    return guarded([&] { return without_processor_cache(config->createEditableCopy()); });
}

void set_working_dir(const ConfigRcPtr& config, const char* folder) {
    config->setWorkingDir(folder);
}

const char* get_working_dir(const ConstConfigRcPtr& config) {
    return config->getWorkingDir();
}

unsigned int get_major_version(const ConstConfigRcPtr& config) {
    return config->getMajorVersion();
}

} // namespace ocio
