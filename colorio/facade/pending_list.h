#pragma once

#include <utility>

/// Gives `list` its new content at the end of the scope, however that is left: an operation that breaks off
/// in between loses no record that the host handed over.
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
