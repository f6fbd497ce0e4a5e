#pragma once

#include <memory>

#include "host/host_export.h"
#include "host/of/of_app.h"

/// The application for programs without a host application: it has the preferences, the factory of
/// enumerations, and a private folder for temporary files. For one thread at a time.
///
/// Every setter stores its value and then raises the preference's event; setting the current value again does
/// neither.
class HOST_API StandaloneApp : public OfApp {
public:
    /// Temporary folders are made below `cache_folder`; if it is empty, below the user's cache folder
    /// ($XDG_CACHE_HOME or "~/.cache").
    explicit StandaloneApp(const CoreString& cache_folder = {});
    ~StandaloneApp() override;
    StandaloneApp(const StandaloneApp&) = delete;
    StandaloneApp& operator=(const StandaloneApp&) = delete;

    const CoreClassInfo& get_class_info() const override;
    static const CoreClassInfo& class_info();

    /// Raises EVT_ID_APPLICATION_COLOR_SPACE_FILE_USE_CHANGED.
    void set_use_color_space_file(bool use);
    /// Raises EVT_ID_APPLICATION_COLOR_SPACE_FILE_PATH_CHANGED.
    void set_color_space_file_path(const CoreString& path);
    /// Raises EVT_ID_APPLICATION_CDL_FILE_PATH_CHANGED.
    void set_cdl_library_file_path(const CoreString& path);
    /// Raises EVT_ID_APPLICATION_COLOR_SPACE_NAME_CHANGED.
    void set_default_color_space_name(const CoreString& name);
    /// Raises EVT_ID_APPLICATION_COLOR_SPACE_BY_EXT_FILE_PATH_CHANGED: there is no separate event, and
    /// handlers of the path's event read both.
    void set_use_color_space_by_extension_file(unsigned int use);
    /// Raises EVT_ID_APPLICATION_COLOR_SPACE_BY_EXT_FILE_PATH_CHANGED.
    void set_color_space_by_extension_file_path(const CoreString& path);

    bool get_use_color_space_file() const override;
    const CoreString& get_color_space_file_path() const override;
    const CoreString& get_cdl_library_file_path() const override;
    const CoreString& get_default_color_space_name() const override;
    unsigned int get_use_color_space_by_extension_file() const override;
    const CoreString& get_color_space_by_extension_file_path() const override;

    OfObjectFactory& get_object_factory() override;
    /// The folder is "qb_colorio/`name`" below the cache folder, private to the user: mode 0700. It is
    /// refused, with a message at level 1, when it or its parent belongs to another user or is a link, when
    /// every user may write where it would be made, and when `name` is not a single path component.
    /// If the user's cache folder is refused or missing, the folder is made in a private one in $TMPDIR or
    /// "/tmp" instead, which is removed with this object; `get_temp_folder_note` and a message at level 3
    /// then say so.
    bool create_temp_folder(const CoreString& name, CoreString& path) override;

    /// A note for the user on where temporary files are; empty when they are in the cache folder.
    const CoreString& get_temp_folder_note() const;

private:
    struct State;
    std::unique_ptr<State> state;
};
