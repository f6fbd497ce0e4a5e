#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>

#include "colorio/ocio/types.h"
#include "host/core/core_string.h"

/// The configs that one reload has parsed: its steps (the check, the roles, the editable copy) share one
/// parse and so see one state of the file. Failures are kept too, and thrown again for each step that asks.
class ConfigLoads {
public:
    /// Throws what the library throws.
    ocio::ConstConfigRcPtr from_file(const CoreString& path);
    /// The config that the environment variable OCIO names; the library's raw one where it is not set.
    ocio::ConstConfigRcPtr from_environment();
    void forget() { outcomes.clear(); }

private:
    struct Outcome {
        ocio::ConstConfigRcPtr config;
        std::string error; ///< OpenColorIO's message when `config` is null, otherwise empty
    };

    ocio::ConstConfigRcPtr take(const std::string& key, const std::function<ocio::ConstConfigRcPtr()>& load);

    std::map<std::string, Outcome> outcomes;
};

/// While the outermost of these lives, `loads` holds what was parsed.
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
