#include "python/open_session.h"

#include <atomic>

#include "diagnostics/failure.h"
#include "python/text.h"

namespace py = pybind11;

namespace python {

namespace {

using diagnostics::Code;

/// The module can be used by one session at a time.
std::atomic<bool> is_taken{false};
/// The session opened last. Guarded by the interpreter's lock.
std::weak_ptr<OpenSession> last_session;

/// Takes the module until `release` or the end of the scope of a failure.
class Turn {
public:
    Turn() {
        if (is_taken.exchange(true))
            diagnostics::fail(Code::USAGE_REFUSED, "another session is open",
                              "close it first; a with statement does so");
    }
    ~Turn() {
        if (!is_kept)
            is_taken = false;
    }
    void keep() { is_kept = true; }

private:
    bool is_kept = false;
};

} // namespace

std::shared_ptr<OpenSession> OpenSession::open(const workflow::SessionOptions& options) {
    std::shared_ptr<OpenSession> made;
    {
        const py::gil_scoped_release unlocked;
        made = std::make_shared<OpenSession>(options);
    }
    last_session = made;
    return made;
}

OpenSession::OpenSession(const workflow::SessionOptions& options) {
    Turn turn;
    session = std::make_unique<workflow::Session>(options);
    turn.keep();
}

/// Runs in the thread that gives up the last reference.
OpenSession::~OpenSession() {
    if (session != nullptr)
        end();
}

workflow::Session& OpenSession::get() {
    if (session == nullptr)
        diagnostics::fail(Code::USAGE_REFUSED, "the session is closed");
    if (std::this_thread::get_id() != thread)
        diagnostics::fail(Code::USAGE_REFUSED, "a session is used in the thread that made it",
                          "make converters there; they can be used in every thread");
    return *session;
}

void OpenSession::close() {
    if (session == nullptr)
        return;
    get();
    end();
}

void OpenSession::end() {
    session.reset();
    is_taken = false;
}

void OpenSession::close_last() {
    if (const std::shared_ptr<OpenSession> last = last_session.lock(); last && last->is_open())
        last->end();
}

std::vector<std::string> get_context(const py::object& variables) {
    if (variables.is_none())
        return {};
    if (!py::isinstance<py::dict>(variables))
        throw py::type_error("context: expected a dict of str");
    std::vector<std::string> context;
    for (const auto& [name, value] : py::reinterpret_borrow<py::dict>(variables)) {
        if (!py::isinstance<py::str>(name) || !py::isinstance<py::str>(value))
            throw py::type_error("context: expected a dict of str");
        context.push_back(name.cast<std::string>() + "=" + value.cast<std::string>());
    }
    return context;
}

std::string get_config_path(const py::object& config) {
    const std::string path = get_path(config, "config");
    if (path.empty())
        throw py::value_error("config: the path is empty");
    return path == "builtin" ? "" : path;
}

workflow::SessionOptions make_options(const py::object& config, const py::object& context,
                                      const py::object& preferences) {
    workflow::SessionOptions options;
    if (!config.is_none())
        options.config_path = get_config_path(config);
    options.builtin_only = !config.is_none() && options.config_path.empty();
    options.context = get_context(context);
    if (preferences.is(py::bool_(false)))
        options.no_preferences = true;
    else if (!preferences.is_none())
        options.preferences_path = get_path(preferences, "preferences");
    return options;
}

} // namespace python
