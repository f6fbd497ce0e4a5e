#pragma once

#include "host/core/core_vector.h"

/// Lets the vector grow by its own rule if it is full, so that appending or inserting one element, moved,
/// cannot fail afterwards.
template <class Element>
void make_room(CoreVector<Element>& elements) {
    const unsigned int capacity = elements.get_capacity();
    if (elements.get_count() == capacity)
        elements.reserve(capacity == 0 ? 1 : capacity * 2);
}
