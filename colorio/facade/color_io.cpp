#include "colorio/color_io.h"

#include <new>

#include "colorio/color_io_auto_detection.h"
#include "colorio/color_io_constants.h"
#include "colorio/color_io_manager.h"
#include "colorio/facade/module_boundary.h"
#include "colorio/ocio/types.h"
#include "host/event/event_ids.h"
#include "host/of/of_app.h"

ColorIO::ColorIO() {
    init_color_space_tags();
}
ColorIO::ColorIO(const ColorIO&) = default;
ColorIO::ColorIO(ColorIO&&) noexcept = default;
ColorIO& ColorIO::operator=(const ColorIO&) = default;
ColorIO& ColorIO::operator=(ColorIO&&) noexcept = default;
ColorIO::~ColorIO() = default;

void ColorIO::init_color_space_tags() {
    for (const char* tag : {"ColorSpace", "colorspace", "color_space"})
        color_space_tags.append(tag);
}

const CoreClassInfo& ColorIO::class_info() {
    const CoreClassInfo& base = EventObject::class_info();
    return *at_boundary(&base, [&] {
        static const CoreClassInfo& info =
            CoreClassInfo::new_class("ColorIO", &ColorIO::___class_destructor__, base, nullptr);
        return &info;
    });
}

const CoreClassInfo& ColorIO::get_class_info() const {
    return class_info();
}

bool ColorIO::___class_destructor__(void* object, const bool& array) {
    if (array)
        delete[] static_cast<ColorIO*>(object);
    else
        delete static_cast<ColorIO*>(object);
    return true;
}

ColorIO* ColorIO::get_instance() {
    return at_boundary(static_cast<ColorIO*>(nullptr), [] {
        if (!s_singleton) {
            class_info(); // Registered here, where a failure can still be reported.
            s_singleton = new ColorIO;
        }
        return s_singleton;
    });
}

namespace {

/// The facade as a receiver of events; throws when it cannot be made.
ColorIO& require_instance() {
    if (ColorIO* facade = ColorIO::get_instance())
        return *facade;
    throw std::bad_alloc();
}

} // namespace

bool ColorIO::init(OfApp* app) {
    const bool manager_started = ColorIOManager::static_init(app);
    return at_boundary(false, [&] {
        if (manager_started) {
            if (app)
                require_instance().connect_manager_events(*app);
            s_default_scene_linear = CoreString("Use ") + ocio::ROLE_SCENE_LINEAR;
            s_default_color_picking = "Use Default";
        }
        if (!ColorIOAutoDetection::static_init(app))
            return manager_started;
        if (app)
            require_instance().connect(*app, EVT_ID_APPLICATION_COLOR_SPACE_BY_EXT_FILE_PATH_CHANGED,
                                       &ColorIO::on_color_space_by_extensions_config_file_changed, nullptr);
        return true;
    });
}

void ColorIO::connect_manager_events(OfApp& app) {
    connect(app, EVT_ID_APPLICATION_COLOR_SPACE_FILE_USE_CHANGED, &ColorIO::on_use_ocio_config_file_changed,
            nullptr);
    connect(app, EVT_ID_APPLICATION_COLOR_SPACE_FILE_PATH_CHANGED, &ColorIO::on_config_file_path_changed,
            nullptr);
    connect(app, EVT_ID_APPLICATION_CDL_FILE_PATH_CHANGED, &ColorIO::on_cdl_library_path_changed, nullptr);
    connect(app, EVT_ID_APPLICATION_COLOR_SPACE_NAME_CHANGED, &ColorIO::on_default_color_space_changed,
            nullptr);
    connect(*this, EVT_ID_ROLE_SCENE_LINEAR_CHANGED, &ColorIO::on_default_color_space_changed, nullptr);
    connect(*this, EVT_ID_COLORIO_MANAGER_LUT_LIST_CHANGED, &ColorIO::on_ocio_config_changed, nullptr);
}

void ColorIO::destroy() {
    ColorIOManager::destroy();
}

namespace {

/// Runs `action` on the manager and then on the detector, where they exist. True when either exists.
template <class Action>
bool for_manager_and_detector(Action action) {
    ColorIOManager* manager = ColorIOManager::get_instance();
    if (manager)
        action(*manager);
    ColorIOAutoDetection* detector = ColorIOAutoDetection::get_instance();
    if (detector)
        action(*detector);
    return detector || manager;
}

/// Runs `action` on the manager for an event, unless it was destroyed, which does not remove the connections.
template <class Action>
void have_manager_follow(Action action) {
    if (ColorIOManager* manager = ColorIOManager::get_instance())
        at_boundary([&] { action(*manager); });
}

} // namespace

bool ColorIO::load_config(ParserEntry* entry) {
    return for_manager_and_detector([entry](auto& part) { part.load_config(entry); });
}

bool ColorIO::save_config(ParserEntry* entry) {
    return for_manager_and_detector([entry](auto& part) { part.save_config(entry); });
}

void ColorIO::on_use_ocio_config_file_changed(AppBase& sender, const EventInfo&, OfObject*) {
    have_manager_follow([&](ColorIOManager& manager) {
        manager.use_file_config(static_cast<OfApp&>(sender).get_use_color_space_file());
    });
}

void ColorIO::on_config_file_path_changed(AppBase&, const EventInfo&, OfObject*) {
    have_manager_follow([](ColorIOManager& manager) { manager.update_file_config_path(); });
}

void ColorIO::on_cdl_library_path_changed(AppBase&, const EventInfo&, OfObject*) {
    have_manager_follow([](ColorIOManager& manager) { manager.update_file_cdl_library_path(); });
}

void ColorIO::on_default_color_space_changed(AppBase&, const EventInfo&, OfObject*) {
    have_manager_follow([](ColorIOManager& manager) { manager.update_default_color_space_name(); });
}

void ColorIO::on_ocio_config_changed(AppBase&, const EventInfo&, OfObject*) {
    if (ColorIOAutoDetection* detector = ColorIOAutoDetection::get_instance())
        detector->check_mappings();
}

void ColorIO::on_color_space_by_extensions_config_file_changed(AppBase& sender, const EventInfo&, OfObject*) {
    if (ColorIOAutoDetection* detector = ColorIOAutoDetection::get_instance())
        at_boundary([&] {
            detector->use_file_config(static_cast<OfApp&>(sender).get_use_color_space_by_extension_file() !=
                                      0);
        });
}
