#pragma once

#include "host/core/core_string.h"
#include "host/event/event_object.h"
#include "host/host_export.h"

class OfObjectFactory;

/// The host application: the preferences of color management, and the services it needs. A change of a
/// preference raises its event on the application.
class HOST_API OfApp : public EventObject {
public:
    const CoreClassInfo& get_class_info() const override;
    static const CoreClassInfo& class_info();

    /// Whether to use the OCIO config file (EVT_ID_APPLICATION_COLOR_SPACE_FILE_USE_CHANGED).
    virtual bool get_use_color_space_file() const = 0;
    /// Path of the OCIO config (EVT_ID_APPLICATION_COLOR_SPACE_FILE_PATH_CHANGED).
    virtual const CoreString& get_color_space_file_path() const = 0;
    /// Path of the CDL library (EVT_ID_APPLICATION_CDL_FILE_PATH_CHANGED).
    virtual const CoreString& get_cdl_library_file_path() const = 0;
    /// Name of the default color space (EVT_ID_APPLICATION_COLOR_SPACE_NAME_CHANGED).
    virtual const CoreString& get_default_color_space_name() const = 0;
    /// Non-zero to use the file-format mapping file.
    virtual unsigned int get_use_color_space_by_extension_file() const = 0;
    /// Path of the mapping file (EVT_ID_APPLICATION_COLOR_SPACE_BY_EXT_FILE_PATH_CHANGED).
    virtual const CoreString& get_color_space_by_extension_file_path() const = 0;

    /// Factory of the enumerations; lives as long as the application.
    virtual OfObjectFactory& get_object_factory() = 0;
    /// Creates or finds the folder `name` for temporary files that are kept between runs. `path` becomes its
    /// path without a final '/'. False when it cannot be created.
    virtual bool create_temp_folder(const CoreString& name, CoreString& path) = 0;
};
