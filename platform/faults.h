// Lets tests exhaust memory or fill the disk at a chosen moment. Nothing else writes these counters.
#pragma once

struct Faults {
    static constexpr long kNever = -1;
    long allocationsUntilFailure = kNever;  // 0: the next allocation or growth fails, and every later one
    long writesUntilFailure = kNever;       // 0: the next write to a file fails, and every later one
    long locksUntilFailure = kNever;        // 0: the next lock of a memory block fails, and every later one
};

extern Faults faults;

// Counts one event; true when it has to fail.
inline bool FaultDue(long& remaining) {
    if (remaining == Faults::kNever) return false;
    if (remaining == 0) return true;
    --remaining;
    return false;
}
