#include "colorio/ocio/classic_locale.h"

#include <locale.h>

#include <clocale>
#include <locale>
#include <mutex>
#include <new>
#include <string>

#include "colorio/ocio/stream_locale.h"

namespace ocio {

namespace {

/// Never freed: threads may use it until the process ends.
locale_t classic_c_locale() {
    static const locale_t classic = newlocale(LC_ALL_MASK, "C", nullptr);
    return classic;
}

/// What the calling thread had before it entered the classic locale.
thread_local locale_t locale_before = LC_GLOBAL_LOCALE;

/// Streams take the process's C++ locale when they are made. While a thread needs the classic one, the
/// process's locale is replaced by one that behaves as before in all other threads.
struct StreamLocale {
    std::mutex mutex;
    int holders = 0;
    bool replaced = false;
    std::locale before;
    std::locale instead;
};

StreamLocale& stream_locale() {
    static StreamLocale locale;
    return locale;
}

/// A locale with an added facet, which does nothing, has no name.
struct NoName : std::locale::facet {
    static std::locale::id id;
};

std::locale::id NoName::id;

/// Giving the process a C++ locale that has a name sets the C locale to that name too. This changes nothing
/// where that is its name already; otherwise the name is left out.
std::locale without_effect_on_c(const std::locale& locale) {
    const std::string name = locale.name();
    if (name == "*" || name == std::setlocale(LC_ALL, nullptr))
        return locale;
    return std::locale(locale, new NoName);
}

void enter_classic_streams() {
    StreamLocale& saved = stream_locale();
    const std::lock_guard lock(saved.mutex);
    const std::locale now;
    if (saved.holders == 0)
        saved.replaced = now != std::locale::classic();
    if (saved.holders == 0 && saved.replaced) {
        saved.before = now;
        saved.instead = with_classic_numbers_where_wanted(now);
        std::locale::global(saved.instead);
    }
    ++saved.holders;
}

void leave_classic_streams() {
    StreamLocale& saved = stream_locale();
    const std::lock_guard lock(saved.mutex);
    // Not over another one that the host has set in the meantime.
    if (--saved.holders > 0 || !saved.replaced || std::locale() != saved.instead)
        return;
    try {
        std::locale::global(without_effect_on_c(saved.before));
    } catch (const std::bad_alloc&) {
        // The current one works on every thread as the one before.
    }
}

} // namespace

ClassicLocale::ClassicLocale() {
    if (want_classic_numbers(0) == 0) {
        enter_classic_streams();
        locale_before = uselocale(classic_c_locale());
    }
    want_classic_numbers(+1);
}

ClassicLocale::~ClassicLocale() {
    if (want_classic_numbers(-1) > 0)
        return;
    leave_classic_streams();
    uselocale(locale_before);
}

} // namespace ocio
