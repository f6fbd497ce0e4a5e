#pragma once

#include <memory>

#include "host/core/core_string.h"
#include "host/host_export.h"

class ParserGroup;

/// A file of entries.
class HOST_API ParserFile {
public:
    /// A file with an empty root group.
    ParserFile();
    ~ParserFile();
    ParserFile(const ParserFile&) = delete;
    ParserFile& operator=(const ParserFile&) = delete;

    /// Reads `path` into a new root group. `required_type` and `required_version` are compared with the
    /// file's own when they are not empty. False when the file cannot be read; `get_error` then names the
    /// file, the line and the reason.
    bool read(const CoreString& path, const CoreString& required_type, const CoreString& required_version);
    /// Writes the root group to `path`, whole or not at all; false and `get_error` on failure.
    bool write(const CoreString& path);
    /// Why the last `read` or `write` failed; empty when it succeeded.
    const CoreString& get_error() const;

    /// The root group; empty until a file was read.
    ParserGroup& get_root();

private:
    struct State;
    std::unique_ptr<State> state;
};
