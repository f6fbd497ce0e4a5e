#include "host/of/of_enum.h"

#include <gtest/gtest.h>

#include "host/event/event_ids.h"
#include "host/of/of_object_factory.h"

namespace {

constexpr unsigned int NOT_FOUND = 0xFFFFFFFFu;

class EnumObserver : public EventObject {
public:
    explicit EnumObserver(OfEnum& observed) {
        connect(observed, EVT_ID_OF_ENUM_CHANGE, &EnumObserver::on_change, nullptr);
    }
    void on_change(AppBase& sender, const EventInfo&, OfObject*) {
        ++calls;
        seen_count = static_cast<OfEnum&>(sender).get_value_count();
    }
    int calls = 0;
    unsigned int seen_count = 0;
};

TEST(OfEnum, LabelsKeepTheirOrderAndValues) {
    OfEnum roles("roles", 77u);
    roles.add_value("scene", 5);
    roles.add_value("data", 3);
    EXPECT_EQ(roles.get_name(), "roles");
    EXPECT_EQ(roles.get_value_count(), 2u);
    EXPECT_EQ(roles.get_label(0), "scene");
    EXPECT_EQ(roles.get_label(1), "data");
    EXPECT_EQ(roles.get_value("data"), 3u);
    EXPECT_EQ(roles.get_value_from_label("scene"), 5u);
    EXPECT_EQ(roles.get_value_by_index(1), 3u);
    EXPECT_EQ(roles.find_label_index("data"), 1u);
}

TEST(OfEnum, UnknownLabelsAndPositionsHaveNeutralAnswers) {
    OfEnum roles("roles", 77u);
    roles.add_value("scene", 5);
    EXPECT_EQ(roles.get_invalid_value(), 77u);
    EXPECT_EQ(roles.get_value("Scene"), 77u);
    EXPECT_EQ(roles.get_value_by_index(1), 77u);
    EXPECT_EQ(roles.find_label_index("sc"), NOT_FOUND);
    EXPECT_TRUE(roles.get_label(1).is_empty());
}

TEST(OfEnum, TheFirstOfEqualLabelsIsFound) {
    OfEnum roles("roles", 77u);
    roles.add_value("a", 1);
    roles.add_value("a", 2);
    EXPECT_EQ(roles.find_label_index("a"), 0u);
    EXPECT_EQ(roles.get_value("a"), 1u);
    EXPECT_EQ(roles.get_value_count(), 2u);
}

TEST(OfEnum, AddValuesStopsAtTheShorterArray) {
    OfEnum roles("roles", 77u);
    CoreVector<CoreString> labels;
    CoreVector<unsigned int> values;
    for (const char* label : {"a", "b", "c"})
        labels.append(label);
    values.append(10);
    values.append(20);
    roles.add_values(labels, values);
    EXPECT_EQ(roles.get_value_count(), 2u);
    EXPECT_EQ(roles.get_value("b"), 20u);
    EXPECT_EQ(roles.get_change_count(), 1u);
}

TEST(OfEnum, AddingNoValuesIsNoChange) {
    OfEnum roles("roles", 77u);
    const unsigned long long revision = roles.get_revision();
    CoreVector<CoreString> labels;
    CoreVector<unsigned int> values;
    roles.add_values(labels, values);
    EXPECT_EQ(roles.get_change_count(), 0u);
    EXPECT_EQ(roles.get_revision(), revision);
    labels.append("a");
    values.append(1);
    roles.add_values(labels, values);
    EXPECT_EQ(roles.get_change_count(), 1u);
    EXPECT_GT(roles.get_revision(), revision);
}

TEST(OfEnum, TheSeparatorIsEmptyUntilSet) {
    OfEnum roles("roles", 77u);
    EXPECT_TRUE(roles.get_separator().is_empty());
    roles.set_separator('|');
    EXPECT_EQ(roles.get_separator(), "|");
}

TEST(OfEnum, ObserversHearOfEveryChangeWhileItIsAwake) {
    OfEnum roles("roles", 77u);
    EnumObserver observer(roles);
    roles.remove_all_values();
    EXPECT_EQ(observer.calls, 0);
    roles.add_value("a", 1);
    roles.add_value("b", 2);
    EXPECT_EQ(observer.calls, 2);
    EXPECT_EQ(observer.seen_count, 2u);
    roles.remove_all_values();
    EXPECT_EQ(observer.calls, 3);
    EXPECT_EQ(roles.get_change_count(), 3u);
    EXPECT_EQ(roles.find_label_index("a"), NOT_FOUND);
}

TEST(OfEnum, ARebuildAsleepIsOneChange) {
    OfEnum roles("roles", 77u);
    roles.add_value("old", 0);
    EnumObserver observer(roles);
    roles.asleep();
    roles.asleep();
    EXPECT_TRUE(roles.is_asleep());
    roles.remove_all_values();
    roles.add_value("a", 1);
    roles.awake(true);
    EXPECT_EQ(observer.calls, 0);
    roles.add_value("b", 2);
    roles.awake(true);
    EXPECT_FALSE(roles.is_asleep());
    EXPECT_EQ(observer.calls, 1);
    EXPECT_EQ(observer.seen_count, 2u);
}

TEST(OfEnum, TheLastAwakeDecidesWhetherObserversAreTold) {
    OfEnum roles("roles", 77u);
    EnumObserver observer(roles);
    roles.asleep();
    roles.add_value("a", 1);
    roles.awake(false);
    EXPECT_EQ(observer.calls, 0);
    roles.asleep();
    roles.awake(true);
    EXPECT_EQ(observer.calls, 0) << "nothing changed in this sleep";
    roles.awake(true);
    EXPECT_EQ(observer.calls, 0) << "it was not asleep";
}

TEST(OfEnum, OneSleepIsASleep) {
    OfEnum roles("roles", 77u);
    EXPECT_FALSE(roles.is_asleep());
    roles.asleep();
    EXPECT_TRUE(roles.is_asleep());
    roles.awake(false);
    EXPECT_FALSE(roles.is_asleep());
}

TEST(OfEnum, TheRevisionGrowsWithEveryEdit) {
    OfEnum roles("roles", 77u);
    unsigned long long revision = roles.get_revision();
    const auto expect_growth = [&](const char* edit) {
        EXPECT_GT(roles.get_revision(), revision) << edit;
        revision = roles.get_revision();
    };
    roles.add_value("a", 1);
    expect_growth("add_value");
    roles.set_separator('/');
    expect_growth("set_separator");
    roles.asleep();
    roles.remove_all_values();
    expect_growth("remove_all_values");
}

TEST(OfEnum, TensOfThousandsOfLabelsAreFound) {
    OfEnum spaces("spaces", NOT_FOUND);
    for (unsigned int i = 0; i < 50'000; ++i)
        spaces.add_value(CoreString::from_unsigned(i), i * 2);
    for (unsigned int i = 0; i < 50'000; ++i)
        ASSERT_EQ(spaces.get_value(CoreString::from_unsigned(i)), i * 2);
}

TEST(OfObjectFactory, ANewEnumTakesTheOldOnesPlaceAndBothLive) {
    OfObjectFactory factory;
    EXPECT_EQ(factory.get_enum("roles"), nullptr);
    OfEnum* const first = factory.add_enum("roles", 1);
    first->add_value("kept", 4);
    OfEnum* const second = factory.add_enum("roles", 2);
    EXPECT_NE(first, second);
    EXPECT_EQ(factory.get_enum("roles"), second);
    EXPECT_EQ(second->get_invalid_value(), 2u);
    EXPECT_EQ(first->get_value("kept"), 4u);
}

} // namespace
