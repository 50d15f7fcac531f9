// What the core answers when something can fail: a value, or the reason why there is none.
#pragma once

#include <cstdint>
#include <string>
#include <utility>

enum class Failure : uint8_t {
    kNone,
    kNoMemory,
    kCantOpen,      // the system can't open the file
    kCantRead,      // or can't read on
    kNotGif,        // no signature
    kDamaged,       // the file breaks off or makes no sense where the image should be
    kNoBlock,       // there is no such block, or no header
    kNotAllowed,    // the header is never deleted; kinds that can't be made
    kCancelled,     // the user said no
    kStopped,       // the user ended work that was going on
    kNotPicture,    // no kind of picture that is known
    kTooLarge,      // more than can be held
    kNotSupported,  // a form of its kind that nobody here reads
    kNoDecoder,     // the system lacks what would read it
};

// Either a value or a Failure other than kNone.
template <typename T>
class [[nodiscard]] Result {
public:
    Result(T value) : value_(std::move(value)) {}
    Result(Failure failure, std::string reason = {}) : failure_(failure), reason_(std::move(reason)) {}

    explicit operator bool() const { return failure_ == Failure::kNone; }
    Failure Why() const { return failure_; }
    const std::string& Reason() const { return reason_; }  // the system's words, where it has any
    const T& operator*() const { return value_; }
    T& operator*() { return value_; }
    const T* operator->() const { return &value_; }
    T* operator->() { return &value_; }

private:
    T value_ = {};
    Failure failure_ = Failure::kNone;
    std::string reason_;
};
