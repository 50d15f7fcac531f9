// Centring one length in another.
#pragma once

// Half of `difference`, rounded down also below zero, so that what is centred moves evenly when sizes change.
constexpr long HalfDown(long difference) {
    return (difference - (difference < 0 && difference % 2 != 0 ? 1 : 0)) / 2;
}
