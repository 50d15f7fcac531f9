// The strings that a decoder knows, for an encoder that looks them up far more often than it learns: images are
// searched again and again, and in drawings most strings are long.
//
// Each string is a node of a tree, one pixel longer than its parent. The first child of a node continues its parent's
// chain, further ones begin chains of their own. A chain is a piece of the image as it is being written, so following
// it is one comparison of bytes, and only where it is left a child is looked up.
#pragma once

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>

#include "gif/lzw_limits.h"

// cppcheck-suppress noConstructor ; Reset makes it ready
class StringTable {
public:
    struct Match {
        unsigned code;
        size_t length;
    };

    // Forgets all strings but the `literals` single pixels, whose codes are their values.
    void Reset(unsigned literals) {
        memset(slots_, 0, sizeof slots_);
        chainCount_ = 0;
        poolUsed_ = 0;
        for (unsigned i = 0; i < literals; ++i) {
            nodes_[i] = {static_cast<uint16_t>(chainCount_), 1, static_cast<uint8_t>(i), static_cast<uint8_t>(i),
                         false};
            BeginChain(i, 0, 1, nullptr);
        }
    }

    unsigned First(unsigned code) const { return nodes_[code].first; }  // a string's first pixel

    // The code of the string of code `parent` followed by `pixel`, or 0 when it is not known.
    unsigned Child(unsigned parent, unsigned pixel) const {
        const Node& node = nodes_[parent];
        const Chain& chain = chains_[node.chain];
        if (node.depth < chain.lastDepth) {
            const unsigned next = CodeIn(chain, node.depth + 1u);
            if (nodes_[next].pixel == pixel) return next;
        }
        return node.hasBranches ? Branch(parent, pixel) : 0;
    }

    // Makes the string of code `parent` followed by `pixel`, which must not be known, known as `code`. `source` is
    // where it stands in the image as it is written.
    void Add(unsigned parent, unsigned pixel, unsigned code, const uint8_t* source) {
        Node& node = nodes_[parent];
        Chain& chain = chains_[node.chain];
        const unsigned depth = node.depth + 1u;
        added_ = {parent, node.hasBranches, nullptr};
        nodes_[code] = {node.chain, static_cast<uint16_t>(depth), static_cast<uint8_t>(pixel), node.first, false};
        if (node.depth == chain.lastDepth) {
            Extend(&chain, code);
            chain.source = source;
            return;
        }
        node.hasBranches = true;
        const auto fresh = static_cast<uint16_t>(chainCount_);
        nodes_[code].chain = fresh;
        BeginChain(code, parent, depth, source);
        chains_[fresh].next = chain.firstBranch;
        chain.firstBranch = fresh;
        ++chain.branches;
        unsigned at = SlotOf(parent, pixel);
        while (slots_[at % kSlots]) ++at;
        added_.slot = &slots_[at % kSlots];
        *added_.slot = KeyOf(parent, pixel) | code;
    }

    // Takes the string back that was added last.
    void RemoveAdded() {
        Node& node = nodes_[added_.parent];
        Chain& chain = chains_[node.chain];
        node.hasBranches = added_.hadBranches;
        if (!added_.slot) {
            --chain.lastDepth;
            return;
        }
        *added_.slot = 0;
        const Chain& branch = chains_[--chainCount_];
        chain.firstBranch = branch.next;
        --chain.branches;
        poolUsed_ = branch.codes;
    }

    // The longest string at the start of the pixels from `at` to before `end`, of which there must be some.
    Match Longest(const uint8_t* at, const uint8_t* end) const { return LongestBeyond({*at, 1}, at, end); }

    // The same when it is known to be that string or to begin with it.
    Match LongestBeyond(Match known, const uint8_t* at, const uint8_t* end) const {
        const auto most = static_cast<size_t>(end - at);
        unsigned code = known.code;
        for (size_t depth = known.length;; ++depth) {
            const Chain& chain = chains_[nodes_[code].chain];
            if (depth < chain.lastDepth && depth < most) {
                const size_t more = std::min<size_t>(chain.lastDepth, most) - depth;
                if (const size_t alike = CommonBytes(at + depth, chain.source + depth, more)) {
                    depth += alike;
                    code = CodeIn(chain, static_cast<unsigned>(depth));
                }
            }
            if (depth == most || !nodes_[code].hasBranches) return {code, depth};
            const unsigned branch = Branch(code, at[depth]);
            if (!branch) return {code, depth};
            code = branch;
        }
    }

    // The same for pixels that leave a choice (pixel_choices.h), from pixel `at` of them on; of several longest strings
    // one that changes least. Follows Pixels::kMostChains chains at most.
    template <typename Pixels>
    Match LongestAmong(const Pixels& pixels, size_t at) const {
        const size_t most = pixels.Count() - at;
        Match best = {0, 0};
        size_t leastChanged = SIZE_MAX;
        uint16_t waiting[Pixels::kMostChains + 1];
        unsigned waits = 0, taken = 0;
        auto add = [&](unsigned chain) {
            if (taken + waits < Pixels::kMostChains) waiting[waits++] = static_cast<uint16_t>(chain);
        };
        pixels.ForEachOther(at, add);
        waiting[waits++] = static_cast<uint16_t>(pixels.Preferred(at));
        while (waits) {
            const Chain& chain = chains_[waiting[--waits]];
            ++taken;
            size_t depth = chain.firstDepth;
            if (depth < chain.lastDepth && depth < most)
                depth +=
                    pixels.Common(at + depth, chain.source + depth, std::min<size_t>(chain.lastDepth, most) - depth);
            if (depth >= best.length) {
                const size_t changed = chain.lastDepth > 1 ? pixels.Changed(at, chain.source, depth) : 0;
                if (depth > best.length || changed < leastChanged) {
                    best = {CodeIn(chain, static_cast<unsigned>(depth)), depth};
                    leastChanged = changed;
                }
            }
            if (taken + waits < Pixels::kMostChains) ForEachBranch(pixels, at, chain, std::min(depth, most - 1), add);
        }
        return best;
    }

    // Copies the pixels of a string of that length to `to`.
    void Write(const Match& string, uint8_t* to) const {
        if (string.length > 1) memmove(to, chains_[nodes_[string.code].chain].source, string.length);
        *to = nodes_[string.code].first;
    }

    // The code of the first `length` pixels of a string, 1 at least and no more than it has.
    unsigned Beginning(unsigned code, size_t length) const {
        const Chain* chain = &chains_[nodes_[code].chain];
        while (chain->firstDepth > length) chain = &chains_[nodes_[chain->parent].chain];
        return CodeIn(*chain, static_cast<unsigned>(length));
    }

private:
    static constexpr unsigned kSlots = 1u << 13;
    static constexpr unsigned kFirstRoom = 4;
    static constexpr uint16_t kNoChain = 0xFFFF;
    // A chain moves when its room is used up, into one twice as large: of a string it has taken less than four codes by
    // then, or kFirstRoom if it is alone. One string more than it keeps may have been there for a moment.
    static constexpr unsigned kPool = (kFirstRoom + 2) * kMostCodes;

    struct Node {
        uint16_t chain;
        uint16_t depth;  // pixels
        uint8_t pixel;   // the last one
        uint8_t first;
        bool hasBranches;  // chains that begin with a child
    };
    struct Chain {
        const uint8_t* source;  // where its last string stands in the image
        uint16_t parent;        // of its first string
        uint16_t firstDepth, lastDepth;
        uint16_t room;
        uint16_t firstBranch, next;  // chains that leave this one, as a list
        uint16_t branches;           // how many these are
        uint8_t pixel;               // the last one of its first string
        unsigned codes;              // where the codes of its strings stand in the pool
    };
    struct Added {
        unsigned parent;
        bool hadBranches;
        uint32_t* slot;  // null: it made its chain longer
    };

    // Calls visit(chain) for those that leave a chain after `depth` pixels or less and may go on there.
    template <typename Pixels, typename Visit>
    void ForEachBranch(const Pixels& pixels, size_t at, const Chain& chain, size_t depth, Visit visit) const {
        const size_t places = depth - chain.firstDepth + 1;
        if (Pixels::kAreTwo && chain.branches > 2 * places) {
            for (size_t i = chain.firstDepth; i <= depth; ++i) {
                const unsigned code = CodeIn(chain, static_cast<unsigned>(i));
                if (!nodes_[code].hasBranches) continue;
                auto visitBranch = [&](unsigned index) {
                    if (const unsigned branch = Branch(code, index)) visit(nodes_[branch].chain);
                };
                pixels.ForEachOther(at + i, visitBranch);
                visitBranch(pixels.Preferred(at + i));
            }
            return;
        }
        for (unsigned i = chain.firstBranch; i != kNoChain; i = chains_[i].next) {
            const Chain& branch = chains_[i];
            if (branch.firstDepth <= depth + 1 && pixels.Allows(at + branch.firstDepth - 1, branch.pixel)) visit(i);
        }
    }

    // A slot: parent and pixel from bit 12, the code below; 0 is an empty one.
    static uint32_t KeyOf(unsigned parent, unsigned pixel) { return parent << 20 | pixel << 12; }
    static unsigned SlotOf(unsigned parent, unsigned pixel) { return parent * 9 ^ pixel << 5; }

    unsigned CodeIn(const Chain& chain, unsigned depth) const { return pool_[chain.codes + depth - chain.firstDepth]; }

    unsigned Branch(unsigned parent, unsigned pixel) const {
        const uint32_t key = KeyOf(parent, pixel);
        for (unsigned at = SlotOf(parent, pixel);; ++at) {
            const uint32_t slot = slots_[at % kSlots];
            if (!slot) return 0;
            if ((slot ^ key) < kMostCodes) return slot ^ key;
        }
    }

    void BeginChain(unsigned code, unsigned parent, unsigned depth, const uint8_t* source) {
        const auto at = static_cast<uint16_t>(depth);
        chains_[chainCount_++] = {
            source,   static_cast<uint16_t>(parent), at, at, kFirstRoom, kNoChain, kNoChain, 0, nodes_[code].pixel,
            poolUsed_};
        pool_[poolUsed_] = static_cast<uint16_t>(code);
        poolUsed_ += kFirstRoom;
    }

    void Extend(Chain* chain, unsigned code) {
        const unsigned length = chain->lastDepth - chain->firstDepth + 1u;
        if (length == chain->room) {
            memcpy(pool_ + poolUsed_, pool_ + chain->codes, length * sizeof pool_[0]);
            chain->codes = poolUsed_;
            chain->room = static_cast<uint16_t>(2 * length);
            poolUsed_ += chain->room;
        }
        pool_[chain->codes + length] = static_cast<uint16_t>(code);
        ++chain->lastDepth;
    }

    // How many of up to `most` bytes are the same in both; the second ones stand before the first in the same image.
    static size_t CommonBytes(const uint8_t* a, const uint8_t* b, size_t most) {
        size_t same = 0;
        for (; same + 8 <= most; same += 8) {
            uint64_t left, right;
            memcpy(&left, a + same, 8);
            memcpy(&right, b + same, 8);
            // Little-endian: the lowest bit that differs is in the first byte that does.
            if (left != right) return same + static_cast<size_t>(std::countr_zero(left ^ right)) / 8;
        }
        while (same < most && a[same] == b[same]) ++same;
        return same;
    }

    uint32_t slots_[kSlots];
    Node nodes_[kMostCodes];
    Chain chains_[kMostCodes];
    uint16_t pool_[kPool];
    unsigned chainCount_, poolUsed_;
    Added added_;
};
