#pragma once

namespace ocio {

/// During its lifetime the calling thread reads and writes numbers as in the classic locale. OpenColorIO uses
/// the current C and C++ locales, so that with a decimal comma it would refuse or misread every file. Other
/// threads keep their locales, and the process's C locale is never set. Must be destroyed on the thread that
/// made it; one thread may have several.
class ClassicLocale {
public:
    ClassicLocale();
    ~ClassicLocale();
    ClassicLocale(const ClassicLocale&) = delete;
    ClassicLocale& operator=(const ClassicLocale&) = delete;
};

} // namespace ocio
