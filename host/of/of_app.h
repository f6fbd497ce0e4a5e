#pragma once

#include "host/core/core_string.h"
#include "host/event/event_object.h"
#include "host/host_export.h"

class OfObjectFactory;

/// The host application: the preferences that color management follows, and the services it uses.
/// Each preference raises its event on the application when it changes.
class HOST_API OfApp : public EventObject {
public:
    const CoreClassInfo& get_class_info() const override;
    static const CoreClassInfo& class_info();

    /// Whether the configuration file is wanted at all (EVT_ID_APPLICATION_COLOR_SPACE_FILE_USE_CHANGED).
    virtual bool get_use_color_space_file() const = 0;
    /// Path of the OpenColorIO configuration (EVT_ID_APPLICATION_COLOR_SPACE_FILE_PATH_CHANGED).
    virtual const CoreString& get_color_space_file_path() const = 0;
    /// Path of the CDL library (EVT_ID_APPLICATION_CDL_FILE_PATH_CHANGED).
    virtual const CoreString& get_cdl_library_file_path() const = 0;
    /// Name of the default color space (EVT_ID_APPLICATION_COLOR_SPACE_NAME_CHANGED).
    virtual const CoreString& get_default_color_space_name() const = 0;
    /// Non-zero when the file-format mapping file is wanted.
    virtual unsigned int get_use_color_space_by_extension_file() const = 0;
    /// Path of the mapping file (EVT_ID_APPLICATION_COLOR_SPACE_BY_EXT_FILE_PATH_CHANGED).
    virtual const CoreString& get_color_space_by_extension_file_path() const = 0;

    virtual OfObjectFactory& get_object_factory() = 0;
    /// Creates or finds the folder `name` for temporary files that outlive the run, and answers its path
    /// without a final '/'. False when there can be none.
    virtual bool create_temp_folder(const CoreString& name, CoreString& path) = 0;
};
