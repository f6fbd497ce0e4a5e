#pragma once

#include "colorio/color_io_export.h"
#include "host/core/core_string.h"
#include "host/core/core_vector.h"
#include "host/event/event_object.h"

class OfApp;
class ParserEntry;

/// The module's entry point for the host: start-up, the events it handles and raises, and a flat interface to
/// the manager and the format detector. Main thread only. Nothing is thrown: failures, including a shortage
/// of memory, are logged and reported as false, an empty string or NOT_FOUND. The static operations return
/// the same before `init` has started the manager. Only copying throws when memory is short.
class COLORIO_API ColorIO : public EventObject {
public:
    /// First entry of "internal_color_space", which stands for the role scene_linear: "Use scene_linear" once
    /// `init` started the manager, empty before.
    static CoreString s_default_scene_linear;
    /// First entry of "color_picking", which stands for the role color_picking: "Use Default" once `init`
    /// started the manager, empty before.
    static CoreString s_default_color_picking;
    static ColorIO* s_singleton; ///< Null until `get_instance` or `init`; never deleted.

    ColorIO(const ColorIO&);
    ColorIO(ColorIO&&) noexcept;
    ColorIO& operator=(const ColorIO&);
    ColorIO& operator=(ColorIO&&) noexcept;
    ~ColorIO() override;

    const CoreClassInfo& get_class_info() const override;
    static const CoreClassInfo& class_info();
    /// Deletes a ColorIO, or an array of them; true.
    static bool ___class_destructor__(void* object, const bool& array);

    /// Starts the manager, connects to the application's events and starts the format detector. `app` may be
    /// null; it is not owned and must outlive the manager and the detector.
    static bool init(OfApp* app);
    /// Destroys the manager only; the detector and this object stay.
    static void destroy();
    /// Created on first use; null when memory runs out.
    static ColorIO* get_instance();

    /// Words that mark a color-space attribute in host data; `index` must be below the count.
    const CoreString& get_color_space_tag(unsigned int index) const { return color_space_tags[index]; }
    /// Count of these words.
    unsigned int get_color_space_tag_count() const { return color_space_tags.get_count(); }

    /// Loads the preferences of the manager, then those of the detector, from the group of `entry` (may be
    /// null). True when the manager or the detector exists, even if either of them fails.
    static bool load_config(ParserEntry* entry);
    /// Saves the preferences of the manager, which resets `entry`, then those of the detector. Returns the
    /// same as `load_config`.
    static bool save_config(ParserEntry* entry);

    // The operations of ColorIOManager with the same names; the contracts are there. The references stay
    // valid until the manager publishes a config again or is destroyed.

    /// Whether `name` is a label of "color_space": exact, with its family.
    static bool color_space_exists(CoreBasicString name);
    /// Whether `name` is a label of "view_transform": "DISPLAY.VIEW", exact.
    static bool display_view_exists(CoreBasicString name);
    /// Position in "color_space", ignoring case and family; NOT_FOUND when no label matches.
    static unsigned int get_color_space_index(const CoreString& name);
    /// Label at a position of "color_space"; empty past the end.
    static CoreString get_color_space_name(unsigned int index);
    /// Published color spaces, without families.
    static const CoreBasicArray<CoreString>& get_color_space_names();
    /// Label of "color_space" for a name without a family; `name` itself when no label matches.
    static CoreString get_full_color_space_name(const CoreString& name);
    /// Published views: "DISPLAY.VIEW".
    static const CoreBasicArray<CoreString>& get_display_view_names();
    /// Splits a published "DISPLAY.VIEW". False when it is not published; the outputs are then unchanged.
    static bool get_display_view(const CoreString& display_view, CoreString& display, CoreString& view);
    /// Default view of the default display as "DISPLAY.VIEW"; empty when the config has none.
    static CoreString get_default_display_view();
    /// The same in two parts; false when either is empty.
    static bool get_default_display_view(CoreString& display, CoreString& view);
    /// Label of the color space that a view shows; `display_view` itself when the view is unknown.
    static CoreString get_color_space_from_display_view(CoreBasicString display_view);
    /// Color space of a ColorIOManager::Role, without its family; `role` must be 0 to 7.
    static const CoreString& get_role_color_space(int role);
    /// Color space of the role scene_linear, without its family.
    static const CoreString& get_ROLE_SCENE_LINEAR();
    /// Default color space, without a manager too.
    static CoreString get_default_color_space_name();
    /// Color space of the role color_picking.
    static const CoreString& get_default_color_picker_space_name();
    /// Position of exactly that label in "color_decision_list"; NOT_FOUND when there is none.
    static unsigned int get_CDL_index(const CoreString& name);
    /// Label at a position of "color_decision_list"; empty past the end.
    static CoreString get_CDL_name(unsigned int index);
    /// "No CDL", without a manager too.
    static CoreString get_default_CDL_name();
    /// Whether an earlier version stored `name` for a built-in color space: "linear", or "sRGB" or "Cineon"
    /// with any family or none.
    static bool is_legacy_builtin_color_space(CoreBasicString name);
    /// Current label of such a name; empty for any other.
    static CoreString convert_legacy_builtin_color_space(CoreBasicString name);
    /// View for a display color space stored in the preferences; empty when there is none.
    static CoreString convert_legacy_preferences_display_color_space_to_display_view(CoreBasicString name);
    /// Published view for a display color space stored by a widget; empty when there is none, and unless the
    /// built-in config is active.
    static CoreString convert_legacy_widget_display_color_space_to_display_view(CoreBasicString name);
    /// Color space of files with that extension (without the '.', any case); empty without the detector.
    CoreString get_default_color_space_from_ext(const CoreString& extension);

    /// Converts `size1` x `size2` pixels of `size3` interleaved channels in place from `name2` to `name1`.
    /// False when the names are equal, the buffer is empty, the conversion is unknown, or OpenColorIO refuses
    /// the pixels (fewer than three channels).
    static bool convert_buffer(float* data, const unsigned int& size1, unsigned int size2,
                               const unsigned int& size3, const CoreString& name1, const CoreString& name2);
    /// The same for one gapless plane per channel; `a` may be null.
    static bool convert_buffers(float* r, float* g, float* b, float* a, const unsigned int& width,
                                unsigned int height, const CoreString& name1, const CoreString& name2);
    /// The same for CDLs: undoes the CDL `name2` and applies the CDL `name1`.
    static bool convert_CDL_buffers(float* r, float* g, float* b, float* a, const unsigned int& width,
                                    unsigned int height, const CoreString& name1, const CoreString& name2);

    // Handlers of the application's and the manager's events. Those for the application's need an OfApp as
    // the sender; without a manager or a detector they do nothing.

    /// Makes the file config or the built-in one active, as the application asks.
    void on_use_ocio_config_file_changed(AppBase& sender, const EventInfo& info, OfObject* object);
    /// Reloads the OCIO config from the application's path.
    void on_config_file_path_changed(AppBase& sender, const EventInfo& info, OfObject* object);
    /// Reloads the CDL library from the application's path.
    void on_cdl_library_path_changed(AppBase& sender, const EventInfo& info, OfObject* object);
    /// Updates the default color space from the application's choice.
    void on_default_color_space_changed(AppBase& sender, const EventInfo& info, OfObject* object);
    /// Has the detector check its color spaces against the new config.
    void on_ocio_config_changed(AppBase& sender, const EventInfo& info, OfObject* object);
    /// Makes the mapping file's table or the built-in one active, as the application asks.
    void on_color_space_by_extensions_config_file_changed(AppBase& sender, const EventInfo& info,
                                                          OfObject* object);

private:
    ColorIO();
    void init_color_space_tags();
    void connect_manager_events(OfApp& app);

    CoreVector<CoreString> color_space_tags;
};
