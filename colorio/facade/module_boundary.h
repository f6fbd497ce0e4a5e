#pragma once

#include <type_traits>
#include <utility>

class CoreString;

/// Logs the exception being handled at level 1. To be called inside a catch block.
void log_current_exception() noexcept;

/// The module's boundary: runs `action` for an operation of a public class. Any exception (shortage of
/// memory, OpenColorIO's, the host's) is logged; then `undo`, which must not throw, runs and `failure` is
/// returned. `failure` is read only then, so it may be an object that `action` uses too.
template <class Failure, class Action, class Undo>
std::decay_t<Failure> at_boundary(Failure&& failure, Action&& action, Undo&& undo) {
    try {
        return std::forward<Action>(action)();
    } catch (...) {
        log_current_exception();
        undo();
        return std::forward<Failure>(failure);
    }
}

template <class Failure, class Action>
std::decay_t<Failure> at_boundary(Failure&& failure, Action&& action) {
    return at_boundary(std::forward<Failure>(failure), std::forward<Action>(action), [] {});
}

/// For operations without a result.
template <class Action>
void at_boundary(Action&& action) {
    at_boundary(false, [&] {
        std::forward<Action>(action)();
        return true;
    });
}

/// Raises an event on the ColorIO instance, which is made if there is none. Exceptions of listeners are
/// caught.
void raise_module_event(const CoreString& event);
