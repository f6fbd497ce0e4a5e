#include "colorio/ocio/config.h"

#include "colorio/ocio/guarded.h"
#include "colorio/ocio/profile_version.h"

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

/// The reasons for a failed load in words that name the remedy, where one is known.
[[noreturn]] void throw_load_failure(const char* path, const Exception& error) {
    const std::string newer = describe_newer_profile(path);
    if (!newer.empty())
        throw Exception(newer.c_str());
    throw error;
}

} // namespace

ConfigRcPtr create_config() {
    ConfigRcPtr config = library::Config::Create();
    config->setMajorVersion(1);
    config->addSearchPath(".");
    return without_processor_cache(config);
}

ConstConfigRcPtr create_config_from_file(const char* path) {
    try {
        return guarded([&] { return without_processor_cache(library::Config::CreateFromFile(path)); });
    } catch (const Exception& error) {
        throw_load_failure(path, error);
    }
}

ConstConfigRcPtr create_config_from_env() {
    try {
        return guarded([] { return without_processor_cache(library::Config::CreateFromEnv()); });
    } catch (const Exception& error) {
        throw_load_failure(library::GetEnvVariable("OCIO"), error);
    }
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
