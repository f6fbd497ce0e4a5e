#pragma once

#include "host/core/core_array.h"

/// Growable array: pointer, 32-bit count, 32-bit capacity. An append to a full vector doubles the capacity
/// (1 when it was empty).
template <class T>
class CoreVector : public CoreBasicArray<T> {
    using Base = CoreBasicArray<T>;

public:
    CoreVector() = default;
    /// Delegates, so that the destructor frees the storage when the copy of an element throws.
    CoreVector(const CoreVector& other) : CoreVector() { copy_elements(other); }
    CoreVector(CoreVector&& other) noexcept { swap(other); }
    CoreVector& operator=(CoreVector other) noexcept {
        swap(other);
        return *this;
    }
    ~CoreVector() { release_all(); }

    using Base::operator[];
    /// Element `index`, which must be below the count.
    T& operator[](unsigned int index) { return this->data[index]; }
    T* begin() { return this->data; }
    T* end() { return this->data + this->count; }
    using Base::begin;
    using Base::end;

    /// Count of elements that fit without another allocation.
    unsigned int get_capacity() const { return capacity; }

    /// Makes the capacity at least `wanted` without changing the count; throws std::bad_alloc.
    void reserve(unsigned int wanted) {
        if (wanted <= capacity)
            return;
        T* storage = Base::allocate(wanted);
        std::uninitialized_move(this->data, this->data + this->count, storage);
        std::destroy(this->data, this->data + this->count);
        Base::release(this->data);
        this->data = storage;
        capacity = wanted;
    }

    /// Appends `value` (taken by value: it may be an element of this vector).
    void append(T value) {
        if (this->count == capacity)
            reserve(capacity == 0 ? 1 : capacity * 2);
        new (this->data + this->count) T(std::move(value));
        ++this->count;
    }

    /// Inserts `value` before position `index`; an index past the end appends.
    void insert(unsigned int index, T value) {
        append(std::move(value));
        for (unsigned int i = this->count - 1; i > index; --i)
            std::swap(this->data[i], this->data[i - 1]);
    }

    /// Removes the element at `index` and closes the gap; an index past the end is ignored.
    void remove(unsigned int index) {
        if (index >= this->count)
            return;
        for (unsigned int i = index; i + 1 < this->count; ++i)
            this->data[i] = std::move(this->data[i + 1]);
        remove_last();
    }

    /// Removes the last element, if there is one.
    void remove_last() {
        if (this->count == 0)
            return;
        --this->count;
        this->data[this->count].~T();
    }

    /// Removes every element and keeps the capacity.
    void remove_all() {
        std::destroy(this->data, this->data + this->count);
        this->count = 0;
    }

    /// Exchanges elements and capacity; pointers to elements stay valid.
    void swap(CoreVector& other) noexcept {
        this->swap_elements(other);
        std::swap(capacity, other.capacity);
    }

private:
    void copy_elements(const CoreVector& other) {
        reserve(other.count);
        std::uninitialized_copy(other.begin(), other.end(), this->data);
        this->count = other.count;
    }

    void release_all() {
        remove_all();
        Base::release(this->data);
        this->data = nullptr;
        capacity = 0;
    }

    unsigned int capacity = 0;
};
