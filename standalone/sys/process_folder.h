#pragma once

#include <memory>
#include <string>

#include "files/descriptor.h"
#include "files/failure.h"

/// A folder for this process alone: owned by its user, mode 0700, with a name that nobody can foresee, in
/// $TMPDIR or the system's own folders for temporary files. It is removed with its content at the end of the
/// object; those of processes that were killed are removed when the next one is made.
class ProcessFolder {
public:
    /// Fails when there is no folder for temporary files that can be written.
    static files::Result<std::unique_ptr<ProcessFolder>> make();
    ~ProcessFolder();
    ProcessFolder(const ProcessFolder&) = delete;
    ProcessFolder& operator=(const ProcessFolder&) = delete;

    const std::string& get_path() const { return path; }

private:
    ProcessFolder(std::string path, files::Descriptor lock);

    const std::string path;
    const files::Descriptor lock; ///< Says that the folder is in use.
};
