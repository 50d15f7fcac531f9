// Work on all processors at once.
#pragma once

#include <cstddef>
#include <functional>

// How many threads RunInParallel uses at most, the calling one included.
size_t ParallelThreads();

// Calls work(0) to work(count - 1), each once, in any order and several at a time, and returns when all are done.
// `work` must not throw.
void RunInParallel(size_t count, const std::function<void(size_t)>& work);

// The same with at most `threads` threads, 1 at least.
void RunInParallel(size_t count, size_t threads, const std::function<void(size_t)>& work);
