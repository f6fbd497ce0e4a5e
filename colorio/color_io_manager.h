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

/// The process-wide owner of color configuration: the built-in configuration, the one from a file or the
/// environment, the one that holds the CDLs, and the names published from the active one.
/// Main thread only. No exception leaves it; failures, memory that ran short and a host that throws included,
/// are logged and answered with false, an empty string or NOT_FOUND. Only constructing and copying throw when
/// memory is short: nothing is there that could answer.
class COLORIO_API ColorIOManager {
public:
    /// One custom color space of the built-in configuration.
    struct ColorSpaceDef {
        CoreString name;          ///< Color-space name, and the view's name on the built-in display.
        CoreString lut_file;      ///< LUT path; may be empty.
        CoreString cdl_file;      ///< Path of a .cc, .ccc or .cdl file; may be empty.
        CoreString cccid;         ///< Correction in the collection; used only for the extension "ccc".
        unsigned int bit_depth;   ///< BitDepth of OpenColorIO.
        unsigned int allocation;  ///< Allocation of OpenColorIO.
        float allocation_vars[3]; ///< Minimum, maximum, and for lg2 the linear offset.
        bool is_builtin;          ///< Made by the module itself.
    };

    /// One color decision list (ASC CDL).
    struct ColorDecisionListDef {
        CoreString name;  ///< Also the color space's name in the CDL configuration and the menu label.
        CoreString file;  ///< Where it came from; empty when the values below are given directly.
        CoreString cccid; ///< `id` of the correction in a collection file.
        float slope[3];
        float offset[3];
        float power[3];
        float saturation;
        bool is_builtin; ///< Never added as a custom CDL.
    };

    /// The roles that have a menu of their own; scene-linear is kept apart, in `get_ROLE_SCENE_LINEAR`.
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

    static const CoreStringView BUILTIN_FAMILY;
    static const CoreStringView BUILTIN_SRGB;
    static const CoreStringView BUILTIN_LINEAR;
    static const CoreStringView BUILTIN_CINEON;
    static const char FAMILY_SEPARATOR;  ///< Between family and name: "Tavelion|sRGB".
    static const char DISPLAY_SEPARATOR; ///< Between display and view: "Tavelion.sRGB".

    static CoreString s_default_CDL_name;
    static CoreString s_default_color_picking_space_name;
    static CoreString s_default_color_space_name;
    static ColorIOManager* s_instance;

    /// `app` may be null (headless use: no enumerations, placeholder names); not owned.
    explicit ColorIOManager(OfApp* app);
    ColorIOManager(const ColorIOManager&);
    ColorIOManager(ColorIOManager&&) noexcept;
    ColorIOManager& operator=(const ColorIOManager&);
    ColorIOManager& operator=(ColorIOManager&&) noexcept;
    ~ColorIOManager();

    // Lifecycle and configuration sources

    /// Makes the instance if there is none, and in every case runs `init` on it. Until `destroy`, what
    /// OpenColorIO reports by itself goes to the host's log, each message once per load.
    static bool static_init(OfApp* app);
    static ColorIOManager* get_instance();
    static void destroy();
    bool init();

    /// The host application; null in headless use.
    OfApp* get_app() const { return app; }
    /// The active configuration, shared: a holder keeps a replaced one alive. Null before `init`.
    OCIO_NAMESPACE::ConstConfigRcPtr get_config() const;
    /// The configuration that holds one color space per CDL.
    OCIO_NAMESPACE::ConstConfigRcPtr get_cdl_config() const;
    bool is_using_tavelion_config() const;
    /// Makes the configuration of the file or the environment active, or the built-in one.
    void use_file_config(const bool& use);
    /// Follows a change of the application's configuration path.
    void update_file_config_path();

    // Names

    bool color_space_exists(CoreBasicString name) const;
    bool display_view_exists(CoreBasicString label) const;
    const char& get_color_space_enum_separator() const;
    /// Position of `name` in "color_space", ignoring case and family; the last match wins.
    unsigned int get_color_space_index(CoreString name) const;
    /// Full label at a position of "color_space".
    CoreString get_color_space_name(unsigned int index) const;
    /// First label of "color_space" whose part behind the family is exactly `name`; `name` itself otherwise.
    CoreString get_full_color_space_name(CoreString name) const;
    CoreString get_color_space_from_display_view(CoreBasicString label) const;
    bool get_display_view(CoreBasicString label, CoreString& display, CoreString& view) const;
    CoreString get_default_display_view() const;
    bool get_default_display_view(CoreString& display, CoreString& view) const;
    const CoreBasicArray<CoreString>& get_color_space_names() const { return color_space_names; }
    const CoreBasicArray<CoreString>& get_display_view_names() const { return display_view_names; }

    // Roles and defaults

    /// Role text of OpenColorIO, "ROLE_UNKNOWN" for any other value.
    static const char* get_role_name(const Role& role);
    /// Color space of a role; `role` must be 0 to 7.
    const CoreString& get_role_color_space(int role) const;
    const CoreString& get_default_color_picking_space_name() const;
    const CoreString& get_ROLE_SCENE_LINEAR() const { return ROLE_SCENE_LINEAR; }
    const CoreString& get_default_color_space_name() const { return s_default_color_space_name; }
    void set_role_color_space(int role);
    void set_default_color_space_name(bool reload);
    void update_default_color_space_name();

    // Custom color spaces

    const CoreVector<ColorSpaceDef>& get_tavelion_color_spaces() const { return tavelion_color_spaces; }
    /// Replaces the custom color spaces; `defs` holds the built-in records too, as read from the list.
    void set_tavelion_config(const CoreVector<ColorSpaceDef>& defs);

    // Color decision lists

    const CoreVector<ColorDecisionListDef>& get_tavelion_color_decision_lists() const {
        return tavelion_color_decision_lists;
    }
    void set_tavelion_config(const CoreVector<ColorDecisionListDef>& list);
    /// Adds or replaces one CDL of the CDL configuration without listing it.
    bool add_local_CDL(ColorDecisionListDef entry);
    /// Follows a change of the application's CDL library path.
    void update_file_cdl_library_path();
    const CoreBasicArray<CoreString>& get_CDL_names() const { return CDL_names; }
    unsigned int get_CDL_index(CoreString name) const;
    CoreString get_CDL_name(unsigned int index) const;
    const CoreString& get_default_CDL_name() const { return s_default_CDL_name; }

    /// Fills `def` from an ASC CDL document; what cannot be read keeps its value.
    void read_CDL_from_XML(CoreString path, ColorDecisionListDef& def, bool collection);
    /// Writes an ASC CDL document with one decimal per number; true when the file was written.
    bool create_XML_from_CDL(CoreVector<ColorDecisionListDef> cdls, CoreString path, bool collection);

    // Preferences

    bool save_config(ParserEntry* entry);
    bool load_config(ParserEntry* entry);

    // Names stored by earlier versions

    bool is_legacy_builtin_color_space(CoreBasicString name) const;
    CoreString convert_legacy_builtin_color_space(CoreBasicString name) const;
    CoreString convert_legacy_widget_display_color_space_to_display_view(CoreBasicString name) const;
    CoreString convert_legacy_preferences_display_color_space_to_display_view(CoreBasicString name) const;

private:
    // The work of the public operations of similar names; it may throw.

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
    void create_enums();
    void settle_role_color_spaces();
    void publish_config();
    void tell_of_new_lists(bool changed);
    OCIO_NAMESPACE::ConfigRcPtr get_file_config_or_builtin() const;
    bool app_uses_file_config() const;

    bool init_default_tavelion_config();
    bool fill_builtin_config(CoreString folder);
    bool write_lut_to_disk(const CoreString& path, const CoreArray<float>& values, float from, float to);

    bool update_enums_and_lists();
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

    /// Answers look-ups in "color_space" without scanning; made anew when the enumeration changed.
    mutable std::shared_ptr<const ColorSpaceNameIndex> name_index;
    /// What the reload under way has parsed; null between reloads.
    std::shared_ptr<ConfigLoads> config_loads;
    /// What `cdl_config` holds, so that unchanged CDLs are not added again.
    std::shared_ptr<AddedCDLs> added_cdls;
};
