#include "tests/colorio/memory/failing_allocation.h"

#include <dlfcn.h>
#include <execinfo.h>

#include <cstdlib>
#include <cstring>
#include <new>
#include <string_view>

namespace {

/// Allocations to go until the one that fails, which is number 1; 0: none fails.
thread_local unsigned int remaining = 0;

constexpr unsigned int RECORD_LENGTH = 1 << 20;

/// One flag per allocation since the start of the record: may it fail?
thread_local bool* record = nullptr;
thread_local unsigned int record_count = 0;

bool starts_with(std::string_view text, std::string_view start) {
    return text.substr(0, start.size()) == start;
}

/// Templates of std may be in any library, independent of the caller.
bool is_of_std(const char* symbol) {
    const std::string_view name = symbol ? symbol : "";
    return starts_with(name, "_ZNSt") || starts_with(name, "_ZNKSt") || starts_with(name, "_ZSt") ||
           starts_with(name, "_ZN9__gnu_cxx");
}

/// Whether the innermost caller that is not the standard runtime is OpenColorIO.
__attribute__((noinline)) bool is_asked_for_by_opencolorio() {
    void* frames[64];
    const int count = backtrace(frames, 64);
    Dl_info self;
    dladdr(reinterpret_cast<void*>(&is_asked_for_by_opencolorio), &self);
    bool in_operator_new = true; // The first frames are this file's.
    for (int i = 1; i < count; ++i) {
        Dl_info frame;
        if (dladdr(frames[i], &frame) == 0 || !frame.dli_fname)
            continue;
        const bool is_test = frame.dli_fbase == self.dli_fbase;
        const bool is_new =
            frame.dli_sname && (starts_with(frame.dli_sname, "_Znw") || starts_with(frame.dli_sname, "_Zna"));
        if (is_test && in_operator_new) {
            in_operator_new = !is_new;
            continue;
        }
        if (is_of_std(frame.dli_sname))
            continue;
        if (std::strstr(frame.dli_fname, "libOpenColorIO"))
            return true;
        if (is_test || std::strstr(frame.dli_fname, "libqb_"))
            return false;
    }
    return false;
}

/// Takes note of one allocation; whether it is to fail.
bool must_fail() {
    if (record && record_count < RECORD_LENGTH) {
        bool* const flags = record;
        record = nullptr; // What follows may allocate.
        flags[record_count++] = !is_asked_for_by_opencolorio();
        record = flags;
    }
    return remaining > 0 && --remaining == 0 && !is_asked_for_by_opencolorio();
}

void* allocate(std::size_t size, std::size_t alignment) noexcept {
    if (must_fail())
        return nullptr;
    if (alignment <= __STDCPP_DEFAULT_NEW_ALIGNMENT__)
        return std::malloc(size == 0 ? 1 : size);
    const std::size_t rounded = (size + alignment - 1) / alignment * alignment;
    return std::aligned_alloc(alignment, rounded == 0 ? alignment : rounded);
}

void* allocate_or_throw(std::size_t size, std::size_t alignment) {
    if (void* memory = allocate(size, alignment))
        return memory;
    throw std::bad_alloc();
}

constexpr std::size_t USUAL = __STDCPP_DEFAULT_NEW_ALIGNMENT__;

} // namespace

FailingAllocation::FailingAllocation(unsigned int number) {
    remaining = number;
}

FailingAllocation::~FailingAllocation() {
    remaining = 0;
}

bool FailingAllocation::has_struck() const {
    return remaining == 0;
}

AllocationRecord::AllocationRecord() {
    record_count = 0;
    record = static_cast<bool*>(std::calloc(RECORD_LENGTH, sizeof(bool)));
}

AllocationRecord::~AllocationRecord() {
    std::free(record);
    record = nullptr;
}

std::vector<unsigned int> AllocationRecord::stop() {
    bool* const flags = record;
    record = nullptr;
    std::vector<unsigned int> numbers;
    for (unsigned int i = 0; i < record_count; ++i)
        if (flags[i])
            numbers.push_back(i + 1);
    std::free(flags);
    return numbers;
}

void* operator new(std::size_t size) {
    return allocate_or_throw(size, USUAL);
}
void* operator new[](std::size_t size) {
    return allocate_or_throw(size, USUAL);
}
void* operator new(std::size_t size, std::align_val_t alignment) {
    return allocate_or_throw(size, static_cast<std::size_t>(alignment));
}
void* operator new[](std::size_t size, std::align_val_t alignment) {
    return allocate_or_throw(size, static_cast<std::size_t>(alignment));
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return allocate(size, USUAL);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return allocate(size, USUAL);
}
void* operator new(std::size_t size, std::align_val_t alignment, const std::nothrow_t&) noexcept {
    return allocate(size, static_cast<std::size_t>(alignment));
}
void* operator new[](std::size_t size, std::align_val_t alignment, const std::nothrow_t&) noexcept {
    return allocate(size, static_cast<std::size_t>(alignment));
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete[](void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::align_val_t) noexcept {
    std::free(memory);
}
void operator delete[](void* memory, std::align_val_t) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t, std::align_val_t) noexcept {
    std::free(memory);
}
void operator delete[](void* memory, std::size_t, std::align_val_t) noexcept {
    std::free(memory);
}
void operator delete(void* memory, const std::nothrow_t&) noexcept {
    std::free(memory);
}
void operator delete[](void* memory, const std::nothrow_t&) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::align_val_t, const std::nothrow_t&) noexcept {
    std::free(memory);
}
void operator delete[](void* memory, std::align_val_t, const std::nothrow_t&) noexcept {
    std::free(memory);
}
