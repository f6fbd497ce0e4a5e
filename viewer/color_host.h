#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "workflow/session.h"

namespace tool {

class Console;

/// The running module as the viewer uses it: what it publishes, and configurations that come and go while
/// the viewer runs. What cannot be loaded leaves everything as it was.
class ColorHost {
public:
    /// Throws CommandError when the configuration that the options ask for cannot be loaded.
    ColorHost(const SessionOptions& options, Console& console);
    ~ColorHost();
    ColorHost(const ColorHost&) = delete;
    ColorHost& operator=(const ColorHost&) = delete;

    /// What went wrong; nothing when it went well.
    using Fault = std::optional<std::string>;

    /// Switches to the configuration file at `path`, or to the built-in configuration when that is empty.
    Fault use_config(const std::string& path);
    /// Reads the configuration in force, its files, the files of the user's own colour spaces and CDLs, and
    /// the CDL library again. What is whole is taken over though another is not, but for two things that the
    /// module reads together: own files wait for a whole configuration, and corrections that are new in the
    /// library for whole CDLs of the user's own. False when `get_source_faults` has something to tell
    /// afterwards.
    bool reload();
    /// Takes the corrections of an ASC CDL file into the list of CDLs.
    Fault use_cdl_library(const std::string& path);

    /// What was wrong when the files were read again last. Each ends when its own files are whole again, or
    /// when others take their place.
    std::vector<std::string> get_source_faults() const;

    /// "aces.ocio", or "the built-in configuration".
    std::string get_config_name() const;
    /// Its path; empty for the built-in one.
    const std::string& get_config_path() const { return config_path; }

    /// Goes up whenever names or colours may have changed.
    unsigned int get_revision() const;

    // Labels in the order that the module publishes them.
    const std::vector<std::string>& get_spaces() const;
    const std::vector<std::string>& get_views() const;
    const std::vector<std::string>& get_cdls() const;
    std::string get_default_view() const;
    /// The CDL that changes nothing.
    std::string get_default_cdl() const;

    struct FileSpace {
        std::string label;  ///< A label of `get_spaces`; empty when there are none.
        std::string reason; ///< For the user: "files of the extension exr".
    };
    /// Colour space that the module takes files of that name to be in. Where the configuration lacks it, the
    /// module's default colour space.
    FileSpace get_space_of_file(const std::string& path) const;

    /// Absolute paths of the files that the colours depend on: the configuration, the CDL library, and every
    /// path that the LUTs and CDLs may have which the configuration and the user's own spaces name. They need
    /// not exist.
    std::vector<std::string> get_source_files() const;

    /// Why the module refused what was asked of it last.
    std::string take_failure();

private:
    class ListObserver;
    class Trial;
    struct Lists;

    Lists& get_lists() const;
    /// The label of a colour space that is named with or without a family; empty when there is none.
    std::string find_space(const std::string& name) const;
    Fault find_config_fault(const std::string& path);
    Fault find_library_fault(const std::string& path);
    template <class Event>
    void raise(const Event& event);
    Fault reload_own_files();
    bool is_own_file_failure(const LoggedMessage& message) const;

    ColorSession session;
    std::string config_path;
    bool from_environment;
    std::string library_path;
    Fault config_fault;
    Fault own_fault; ///< Of the user's own colour spaces and CDLs.
    Fault library_fault;
    std::unique_ptr<ListObserver> observer;
    mutable std::unique_ptr<Lists> lists;
};

} // namespace tool
