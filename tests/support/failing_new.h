// Lets the memory of strings and containers, which throw when there is none, end at a chosen moment.
#pragma once

struct FailingNew {
    static constexpr long kNever = -1;
    long untilFailure = kNever;  // 0: the next request throws; then all is well again
};
extern FailingNew failingNew;
