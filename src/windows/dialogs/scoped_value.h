// A value that a variable has for a while.
#pragma once

// Gives the variable `value` until the end of the scope, so that what reaches it there nests.
template <typename T>
class ScopedValue {
public:
    ScopedValue(T* variable, const T& value) : variable_(variable), previous_(*variable) { *variable = value; }
    ~ScopedValue() { *variable_ = previous_; }
    ScopedValue(const ScopedValue&) = delete;
    ScopedValue& operator=(const ScopedValue&) = delete;

private:
    T* variable_;
    T previous_;
};
