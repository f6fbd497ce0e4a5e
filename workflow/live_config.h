#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "diagnostics/diagnostic.h"
#include "workflow/session.h"

namespace workflow {

/// A session whose config, CDL library and LUTs may change while it runs. A new config or library is loaded
/// and checked as a candidate first; an unusable one changes nothing. Used from the thread that made it.
class LiveConfig {
public:
    /// Throws diagnostics::Failure when the config of the options cannot be loaded.
    explicit LiveConfig(const SessionOptions& options);
    ~LiveConfig();
    LiveConfig(const LiveConfig&) = delete;
    LiveConfig& operator=(const LiveConfig&) = delete;

    /// Why a file cannot be used; empty if it can.
    using Error = std::optional<diagnostics::Diagnostic>;

    /// Switches to the config file at `path`, or to the built-in config when that is empty.
    Error use_config(const std::string& path);
    /// Reads the active config and its files, the files of custom color spaces and CDLs, and the CDL library
    /// again. A file that cannot be read does not stop the others, with two exceptions, which the module
    /// reads together: files of custom color spaces and CDLs need a usable config, and new color corrections
    /// of the library need usable custom CDLs. Returns false when `get_source_errors` is not empty
    /// afterwards.
    bool reload();
    /// Publishes the color corrections of an ASC CDL file as CDLs.
    Error use_cdl_library(const std::string& path);
    /// Color corrections of that file that are not published, one warning for each.
    const diagnostics::Diagnostics& get_library_warnings() const;

    /// Errors of the start and of the last reload, one for each cause. Each is removed when its file can be
    /// read again or is replaced by another.
    diagnostics::Diagnostics get_source_errors() const;
    /// Those of the start among them: of files that could never be read.
    const diagnostics::Diagnostics& get_start_errors() const { return start_errors; }
    /// Errors of the files of custom color spaces and CDLs; the subject is the name that is not available.
    const diagnostics::Diagnostics& get_custom_errors() const { return session.get_custom_errors(); }

    /// With the active config as its source; lives as long as this object.
    const Session& get_session() const { return session; }
    /// "aces.ocio", or "the built-in config".
    std::string get_config_name() const { return session.get_config_name(); }
    /// Path of the config; empty for the built-in config.
    const std::string& get_config_path() const { return session.get_source().path; }

    /// A number that increases when names or colors may have changed.
    unsigned int get_revision() const;

    // Labels in the order in which the module publishes them; valid until the revision changes.
    const std::vector<std::string>& get_spaces() const;
    const std::vector<std::string>& get_views() const;
    const std::vector<std::string>& get_cdls() const;
    /// Label of the default view; empty when the config has none.
    std::string get_default_view() const;
    /// Name of the CDL that changes nothing.
    std::string get_default_cdl() const;

    /// Absolute paths of the files that colors depend on: the config, the CDL library, and every path on the
    /// search path for the LUTs and CDLs of the config and of custom color spaces. They need not exist.
    std::vector<std::string> get_source_files() const;

private:
    class ListObserver;
    struct Lists;

    Lists& get_lists() const;
    template <class Event>
    void raise(const Event& event);
    diagnostics::Diagnostics reload_custom_files();
    void reload_library();

    Session session;
    diagnostics::Diagnostics start_errors;
    std::string library_path;
    Error config_error;
    Error library_error;
    std::unique_ptr<ListObserver> observer;
    std::unique_ptr<Lists> lists;
};

} // namespace workflow
