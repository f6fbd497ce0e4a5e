#include "colorio/facade/config_loads.h"

#include <algorithm>

#include "colorio/color_io_constants.h"
#include "colorio/ocio/config.h"
#include "host/sys/sys_env.h"

ocio::ConstConfigRcPtr ConfigLoads::from_file(const CoreString& path) {
    return take("file " + std::string(path.view()),
                [&] { return ocio::create_config_from_file(path.get_data()); });
}

ocio::ConstConfigRcPtr ConfigLoads::from_environment() {
    return take("environment " + std::string(sys_get_env(OCIO_VARIABLE).view()),
                [] { return ocio::create_config_from_env(); });
}

bool ConfigLoads::is_sound(const ocio::ConstConfigRcPtr& config) const {
    return std::find(sound.begin(), sound.end(), config) != sound.end();
}

void ConfigLoads::forget_sound(const ocio::ConstConfigRcPtr& config) {
    sound.erase(std::remove(sound.begin(), sound.end(), config), sound.end());
}

ocio::ConstConfigRcPtr ConfigLoads::take(const std::string& key,
                                         const std::function<ocio::ConstConfigRcPtr()>& load) {
    const auto known = outcomes.find(key);
    if (known != outcomes.end() && known->second.failure)
        std::rethrow_exception(known->second.failure);
    if (known != outcomes.end())
        return known->second.config;
    try {
        return outcomes.emplace(key, Outcome{load(), {}}).first->second.config;
    } catch (const ocio::Exception&) {
        outcomes.emplace(key, Outcome{{}, std::current_exception()});
        throw;
    }
}
