#include "conformance/check.h"
#include "conformance/recorded_calls.h"
#include "host/event/event_ids.h"

namespace conformance {

namespace {

/// Keeps what its handler was called with.
class Witness : public EventObject {
public:
    void on_event(AppBase& raised_by, const EventInfo& info, OfObject* with) {
        sender = &raised_by;
        id = info.id.view();
        user_data = info.user_data;
        object = with;
    }
    EventObject* sender = nullptr;
    std::string id;
    void* user_data = nullptr;
    OfObject* object = nullptr;
};

void check_arguments(Findings& findings) {
    EventObject sender;
    Witness witness;
    int data = 0;
    OfObject* const object = reinterpret_cast<OfObject*>(&data); // Only passed on.
    witness.connect(sender, CoreString(CHANGED), &Witness::on_event, &data);
    sender.raise_event(CoreString(CHANGED), object);
    findings.expect(witness.sender == &sender, "the sender is the object that raised the event");
    findings.expect_text(witness.id, CHANGED, "the name of the event");
    findings.expect(witness.user_data == &data, "the user data is that of connect");
    findings.expect(witness.object == object, "the object is that of raise_event");
}

void check_names(Findings& findings) {
    constexpr const char* PATH_CHANGED = "CONFORMANCE_APPLICATION_FILE_PATH_CHANGED";
    Calls calls;
    EventObject sender, stranger;
    Receiver first("first", calls);
    first.listen(sender, PATH_CHANGED);
    raise(sender, OTHER);
    raise(sender, "CONFORMANCE_APPLICATION_FILE_USE_CHANGED");
    raise(sender, "CONFORMANCE_APPLICATION_FILE_PATH_CHANGED_TOO");
    raise(stranger, PATH_CHANGED);
    findings.expect_text(calls, "", "calls for other events and other senders");
    raise(sender, PATH_CHANGED);
    findings.expect_text(calls, "first ", "calls for the event by another string of its name");
}

void check_order(Findings& findings) {
    Calls calls;
    EventObject sender;
    Receiver third("third", calls), first("first", calls), second("second", calls);
    first.listen(sender, CHANGED);
    second.listen(sender, CHANGED);
    third.listen(sender, CHANGED);
    raise(sender, CHANGED);
    calls += "returned ";
    findings.expect_text(calls, "first second third returned ", "the calls");
}

void check_repeated(Findings& findings) {
    Calls calls;
    EventObject sender;
    Receiver first("first", calls);
    first.listen(sender, CHANGED);
    first.listen(sender, CHANGED);
    raise(sender, CHANGED);
    findings.expect_text(calls, "first first ", "the calls of a handler that was connected twice");
}

void check_own_events(Findings& findings) {
    Calls calls;
    Receiver own("own", calls);
    own.listen(own, CHANGED);
    raise(own, CHANGED);
    findings.expect_text(calls, "own ", "the calls");
}

void check_disconnect(Findings& findings) {
    Calls calls;
    EventObject sender, other;
    Receiver first("first", calls), second("second", calls);
    first.listen(sender, CHANGED);
    first.listen(sender, OTHER);
    first.listen(other, CHANGED);
    second.listen(sender, CHANGED);
    first.disconnect(sender);
    first.disconnect(first);
    raise(sender, CHANGED);
    raise(sender, OTHER);
    findings.expect_text(calls, "second ", "the calls after the first receiver disconnected");
    calls.clear();
    raise(other, CHANGED);
    findings.expect_text(calls, "first ", "the calls for its other sender");
}

void check_copies(Findings& findings) {
    Calls calls;
    EventObject sender;
    Receiver first("first", calls);
    first.listen(sender, CHANGED);
    EventObject copy(sender);
    EventObject moved(std::move(copy));
    raise(copy, CHANGED);
    raise(moved, CHANGED);
    findings.expect_text(calls, "", "the calls for copies of the sender");
    EventObject assigned;
    sender = assigned;
    assigned = sender;
    sender = std::move(assigned);
    raise(assigned, CHANGED);
    findings.expect_text(calls, "", "the calls for an object that the sender was assigned to");
    raise(sender, CHANGED);
    findings.expect_text(calls, "first ", "the calls for a sender that was assigned to");
}

void check_collisions(Findings& findings) {
    constexpr unsigned int HASH = 0x0C0FFEE0;
    findings.expect(!event_debug_collisions(HASH, CoreString("CONFORMANCE_FIRST")),
                    "a new hash does not collide");
    findings.expect(!event_debug_collisions(HASH, CoreString("CONFORMANCE_FIRST")),
                    "a name registered by several source files does not collide with itself");
    findings.expect(event_debug_collisions(HASH, CoreString("CONFORMANCE_SECOND")),
                    "another name with that hash collides");
}

} // namespace

Checks list_event_checks() {
    return {
        {"events.arguments", "a handler receives the sender, the name, the user data and the object",
         "the handlers take the sender for the application and crash", check_arguments},
        {"events.names", "an event is identified by its sender and its text",
         "changes of preferences are not followed, or the wrong ones", check_names},
        {"events.order", "raise_event calls the handlers in the order of connection and then returns",
         "formats are checked before the new config is published", check_order},
        {"events.repeated", "a handler that is connected twice is called twice",
         "an application that starts the module again has other calls than the module expects",
         check_repeated},
        {"events.own", "an object can be connected to itself",
         "the ColorIO object does not follow changes of its config", check_own_events},
        {"events.disconnect", "disconnect ends the connections from one sender to one receiver",
         "widgets that stopped listening to the ColorIO object are called", check_disconnect},
        {"events.copies", "copies start without connections, assignment does not change them",
         "copies of the ColorIO object follow every event again", check_copies},
        {"events.collisions", "event_debug_collisions reports another name with the same hash",
         "two events of the host that are mistaken for each other are not noticed", check_collisions},
    };
}

} // namespace conformance
