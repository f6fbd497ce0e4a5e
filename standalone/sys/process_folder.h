#pragma once

#include <memory>
#include <string>

#include "files/descriptor.h"
#include "files/failure.h"
#include "host/host_export.h"

/// A private folder of this process: owned by its user, mode 0700, with an unpredictable name, in $TMPDIR or
/// the system's folders for temporary files. It is removed with its content by the destructor. Those of
/// killed processes are removed when the next one is made: unlocked folders of this user that carry the
/// program's marker file and hold nothing but folders and files as it makes them.
class HOST_API ProcessFolder {
public:
    /// The one folder to make in it. Files lie in folders in that one.
    static constexpr char GROUP_NAME[] = "qb_colorio";

    /// Fails without a writable folder for temporary files.
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
