// Lets tests exhaust memory, fill the disk or break a file at a chosen moment. Nothing else writes these counters.
#pragma once

#include <atomic>
#include <cstdlib>

struct Faults {
    static constexpr long kNever = -1;
    static constexpr long kPast = -2;  // the only failure has happened
    static constexpr int kDied = 137;  // the exit status of a process that died of one

    // Events of a kind until one fails: with 0 the next one does.
    long allocationsUntilFailure = kNever;  // allocations of memory, and its growth
    long locksUntilFailure = kNever;        // locks of a memory block
    long readsUntilFailure = kNever;        // reads of a file by the system
    long writesUntilFailure = kNever;       // writes to a file by the system
    long seeksUntilFailure = kNever;        // moves within a file by the system

    // True: the one event fails and all later ones succeed, which shows failures that nobody looks at. False: every
    // later one fails too.
    bool onlyOne = false;

    // True: the process dies there and then, as one that is killed.
    bool deadly = false;
};

extern Faults faults;

// Counts one event; true when it has to fail. Several threads may count at a time.
inline bool FaultDue(long& remaining) {
    std::atomic_ref<long> left(remaining);
    for (long now = left.load(std::memory_order_relaxed); now != 0;)
        if (now < 0 || left.compare_exchange_weak(now, now - 1)) return false;
    if (faults.deadly) std::_Exit(Faults::kDied);
    if (faults.onlyOne) left = Faults::kPast;
    return true;
}
