#pragma once

#include <memory>

#include "host/core/core_log.h"
#include "host/host_export.h"

/// Writes messages to standard error, in color when that is a terminal and NO_COLOR is unset or empty, and
/// to files that the program adds. Messages may come from several threads once the files are added.
class HOST_API StandaloneLog : public CoreLogHandler {
public:
    StandaloneLog();
    ~StandaloneLog() override;
    StandaloneLog(const StandaloneLog&) = delete;
    StandaloneLog& operator=(const StandaloneLog&) = delete;

    /// Also appends every message, with the time, to the file at `path`. False, and a message at level 1,
    /// when it cannot be opened.
    bool add_file(const CoreString& path);

    /// Writes a message unless `level` is above the handler's own. Control characters other than line ends
    /// and tabs are shown as \xNN, so that a name taken from a file cannot command the terminal.
    void log(unsigned int level, const CoreLogStream& stream) override;

    /// The main log handler of a program that sets none. Lives as long as the process.
    static StandaloneLog& get_default();

private:
    struct State;
    std::unique_ptr<State> state;
};
