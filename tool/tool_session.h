#pragma once

#include "workflow/session.h"

namespace tool {

class Console;

/// The session that the options of a command line ask for.
struct SessionChoice : workflow::SessionOptions {
    bool verbose = false; ///< Show every message of the log.
};

/// The choice with a log that goes to the console, where it is wanted.
workflow::SessionOptions make_options(const SessionChoice& choice, Console& console);

/// A session that reports its notices to the console when it starts.
class ToolSession : public workflow::Session {
public:
    ToolSession(const SessionChoice& choice, Console& console,
                workflow::PreferenceUse use = workflow::PreferenceUse::READ);
};

} // namespace tool
