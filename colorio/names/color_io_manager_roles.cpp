#include <optional>
#include <utility>

#include "colorio/color_io.h"
#include "colorio/color_io_constants.h"
#include "colorio/color_io_manager.h"
#include "colorio/facade/color_io_log.h"
#include "colorio/facade/config_loads.h"
#include "colorio/facade/make_room.h"
#include "colorio/facade/module_boundary.h"
#include "colorio/ocio/color_space.h"
#include "colorio/ocio/config.h"
#include "host/event/event_ids.h"
#include "host/of/of_app.h"
#include "host/of/of_enum.h"
#include "host/sys/sys_env.h"
#include "host/sys/sys_filesystem.h"

namespace {

/// Name of a color space without a leading family.
CoreString get_bare_name(const ocio::ConstColorSpaceRcPtr& space) {
    return CoreString::after_first(ocio::get_name(space), ColorIOManager::FAMILY_SEPARATOR);
}

/// Config of the environment variable OCIO; null when the variable is not set or names one without color
/// spaces.
ocio::ConstConfigRcPtr get_usable_config_from_env(ConfigLoads& loads) {
    if (sys_get_env(OCIO_VARIABLE).is_empty())
        return {};
    ocio::ConstConfigRcPtr config = loads.from_environment();
    return config && ocio::get_num_color_spaces(config) > 0 ? config : ocio::ConstConfigRcPtr();
}

ocio::ColorSpaceRcPtr make_linear_color_space(const CoreString& name, const char* family) {
    ocio::ColorSpaceRcPtr space = ocio::create_color_space();
    ocio::set_name(space, name.get_data());
    ocio::set_family(space, family);
    ocio::set_description(space, "Scene-linear, high dynamic range. Used for rendering and compositing.");
    ocio::set_bit_depth(space, ocio::BIT_DEPTH_F32);
    ocio::set_allocation(space, ocio::ALLOCATION_LG2);
    const float variables[] = {-15.0f, 6.0f};
    ocio::set_allocation_vars(space, 2, variables);
    return space;
}

/// First color space of `config`, in its order, with one of the names `candidates`; empty when there is none.
CoreString find_candidate(const ocio::ConstConfigRcPtr& config, const CoreVector<CoreString>& candidates) {
    const int count = ocio::get_num_color_spaces(config);
    for (int i = 0; i < count; ++i) {
        const CoreString name = ocio::get_color_space_name_by_index(config, i);
        for (const CoreString& candidate : candidates)
            if (name == candidate)
                return name;
    }
    return CoreString();
}

} // namespace

/// The config in which the roles are looked up: null when no file config is used or none could be loaded;
/// then `failure` is OpenColorIO's error, if there is one.
struct ColorIOManager::ProbeConfig {
    ocio::ConstConfigRcPtr config;
    std::optional<ocio::Error> failure;
};

const char* ColorIOManager::get_role_name(const Role& role) {
    const char* const names[ROLE_COUNT] = {
        ocio::ROLE_COLOR_PICKING, ocio::ROLE_COLOR_TIMING,  ocio::ROLE_COMPOSITING_LOG,
        ocio::ROLE_DATA,          ocio::ROLE_DEFAULT,       ocio::ROLE_MATTE_PAINT,
        ocio::ROLE_REFERENCE,     ocio::ROLE_TEXTURE_PAINT,
    };
    return role >= 0 && role < ROLE_COUNT ? names[role] : "ROLE_UNKNOWN";
}

const CoreString& ColorIOManager::get_role_color_space(int role) const {
    return role_color_spaces[static_cast<unsigned int>(role)];
}

const CoreString& ColorIOManager::get_default_color_picking_space_name() const {
    return get_role_color_space(COLOR_PICKING);
}

ColorIOManager::ProbeConfig ColorIOManager::load_probe_config() const {
    ProbeConfig probe;
    if (!app_uses_file_config())
        return probe;
    try {
        const CoreString& path = app->get_color_space_file_path();
        probe.config = SysFilesystem::file_exists(path) ? config_loads->from_file(path)
                                                        : get_usable_config_from_env(*config_loads);
    } catch (const ocio::Exception& exception) {
        probe.failure.emplace(ocio::get_cause(exception), exception.what());
    }
    return probe;
}

void ColorIOManager::settle_role_color_spaces() {
    if (!roles_enum)
        return;
    const ProbeConfig probe = load_probe_config();
    for (unsigned int role = 0; role < roles_enum->get_value_count(); ++role)
        settle_role_color_space(static_cast<int>(role), probe);
}

void ColorIOManager::set_role_color_space(int role) {
    at_boundary([&] {
        const ReloadScope reload(config_loads);
        const ProbeConfig probe = load_probe_config();
        settle_role_color_space(role, probe);
        if (probe.failure)
            report_exception(LOG_WARNING, *probe.failure);
    });
}

void ColorIOManager::settle_role_color_space(int role, const ProbeConfig& probe) {
    if (role < 0 || static_cast<unsigned int>(role) >= role_color_spaces.get_count())
        return;
    CoreString& name = role_color_spaces[static_cast<unsigned int>(role)];
    if (probe.failure)
        log_message(LOG_WARNING, "OCIO exception: ", probe.failure->what(), "\n");
    if (probe.config) {
        ocio::ConstColorSpaceRcPtr space =
            ocio::get_color_space(probe.config, get_role_name(static_cast<Role>(role)));
        if (!space && role == COLOR_PICKING)
            space = ocio::get_color_space(probe.config, BUILTIN_SRGB.data);
        name = space ? get_bare_name(space) : s_default_color_space_name;
        return;
    }
    const bool has_srgb =
        role == COLOR_PICKING && config && bool(ocio::get_color_space(config, BUILTIN_SRGB.data));
    name = has_srgb ? s_default_color_picking_space_name : s_default_color_space_name;
}

void ColorIOManager::set_default_color_space_name(bool reload) {
    at_boundary([&] { settle_default_color_space_name(reload, Reload::ADOPT); });
}

/// `how` decides whether a file config that fails its check on reload is used nevertheless.
void ColorIOManager::settle_default_color_space_name(bool reload, Reload how) {
    const ReloadScope scope(config_loads);
    if (reload && file_config_loaded)
        settle_scene_linear_of_file_config(how);
    else
        settle_scene_linear_of_builtin_config();
    raise_module_event(EVT_ID_ROLE_SCENE_LINEAR_CHANGED);
}

void ColorIOManager::settle_scene_linear_of_file_config(Reload how) {
    CoreString scene_linear;
    bool adopted = false;
    log_ocio_errors(LOG_WARNING, [&] {
        ocio::ConstConfigRcPtr loaded;
        if (file_config_path == FROM_ENV)
            loaded = get_usable_config_from_env(*config_loads);
        else if (app)
            loaded = config_loads->from_file(app->get_color_space_file_path());
        if (!loaded || (how == Reload::ADOPT_IF_VALID && !check_config(loaded)))
            return;
        file_config = ocio::create_editable_copy(loaded);
        if (config_loads->is_sound(loaded))
            config_loads->note_sound(file_config);
        adopted = true;
        const ocio::ConstColorSpaceRcPtr space = ocio::get_color_space(loaded, ocio::ROLE_SCENE_LINEAR);
        scene_linear =
            space ? CoreString(ocio::get_name(space)) : find_candidate(file_config, linear_color_space_names);
    });
    if (!file_config) {
        settle_scene_linear_of_builtin_config();
        return;
    }
    if (!adopted && how == Reload::ADOPT_IF_VALID)
        return; // The current config stays, with its scene-linear color space.
    if (scene_linear.is_empty()) {
        log_message(LOG_INFO,
                    "Color Management: no default 'linear' color space has been found, creating one.\n");
        scene_linear = linear_color_space_names[0];
        config_loads->forget_sound(file_config);
        log_ocio_errors(LOG_WARNING, [&] {
            ocio::add_color_space(file_config, make_linear_color_space(scene_linear, ""));
        });
    }
    ROLE_SCENE_LINEAR = scene_linear;
    check_config(file_config);
}

void ColorIOManager::settle_scene_linear_of_builtin_config() {
    const CoreString& name = linear_color_space_names[0];
    if (tavelion_config && !ocio::get_color_space(tavelion_config, name.get_data())) {
        ColorSpaceDef record{
            name, "", "", "", ocio::BIT_DEPTH_F32, ocio::ALLOCATION_LG2, {-15.0f, 6.0f, 0.0f}, true};
        config_loads->forget_sound(tavelion_config);
        // The color space comes last: while it is missing, everything before is done again.
        ocio::add_display(tavelion_config, BUILTIN_FAMILY.data, name.get_data(), name.get_data(), "");
        make_room(tavelion_color_spaces);
        ocio::add_color_space(tavelion_config, make_linear_color_space(name, BUILTIN_FAMILY.data));
        tavelion_color_spaces.append(std::move(record));
        check_config(tavelion_config);
    }
    ROLE_SCENE_LINEAR = name;
}

void ColorIOManager::update_default_color_space_name() {
    if (!app)
        return;
    at_boundary([this] {
        const CoreString& wanted = app->get_default_color_space_name();
        const bool exists = config && ocio::get_color_space(config, wanted.get_data());
        s_default_color_space_name = exists ? wanted : ROLE_SCENE_LINEAR;
    });
}
