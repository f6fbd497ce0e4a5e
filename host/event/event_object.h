#pragma once

#include <memory>

#include "host/core/core_base_object.h"
#include "host/core/core_string.h"
#include "host/host_export.h"

class EventObject;
class OfObject;

/// Type of a handler's sender: the object that raised the event (the application for application events).
using AppBase = EventObject;

/// Raises events and receives them. An event is identified by its name.
/// A connection ends when either of its objects is destroyed. A copied or moved-to object starts without
/// connections; assignment does not change those of either side. For one thread at a time.
class HOST_API EventObject : public CoreCustomData {
public:
    /// What a handler receives.
    struct EventInfo {
        const CoreString& id; ///< Name of the event; valid during the call.
        void* user_data;      ///< As given to `connect`.
    };
    using Handler = void (EventObject::*)(AppBase& sender, const EventInfo& info, OfObject* object);

    EventObject();
    EventObject(const EventObject& other);
    EventObject(EventObject&& other) noexcept;
    EventObject& operator=(const EventObject& other);
    EventObject& operator=(EventObject&& other) noexcept;
    ~EventObject() override;

    const CoreClassInfo& get_class_info() const override;
    static const CoreClassInfo& class_info();

    /// Calls `handler` of this object whenever `sender` raises `event`. A handler connected twice is called
    /// twice. `user_data` is passed on, not owned.
    template <class Receiver>
    void connect(EventObject& sender, const CoreString& event,
                 void (Receiver::*handler)(AppBase&, const EventInfo&, OfObject*), void* user_data) {
        connect_handler(sender, event, static_cast<Handler>(handler), user_data);
    }
    /// Removes every connection from `sender` to this object.
    void disconnect(EventObject& sender);

    /// Calls every handler connected to `event` of this object, in the order of connection, before returning.
    /// Handlers may raise further events, connect, disconnect, and destroy receivers or this object: a
    /// connection made meanwhile is first used by the next event, a removed one is not used again.
    void raise_event(const CoreString& event, OfObject* object = nullptr);

private:
    void connect_handler(EventObject& sender, const CoreString& event, Handler handler, void* user_data);

    struct State;
    State& get_state();
    std::unique_ptr<State> state;
};
