#include "conformance/app_fixture.h"
#include "conformance/check.h"
#include "conformance/recorded_calls.h"
#include "host/of/of_enum.h"

namespace conformance {

namespace {

constexpr const char* ENUM_CHANGED = "EVT_ID_OF_ENUM_CHANGE";

/// An enumeration with an observer.
class ObservedEnum {
public:
    ObservedEnum() : list(app.add_enum("conformance_list")), observer("changed", calls) {
        observer.listen(list, ENUM_CHANGED);
    }

    /// How often the observer was called since the last time.
    size_t take_count() {
        const size_t count = calls.size() / Calls("changed ").size();
        calls.clear();
        return count;
    }

private:
    AppFixture app;
    Calls calls;

public:
    OfEnum& list;
    Receiver observer;
};

void check_awake_changes(Findings& findings) {
    ObservedEnum observed;
    unsigned int seen = 0;
    observed.observer.action = [&] { seen = observed.list.get_value_count(); };
    observed.list.add_value(CoreString("lin"), 3);
    findings.expect_number(observed.take_count(), 1, "the notifications of add_value");
    findings.expect_number(seen, 1, "the labels that the observer sees");
    observed.list.remove_all_values();
    findings.expect_number(observed.take_count(), 1, "the notifications of remove_all_values");
    findings.expect_number(seen, 0, "the labels that the observer sees then");
}

void check_asleep_changes(Findings& findings) {
    ObservedEnum observed;
    observed.list.asleep();
    observed.list.remove_all_values();
    observed.list.add_value(CoreString("lin"), 3);
    observed.list.add_value(CoreString("log"), 4);
    findings.expect_number(observed.take_count(), 0, "the notifications while asleep");
    findings.expect_text(observed.list.get_label(1).view(), "log", "a label that is read while asleep");
    observed.list.awake(true);
    findings.expect_number(observed.take_count(), 1, "the notifications of awake");
    observed.list.add_value(CoreString("last"), 5);
    findings.expect_number(observed.take_count(), 1, "the notifications of a change after awake");
}

void check_nested_sleep(Findings& findings) {
    ObservedEnum observed;
    observed.list.asleep();
    observed.list.asleep();
    observed.list.add_value(CoreString("lin"), 3);
    observed.list.awake(true);
    findings.expect_number(observed.take_count(), 0, "the notifications of the inner awake");
    observed.list.awake(true);
    findings.expect_number(observed.take_count(), 1, "the notifications of the outer awake");
}

void check_sleep_without_change(Findings& findings) {
    ObservedEnum observed;
    observed.list.asleep();
    observed.list.awake(true);
    findings.expect_number(observed.take_count(), 0, "the notifications");
}

void check_silent_awake(Findings& findings) {
    ObservedEnum observed;
    observed.list.asleep();
    observed.list.add_value(CoreString("lin"), 3);
    observed.list.awake(false);
    findings.expect_number(observed.take_count(), 0, "the notifications of awake(false)");
    observed.list.asleep();
    observed.list.awake(true);
    findings.expect_number(observed.take_count(), 0, "those of the next awake, without a change");
}

void check_surplus_awake(Findings& findings) {
    ObservedEnum observed;
    observed.list.awake(true);
    findings.expect_number(observed.take_count(), 0, "the notifications of awake without asleep");
    observed.list.asleep();
    observed.list.add_value(CoreString("lin"), 3);
    findings.expect_number(observed.take_count(), 0, "those of a change while asleep afterwards");
}

} // namespace

Checks list_enumeration_sleep_checks() {
    return {
        {"enumerations.awake",
         "a change of an enumeration that is awake notifies its observers once, after it",
         "menus show the labels of the old config", check_awake_changes},
        {"enumerations.asleep",
         "changes of an enumeration that is asleep notify its observers once, when it wakes",
         "menus are rebuilt for every color space, and see lists that are not complete",
         check_asleep_changes},
        {"enumerations.nested-sleep", "only the last awake ends a sleep that was begun several times",
         "menus are rebuilt in the middle of a change of the config", check_nested_sleep},
        {"enumerations.unchanged", "a sleep without a change notifies nobody",
         "menus are rebuilt although the lists are the same", check_sleep_without_change},
        {"enumerations.silent", "awake(false) notifies nobody, then and later",
         "menus are rebuilt although the lists are the same", check_silent_awake},
        {"enumerations.surplus-awake", "awake without asleep changes nothing",
         "menus are rebuilt for every color space", check_surplus_awake},
    };
}

} // namespace conformance
