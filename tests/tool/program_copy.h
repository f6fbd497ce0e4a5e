#pragma once

#include <filesystem>
#include <string>

#include "tests/tool/tool_fixture.h"

/// A copy of `colorio` in the folder of a test, without the program with all commands.
class ProgramCopy {
public:
    explicit ProgramCopy(const TempDir& folder) : folder(folder) {
        namespace fs = std::filesystem;
        const fs::path built = fs::path(COLORIO_PROGRAM).parent_path();
        fs::create_directory(folder.file("tool"));
        fs::copy_file(COLORIO_PROGRAM, get_path());
        for (const char* name :
             {"colorio", "standalone"}) // their libraries, beside the folder of the program
            fs::create_directory_symlink(built.parent_path() / name, folder.file(name));
    }

    std::string get_path() const { return folder.file("tool/colorio"); }
    /// Puts a shell script in place of the program with all commands.
    void add_image_program(const std::string& script) const {
        const std::string path = folder.write("libexec/qb_colorio/colorio-images", "#!/bin/sh\n" + script);
        std::filesystem::permissions(path, std::filesystem::perms::owner_all);
    }

private:
    const TempDir& folder;
};
