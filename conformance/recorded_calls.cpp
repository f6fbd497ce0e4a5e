#include "conformance/recorded_calls.h"

namespace conformance {

void Receiver::listen(EventObject& sender, const char* event) {
    connect(sender, CoreString(event), &Receiver::on_event, nullptr);
}

void Receiver::on_event(AppBase&, const EventInfo&, OfObject*) {
    calls.append(name).append(1, ' ');
    if (action)
        action();
}

void raise(EventObject& sender, const char* event) {
    sender.raise_event(CoreString(event));
}

} // namespace conformance
