#include "platform/parallel.h"

#include <algorithm>
#include <atomic>
#include <system_error>
#include <thread>
#include <vector>

namespace {
constexpr size_t kMostThreads = 16;
}

size_t ParallelThreads() {
    return std::clamp<size_t>(std::thread::hardware_concurrency(), 1, kMostThreads);
}

void RunInParallel(size_t count, const std::function<void(size_t)>& work) {
    RunInParallel(count, ParallelThreads(), work);
}

void RunInParallel(size_t count, size_t threads, const std::function<void(size_t)>& work) {
    std::atomic<size_t> next = 0;
    auto takeWork = [&] {
        for (size_t number = next++; number < count; number = next++) work(number);
    };
    // cppcheck-suppress variableScope ; they work beside this thread, and end before what they use
    std::vector<std::jthread> others;
    try {
        while (others.size() + 1 < std::min(threads, count)) others.emplace_back(takeWork);
    } catch (const std::exception&) {
        // With fewer threads it only takes longer.
    }
    takeWork();
}
