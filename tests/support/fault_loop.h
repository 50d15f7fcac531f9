// Running something again and again, with the first, the second, the third ... of its requests failing.
#pragma once

#include "platform/faults.h"

constexpr long kNoFault = 1'000'000;  // what `attempt` is told in the run that goes undisturbed

// Calls attempt(n) with the nth event of the counter failing and all later ones, for every event that a run without
// faults has; returns how many those are. All faults are off afterwards.
template <typename Attempt>
long ForEachFault(long Faults::*counter, Attempt attempt) {
    faults = {};
    faults.*counter = kNoFault;
    attempt(kNoFault);
    long events = kNoFault - faults.*counter;
    for (long n = 0; n < events; ++n) {
        faults = {};
        faults.*counter = n;
        attempt(n);
    }
    faults = {};
    return events;
}
