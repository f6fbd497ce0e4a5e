#pragma once

#include <vector>

/// While it lives, one allocation of this thread fails: the one with this number, counted from 1.
/// OpenColorIO's own never do: it allocates in functions that may not throw, and would end the process.
class FailingAllocation {
public:
    explicit FailingAllocation(unsigned int number);
    ~FailingAllocation();
    FailingAllocation(const FailingAllocation&) = delete;
    FailingAllocation& operator=(const FailingAllocation&) = delete;

    /// Whether so many allocations were asked for.
    bool has_struck() const;
};

/// While it lives, notes which allocations of this thread are not OpenColorIO's own.
class AllocationRecord {
public:
    AllocationRecord();
    ~AllocationRecord();
    AllocationRecord(const AllocationRecord&) = delete;
    AllocationRecord& operator=(const AllocationRecord&) = delete;

    /// Ends the record: the numbers of those that may fail.
    std::vector<unsigned int> stop();
};
