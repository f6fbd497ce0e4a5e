#include <memory>
#include <stdexcept>

#include "conformance/check.h"
#include "conformance/recorded_calls.h"

namespace conformance {

namespace {

void check_connected_meanwhile(Findings& findings) {
    Calls calls;
    EventObject sender;
    Receiver first("first", calls), late("late", calls);
    first.listen(sender, CHANGED);
    bool is_connected = false;
    first.action = [&] {
        if (!is_connected)
            late.listen(sender, CHANGED);
        is_connected = true;
    };
    raise(sender, CHANGED);
    findings.expect_text(calls, "first ", "the calls of the event during which another receiver connected");
    calls.clear();
    raise(sender, CHANGED);
    findings.expect_text(calls, "first late ", "the calls of the next event");
}

void check_disconnected_meanwhile(Findings& findings) {
    Calls calls;
    EventObject sender;
    Receiver first("first", calls), second("second", calls), third("third", calls);
    for (Receiver* receiver : {&first, &second, &third})
        receiver->listen(sender, CHANGED);
    first.action = [&] {
        first.disconnect(sender);
        second.disconnect(sender);
    };
    raise(sender, CHANGED);
    findings.expect_text(calls, "first third ",
                         "the calls of the event during which two receivers disconnected");
}

void check_raised_meanwhile(Findings& findings) {
    Calls calls;
    EventObject sender;
    Receiver first("first", calls), second("second", calls), other("other", calls);
    first.listen(sender, CHANGED);
    second.listen(sender, CHANGED);
    other.listen(sender, OTHER);
    first.action = [&] {
        raise(sender, OTHER);
        calls += "returned ";
    };
    raise(sender, CHANGED);
    findings.expect_text(calls, "first other returned second ",
                         "the calls of an event and one raised by its handler");
}

void check_receiver_destroyed(Findings& findings) {
    Calls calls;
    EventObject sender;
    auto first = std::make_unique<Receiver>("first", calls);
    Receiver second("second", calls);
    first->listen(sender, CHANGED);
    second.listen(sender, CHANGED);
    first.reset();
    raise(sender, CHANGED);
    findings.expect_text(calls, "second ", "the calls after the first receiver was destroyed");
}

void check_receiver_destroyed_meanwhile(Findings& findings) {
    Calls calls;
    EventObject sender;
    Receiver first("first", calls), third("third", calls);
    auto second = std::make_unique<Receiver>("second", calls);
    first.listen(sender, CHANGED);
    second->listen(sender, CHANGED);
    third.listen(sender, CHANGED);
    first.action = [&] { second.reset(); };
    raise(sender, CHANGED);
    findings.expect_text(calls, "first third ",
                         "the calls of the event during which a receiver was destroyed");
}

void check_sender_destroyed(Findings& findings) {
    Calls calls;
    EventObject next;
    Receiver first("first", calls);
    auto sender = std::make_unique<EventObject>();
    first.listen(*sender, CHANGED);
    sender.reset();
    first.listen(next, CHANGED);
    raise(next, CHANGED);
    findings.expect_text(calls, "first ", "the calls for the sender that is left");
}

void check_sender_destroyed_meanwhile(Findings& findings) {
    Calls calls;
    auto sender = std::make_unique<EventObject>();
    Receiver first("first", calls), second("second", calls);
    first.listen(*sender, CHANGED);
    second.listen(*sender, CHANGED);
    first.action = [&] { sender.reset(); };
    raise(*sender, CHANGED);
    findings.expect_text(calls, "first ", "the calls of the event during which its sender was destroyed");
}

void check_throwing_handler(Findings& findings) {
    Calls calls;
    EventObject sender;
    Receiver first("first", calls);
    first.listen(sender, CHANGED);
    first.action = [] { throw std::runtime_error("refused"); };
    try {
        raise(sender, CHANGED);
    } catch (const std::runtime_error&) {
    }
    first.action = nullptr;
    raise(sender, CHANGED);
    findings.expect_text(calls, "first first ", "the calls of two events, with an exception in the first");
}

} // namespace

Checks list_event_change_checks() {
    return {
        {"events.connect-meanwhile", "a connection made by a handler is first used by the next event",
         "widgets that open during a change of the config are updated twice", check_connected_meanwhile},
        {"events.disconnect-meanwhile", "a connection ended by a handler is not used again",
         "widgets that close during a change of the config are called", check_disconnected_meanwhile},
        {"events.raise-meanwhile", "an event raised by a handler is complete when raise_event returns",
         "format associations are not checked before the change of a preference ends",
         check_raised_meanwhile},
        {"events.receiver-destroyed", "a connection ends with its receiver",
         "widgets that were closed are called", check_receiver_destroyed},
        {"events.receiver-destroyed-meanwhile", "a receiver destroyed by a handler is not called",
         "widgets that close during a change of the config are called", check_receiver_destroyed_meanwhile},
        {"events.sender-destroyed", "a connection ends with its sender",
         "the ColorIO object, which lives longer than the application, crashes", check_sender_destroyed},
        {"events.sender-destroyed-meanwhile", "a sender destroyed by a handler ends its event",
         "an application that ends during a change crashes", check_sender_destroyed_meanwhile},
        {"events.exception", "an object whose handler threw an exception raises further events",
         "one faulty listener stops the module's events", check_throwing_handler},
    };
}

} // namespace conformance
