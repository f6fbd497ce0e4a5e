#pragma once

#include <memory>

#include "host/core/core_base_object.h"
#include "host/core/core_string.h"
#include "host/host_export.h"

class EventObject;
class OfObject;

/// What a handler is told as the sender: whatever object raised the event, the application for its own.
using AppBase = EventObject;

/// Raises events and receives them. An event is identified by its name.
/// Connections belong to the objects they join: they end with either of the two. A copied or moved-to object
/// starts without any; assignment leaves both sides' connections as they are. For one thread at a time.
class HOST_API EventObject : public CoreCustomData {
public:
    struct EventInfo {
        const CoreString& id;
        void* user_data; ///< As given to `connect`.
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

    /// Has `handler` of this object called whenever `sender` raises `event`. Connecting the same handler
    /// twice calls it twice.
    template <class Receiver>
    void connect(EventObject& sender, const CoreString& event,
                 void (Receiver::*handler)(AppBase&, const EventInfo&, OfObject*), void* user_data) {
        connect_handler(sender, event, static_cast<Handler>(handler), user_data);
    }
    /// Ends every connection from `sender` to this object.
    void disconnect(EventObject& sender);

    /// Calls every handler connected to `event` of this object, in the order of connection, before returning.
    /// Handlers may raise further events, connect, disconnect, and destroy receivers or this object: a
    /// connection made meanwhile is first called by the next event, one that ended is called no more.
    void raise_event(const CoreString& event, OfObject* object = nullptr);

private:
    void connect_handler(EventObject& sender, const CoreString& event, Handler handler, void* user_data);

    struct State;
    State& get_state();
    std::unique_ptr<State> state;
};
