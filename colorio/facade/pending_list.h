#pragma once

#include <utility>

/// Gives `list` its new content at the end of the scope, also when an exception leaves it: an operation that
/// fails halfway loses no record that the host passed.
template <class List>
class PendingList {
public:
    PendingList(List& list, List content) : list(list), content(std::move(content)) {}
    ~PendingList() { list.swap(content); }
    PendingList(const PendingList&) = delete;
    PendingList& operator=(const PendingList&) = delete;

    const List& get() const { return content; }

private:
    List& list;
    List content;
};
