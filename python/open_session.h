#pragma once

#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <pybind11/pybind11.h>

#include "workflow/session.h"

namespace python {

/// A session, its rules of use checked: one at a time, in the thread that made it, until it is closed.
class OpenSession {
public:
    /// Lets other threads of Python run meanwhile. Throws like the constructor.
    static std::shared_ptr<OpenSession> open(const workflow::SessionOptions& options);
    /// Throws diagnostics::Failure, USAGE_REFUSED while another session is open.
    explicit OpenSession(const workflow::SessionOptions& options);
    ~OpenSession();
    OpenSession(const OpenSession&) = delete;
    OpenSession& operator=(const OpenSession&) = delete;

    /// The session. Throws diagnostics::Failure, USAGE_REFUSED, when it is closed and in another thread.
    workflow::Session& get();
    bool is_open() const { return session != nullptr; }
    /// Does nothing when it is closed. Throws like `get` in another thread.
    void close();
    /// Closes the session that is open, if there is one, in any thread: for the end of the process.
    static void close_last();

private:
    void end();

    std::unique_ptr<workflow::Session> session;
    std::thread::id thread = std::this_thread::get_id();
};

/// Context variables: KEY=VALUE of each item of a dict; nothing for None. Throws TypeError for other objects.
std::vector<std::string> get_context(const pybind11::object& variables);

/// The path of a config; empty for "builtin". Throws TypeError for what is not a path,
/// ValueError for an empty one.
std::string get_config_path(const pybind11::object& config);

/// The options of a session, from arguments of Python.
workflow::SessionOptions make_options(const pybind11::object& config, const pybind11::object& context,
                                      const pybind11::object& preferences);

/// The class of Python.
using SessionType = pybind11::class_<OpenSession, std::shared_ptr<OpenSession>>;

} // namespace python
