#pragma once

#include <memory>
#include <string>

#include "host/core/core_string.h"

class OfApp;

namespace conformance {

/// The application of the host under test. A host implements this class and `make_host_app` in one source
/// file, and links it with the kit and its own libraries.
class HostApp {
public:
    virtual ~HostApp() = default;

    /// The application; lives as long as this object.
    virtual OfApp& get_app() = 0;

    // Changes of the preferences, as a user makes them. Each stores the value and then raises the event that
    // host/of/of_app.h names. The kit never sets the current value again.
    virtual void set_use_color_space_file(bool use) = 0;
    virtual void set_color_space_file_path(const CoreString& path) = 0;
    virtual void set_cdl_library_file_path(const CoreString& path) = 0;
    virtual void set_default_color_space_name(const CoreString& name) = 0;
    virtual void set_use_color_space_by_extension_file(unsigned int use) = 0;
    virtual void set_color_space_by_extension_file_path(const CoreString& path) = 0;

    /// A mapping file in the syntax of the host's parser, with two groups in this order: "Photo", whose entry
    /// "extensions" is the string "jpg,png" and whose entry "color_space" is the string "sRGB", and "Film"
    /// with "dpx" and "Cineon".
    virtual std::string get_mapping_text() const = 0;
};

/// A new application; null when there cannot be one. Implemented by the host. Each check makes one at most.
std::unique_ptr<HostApp> make_host_app();

} // namespace conformance
