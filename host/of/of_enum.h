#pragma once

#include <memory>

#include "host/core/core_string.h"
#include "host/event/event_object.h"
#include "host/host_export.h"

/// A named list of labels with 32-bit values that attribute editors show as a menu. Labels keep their order
/// and may repeat; lookups by label are exact and take constant time. Observers connect to its
/// EVT_ID_OF_ENUM_CHANGE. For one thread at a time.
class HOST_API OfEnum : public EventObject {
public:
    /// An empty list; `invalid_value` is what lookups of unknown labels return.
    OfEnum(const CoreString& name, const unsigned int& invalid_value);
    ~OfEnum() override;
    OfEnum(const OfEnum&) = delete;
    OfEnum& operator=(const OfEnum&) = delete;

    const CoreClassInfo& get_class_info() const override;
    static const CoreClassInfo& class_info();

    /// Name under which the factory finds it.
    const CoreString& get_name() const;
    /// Returned by lookups of values for an unknown label or position.
    const unsigned int& get_invalid_value() const;

    /// Stops notifying observers until the matching `awake`; calls nest.
    void asleep();
    /// Ends one `asleep`; the last one notifies observers once if anything changed and `notify` is true.
    /// Ignored without a matching `asleep`.
    void awake(const bool& notify);
    /// Whether notifications are stopped.
    bool is_asleep() const;
    /// Count of notifications so far.
    unsigned int get_change_count() const;
    /// Grows with every edit of labels, values or separator, also while asleep; no two different states of
    /// the enumeration have the same revision.
    unsigned long long get_revision() const;

    /// Removes all labels and values.
    void remove_all_values();
    /// Appends a label.
    void add_value(const CoreString& label, const unsigned int& value);
    /// Appends label i with value i; surplus elements of the longer array are ignored.
    void add_values(const CoreBasicArray<CoreString>& labels, const CoreBasicArray<unsigned int>& values);

    /// Character at which a menu splits a label into sub-menus.
    void set_separator(const char& separator);
    /// The separator as a string; empty when none was set.
    const CoreString& get_separator() const;

    /// Count of labels.
    unsigned int get_value_count() const;
    /// Position of the first such label; 0xFFFFFFFF when there is none.
    unsigned int find_label_index(const CoreBasicString& label) const;
    /// Label at a position; the empty string past the end.
    const CoreString& get_label(const unsigned int& index) const;
    /// Value of the first such label; the invalid value when there is none.
    unsigned int get_value(const CoreString& label) const;
    /// The same.
    unsigned int get_value_from_label(const CoreString& label) const;
    /// Value at a position; the invalid value past the end.
    unsigned int get_value_by_index(const unsigned int& index) const;

private:
    struct State;
    std::unique_ptr<State> state;
};
