#pragma once

#include <memory>

#include "host/core/core_string.h"
#include "host/host_export.h"

class OfEnum;

/// Creates and owns the objects that the application shares by name.
class HOST_API OfObjectFactory {
public:
    OfObjectFactory();
    ~OfObjectFactory();
    OfObjectFactory(const OfObjectFactory&) = delete;
    OfObjectFactory& operator=(const OfObjectFactory&) = delete;

    /// Creates an empty enumeration whose lookups return `invalid_value` for unknown labels. It replaces an
    /// earlier one of that name; both live as long as the factory.
    OfEnum* add_enum(const CoreString& name, const unsigned int& invalid_value);
    /// The enumeration of that name; null when there is none.
    OfEnum* get_enum(const CoreBasicString& name) const;

private:
    struct State;
    std::unique_ptr<State> state;
};
