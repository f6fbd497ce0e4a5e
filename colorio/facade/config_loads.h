#pragma once

#include <exception>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "colorio/ocio/types.h"
#include "host/core/core_string.h"

/// The configs parsed and checked during one reload: its steps (the check, the roles, the editable copy)
/// share one parse and so use the same content of the file, and share one check of what they do not change.
/// Failures are kept too, and thrown again for each step.
class ConfigLoads {
public:
    /// Throws what OpenColorIO throws.
    ocio::ConstConfigRcPtr from_file(const CoreString& path);
    /// The config named by the environment variable OCIO; OpenColorIO's raw config when it is not set.
    ocio::ConstConfigRcPtr from_environment();
    void forget() { outcomes.clear(); }

    /// True for a config that passed its check and was not changed since.
    bool is_sound(const ocio::ConstConfigRcPtr& config) const;
    void note_sound(ocio::ConstConfigRcPtr config) { sound.push_back(std::move(config)); }
    /// To be called before such a config is changed.
    void forget_sound(const ocio::ConstConfigRcPtr& config);

private:
    struct Outcome {
        ocio::ConstConfigRcPtr config;
        std::exception_ptr failure; ///< why `config` is null, otherwise null
    };

    ocio::ConstConfigRcPtr take(const std::string& key, const std::function<ocio::ConstConfigRcPtr()>& load);

    std::map<std::string, Outcome> outcomes;
    std::vector<ocio::ConstConfigRcPtr> sound;
};

/// `loads` is set during the lifetime of the outermost of these.
class ReloadScope {
public:
    explicit ReloadScope(std::shared_ptr<ConfigLoads>& loads) : loads(loads), outermost(!loads) {
        if (outermost)
            loads = std::make_shared<ConfigLoads>();
    }
    ~ReloadScope() {
        if (outermost)
            loads.reset();
    }
    ReloadScope(const ReloadScope&) = delete;
    ReloadScope& operator=(const ReloadScope&) = delete;

private:
    std::shared_ptr<ConfigLoads>& loads;
    const bool outermost;
};
