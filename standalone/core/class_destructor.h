#pragma once

/// A CoreClassInfo::ClassDestructor for `Class`; always true.
template <class Class>
bool destroy_object(void* object, const bool& array) {
    if (array)
        delete[] static_cast<Class*>(object);
    else
        delete static_cast<Class*>(object);
    return true;
}
