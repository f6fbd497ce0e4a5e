#pragma once

#include <clocale>
#include <cstdlib>
#include <string>

#include "tests/support/env_guard.h"
#include "tests/support/temp_dir.h"

/// Gives the process a locale whose decimal point is a comma until the end of the scope. Where none is
/// installed, one is compiled if the system has the sources of locales.
class CommaLocale {
public:
    CommaLocale() { is_set = set_installed() || set_compiled(); }
    ~CommaLocale() { std::setlocale(LC_ALL, "C"); }
    CommaLocale(const CommaLocale&) = delete;
    CommaLocale& operator=(const CommaLocale&) = delete;

    /// False when the system has no such locale.
    bool is_set;

private:
    static bool set_installed() {
        for (const char* name : {"de_DE.UTF-8", "de_DE", "fr_FR.UTF-8", "fr_FR"})
            if (std::setlocale(LC_ALL, name))
                return true;
        return false;
    }
    bool set_compiled() {
        const std::string command =
            "localedef -i de_DE -f UTF-8 '" + folder.file("de_DE.UTF-8") + "' > /dev/null 2>&1";
        if (std::system(command.c_str()) != 0)
            return false;
        locale_folder.set(folder.get_path());
        return set_installed();
    }

    TempDir folder;
    EnvGuard locale_folder{"LOCPATH"};
};
