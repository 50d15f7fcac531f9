// Which members of two rows stand for each other.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

struct IndexPair {
    uint32_t old, fresh;
};

// Pairs members whose label each row has once, as many as keep their order: the indexes of the pairs increase on both
// sides (patience diff, Bram Cohen).
std::vector<IndexPair> AlignSingularLabels(std::span<const uint64_t> old, std::span<const uint64_t> fresh);

// The same, and between those as many members of equal label as possible (E. Myers, "An O(ND) Difference Algorithm and
// Its Variations", 1986), or nearly as many where the rows have little in common: the work is at most some hundred
// steps a member.
std::vector<IndexPair> AlignLabels(std::span<const uint64_t> old, std::span<const uint64_t> fresh);
