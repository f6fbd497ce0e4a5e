#pragma once

#include <string>
#include <unordered_set>

#include "host/core/core_vector.h"
#include "host/of/of_enum.h"

/// Labels and values of an enumeration while it is built; finds a label in constant time.
struct LabelList {
    CoreVector<CoreString> labels;
    CoreVector<unsigned int> values;

    /// True when `label` is neither listed here nor a label of `published`.
    bool is_new(const CoreString& label, const OfEnum& published) const {
        return published.find_label_index(label) >= published.get_value_count() && !holds(label);
    }
    bool holds(const CoreString& label) const { return known.count(std::string(label.view())) != 0; }

    /// `count` labels are going to be appended.
    void reserve(unsigned int count) {
        labels.reserve(count);
        values.reserve(count);
        known.reserve(count);
    }
    void append(const CoreString& label, unsigned int value) {
        known.emplace(label.view());
        labels.append(label);
        values.append(value);
    }

private:
    std::unordered_set<std::string> known;
};
