#pragma once

#include <cstddef>
#include <utility>

namespace tsr {

struct CountedPtrCount {
    std::size_t references;
    void* original; // as the deleter's class: the address can differ from that of a base
};

// Shared ownership of one object: three words, the object, a count on the heap that starts at 1, and a
// deleter that is chosen as the pointer is built. The last release runs the deleter. The count is not atomic:
// a session has one thread.
template <typename T>
class CountedPtr {
public:
    CountedPtr() = default;
    CountedPtr(std::nullptr_t) {} // NOLINT(google-explicit-constructor): null stands for "none" everywhere

    // Takes `object` over, also when the count cannot be allocated. The deleter is that of `U`, so that the
    // right destructor runs for a class without a virtual one.
    template <typename U>
    explicit CountedPtr(U* object) : object_(object), deleter_(&deleteAs<U>) {
        if (object == nullptr) return;
        try {
            count_ = new CountedPtrCount{1, const_cast<void*>(static_cast<const void*>(object))};
        } catch (...) {
            delete object;
            throw;
        }
    }

    CountedPtr(const CountedPtr& other) noexcept { share(other); }
    template <typename U>
    CountedPtr(
        const CountedPtr<U>& other) noexcept { // NOLINT(google-explicit-constructor): as plain pointers do
        share(other);
    }
    CountedPtr(CountedPtr&& other) noexcept { swap(other); }
    template <typename U>
    CountedPtr(CountedPtr<U>&& other) noexcept { // NOLINT(google-explicit-constructor): as above
        take(other);
    }

    CountedPtr& operator=(CountedPtr other) noexcept {
        swap(other);
        return *this;
    }

    ~CountedPtr() {
        // NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDelete): it doesn't follow the count through a map
        if (count_ == nullptr || --count_->references != 0) return;
        void* original = count_->original;
        delete count_;
        deleter_(original);
    } // NOLINT(clang-analyzer-cplusplus.NewDeleteLeaks): likewise

    T* get() const { return object_; }
    T& operator*() const { return *object_; }
    T* operator->() const { return object_; }
    explicit operator bool() const { return object_ != nullptr; }

    void reset() { CountedPtr().swap(*this); }

    void swap(CountedPtr& other) noexcept {
        std::swap(object_, other.object_);
        std::swap(count_, other.count_);
        std::swap(deleter_, other.deleter_);
    }

    friend bool operator==(const CountedPtr& left, const CountedPtr& right) {
        return left.object_ == right.object_;
    }

private:
    template <typename>
    friend class CountedPtr;

    template <typename U>
    static void deleteAs(void* object) {
        delete static_cast<U*>(object);
    }

    template <typename U>
    void share(const CountedPtr<U>& other) noexcept {
        object_ = other.object_;
        count_ = other.count_;
        deleter_ = other.deleter_;
        if (count_ != nullptr) ++count_->references;
    }

    template <typename U>
    void take(CountedPtr<U>& other) noexcept {
        object_ = std::exchange(other.object_, nullptr);
        count_ = std::exchange(other.count_, nullptr);
        deleter_ = std::exchange(other.deleter_, nullptr);
    }

    T* object_ = nullptr;
    CountedPtrCount* count_ = nullptr;
    void (*deleter_)(void*) = nullptr;
};

template <typename T, typename... Arguments>
CountedPtr<T> makeCounted(Arguments&&... arguments) {
    return CountedPtr<T>(new T(std::forward<Arguments>(arguments)...));
}

} // namespace tsr
