#pragma once

#include <functional>
#include <string>

#include "host/event/event_object.h"

namespace conformance {

/// Two events that no host raises.
inline constexpr const char* CHANGED = "CONFORMANCE_CHANGED";
inline constexpr const char* OTHER = "CONFORMANCE_OTHER";

/// The names of receivers in the order in which their handlers were called, each with a blank behind it.
using Calls = std::string;

/// A receiver of events that records each call, and then runs `action` if there is one.
class Receiver : public EventObject {
public:
    Receiver(std::string name, Calls& calls) : name(std::move(name)), calls(calls) {}

    /// Connects the handler below; each call makes another string of its name, as each source file has one.
    void listen(EventObject& sender, const char* event);
    void on_event(AppBase& sender, const EventInfo& info, OfObject* object);

    std::function<void()> action;

private:
    std::string name;
    Calls& calls;
};

/// Raises `event`, by another string of its name.
void raise(EventObject& sender, const char* event);

} // namespace conformance
