#pragma once

#include "colorio/color_io_export.h"
#include "host/core/core_string.h"
#include "host/core/core_vector.h"
#include "host/event/event_object.h"

class OfApp;
class ParserEntry;

/// The module's entry point for the host: start-up, the events it follows and raises, and a flat interface to
/// the manager and the format detector. Nothing is thrown: failures, memory that ran short included, are
/// logged and answered with false, an empty string or NOT_FOUND, and so are the static operations without a
/// manager
/// (`init`). Only copying throws when memory is short.
class COLORIO_API ColorIO : public EventObject {
public:
    static CoreString s_default_scene_linear;  ///< "Use scene_linear" once `init` started the manager.
    static CoreString s_default_color_picking; ///< "Use Default" once `init` started the manager.
    static ColorIO* s_singleton;

    ColorIO(const ColorIO&);
    ColorIO(ColorIO&&) noexcept;
    ColorIO& operator=(const ColorIO&);
    ColorIO& operator=(ColorIO&&) noexcept;
    ~ColorIO() override;

    const CoreClassInfo& get_class_info() const override;
    static const CoreClassInfo& class_info();
    static bool ___class_destructor__(void* object, const bool& array);

    /// Starts the manager, follows the application's events, starts the format detector. `app` may be null.
    static bool init(OfApp* app);
    /// Destroys the manager, and nothing else.
    static void destroy();
    /// Made on first use; null when memory runs out.
    static ColorIO* get_instance();

    /// Words that mark a color-space attribute in host data.
    const CoreString& get_color_space_tag(unsigned int index) const { return color_space_tags[index]; }
    unsigned int get_color_space_tag_count() const { return color_space_tags.get_count(); }

    static bool load_config(ParserEntry* entry);
    static bool save_config(ParserEntry* entry);

    static bool color_space_exists(CoreBasicString name);
    static bool display_view_exists(CoreBasicString name);
    /// NOT_FOUND without a manager.
    static unsigned int get_color_space_index(const CoreString& name);
    static CoreString get_color_space_name(unsigned int index);
    static const CoreBasicArray<CoreString>& get_color_space_names();
    static CoreString get_full_color_space_name(const CoreString& name);
    static const CoreBasicArray<CoreString>& get_display_view_names();
    static bool get_display_view(const CoreString& display_view, CoreString& display, CoreString& view);
    static CoreString get_default_display_view();
    static bool get_default_display_view(CoreString& display, CoreString& view);
    static CoreString get_color_space_from_display_view(CoreBasicString display_view);
    static const CoreString& get_role_color_space(int role);
    static const CoreString& get_ROLE_SCENE_LINEAR();
    static CoreString get_default_color_space_name();
    static const CoreString& get_default_color_picker_space_name();
    static unsigned int get_CDL_index(const CoreString& name);
    static CoreString get_CDL_name(unsigned int index);
    static CoreString get_default_CDL_name();
    static bool is_legacy_builtin_color_space(CoreBasicString name);
    static CoreString convert_legacy_builtin_color_space(CoreBasicString name);
    static CoreString convert_legacy_preferences_display_color_space_to_display_view(CoreBasicString name);
    static CoreString convert_legacy_widget_display_color_space_to_display_view(CoreBasicString name);
    /// Color space that files of that extension are in. Needs the detector.
    CoreString get_default_color_space_from_ext(const CoreString& extension);

    /// Converts `size1` x `size2` pixels of `size3` channels in place from `name2` to `name1`. False when the
    /// names are equal, the buffer is empty, the conversion is unknown, or OpenColorIO refuses the pixels, as
    /// it does those of one or two channels.
    static bool convert_buffer(float* data, const unsigned int& size1, unsigned int size2,
                               const unsigned int& size3, const CoreString& name1, const CoreString& name2);
    /// The same for planes; `a` may be null.
    static bool convert_buffers(float* r, float* g, float* b, float* a, const unsigned int& width,
                                unsigned int height, const CoreString& name1, const CoreString& name2);
    /// Undoes the CDL `name2` and applies the CDL `name1`.
    static bool convert_CDL_buffers(float* r, float* g, float* b, float* a, const unsigned int& width,
                                    unsigned int height, const CoreString& name1, const CoreString& name2);

    void on_use_ocio_config_file_changed(AppBase& sender, const EventInfo& info, OfObject* object);
    void on_config_file_path_changed(AppBase& sender, const EventInfo& info, OfObject* object);
    void on_cdl_library_path_changed(AppBase& sender, const EventInfo& info, OfObject* object);
    void on_default_color_space_changed(AppBase& sender, const EventInfo& info, OfObject* object);
    void on_ocio_config_changed(AppBase& sender, const EventInfo& info, OfObject* object);
    void on_color_space_by_extensions_config_file_changed(AppBase& sender, const EventInfo& info,
                                                          OfObject* object);

private:
    ColorIO();
    void init_color_space_tags();
    void connect_manager_events(OfApp& app);

    CoreVector<CoreString> color_space_tags;
};
