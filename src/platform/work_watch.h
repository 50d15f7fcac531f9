// Long work told to whoever waits for it.
#pragma once

#include <cstddef>
#include <functional>

// `done` of `count` pieces are ready. Answers whether to go on. Comes from one thread at a time, from any.
using WorkWatch = std::function<bool(size_t done, size_t count)>;

// Without a watch all work goes on.
inline bool GoesOn(const WorkWatch& watch, size_t done, size_t count) {
    return !watch || watch(done, count);
}
