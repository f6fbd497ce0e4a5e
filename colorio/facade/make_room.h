#pragma once

#include "host/core/core_vector.h"

/// Grows a full vector as `append` would, so that appending or inserting one moved element cannot fail
/// afterwards.
template <class Element>
void make_room(CoreVector<Element>& elements) {
    const unsigned int capacity = elements.get_capacity();
    if (elements.get_count() == capacity)
        elements.reserve(capacity == 0 ? 1 : capacity * 2);
}
