// Values that copies share and the last copy releases.
#pragma once

#include <atomic>
#include <cstdint>
#include <new>
#include <utility>

// One T, or none, with the copies counted. Copies may be made, read and dropped in several threads at once; whoever
// changes the T has to be alone with it (IsShared).
template <typename T>
class Shared {
public:
    Shared() = default;
    ~Shared() { Drop(); }
    Shared(const Shared& other) noexcept : node_(other.node_) {
        if (node_) node_->owners.fetch_add(1, std::memory_order_relaxed);
    }
    Shared(Shared&& other) noexcept : node_(std::exchange(other.node_, nullptr)) {}
    Shared& operator=(Shared other) noexcept {
        std::swap(node_, other.node_);
        return *this;
    }

    // A new T made from the arguments, whose constructor must not throw; none when memory runs out.
    template <typename... Arguments>
    [[nodiscard]] static Shared Make(Arguments&&... arguments) {
        Shared made;
        made.node_ = new (std::nothrow) Node(std::forward<Arguments>(arguments)...);
        return made;
    }

    explicit operator bool() const { return node_ != nullptr; }
    T* Get() const { return node_ ? &node_->value : nullptr; }
    T* operator->() const { return &node_->value; }  // NOLINT(clang-analyzer-cplusplus.NewDelete): as below
    // NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDelete): the analysis does not follow the count
    bool IsShared() const { return node_ && node_->owners.load(std::memory_order_acquire) > 1; }
    bool operator==(const Shared& other) const { return node_ == other.node_; }

private:
    struct Node {
        template <typename... Arguments>
        explicit Node(Arguments&&... arguments) : value(std::forward<Arguments>(arguments)...) {}
        std::atomic<uint32_t> owners{1};
        T value;
    };

    void Drop() {
        // NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDelete): as above
        if (node_ && node_->owners.fetch_sub(1, std::memory_order_acq_rel) == 1) delete node_;
    }

    Node* node_ = nullptr;
};
