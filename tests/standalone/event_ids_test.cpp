#include "host/event/event_ids.h"

#include <gtest/gtest.h>

#include <set>
#include <thread>
#include <vector>

#include <unistd.h>

namespace {

#define NAME_OF_EVENT(id) #id,
constexpr const char* EVENT_NAMES[] = {HOST_EVENTS(NAME_OF_EVENT)};

// Another name for a hash is a collision only if an event was registered under that hash before.
int count_events_without_registration() {
    int count = 0;
    for (const char* name : EVENT_NAMES)
        count += !event_debug_collisions(CoreHash::generate_jenkins(name), CoreString("EVT_ID_TEST_") + name);
    return count;
}

// In a separate process, since registered collisions stay.
TEST(EventIdsDeathTest, EveryEventIsRegisteredUnderItsHashWhenTheProgramIsLoaded) {
    EXPECT_EXIT(_exit(count_events_without_registration()), testing::ExitedWithCode(0), "");
}

TEST(EventIds, TheHostNames114Events) {
    EXPECT_EQ(std::set<std::string>(std::begin(EVENT_NAMES), std::end(EVENT_NAMES)).size(), 114u);
}

TEST(EventIds, NoTwoEventsOfTheHostCollide) {
    for (const char* name : EVENT_NAMES)
        EXPECT_FALSE(event_debug_collisions(CoreHash::generate_jenkins(name), name)) << name;
}

TEST(EventIds, ACollisionIsReportedOnceOnStandardError) {
    testing::internal::CaptureStderr();
    EXPECT_FALSE(event_debug_collisions(0x12345678u, "EVT_ID_TEST_ONE"));
    EXPECT_FALSE(event_debug_collisions(0x12345678u, "EVT_ID_TEST_ONE"));
    EXPECT_TRUE(event_debug_collisions(0x12345678u, "EVT_ID_TEST_OTHER"));
    EXPECT_TRUE(event_debug_collisions(0x12345678u, "EVT_ID_TEST_OTHER"));
    EXPECT_TRUE(event_debug_collisions(0x12345678u, "EVT_ID_TEST_ONE"));
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "Event 'EVT_ID_TEST_OTHER' has the same hash 0x12345678 as event 'EVT_ID_TEST_ONE'.\n");
}

TEST(EventIds, SeveralThreadsMayRegisterAtOnce) {
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([] {
            for (unsigned int hash = 0xA0000000u; hash < 0xA0000400u; ++hash)
                event_debug_collisions(hash, CoreString("EVT_ID_TEST_") + CoreString::from_unsigned(hash));
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_FALSE(event_debug_collisions(0xA0000000u, "EVT_ID_TEST_2684354560"));
}

} // namespace
