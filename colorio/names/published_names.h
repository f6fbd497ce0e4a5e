#pragma once

#include <string>
#include <unordered_map>
#include <utility>

#include "colorio/ocio/types.h"
#include "host/core/core_string.h"

/// The published names of color spaces, found in constant time.
class PublishedSpaces {
public:
    using Spaces = std::unordered_map<std::string, ocio::ConstColorSpaceRcPtr>;

    /// `config` may be null.
    explicit PublishedSpaces(ocio::ConstConfigRcPtr config) : config(std::move(config)) {}

    /// True when the color spaces are those of `other`.
    bool are_of(const ocio::ConstConfigRcPtr& other) const { return config == other; }
    /// `space` is null where it was not looked up.
    void add(const CoreBasicString& name, ocio::ConstColorSpaceRcPtr space) {
        spaces.emplace(std::string(name.view()), std::move(space));
    }
    bool contain(const CoreBasicString& name) const { return spaces.count(std::string(name.view())) != 0; }
    const Spaces& get_all() const { return spaces; }

private:
    ocio::ConstConfigRcPtr config;
    Spaces spaces;
};

/// The published labels of views and what they stand for, found in constant time.
class PublishedViews {
public:
    struct View {
        CoreString display;
        CoreString name;
    };

    /// `config` may be null.
    explicit PublishedViews(ocio::ConstConfigRcPtr config) : config(std::move(config)) {}

    /// True when the views are those of `other`.
    bool are_of(const ocio::ConstConfigRcPtr& other) const { return config == other; }
    void add(const CoreBasicString& label, View view) {
        views.emplace(std::string(label.view()), std::move(view));
    }
    /// Null when no view has the label.
    const View* find(const CoreBasicString& label) const {
        const auto found = views.find(std::string(label.view()));
        return found == views.end() ? nullptr : &found->second;
    }

private:
    ocio::ConstConfigRcPtr config;
    std::unordered_map<std::string, View> views;
};
