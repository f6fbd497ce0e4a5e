#pragma once

#include <memory>
#include <new>
#include <utility>

/// Read-only view of the elements of an array or a vector: a pointer and a 32-bit count. The base of both;
/// passed by reference only.
template <class T>
class CoreBasicArray {
public:
    /// Count of elements.
    unsigned int get_count() const { return count; }
    /// True when the count is 0.
    bool is_empty() const { return count == 0; }
    /// First element; null when nothing was ever allocated.
    const T* get_data() const { return data; }
    /// Element `index`, which must be below the count.
    const T& operator[](unsigned int index) const { return data[index]; }
    const T* begin() const { return data; }
    const T* end() const { return data + count; }

protected:
    CoreBasicArray() = default;
    ~CoreBasicArray() = default;
    CoreBasicArray(const CoreBasicArray&) = delete;
    CoreBasicArray& operator=(const CoreBasicArray&) = delete;

    static T* allocate(unsigned int capacity) {
        return static_cast<T*>(::operator new(sizeof(T) * capacity, std::align_val_t(alignof(T))));
    }
    static void release(T* storage) { ::operator delete(storage, std::align_val_t(alignof(T))); }

    void swap_elements(CoreBasicArray& other) {
        std::swap(data, other.data);
        std::swap(count, other.count);
    }

    T* data = nullptr;
    unsigned int count = 0;
};

/// Owning array; its storage has exactly `get_count` elements and is replaced by `resize`.
template <class T>
class CoreArray : public CoreBasicArray<T> {
    using Base = CoreBasicArray<T>;

public:
    CoreArray() = default;
    /// Delegates, as the copy does, so that the destructor frees the storage when an element throws.
    explicit CoreArray(unsigned int count) : CoreArray() { resize(count); }
    CoreArray(const CoreArray& other) : CoreArray() {
        this->data = other.count ? Base::allocate(other.count) : nullptr;
        std::uninitialized_copy(other.begin(), other.end(), this->data);
        this->count = other.count;
    }
    CoreArray(CoreArray&& other) noexcept { this->swap_elements(other); }
    CoreArray& operator=(CoreArray other) noexcept {
        this->swap_elements(other);
        return *this;
    }
    ~CoreArray() { remove_all(); }

    using Base::operator[];
    using Base::get_data;
    /// Element `index`, which must be below the count.
    T& operator[](unsigned int index) { return this->data[index]; }
    /// First element; null when there are none.
    T* get_data() { return this->data; }

    /// Destroys every element and frees the storage.
    void remove_all() {
        std::destroy(this->data, this->data + this->count);
        Base::release(this->data);
        this->data = nullptr;
        this->count = 0;
    }

    /// Discards every element and makes the array exactly `new_count` value-initialized elements long.
    void resize(unsigned int new_count) {
        remove_all();
        if (new_count == 0)
            return;
        this->data = Base::allocate(new_count);
        std::uninitialized_value_construct_n(this->data, new_count);
        this->count = new_count;
    }
};
