#pragma once

#include <string>

#include "workflow/session.h"

namespace tool {

class Console;

/// The session options of a command line.
struct SessionChoice : workflow::SessionOptions {
    bool verbose = false; ///< Show every message of the log.
};

/// Where a config comes from: "/show/aces.ocio (--config)", "/show/aces.ocio ($OCIO)",
/// "/show/aces.ocio (preferences)" or "the built-in config".
std::string describe(const workflow::ConfigSource& source);

/// Session options whose log goes to the console if `choice.verbose` is set. `console` must outlive the
/// session.
workflow::SessionOptions make_options(const SessionChoice& choice, Console& console);

/// Gives the console the notices of a session that `choice` started, unless the log shows them already. They
/// are shown before the first result, but not beside an error with the same cause.
void report_notices(const workflow::Session& session, const SessionChoice& choice, Console& console);

/// A session whose notices the console holds from the start. `console` must outlive it.
class ToolSession : public workflow::Session {
public:
    ToolSession(const SessionChoice& choice, Console& console,
                workflow::PreferenceUse use = workflow::PreferenceUse::READ);
};

} // namespace tool
