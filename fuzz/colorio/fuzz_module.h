#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "host/core/core_string.h"
#include "standalone/standalone_app.h"
#include "tests/support/temp_dir.h"

/// Ends the process, as a finding, when `condition` does not hold.
void require(bool condition);

/// The module, started once per process with the built-in config, silent, its files in a temporary
/// folder. With TMPDIR on a disk most of the time goes into flushing it.
class FuzzModule {
public:
    static FuzzModule& get();

    StandaloneApp& get_app() { return app; }
    std::string get_path(const std::string& name) const { return folder.file(name); }
    /// Replaces the file `name` of the folder and returns its path.
    CoreString write(const std::string& name, const std::uint8_t* data, std::size_t size);
    CoreString write(const std::string& name, const std::string& text);
    void remove(const std::string& name) const;

private:
    FuzzModule();

    TempDir folder;
    StandaloneApp app;
};
