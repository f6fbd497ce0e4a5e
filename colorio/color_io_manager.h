#pragma once

#include <memory>

#include <OpenColorIO/OpenColorTypes.h>

#include "colorio/color_io_export.h"
#include "host/core/core_string.h"
#include "host/core/core_vector.h"

class AddedCDLs;
class CDLFileReader;
class ColorSpaceNameIndex;
class ConfigLoads;
class OfApp;
class OfEnum;
class ParserEntry;
class ParserGroup;
class PublishedSpaces;
class PublishedViews;

/// The process-wide owner of the configs: the built-in one, the one from a file or the environment, the one
/// for the CDLs, and the names published from the active one.
/// Main thread only. No exception leaves it; failures, including a shortage of memory and exceptions of the
/// host, are logged and reported as false, an empty string or NOT_FOUND. Only constructing and copying throw
/// when memory is short.
class COLORIO_API ColorIOManager {
public:
    /// One custom color space of the built-in config.
    struct ColorSpaceDef {
        CoreString name;          ///< Color-space name, and the view's name on the built-in display.
        CoreString lut_file;      ///< LUT path; may be empty.
        CoreString cdl_file;      ///< Path of a .cc, .ccc or .cdl file; may be empty.
        CoreString cccid;         ///< `id` of the color correction; used only for the extension "ccc".
        unsigned int bit_depth;   ///< BitDepth of OpenColorIO.
        unsigned int allocation;  ///< Allocation of OpenColorIO.
        float allocation_vars[3]; ///< Minimum, maximum, and for lg2 the linear offset.
        bool is_builtin;          ///< Made by the module itself.
    };

    /// One color decision list (ASC CDL).
    struct ColorDecisionListDef {
        CoreString name;  ///< Also the color space's name in the CDL config and the menu label.
        CoreString file;  ///< CDL file it came from; empty when the values below are given directly.
        CoreString cccid; ///< `id` of the color correction in a collection file.
        float slope[3];   ///< Red, green, blue; neutral: 1.
        float offset[3];  ///< Neutral: 0.
        float power[3];   ///< Above 0; neutral: 1.
        float saturation; ///< Neutral: 1.
        bool is_builtin;  ///< Never added as a custom CDL.
    };

    /// The roles of "roles_enum", in its order; scene_linear is separate, see `get_ROLE_SCENE_LINEAR`.
    enum Role : int {
        COLOR_PICKING,
        COLOR_TIMING,
        COMPOSITING_LOG,
        DATA,
        DEFAULT,
        MATTE_PAINT,
        REFERENCE,
        TEXTURE_PAINT,
        ROLE_COUNT
    };

    static const CoreStringView BUILTIN_FAMILY; ///< "Tavelion": family and display of the built-in config.
    static const CoreStringView BUILTIN_SRGB;   ///< "sRGB".
    static const CoreStringView BUILTIN_LINEAR; ///< "linear".
    static const CoreStringView BUILTIN_CINEON; ///< "Cineon".
    static const char FAMILY_SEPARATOR;         ///< Between family and name: "Tavelion|sRGB".
    static const char DISPLAY_SEPARATOR;        ///< Between display and view: "Tavelion.sRGB".

    static CoreString s_default_CDL_name;                 ///< "No CDL".
    static CoreString s_default_color_picking_space_name; ///< "sRGB".
    static CoreString s_default_color_space_name;         ///< "linear", or what the application chose.
    static ColorIOManager* s_instance;                    ///< What `get_instance` returns.

    /// `app` may be null (headless use: no enumerations, placeholder names). Not owned; must outlive this
    /// object.
    explicit ColorIOManager(OfApp* app);
    ColorIOManager(const ColorIOManager&);
    ColorIOManager(ColorIOManager&&) noexcept;
    ColorIOManager& operator=(const ColorIOManager&);
    ColorIOManager& operator=(ColorIOManager&&) noexcept;
    ~ColorIOManager();

    // Lifecycle and sources of configs

    /// Creates the instance if there is none, and runs `init` on it in any case. Until `destroy`,
    /// OpenColorIO's own messages go to the host's log, each once per load. False when `init` fails or memory
    /// is short.
    static bool static_init(OfApp* app);
    /// Null before `static_init` and after `destroy`.
    static ColorIOManager* get_instance();
    /// Deletes the instance, if there is one.
    static void destroy();
    /// Creates the enumerations and the built-in configs, and makes the built-in one active. False when
    /// either config could not be created.
    bool init();

    /// The host application; null in headless use.
    OfApp* get_app() const { return app; }
    /// The active config; shared, so that it outlives its replacement. Null before `init`.
    OCIO_NAMESPACE::ConstConfigRcPtr get_config() const;
    /// The config with one color space per CDL. Null before `init`.
    OCIO_NAMESPACE::ConstConfigRcPtr get_cdl_config() const;
    /// Whether the built-in config is active.
    bool is_using_tavelion_config() const;
    /// Makes the config of the application's path (or else of the variable OCIO) active, or the built-in one;
    /// the built-in one also when no such config can be loaded. Does nothing without an application.
    void use_file_config(const bool& use);
    /// Reloads the config after the application's path changed, if the application uses a file config.
    void update_file_config_path();

    // Names

    /// Whether `name` is a label of "color_space": exact, with its family.
    bool color_space_exists(CoreBasicString name) const;
    /// Whether `get_color_space_names` lists `name`.
    bool is_color_space_name(const CoreBasicString& name) const;
    /// Whether `label` is a published view: "DISPLAY.VIEW", exact.
    bool display_view_exists(CoreBasicString label) const;
    /// Character between family and name in the labels of "color_space".
    const char& get_color_space_enum_separator() const;
    /// Position of `name` in "color_space", ignoring case and family; the last match wins. NOT_FOUND when no
    /// label matches.
    unsigned int get_color_space_index(CoreString name) const;
    /// Full label at a position of "color_space"; empty past the end.
    CoreString get_color_space_name(unsigned int index) const;
    /// First label of "color_space" whose part after the family is exactly `name`; `name` itself otherwise.
    CoreString get_full_color_space_name(CoreString name) const;
    /// Label of the color space that a view shows; `label` itself when the view is unknown.
    CoreString get_color_space_from_display_view(CoreBasicString label) const;
    /// Splits a published "DISPLAY.VIEW". False when it is not published; the outputs are then unchanged.
    bool get_display_view(CoreBasicString label, CoreString& display, CoreString& view) const;
    /// Default view of the default display as "DISPLAY.VIEW"; empty when the config has none.
    CoreString get_default_display_view() const;
    /// The same in two parts; false when either is empty.
    bool get_default_display_view(CoreString& display, CoreString& view) const;
    /// Published color spaces, without families; valid until the next change of the config.
    const CoreBasicArray<CoreString>& get_color_space_names() const { return color_space_names; }
    /// For lookups inside the module; null before `init`.
    std::shared_ptr<const PublishedSpaces> get_published_spaces() const { return published_spaces; }
    /// Published views, "DISPLAY.VIEW"; valid until the next change of the config.
    const CoreBasicArray<CoreString>& get_display_view_names() const { return display_view_names; }

    // Roles and defaults

    /// OpenColorIO's name of a role, "color_picking" and so on; "ROLE_UNKNOWN" for any other value.
    static const char* get_role_name(const Role& role);
    /// Color space of a role, without its family; `role` must be 0 to 7.
    const CoreString& get_role_color_space(int role) const;
    /// Color space of the role color_picking.
    const CoreString& get_default_color_picking_space_name() const;
    /// Color space of the role scene_linear, without its family; empty before `init`.
    const CoreString& get_ROLE_SCENE_LINEAR() const { return ROLE_SCENE_LINEAR; }
    /// What new objects of the host use.
    const CoreString& get_default_color_space_name() const { return s_default_color_space_name; }
    /// Finds a role's color space again, in the file config if the application uses one; an index other than
    /// 0 to 7 is ignored.
    void set_role_color_space(int role);
    /// Finds the scene-linear color space again: with `reload` in the loaded file config, which is read
    /// again, else in the built-in one. Raises EVT_ID_ROLE_SCENE_LINEAR_CHANGED.
    void set_default_color_space_name(bool reload);
    /// Takes the application's default color space if the active config has it, else the scene-linear one.
    void update_default_color_space_name();

    // Custom color spaces

    /// The color spaces of the built-in config, built-in and custom ones.
    const CoreVector<ColorSpaceDef>& get_tavelion_color_spaces() const { return tavelion_color_spaces; }
    /// Replaces the custom color spaces; `defs` holds the built-in records too, as read from the list.
    void set_tavelion_config(const CoreVector<ColorSpaceDef>& defs);

    // Color decision lists

    /// The CDLs: the built-in one, custom ones and those of the CDL library.
    const CoreVector<ColorDecisionListDef>& get_tavelion_color_decision_lists() const {
        return tavelion_color_decision_lists;
    }
    /// Replaces the custom CDLs; the built-in one stays.
    void set_tavelion_config(const CoreVector<ColorDecisionListDef>& list);
    /// Adds or replaces one CDL of the CDL config without publishing it. False when that fails.
    bool add_local_CDL(ColorDecisionListDef entry);
    /// Reloads the CDL library from the application's path, unless that is empty.
    void update_file_cdl_library_path();
    /// Published CDLs; valid until the next change of the CDLs.
    const CoreBasicArray<CoreString>& get_CDL_names() const { return CDL_names; }
    /// Position of exactly that label in "color_decision_list"; NOT_FOUND when there is none.
    unsigned int get_CDL_index(CoreString name) const;
    /// Label at a position of "color_decision_list"; empty past the end.
    CoreString get_CDL_name(unsigned int index) const;
    /// "No CDL".
    const CoreString& get_default_CDL_name() const { return s_default_CDL_name; }

    /// Fills `def` from the ASC CDL document at `path`; values that cannot be read are unchanged. A
    /// collection leaves the values of its last color correction.
    void read_CDL_from_XML(CoreString path, ColorDecisionListDef& def, bool collection);
    /// Writes an ASC CDL document with one decimal per number: a collection of all but the default CDL, or
    /// the last one alone. True when the file was written.
    bool create_XML_from_CDL(CoreVector<ColorDecisionListDef> cdls, CoreString path, bool collection);

    // Preferences

    /// Resets `entry` and writes the custom color spaces and CDLs into its group. False when there are none,
    /// and for null.
    bool save_config(ParserEntry* entry);
    /// Adds the custom color spaces and CDLs of the group of `entry` (may be null; invalid records are
    /// skipped), reads all files again and publishes the result. True only when a file config was loaded.
    bool load_config(ParserEntry* entry);

    // Names stored by earlier versions

    /// Whether `name` was stored for a built-in color space: "linear", or "sRGB" or "Cineon" with any family
    /// or none.
    bool is_legacy_builtin_color_space(CoreBasicString name) const;
    /// Current label of such a name, "Tavelion|sRGB"; empty for any other.
    CoreString convert_legacy_builtin_color_space(CoreBasicString name) const;
    /// Published view of the built-in config for a display color space stored by a widget; empty when there
    /// is none, and when another config is active.
    CoreString convert_legacy_widget_display_color_space_to_display_view(CoreBasicString name) const;
    /// View for a display color space stored in the preferences; empty when there is none.
    CoreString convert_legacy_preferences_display_color_space_to_display_view(CoreBasicString name) const;

private:
    // Implementations of the public operations with similar names; they may throw.

    bool start();
    void select_config(bool use_file);
    void follow_file_config_path();
    enum class Reload { ADOPT, ADOPT_IF_VALID };
    void settle_default_color_space_name(bool reload, Reload how = Reload::ADOPT);
    unsigned int find_color_space(const CoreString& name) const;
    bool find_default_display_view(CoreString& display, CoreString& view) const;
    void replace_custom_spaces(const CoreVector<ColorSpaceDef>& defs);
    bool replace_CDLs(const CoreVector<ColorDecisionListDef>& list);
    bool add_unlisted_CDL(const ColorDecisionListDef& entry);
    bool read_CDL_library();
    bool write_custom_records(ParserEntry& entry) const;
    bool read_preferences(const ParserEntry* entry);
    CoreString find_view_of_legacy_name(const CoreBasicString& name) const;

    bool build_from_file(const CoreString& path);
    void forget_cached_files();
    static bool validate_ocio_config(const OCIO_NAMESPACE::ConstConfigRcPtr& config);
    bool validate_builtin_config() const;
    bool check_config(const OCIO_NAMESPACE::ConstConfigRcPtr& config) const;
    void create_enums();
    void settle_role_color_spaces();
    void publish_config();
    void announce_new_lists(bool changed);
    OCIO_NAMESPACE::ConfigRcPtr get_file_config_or_builtin() const;
    bool app_uses_file_config() const;

    bool init_default_tavelion_config();
    bool fill_builtin_config(CoreString folder);
    bool write_lut_to_disk(const CoreString& path, const CoreArray<float>& values, float from, float to);

    bool update_enums_and_lists();
    void forget_names();
    void forget_views();
    void publish_views();
    struct ProbeConfig;
    ProbeConfig load_probe_config() const;
    void settle_role_color_space(int role, const ProbeConfig& probe);
    void settle_scene_linear_of_file_config(Reload how);
    void settle_scene_linear_of_builtin_config();
    std::shared_ptr<const ColorSpaceNameIndex> get_name_index() const;

    void read_records(const ParserGroup& group);
    CoreString find_view_of_color_space(const CoreString& color_space) const;

    bool add_custom_luts_to_tavelion_config(const CoreVector<ColorSpaceDef>& defs);
    bool add_custom_space(const ColorSpaceDef& def, CDLFileReader& files);
    unsigned int get_color_space_count() const { return tavelion_color_spaces.get_count(); }

    bool init_default_CDL_tavelion_config();
    void fill_builtin_CDL_config(const CoreString& folder);
    void forget_added_CDLs();
    void append_builtin_CDL();
    void clear_CDL_spaces();
    void add_custom_CDL(const ColorDecisionListDef& def, CDLFileReader& files);
    bool add_custom_CDLs_to_tavelion_config(const CoreVector<ColorDecisionListDef>& list);
    bool build_CDL_from_file(const CoreString& path);
    void update_CDL_enums_and_lists();
    void publish_CDLs();
    unsigned int get_color_decision_list_count() const { return tavelion_color_decision_lists.get_count(); }

    OCIO_NAMESPACE::ConfigRcPtr tavelion_config;
    CoreVector<ColorSpaceDef> tavelion_color_spaces;
    bool tavelion_config_ready = false;
    OCIO_NAMESPACE::ConfigRcPtr file_config;
    CoreString file_config_path;
    bool file_config_loaded = false;
    OCIO_NAMESPACE::ConfigRcPtr cdl_config;
    CoreVector<ColorDecisionListDef> tavelion_color_decision_lists;
    CoreVector<ColorDecisionListDef> library_color_decision_lists;
    bool cdl_config_ready = false;
    OCIO_NAMESPACE::ConstConfigRcPtr config;
    CoreVector<CoreString> color_space_names;
    CoreVector<CoreString> display_view_names;
    CoreVector<CoreString> CDL_names;
    OfEnum* color_space_enum = nullptr;
    OfEnum* color_picking_enum = nullptr;
    OfEnum* view_transform_enum = nullptr;
    OfEnum* internal_color_space_enum = nullptr;
    OfEnum* color_decision_list_enum = nullptr;
    OfApp* app;
    CoreString ROLE_SCENE_LINEAR;
    CoreVector<CoreString> linear_color_space_names;
    OfEnum* roles_enum = nullptr;
    CoreVector<CoreString> role_color_spaces;

    /// Index for lookups in "color_space"; rebuilt when the enumeration has changed.
    mutable std::shared_ptr<const ColorSpaceNameIndex> name_index;
    /// Contents of the lists of names, for lookups; null before the first publishing.
    std::shared_ptr<PublishedSpaces> published_spaces;
    std::shared_ptr<PublishedViews> published_views;
    /// Configs parsed during the current reload; null between reloads.
    std::shared_ptr<ConfigLoads> config_loads;
    /// Contents of `cdl_config`, so that unchanged CDLs are not added again.
    std::shared_ptr<AddedCDLs> added_cdls;
};
