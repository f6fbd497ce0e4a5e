#include "colorio/ocio/classic_locale.h"

#include <clocale>
#include <cstring>
#include <locale>
#include <mutex>
#include <string>

namespace ocio {

namespace {

/// What was in force when the first holder came.
struct SavedLocales {
    std::mutex mutex;
    int holders = 0;
    bool replaced = false;
    std::locale cpp_locale;
    std::string c_locale;
};

SavedLocales& saved_locales() {
    static SavedLocales saved;
    return saved;
}

} // namespace

ClassicLocale::ClassicLocale() {
    SavedLocales& saved = saved_locales();
    const std::lock_guard lock(saved.mutex);
    if (saved.holders++ > 0)
        return;
    const char* c_locale = std::setlocale(LC_ALL, nullptr);
    saved.replaced = std::locale() != std::locale::classic() || std::strcmp(c_locale, "C") != 0;
    if (!saved.replaced)
        return;
    saved.c_locale = c_locale;
    // This sets the C locale too.
    saved.cpp_locale = std::locale::global(std::locale::classic());
}

ClassicLocale::~ClassicLocale() {
    SavedLocales& saved = saved_locales();
    const std::lock_guard lock(saved.mutex);
    if (--saved.holders > 0 || !saved.replaced)
        return;
    std::locale::global(saved.cpp_locale);
    std::setlocale(LC_ALL, saved.c_locale.c_str());
}

} // namespace ocio
