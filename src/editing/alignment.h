// Which members of two rows stand for each other.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

struct IndexPair {
    uint32_t old, fresh;
};

// Pairs members of equal label, so that the indexes of the pairs increase on both sides. Labels that each row has once
// hold the rows together (patience diff, Bram Cohen); between those as many members as possible are paired (E. Myers,
// "An O(ND) Difference Algorithm and Its Variations", 1986), or nearly as many where the rows have little in common:
// the work is at most some hundred steps a member.
std::vector<IndexPair> AlignLabels(std::span<const uint64_t> old, std::span<const uint64_t> fresh);
