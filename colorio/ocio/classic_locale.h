#pragma once

namespace ocio {

/// Puts the classic locale in force while it lives. The library reads and writes numbers through the
/// process's C++ and C locales, so that under a comma locale it would refuse or misread every file. Several
/// threads may hold one at once; the first comer saves the process's locales and the last one to leave
/// restores them.
class ClassicLocale {
public:
    ClassicLocale();
    ~ClassicLocale();
    ClassicLocale(const ClassicLocale&) = delete;
    ClassicLocale& operator=(const ClassicLocale&) = delete;
};

} // namespace ocio
