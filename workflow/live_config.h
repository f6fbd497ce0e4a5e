#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "diagnostics/diagnostic.h"
#include "workflow/session.h"

namespace workflow {

/// A session whose config, CDL library and LUTs may change while it runs. A new config or library is loaded
/// and checked as a candidate first; one that cannot be used leaves everything as it was.
class LiveConfig {
public:
    /// Throws diagnostics::Failure when the config that the options ask for cannot be loaded.
    explicit LiveConfig(const SessionOptions& options);
    ~LiveConfig();
    LiveConfig(const LiveConfig&) = delete;
    LiveConfig& operator=(const LiveConfig&) = delete;

    /// Why something cannot be used; nothing when it can.
    using Fault = std::optional<diagnostics::Diagnostic>;

    /// Switches to the config file at `path`, or to the built-in config when that is empty.
    Fault use_config(const std::string& path);
    /// Reads again the active config and its files, the files of custom color spaces and CDLs, and the CDL
    /// library. What can be read is taken over though another file cannot, with two exceptions that the
    /// module reads together: files of custom color spaces and CDLs wait for a usable config, new color
    /// corrections of the library for usable custom CDLs. False when `get_source_faults` is not empty
    /// afterwards.
    bool reload();
    /// Publishes the color corrections of an ASC CDL file as CDLs.
    Fault use_cdl_library(const std::string& path);

    /// What could not be read by the last reload. Each entry goes when its files can be read again, or when
    /// others take their place.
    diagnostics::Diagnostics get_source_faults() const;

    const Session& get_session() const { return session; }
    /// "aces.ocio", or "the built-in config".
    std::string get_config_name() const;
    /// Its path; empty for the built-in one.
    const std::string& get_config_path() const { return config_path; }

    /// Increases whenever names or colors may have changed.
    unsigned int get_revision() const;

    // Labels in the order in which the module publishes them.
    const std::vector<std::string>& get_spaces() const;
    const std::vector<std::string>& get_views() const;
    const std::vector<std::string>& get_cdls() const;
    /// Empty when there is no view.
    std::string get_default_view() const;
    /// The CDL that changes nothing.
    std::string get_default_cdl() const;

    /// Absolute paths of the files that colors depend on: the config, the CDL library, and every path at
    /// which the LUTs and CDLs that config and custom color spaces name may lie. They need not exist.
    std::vector<std::string> get_source_files() const;

private:
    class ListObserver;
    struct Lists;

    Lists& get_lists() const;
    Fault find_config_fault(const std::string& path) const;
    template <class Event>
    void raise(const Event& event);
    Fault reload_own_files();

    Session session;
    std::string config_path;
    bool from_environment; ///< The config is the one that OCIO names, which need not be a file.
    std::string library_path;
    Fault config_fault;
    Fault own_fault;
    Fault library_fault;
    std::unique_ptr<ListObserver> observer;
    std::unique_ptr<Lists> lists;
};

} // namespace workflow
