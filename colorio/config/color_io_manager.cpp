#include "colorio/color_io_manager.h"

#include <iterator>
#include <memory>

#include "colorio/color_io.h"
#include "colorio/color_io_constants.h"
#include "colorio/facade/color_io_log.h"
#include "colorio/facade/config_loads.h"
#include "colorio/facade/library_messages.h"
#include "colorio/facade/module_boundary.h"
#include "colorio/names/color_space_name_index.h"
#include "colorio/ocio/config.h"
#include "colorio/ocio/profile_version.h"
#include "host/event/event_ids.h"
#include "host/of/of_app.h"
#include "host/of/of_enum.h"
#include "host/of/of_object_factory.h"
#include "host/sys/sys_env.h"
#include "host/sys/sys_filesystem.h"

ColorIOManager::ColorIOManager(OfApp* app) : app(app) {
    linear_color_space_names.append(BUILTIN_LINEAR);
    linear_color_space_names.append("scene_linear");
    role_color_spaces.reserve(ROLE_COUNT);
    for (int role = 0; role < ROLE_COUNT; ++role)
        role_color_spaces.append(s_default_color_space_name);
}

ColorIOManager::ColorIOManager(const ColorIOManager&) = default;
ColorIOManager::ColorIOManager(ColorIOManager&&) noexcept = default;
ColorIOManager& ColorIOManager::operator=(const ColorIOManager&) = default;
ColorIOManager& ColorIOManager::operator=(ColorIOManager&&) noexcept = default;
ColorIOManager::~ColorIOManager() = default;

bool ColorIOManager::static_init(OfApp* app) {
    return at_boundary(false, [&] {
        follow_library_messages();
        if (!s_instance)
            s_instance = new ColorIOManager(app);
        return s_instance->init();
    });
}

ColorIOManager* ColorIOManager::get_instance() {
    return s_instance;
}

void ColorIOManager::destroy() {
    at_boundary([] { leave_library_messages(); });
    delete s_instance;
    s_instance = nullptr;
}

bool ColorIOManager::init() {
    return at_boundary(false, [this] { return start(); });
}

bool ColorIOManager::start() {
    if (!app) {
        publish_config();
        return true;
    }
    const ReloadScope reload(config_loads);
    create_enums();
    settle_role_color_spaces();
    const bool builtin_ok = init_default_tavelion_config();
    if (!builtin_ok)
        log_message(LOG_ERROR,
                    "Color Management: failed to create Tavelion built-in color space configuration.\n");
    const bool cdl_ok = init_default_CDL_tavelion_config();
    update_CDL_enums_and_lists();
    if (!cdl_ok)
        log_message(LOG_ERROR, "Color Management: failed to create Tavelion built-in CDL configuration.\n");
    select_config(false);
    return builtin_ok && cdl_ok;
}

void ColorIOManager::create_enums() {
    OfObjectFactory& factory = app->get_object_factory();
    struct Menu {
        OfEnum*& object;
        const char* name;
        bool has_families;
    };
    const Menu menus[] = {
        {color_space_enum, "color_space", true},
        {internal_color_space_enum, "internal_color_space", true},
        {color_picking_enum, "color_picking", true},
        {view_transform_enum, "view_transform", false},
        {color_decision_list_enum, "color_decision_list", false},
        {roles_enum, "roles_enum", false},
    };
    // All are made before any is used: other code expects all of them or none.
    OfEnum* made[std::size(menus)];
    for (std::size_t i = 0; i < std::size(menus); ++i) {
        made[i] = factory.add_enum(menus[i].name, NOT_FOUND);
        if (menus[i].has_families)
            made[i]->set_separator(FAMILY_SEPARATOR);
    }
    OfEnum& roles = *made[std::size(menus) - 1];
    for (int role = 0; role < ROLE_COUNT; ++role)
        roles.add_value(get_role_name(static_cast<Role>(role)), static_cast<unsigned int>(role));
    for (std::size_t i = 0; i < std::size(menus); ++i)
        menus[i].object = made[i];
    name_index.reset();
}

OCIO_NAMESPACE::ConstConfigRcPtr ColorIOManager::get_config() const {
    return config;
}

OCIO_NAMESPACE::ConstConfigRcPtr ColorIOManager::get_cdl_config() const {
    return cdl_config;
}

bool ColorIOManager::is_using_tavelion_config() const {
    return config && tavelion_config && config == tavelion_config;
}

bool ColorIOManager::app_uses_file_config() const {
    return app && app->get_use_color_space_file();
}

bool ColorIOManager::build_from_file(const CoreString& path) {
    if (!app)
        return false;
    forget_cached_files();
    config_loads->forget();
    const auto get_path = [](const CoreString& origin) {
        return std::string((origin == FROM_ENV ? sys_get_env(OCIO_VARIABLE) : origin).view());
    };
    const auto take_from = [&](const CoreString& origin, auto create) {
        file_config_loaded = false; // Stays false when anything but an invalid config fails.
        file_config_loaded = log_ocio_errors(LOG_ERROR, [&] {
            const ocio::ConstConfigRcPtr loaded = create();
            ocio::sanity_check(loaded, ocio::KnownViews::NOTHING, get_path(origin));
            config_loads->note_sound(loaded);
        });
        if (file_config_loaded) {
            file_config_path = origin;
            settle_default_color_space_name(app_uses_file_config());
        }
        return file_config_loaded;
    };
    bool loaded = false;
    if (SysFilesystem::file_exists(path) || ocio::is_library_config(path.get_data())) {
        file_config_path = path;
        loaded = take_from(path, [&] { return config_loads->from_file(path); });
    } else {
        if (!path.is_empty()) {
            log_message(LOG_WARNING, "Color Management: OCIO configuration file '", path, "' not found.\n");
            report_file(LOG_WARNING, diagnostics::Code::CONFIG_MISSING, path,
                        "OCIO config '" + std::string(path.view()) + "' not found");
            file_config_loaded = false;
        }
        const CoreString from_environment = sys_get_env(OCIO_VARIABLE);
        if (!from_environment.is_empty()) {
            log_message(LOG_WARNING, "Color Management: defaulting to configuration file '", from_environment,
                        "' from environment variable OCIO.\n");
            loaded = take_from(FROM_ENV, [this] { return config_loads->from_environment(); });
        }
    }
    settle_role_color_spaces();
    return loaded;
}

bool ColorIOManager::validate_ocio_config(const OCIO_NAMESPACE::ConstConfigRcPtr& config) {
    return config && log_config_errors([&] { ocio::sanity_check(config); });
}

bool ColorIOManager::validate_builtin_config() const {
    return tavelion_config && log_config_errors([this] {
               ocio::sanity_check(tavelion_config, ocio::KnownViews::SHOW_SPACES_OF_THEIR_NAMES);
           });
}

/// Checks a config once while it is not changed: the steps of a reload check it repeatedly.
bool ColorIOManager::check_config(const OCIO_NAMESPACE::ConstConfigRcPtr& config) const {
    if (config_loads && config_loads->is_sound(config))
        return true;
    const bool is_valid =
        config == tavelion_config ? validate_builtin_config() : validate_ocio_config(config);
    if (is_valid && config_loads)
        config_loads->note_sound(config);
    return is_valid;
}

void ColorIOManager::use_file_config(const bool& use) {
    at_boundary([&] { select_config(use); });
}

void ColorIOManager::select_config(bool use) {
    if (!app)
        return;
    const ReloadScope reload(config_loads);
    if (use) {
        const CoreString path =
            app->get_color_space_file_path(); // A copy: listeners may change the preference.
        const bool held = file_config_loaded && path == file_config_path;
        if (held) // and parsed again below
            begin_library_load();
        if (!held && !build_from_file(path)) {
            if (!file_config_path.is_empty())
                log_message(LOG_WARNING, "Color Management: OCIO configuration file '", file_config_path,
                            "' not found. Defaulting to Tavelion built-in configuration.\n");
            config = tavelion_config;
            check_config(config);
            return;
        }
        settle_default_color_space_name(use);
        config = get_file_config_or_builtin();
    } else {
        if (!tavelion_config_ready)
            init_default_tavelion_config();
        settle_default_color_space_name(false);
        config = tavelion_config;
    }
    check_config(config);
    if (!cdl_config_ready)
        init_default_CDL_tavelion_config();
    settle_role_color_spaces();
    publish_config();
}

void ColorIOManager::update_file_config_path() {
    at_boundary([this] { follow_file_config_path(); });
}

void ColorIOManager::follow_file_config_path() {
    if (!app)
        return;
    const ReloadScope reload(config_loads);
    if (!app_uses_file_config()) {
        settle_default_color_space_name(false);
        return;
    }
    if (build_from_file(CoreString(app->get_color_space_file_path()))) {
        config = get_file_config_or_builtin();
    } else {
        settle_default_color_space_name(false);
        config = tavelion_config;
        file_config.reset();
    }
    check_config(config);
    settle_role_color_spaces();
    announce_new_lists(update_enums_and_lists());
}

void ColorIOManager::publish_config() {
    const bool changed = update_enums_and_lists();
    update_CDL_enums_and_lists();
    announce_new_lists(changed);
}

void ColorIOManager::announce_new_lists(bool changed) {
    if (changed)
        raise_module_event(EVT_ID_COLORIO_MANAGER_LUT_LIST_CHANGED);
}

OCIO_NAMESPACE::ConfigRcPtr ColorIOManager::get_file_config_or_builtin() const {
    return file_config ? file_config : tavelion_config;
}
