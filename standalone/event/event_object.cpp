#include "host/event/event_object.h"

#include <list>
#include <string>
#include <unordered_map>
#include <vector>

#include "standalone/core/class_destructor.h"

namespace {

struct Connection;
using ConnectionPtr = std::shared_ptr<Connection>;
using ConnectionList = std::list<ConnectionPtr>;

// Listed by both objects that it joins. A dispatch in progress keeps it alive after its end.
struct Connection {
    EventObject* sender;
    EventObject* receiver; // null once the connection ended
    CoreString event;
    EventObject::Handler handler;
    void* user_data;

    ConnectionList* outgoing;
    ConnectionList::iterator outgoing_position;
    ConnectionList* incoming;
    ConnectionList::iterator incoming_position;
};

// Takes its own reference: the lists that are shortened here may hold the last ones.
void end_connection(ConnectionPtr connection) {
    connection->outgoing->erase(connection->outgoing_position);
    connection->incoming->erase(connection->incoming_position);
    connection->sender = connection->receiver = nullptr;
}

} // namespace

struct EventObject::State {
    std::unordered_map<std::string, ConnectionList> outgoing_by_event;
    ConnectionList incoming;

    ~State() {
        while (!incoming.empty())
            end_connection(incoming.front());
        for (auto& [event, outgoing] : outgoing_by_event)
            while (!outgoing.empty())
                end_connection(outgoing.front());
    }
};

EventObject::EventObject() = default;

EventObject::EventObject(const EventObject& other) : CoreCustomData(other) {}

EventObject::EventObject(EventObject&& other) noexcept : CoreCustomData(other) {}

EventObject& EventObject::operator=(const EventObject&) {
    return *this;
}

EventObject& EventObject::operator=(EventObject&&) noexcept {
    return *this;
}

EventObject::~EventObject() = default;

const CoreClassInfo& EventObject::get_class_info() const {
    return class_info();
}

const CoreClassInfo& EventObject::class_info() {
    static const CoreClassInfo& info = CoreClassInfo::new_class("EventObject", destroy_object<EventObject>,
                                                                CoreCustomData::class_info(), nullptr);
    return info;
}

EventObject::State& EventObject::get_state() {
    if (!state)
        state = std::make_unique<State>();
    return *state;
}

void EventObject::connect_handler(EventObject& sender, const CoreString& event, Handler handler,
                                  void* user_data) {
    ConnectionList& outgoing = sender.get_state().outgoing_by_event[std::string(event.view())];
    ConnectionList& incoming = get_state().incoming;
    const auto connection = std::make_shared<Connection>(
        Connection{&sender, this, event, handler, user_data, &outgoing, {}, &incoming, {}});
    // Both entries are made before either list gets one: half a connection would outlive the other object.
    ConnectionList outgoing_entry{connection}, incoming_entry{connection};
    connection->outgoing_position = outgoing_entry.begin();
    connection->incoming_position = incoming_entry.begin();
    outgoing.splice(outgoing.end(), outgoing_entry);
    incoming.splice(incoming.end(), incoming_entry);
}

void EventObject::disconnect(EventObject& sender) {
    if (!state)
        return;
    for (auto next = state->incoming.begin(); next != state->incoming.end();) {
        const ConnectionPtr connection = *next++;
        if (connection->sender == &sender)
            end_connection(connection);
    }
}

void EventObject::raise_event(const CoreString& event, OfObject* object) {
    if (!state)
        return;
    const auto found = state->outgoing_by_event.find(std::string(event.view()));
    if (found == state->outgoing_by_event.end())
        return;
    // From here on a handler may destroy this object, which ends every connection of the copy.
    const std::vector<ConnectionPtr> connections(found->second.begin(), found->second.end());
    for (const ConnectionPtr& connection : connections)
        if (EventObject* const receiver = connection->receiver)
            (receiver->*connection->handler)(*this, EventInfo{connection->event, connection->user_data},
                                             object);
}
