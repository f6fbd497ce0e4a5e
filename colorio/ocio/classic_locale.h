#pragma once

namespace ocio {

/// Has the calling thread read and write numbers in the classic way while it lives: the library does so
/// through the C and C++ locales in force, so that under a comma locale it would refuse or misread every
/// file. Other threads keep their locales, and the process's C locale is never set. To be left by the thread
/// that entered it; one thread may hold several.
class ClassicLocale {
public:
    ClassicLocale();
    ~ClassicLocale();
    ClassicLocale(const ClassicLocale&) = delete;
    ClassicLocale& operator=(const ClassicLocale&) = delete;
};

} // namespace ocio
