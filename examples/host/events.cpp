#include <algorithm>
#include <map>
#include <vector>

#include "host/event/event_ids.h"
#include "host/event/event_object.h"

namespace {

struct Connection {
    EventObject* sender;
    EventObject* receiver; // null once the connection ended: an event in progress may still hold it
    CoreString event;
    EventObject::Handler handler;
    void* user_data;
};
using Connections = std::vector<std::shared_ptr<Connection>>;

// Those of all objects, in the order in which they were made. A host with many objects has a list for each
// sender.
Connections& get_connections() {
    static auto* const connections = new Connections; // never destroyed: objects may live until the end
    return *connections;
}

template <class Condition>
void end_connections(Condition ends) {
    Connections& all = get_connections();
    const auto kept =
        std::stable_partition(all.begin(), all.end(), [&](const auto& known) { return !ends(*known); });
    std::for_each(kept, all.end(), [](const auto& known) { known->receiver = nullptr; });
    all.erase(kept, all.end());
}

} // namespace

struct EventObject::State {};

EventObject::EventObject() = default;
EventObject::EventObject(const EventObject& other) : CoreCustomData(other) {}
EventObject::EventObject(EventObject&& other) noexcept : CoreCustomData(other) {}
EventObject& EventObject::operator=(const EventObject&) {
    return *this;
}
EventObject& EventObject::operator=(EventObject&&) noexcept {
    return *this;
}

EventObject::~EventObject() {
    end_connections(
        [this](const Connection& known) { return known.sender == this || known.receiver == this; });
}

void EventObject::connect_handler(EventObject& sender, const CoreString& event, Handler handler,
                                  void* user_data) {
    get_connections().push_back(
        std::make_shared<Connection>(Connection{&sender, this, event, handler, user_data}));
}

void EventObject::disconnect(EventObject& sender) {
    end_connections(
        [&](const Connection& known) { return known.sender == &sender && known.receiver == this; });
}

void EventObject::raise_event(const CoreString& event, OfObject* object) {
    Connections meant; // a copy: handlers connect, disconnect and destroy, this object too
    for (const auto& known : get_connections())
        if (known->sender == this && known->event == event)
            meant.push_back(known);
    for (const auto& known : meant)
        if (EventObject* const receiver = known->receiver)
            (receiver->*known->handler)(*this, EventInfo{known->event, known->user_data}, object);
}

bool event_debug_collisions(unsigned int hash, const CoreString& name) {
    static auto* const names = new std::map<unsigned int, CoreString>; // made before main starts
    return names->try_emplace(hash, name).first->second != name;
}
