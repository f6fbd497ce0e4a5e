#pragma once

#include <memory>

#include "host/core/core_string.h"
#include "host/event/event_object.h"
#include "host/host_export.h"

/// A named list of labels with 32-bit values that attribute editors show as a menu. Labels keep their order;
/// look-ups by label are exact and cost constant time. Observers connect to its EVT_ID_OF_ENUM_CHANGE.
class HOST_API OfEnum : public EventObject {
public:
    OfEnum(const CoreString& name, const unsigned int& invalid_value);
    ~OfEnum() override;
    OfEnum(const OfEnum&) = delete;
    OfEnum& operator=(const OfEnum&) = delete;

    const CoreClassInfo& get_class_info() const override;
    static const CoreClassInfo& class_info();

    const CoreString& get_name() const;
    /// What value look-ups answer for an unknown label.
    const unsigned int& get_invalid_value() const;

    /// Stops telling observers of changes until the matching `awake`; calls nest.
    void asleep();
    /// Ends one `asleep`; the last one tells observers once if anything changed and `notify` is true. Without
    /// an `asleep` to end it does nothing.
    void awake(const bool& notify);
    bool is_asleep() const;
    /// How often observers were told of a change.
    unsigned int get_change_count() const;
    /// Grows with every edit of labels, values or separator, observed or asleep; no two states of the
    /// enumeration that differ share a revision.
    unsigned long long get_revision() const;

    void remove_all_values();
    void add_value(const CoreString& label, const unsigned int& value);
    /// Appends label i with value i; surplus elements of the longer array are ignored.
    void add_values(const CoreBasicArray<CoreString>& labels, const CoreBasicArray<unsigned int>& values);

    /// Character at which a menu splits a label into sub-menus.
    void set_separator(const char& separator);
    /// The separator as a string; empty when none was set.
    const CoreString& get_separator() const;

    unsigned int get_value_count() const;
    /// Position of the first such label; 0xFFFFFFFF when there is none.
    unsigned int find_label_index(const CoreBasicString& label) const;
    /// Label at a position; the null string past the end.
    const CoreString& get_label(const unsigned int& index) const;
    /// Value of the first such label; the invalid value when there is none.
    unsigned int get_value(const CoreString& label) const;
    unsigned int get_value_from_label(const CoreString& label) const;
    /// Value at a position; the invalid value past the end.
    unsigned int get_value_by_index(const unsigned int& index) const;

private:
    struct State;
    std::unique_ptr<State> state;
};
