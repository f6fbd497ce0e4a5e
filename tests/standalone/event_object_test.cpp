#include "host/event/event_object.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "host/of/of_object.h"

namespace {

// Notes what it receives in a shared list, then does what a test asks for.
class Receiver : public EventObject {
public:
    Receiver(std::string name, std::vector<std::string>& notes) : name(std::move(name)), notes(&notes) {}

    void listen(EventObject& sender, const CoreString& event, void* user_data = nullptr) {
        connect(sender, event, &Receiver::note, user_data);
    }
    void note(AppBase& sender, const EventInfo& info, OfObject* object) {
        last_sender = &sender;
        last_object = object;
        last_user_data = info.user_data;
        notes->push_back(name + ":" + info.id.get_data());
        // A copy: the reaction may destroy this object.
        if (const std::function<void()> reaction = then)
            reaction();
    }

    std::string name;
    std::vector<std::string>* notes;
    std::function<void()> then;
    AppBase* last_sender = nullptr;
    OfObject* last_object = nullptr;
    void* last_user_data = nullptr;
};

using Notes = std::vector<std::string>;

class Events : public testing::Test {
protected:
    std::unique_ptr<Receiver> make(const std::string& name) {
        return std::make_unique<Receiver>(name, notes);
    }

    void listen_all(const std::vector<Receiver*>& receivers) {
        for (Receiver* receiver : receivers)
            receiver->listen(*sender, PING);
    }

    Notes notes;
    std::unique_ptr<EventObject> sender = std::make_unique<EventObject>();
    const CoreString PING = "PING";
    const CoreString PONG = "PONG";
};

TEST_F(Events, HandlersRunInTheOrderOfConnection) {
    const auto a = make("a"), b = make("b");
    b->listen(*sender, PING);
    a->listen(*sender, PING);
    b->listen(*sender, PONG);
    b->listen(*sender, PING);
    sender->raise_event(PING);
    EXPECT_EQ(notes, (Notes{"b:PING", "a:PING", "b:PING"}));
}

TEST_F(Events, HandlersAreToldSenderObjectAndUserData) {
    const auto a = make("a");
    OfObject object;
    int data = 0;
    a->listen(*sender, PING, &data);
    sender->raise_event(PING, &object);
    EXPECT_EQ(a->last_sender, sender.get());
    EXPECT_EQ(a->last_object, &object);
    EXPECT_EQ(a->last_user_data, &data);
}

TEST_F(Events, AnEventWithoutListenersIsNoMatter) {
    sender->raise_event(PING);
    const auto a = make("a");
    a->listen(*sender, PONG);
    sender->raise_event(PING);
    EXPECT_EQ(notes, Notes{});
}

TEST_F(Events, DisconnectEndsEveryConnectionFromThatSenderOnly) {
    EventObject other;
    const auto a = make("a"), b = make("b");
    a->listen(*sender, PING);
    a->listen(*sender, PONG);
    a->listen(other, PING);
    b->listen(*sender, PING);
    a->disconnect(*sender);
    sender->raise_event(PING);
    sender->raise_event(PONG);
    other.raise_event(PING);
    EXPECT_EQ(notes, (Notes{"b:PING", "a:PING"}));
}

TEST_F(Events, DestroyedReceiversAreCalledNoMore) {
    auto a = make("a");
    const auto b = make("b");
    a->listen(*sender, PING);
    b->listen(*sender, PING);
    a.reset();
    sender->raise_event(PING);
    EXPECT_EQ(notes, (Notes{"b:PING"}));
}

TEST_F(Events, ReceiversOutliveTheirSender) {
    const auto a = make("a");
    a->listen(*sender, PING);
    sender.reset();
    a->disconnect(*a);
    EXPECT_EQ(notes, Notes{});
}

TEST_F(Events, AnObjectMayListenToItself) {
    const auto a = make("a");
    a->listen(*a, PING);
    a->raise_event(PING);
    EXPECT_EQ(notes, (Notes{"a:PING"}));
}

TEST_F(Events, AConnectionMadeDuringAnEventIsFirstCalledByTheNext) {
    const auto a = make("a"), b = make("b");
    a->listen(*sender, PING);
    a->then = [&] { b->listen(*sender, PING); };
    sender->raise_event(PING);
    EXPECT_EQ(notes, (Notes{"a:PING"}));
    a->then = nullptr;
    sender->raise_event(PING);
    EXPECT_EQ(notes, (Notes{"a:PING", "a:PING", "b:PING"}));
}

TEST_F(Events, AConnectionEndedDuringAnEventIsCalledNoMore) {
    const auto a = make("a"), b = make("b"), c = make("c");
    listen_all({a.get(), b.get(), c.get()});
    a->then = [&] {
        a->disconnect(*sender);
        b->disconnect(*sender);
    };
    sender->raise_event(PING);
    sender->raise_event(PING);
    EXPECT_EQ(notes, (Notes{"a:PING", "c:PING", "c:PING"}));
}

TEST_F(Events, AHandlerMayDestroyItsReceiverAndTheNextOne) {
    auto a = make("a"), b = make("b");
    const auto c = make("c");
    listen_all({a.get(), b.get(), c.get()});
    a->then = [&] {
        b.reset();
        a.reset();
    };
    sender->raise_event(PING);
    EXPECT_EQ(notes, (Notes{"a:PING", "c:PING"}));
}

TEST_F(Events, AHandlerMayDestroyTheSender) {
    const auto a = make("a"), b = make("b");
    a->listen(*sender, PING);
    b->listen(*sender, PING);
    a->then = [&] { sender.reset(); };
    sender->raise_event(PING);
    EXPECT_EQ(notes, (Notes{"a:PING"}));
}

TEST_F(Events, HandlersMayRaiseFurtherEventsThatFinishFirst) {
    const auto a = make("a"), b = make("b");
    a->listen(*sender, PING);
    b->listen(*sender, PING);
    b->listen(*sender, PONG);
    a->then = [&] { sender->raise_event(PONG); };
    sender->raise_event(PING);
    EXPECT_EQ(notes, (Notes{"a:PING", "b:PONG", "b:PING"}));
}

TEST_F(Events, ANestedEventMayDestroyTheReceiverThatWaits) {
    const auto a = make("a");
    auto b = make("b");
    const auto killer = make("killer");
    a->listen(*sender, PING);
    b->listen(*sender, PING);
    killer->listen(*sender, PONG);
    a->then = [&] { sender->raise_event(PONG); };
    killer->then = [&] { b.reset(); };
    sender->raise_event(PING);
    EXPECT_EQ(notes, (Notes{"a:PING", "killer:PONG"}));
}

TEST_F(Events, TheEventsNameMayBelongToTheSenderThatIsDestroyed) {
    struct NamedSender : EventObject {
        CoreString event = "A_NAME_TOO_LONG_FOR_ANY_SMALL_STRING_BUFFER";
    };
    auto named = std::make_unique<NamedSender>();
    const auto a = make("a");
    a->listen(*named, named->event);
    a->then = [&] { named.reset(); };
    named->raise_event(named->event);
    EXPECT_EQ(notes, (Notes{"a:A_NAME_TOO_LONG_FOR_ANY_SMALL_STRING_BUFFER"}));
}

TEST_F(Events, CopiesAndMovedToObjectsStartWithoutConnections) {
    const auto a = make("a");
    a->listen(*sender, PING);
    EventObject copied_sender(*sender);
    EventObject moved_sender(std::move(*sender));
    Receiver copied_receiver(*a);
    copied_sender.raise_event(PING);
    moved_sender.raise_event(PING);
    EXPECT_EQ(notes, Notes{});
    sender->raise_event(PING);
    EXPECT_EQ(notes, (Notes{"a:PING"}));
}

TEST_F(Events, AssignmentLeavesBothSidesConnectionsAlone) {
    const auto a = make("a"), b = make("b");
    EventObject other;
    a->listen(*sender, PING);
    b->listen(other, PING);
    other = *sender;
    other.raise_event(PING);
    *sender = std::move(other);
    sender->raise_event(PING);
    EXPECT_EQ(notes, (Notes{"b:PING", "a:PING"}));
}

} // namespace
