#include "editing/alignment.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace {

using Row = std::vector<uint64_t>;

// How many members can be paired at most, by the table of all beginnings of both rows.
size_t MostPairs(const Row& old, const Row& fresh) {
    std::vector<std::vector<size_t>> most(old.size() + 1, std::vector<size_t>(fresh.size() + 1));
    for (size_t i = 0; i < old.size(); ++i)
        for (size_t k = 0; k < fresh.size(); ++k)
            most[i + 1][k + 1] = old[i] == fresh[k] ? most[i][k] + 1 : std::max(most[i][k + 1], most[i + 1][k]);
    return most.back().back();
}

// Aligns the rows; the pairs must be of equal labels and increase.
size_t CountPairs(const Row& old, const Row& fresh) {
    const std::vector<IndexPair> pairs = AlignLabels(old, fresh);
    for (size_t i = 0; i < pairs.size(); ++i) {
        EXPECT_EQ(old.at(pairs[i].old), fresh.at(pairs[i].fresh));
        if (i == 0) continue;
        EXPECT_LT(pairs[i - 1].old, pairs[i].old);
        EXPECT_LT(pairs[i - 1].fresh, pairs[i].fresh);
    }
    return pairs.size();
}

// A row that has each label twice at least, so that none of them can hold the rows together, and begins and ends with
// `edge`.
Row RandomRow(std::mt19937* random, uint64_t labels, size_t more, uint64_t edge) {
    Row row;
    for (uint64_t label = 0; label < labels; ++label) row.insert(row.end(), 2, label);
    for (size_t i = 0; i < more; ++i) row.push_back((*random)() % labels);
    std::shuffle(row.begin(), row.end(), *random);
    row.insert(row.begin(), edge);
    row.push_back(edge);
    return row;
}

}  // namespace

TEST(Alignment, PairsAsManyAsPossible) {
    std::mt19937 random(3);
    for (int i = 0; i < 1000; ++i) {
        const uint64_t labels = 1 + random() % 6;
        const Row old = RandomRow(&random, labels, random() % 20, 100);
        const Row fresh = RandomRow(&random, labels, random() % 20, 101);
        ASSERT_EQ(CountPairs(old, fresh), MostPairs(old, fresh))
            << testing::PrintToString(old) << testing::PrintToString(fresh);
        ASSERT_EQ(CountPairs(old, old), old.size());
    }
}

TEST(Alignment, SingularLabelsHoldTheRowsTogether) {
    const struct {
        Row old, fresh;
        size_t pairs;
    } cases[] = {
        {{}, {}, 0},
        {{1}, {}, 0},
        {{1, 2, 3, 4, 5}, {1, 3, 4, 5, 2}, 4},
        {{1, 2, 3, 4, 5}, {5, 4, 3, 2, 1}, 1},
        {{1, 2, 3, 4, 5, 6}, {4, 6, 1, 3, 5, 2}, 3},
        {{9, 9, 1, 9, 9, 2}, {1, 9, 9, 9, 9, 2}, 4},  // 5 without them
    };
    for (const auto& [old, fresh, pairs] : cases)
        EXPECT_EQ(CountPairs(old, fresh), pairs) << testing::PrintToString(old) << testing::PrintToString(fresh);
}

// More than one round of edits can join: the way goes on from where each of them has led.
TEST(Alignment, RowsWithLittleInCommonAreAlignedAllTheSame) {
    std::mt19937 random(5);
    const Row old = RandomRow(&random, 40, 20000, 100), fresh = RandomRow(&random, 40, 20000, 101);
    EXPECT_GT(CountPairs(old, fresh), 3000u);
    Row repeated(20000, 1), other(700, 2);
    other.insert(other.end(), repeated.begin(), repeated.end());
    repeated.insert(repeated.end(), 900, 2);
    EXPECT_GT(CountPairs(repeated, other), 600u);
}
