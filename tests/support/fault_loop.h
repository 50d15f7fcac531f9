// Doing something again and again, with the first, the second, the third ... of its requests failing.
#pragma once

#include "platform/faults.h"

// One round: from its making to End, the nth request of the counter and all later ones fail.
class FaultRound {
public:
    static constexpr long kNone = 1'000'000;  // more requests than any round has: nothing fails

    FaultRound(long Faults::*counter, long n) : counter_(counter), n_(n) {
        faults = {};
        faults.*counter = n;
    }
    ~FaultRound() { faults = {}; }
    FaultRound(const FaultRound&) = delete;
    FaultRound& operator=(const FaultRound&) = delete;

    bool IsUndisturbed() const { return n_ == kNone; }
    // What follows works again, so that the outcome can be looked at.
    void End() {
        if (!ended_) left_ = faults.*counter_;
        ended_ = true;
        faults = {};
    }
    long Requests() const { return n_ - left_; }  // after End of an undisturbed round
    long Number() const { return n_; }

private:
    long Faults::*counter_;
    long n_;
    long left_ = 0;
    bool ended_ = false;
};

// Calls attempt(round) once undisturbed, then once for every request that this made; returns how many those were.
template <typename Attempt>
long ForEachFault(long Faults::*counter, Attempt attempt) {
    FaultRound whole(counter, FaultRound::kNone);
    attempt(whole);
    whole.End();
    for (long n = 0; n < whole.Requests(); ++n) {
        FaultRound round(counter, n);
        attempt(round);
    }
    return whole.Requests();
}

// The same for requests of every kind.
template <typename Attempt>
long ForEachFault(Attempt attempt) {
    return ForEachFault(&Faults::allocationsUntilFailure, attempt) + ForEachFault(&Faults::locksUntilFailure, attempt) +
           ForEachFault(&Faults::writesUntilFailure, attempt);
}
