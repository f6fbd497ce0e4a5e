#pragma once

#include <string>

namespace conformance {

/// A new folder in $TMPDIR or "/tmp", removed at the end of the scope.
class TemporaryFolder {
public:
    /// Throws CannotRun when it cannot be made.
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::string& get_path() const { return path; }
    /// Writes a file; returns its path. Throws CannotRun when it cannot be written.
    std::string write(const std::string& name, const std::string& content) const;
    /// The content of a file; "(no file)" when it cannot be read.
    std::string read(const std::string& name) const;

private:
    std::string path;
};

} // namespace conformance
