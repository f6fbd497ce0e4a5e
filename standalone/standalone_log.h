#pragma once

#include <memory>

#include "host/core/core_log.h"
#include "host/host_export.h"

/// Writes messages to standard error, in color if that is a terminal and NO_COLOR is unset or empty, and to
/// added files. `log` may be called by several threads once the files are added.
class HOST_API StandaloneLog : public CoreLogHandler {
public:
    /// Writes to standard error only.
    StandaloneLog();
    ~StandaloneLog() override;
    StandaloneLog(const StandaloneLog&) = delete;
    StandaloneLog& operator=(const StandaloneLog&) = delete;

    /// Also appends every message, with the time, to the file at `path`. False, and a message at level 1,
    /// when it cannot be opened.
    bool add_file(const CoreString& path);

    /// Writes a message unless `level` is above the handler's level. Control characters other than line ends
    /// and tabs are shown as \xNN, so that a name from a file cannot control the terminal.
    void log(unsigned int level, const CoreLogStream& stream) override;

    /// The default main log handler. Lives as long as the process.
    static StandaloneLog& get_default();

private:
    struct State;
    std::unique_ptr<State> state;
};
